#include "basekit/id/Id.h"
#include "basekit/text/Utf8.h"
#include "solutionmanager/locations/CManagedFilesMgr.h"
#include "tests/solutionmanager/support/TestDesktop.h"
#include "tests/support/AssertWatch.h"
#include "tests/support/FaultyFileSystem.h"
#include "tests/support/Printers.h"
#include "tests/support/TemporaryFolder.h"
#include "viewkit/backup/BackupArea.h"

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <memory>

using support::AssertWatch;

namespace {

struct ManagedFiles : testing::Test {
  LongFileName Results() const { return text::FromUtf8(folder.Path().string() + "/"); }
  CManagedFilesMgr & Manager() {
    if (!manager)
      manager = std::make_unique<CManagedFilesMgr>(Results(), &design);
    return *manager;
  }
  AString Create(AString const & baseDir) {
    AString name;
    EXPECT_TRUE(Manager().CreateManagedFile(name, baseDir, L"txt"));
    return name;
  }
  void Commit() { Manager().Commit(Results()); }
  std::string Content(std::string const & name) const {
    std::ifstream in(folder / name);
    return in ? std::string(std::istreambuf_iterator<char>(in), {}) : "-";
  }
  bool Stands(std::string const & name) const { return std::filesystem::exists(folder / name); }
  void Put(std::string const & name, std::string const & content) {
    std::filesystem::create_directories((folder / name).parent_path());
    std::ofstream(folder / name) << content;
  }

  support::TemporaryFolder folder;
  support::TestDesign design{text::FromUtf8(folder.Path().string() + "/")};
  std::unique_ptr<CManagedFilesMgr> manager;
};

constexpr char kCommitted[] = "ManagedFiles_Design3.qsol";
constexpr char kPrivate[] = "ManagedFiles_Design3.qsol_priv";

} // namespace

TEST_F(ManagedFiles, ANewFileIsEmptyAndStandsInThePrivateList) {
  EXPECT_EQ(Create(L"plots"), L"tmp1.txt");
  EXPECT_EQ(Content("mf_3/plots/tmp1.txt"), "");
  EXPECT_EQ(Content(kPrivate), "ManagedFiles {\n  plots [\"tmp1.txt\"]\n}\nDeletedFiles {}\n");
  EXPECT_FALSE(Stands(kCommitted));
}

TEST_F(ManagedFiles, NamesAndFoldersAreToldByTheDesign) {
  EXPECT_EQ(Manager().GetFullPathForManagedFile(L"plots", L"x.txt"), Results() + AString(L"mf_3/plots/x.txt"));
  EXPECT_EQ(Manager().GetManagedFilesDir(), Results() + AString(L"mf_3/"));
  EXPECT_EQ(Manager().GetManagedFilesRelativeDir(), L"mf_3/");
}

TEST_F(ManagedFiles, WithoutACommitNewFilesGoAndDeletedOnesStay) {
  Create(L"plots");
  Commit();
  Create(L"plots");
  EXPECT_TRUE(Manager().DeleteManagedFile(L"plots", L"tmp1.txt"));
  EXPECT_TRUE(Stands("mf_3/plots/tmp1.txt"));
  manager.reset();
  EXPECT_TRUE(Stands("mf_3/plots/tmp1.txt"));
  EXPECT_FALSE(Stands("mf_3/plots/tmp2.txt"));
  EXPECT_FALSE(Stands(kPrivate));
}

TEST_F(ManagedFiles, ACommitMakesNewFilesPermanent) {
  Create(L"plots");
  Create(L"data/raw");
  Create(L"data/raw");
  Commit();
  EXPECT_EQ(Content(kCommitted), "IsBigEndian(false)\nManagedFiles {\n  \"data/raw\" [\"tmp1.txt\", \"tmp2.txt\"]\n  "
                                 "plots [\"tmp1.txt\"]\n}\n");
  EXPECT_FALSE(Stands(kPrivate));
  manager.reset();
  EXPECT_TRUE(Stands("mf_3/data/raw/tmp2.txt"));
}

TEST_F(ManagedFiles, ACommitRemovesWhatWasDeletedAndKeepsAnEmptyFolderInTheList) {
  Create(L"plots");
  Commit();
  Manager().DeleteManagedFile(L"plots", L"tmp1.txt");
  Commit();
  EXPECT_FALSE(Stands("mf_3/plots/tmp1.txt"));
  EXPECT_EQ(Content(kCommitted), "IsBigEndian(false)\nManagedFiles {\n  plots []\n}\n");
}

TEST_F(ManagedFiles, AFileThatIsMadeAndDeletedBeforeACommitIsGoneAfterIt) {
  Create(L"plots");
  Manager().DeleteManagedFile(L"plots", L"tmp1.txt");
  ASSERT_TRUE(BackupArea::Begin(Results() + AString(L"area"), Results()));
  Commit();
  EXPECT_FALSE(Stands("mf_3/plots/tmp1.txt"));
  EXPECT_TRUE(Stands("area/1"));
  EXPECT_TRUE(BackupArea::Drop(Results() + AString(L"area")));
}

TEST_F(ManagedFiles, ACommitWithNothingPendingRewritesTheListAndBacksTheOldOneUp) {
  Create(L"plots");
  Commit();
  std::string const list = Content(kCommitted);
  ASSERT_TRUE(BackupArea::Begin(Results() + AString(L"area"), Results()));
  Commit();
  EXPECT_EQ(Content("area/1"), list);
  EXPECT_EQ(Content(kCommitted), list);
  EXPECT_TRUE(BackupArea::Drop(Results() + AString(L"area")));
}

TEST_F(ManagedFiles, ACommitThatIsTakenBackLeavesEverythingPending) {
  Create(L"plots");
  Commit();
  Create(L"plots");
  Manager().DeleteManagedFile(L"plots", L"tmp1.txt");
  std::string const lists = Content(kCommitted) + Content(kPrivate);
  ASSERT_TRUE(BackupArea::Begin(Results() + AString(L"area"), Results()));
  Commit();
  EXPECT_TRUE(BackupArea::IsWhole());
  ASSERT_TRUE(BackupArea::Restore(Results() + AString(L"area"), Results()));
  EXPECT_EQ(Content(kCommitted) + Content(kPrivate), lists);
  EXPECT_TRUE(Stands("mf_3/plots/tmp1.txt") && Stands("mf_3/plots/tmp2.txt"));
}

TEST_F(ManagedFiles, AFirstCommitThatIsTakenBackLeavesNoList) {
  Create(L"plots");
  ASSERT_TRUE(BackupArea::Begin(Results() + AString(L"area"), Results()));
  Commit();
  ASSERT_TRUE(BackupArea::Restore(Results() + AString(L"area"), Results()));
  EXPECT_FALSE(Stands(kCommitted));
  EXPECT_TRUE(Stands(kPrivate));
}

TEST_F(ManagedFiles, WhatACrashLeftStaysAndIsAddedToAsIsMeant) {
  Put(kPrivate, "ManagedFiles {\n  plots [\"tmp1.txt\"]\n}\nDeletedFiles {}\n");
  Put("mf_3/plots/tmp1.txt", "left");
  EXPECT_EQ(Create(L"plots"), L"tmp2.txt");
  EXPECT_EQ(Content("mf_3/plots/tmp1.txt"), "left");
  EXPECT_EQ(Content(kPrivate), "ManagedFiles {\n  plots [\"tmp1.txt\", \"tmp2.txt\"]\n}\nDeletedFiles {}\n");
}

TEST_F(ManagedFiles, AListOfTheOtherByteOrderGoesWithItsFiles) {
  Put(kCommitted, "IsBigEndian(true)\nManagedFiles {\n  plots [\"old.txt\"]\n}\n");
  Put("mf_3/plots/old.txt", "x");
  Put("mf_3/plots/other.txt", "x");
  Manager().GetManagedFilesDir();
  EXPECT_FALSE(Stands("mf_3/plots/old.txt"));
  EXPECT_TRUE(Stands("mf_3/plots/other.txt"));
  EXPECT_FALSE(Stands(kCommitted));
}

TEST_F(ManagedFiles, AListOfTheOtherByteOrderWithoutItsBlockIsReported) {
  Put(kCommitted, "IsBigEndian(true)\n");
  AssertWatch::Expect("in_orig.AtBeginBlock(kManagedFiles)");
  Manager().GetManagedFilesDir();
  EXPECT_FALSE(Stands(kCommitted));
}

TEST_F(ManagedFiles, AListWithoutTheKeywordIsNotOfABigEndianMachine) {
  Put(kCommitted, "ManagedFiles {\n  plots [\"old.txt\"]\n}\n");
  Put("mf_3/plots/old.txt", "x");
  Commit();
  EXPECT_TRUE(Stands("mf_3/plots/old.txt"));
  EXPECT_EQ(Content(kCommitted), "IsBigEndian(false)\nManagedFiles {\n  plots [\"old.txt\"]\n}\n");
}

TEST_F(ManagedFiles, ACommitToAnotherDirectoryCopiesAndLeavesTheOldOneAsItWasCommitted) {
  Create(L"plots");
  Commit();
  std::string const list = Content(kCommitted);
  Create(L"plots");
  std::filesystem::create_directory(folder / "new");
  Manager().Commit(Results() + AString(L"new/"));
  EXPECT_EQ(Content(kCommitted), list);
  EXPECT_TRUE(Stands("mf_3/plots/tmp1.txt"));
  EXPECT_FALSE(Stands("mf_3/plots/tmp2.txt") || Stands(kPrivate));
  EXPECT_TRUE(Stands("new/mf_3/plots/tmp1.txt") && Stands("new/mf_3/plots/tmp2.txt"));
  EXPECT_EQ(Content(std::string("new/") + kCommitted),
            "IsBigEndian(false)\nManagedFiles {\n  plots [\"tmp1.txt\", \"tmp2.txt\"]\n}\n");
  EXPECT_FALSE(Stands(std::string("new/") + kPrivate));
  EXPECT_EQ(Manager().GetManagedFilesDir(), Results() + AString(L"new/mf_3/"));
}

TEST_F(ManagedFiles, ACommitToTheSameDirectorySpelledDifferentlyCopiesNothing) {
  Create(L"plots");
  Manager().Commit(text::FromUtf8(folder.Path().string()));
  EXPECT_TRUE(Stands("mf_3/plots/tmp1.txt"));
  EXPECT_EQ(Manager().GetManagedFilesDir(), Results() + AString(L"mf_3/"));
}

TEST_F(ManagedFiles, ADirectoryThatIsNotThereIsReported) {
  Create(L"plots");
  AssertWatch::Expect("!\"Unable to create mf_<design> directory\"");
  AssertWatch::Expect("!\"Unable to copy directory contents to new location\"");
  AssertWatch::Expect("isReplaced");
  Manager().Commit(Results() + AString(L"absent/"));
}

TEST_F(ManagedFiles, ADesignWithoutAnIDIsReported) {
  design.designID = id::invalidID;
  AssertWatch::Expect("designID != id::invalidID");
  EXPECT_EQ(Manager().GetManagedFilesRelativeDir(), L"mf_-1/");
}

TEST_F(ManagedFiles, AResultsDirectoryThatIsNoneIsReported) {
  AssertWatch::Expect("mResultsDir.IsDirectory()");
  CManagedFilesMgr const other(Results() + AString(L"absent"), &design);
}

TEST_F(ManagedFiles, AFolderWithoutANameIsReportedAndWorks) {
  AssertWatch::Expect("!baseDir.empty()");
  AString name;
  EXPECT_TRUE(Manager().CreateManagedFile(name, L"", L".txt"));
  EXPECT_TRUE(Stands("mf_3/tmp1.txt"));
  Commit();
  manager.reset();
  EXPECT_TRUE(Stands("mf_3/tmp1.txt"));
}

TEST_F(ManagedFiles, AListedFileThatIsGoneIsReported) {
  Create(L"plots");
  std::filesystem::remove(folder / "mf_3/plots/tmp1.txt");
  AssertWatch::Expect("LFN_Exists(lfn)");
  manager.reset();
}

TEST_F(ManagedFiles, ADeletedFileThatIsGoneIsReported) {
  Create(L"plots");
  Manager().DeleteManagedFile(L"plots", L"tmp1.txt");
  std::filesystem::remove(folder / "mf_3/plots/tmp1.txt");
  AssertWatch::Expect("LFN_Exists(lfn)");
  Commit();
}

TEST_F(ManagedFiles, ADeletedFileOfAnUnknownFolderIsReportedAndRemoved) {
  Put("mf_3/other/x.txt", "x");
  Manager().DeleteManagedFile(L"other", L"x.txt");
  AssertWatch::Expect("add || managedFilesMap.find(dir) != managedFilesMap.end()");
  Commit();
  EXPECT_FALSE(Stands("mf_3/other/x.txt"));
  EXPECT_EQ(Content(kCommitted), "IsBigEndian(false)\nManagedFiles {}\n");
}

TEST_F(ManagedFiles, AFolderThatCantBeMadeIsReported) {
  Put("mf_3", "a file stands here");
  AssertWatch::Expect("!\"Failed to create temporary file!!\"");
  AString name;
  EXPECT_FALSE(Manager().CreateManagedFile(name, L"plots", L"txt"));
}

TEST_F(ManagedFiles, APrivateListThatIsTornIsReported) {
  Put(kPrivate, "ManagedFi");
  AssertWatch::Expect("in.AtBeginBlock(kManagedFiles)");
  Create(L"plots");
  manager.reset();
  Put(kPrivate, "ManagedFi");
  AssertWatch::Expect("in_priv.AtBeginBlock(kManagedFiles)");
  Commit();
}

TEST_F(ManagedFiles, APrivateListThatIsTornIsReportedWhenTheManagerGoes) {
  Manager().GetManagedFilesDir();
  Put(kPrivate, "ManagedFi");
  AssertWatch::Expect("in.AtBeginBlock(kManagedFiles)");
  manager.reset();
  EXPECT_FALSE(Stands(kPrivate));
}

TEST_F(ManagedFiles, FoldersThatDifferInCaseStayApart) {
  Create(L"Plots");
  Create(L"plots");
  Manager().DeleteManagedFile(L"plots", L"tmp1.txt");
  Commit();
  EXPECT_EQ(Content(kCommitted), "IsBigEndian(false)\nManagedFiles {\n  Plots [\"tmp1.txt\"]\n  plots []\n}\n");
  EXPECT_TRUE(Stands("mf_3/Plots/tmp1.txt"));
}

TEST_F(ManagedFiles, NamesOfAnyScriptWork) {
  Create(L"Gr\u00f6\u00dfe \"\u6f22\"");
  Commit();
  manager.reset();
  EXPECT_TRUE(Stands("mf_3/Gr\xc3\xb6\xc3\x9f"
                     "e \"\xe6\xbc\xa2\"/tmp1.txt"));
}

TEST_F(ManagedFiles, NamesThatLeadOutOfTheFolderAreRefused) {
  Put("precious.txt", "x");
  AString name;
  EXPECT_FALSE(Manager().CreateManagedFile(name, L"../out", L"txt"));
  EXPECT_FALSE(Manager().CreateManagedFile(name, L"/out", L"txt"));
  EXPECT_FALSE(Manager().CreateManagedFile(name, L"plots", L"/../../x"));
  EXPECT_FALSE(Manager().DeleteManagedFile(L"..", L"precious.txt"));
  EXPECT_FALSE(Manager().DeleteManagedFile(L"plots", L"../../precious.txt"));
  EXPECT_TRUE(Manager().GetFullPathForManagedFile(L"plots", L"../../precious.txt").IsEmpty());
  Commit();
  EXPECT_TRUE(Stands("precious.txt"));
  EXPECT_FALSE(Stands("out"));
  EXPECT_EQ(AssertWatch::Take(), (std::vector<std::string>{"!\"A name leads out of the folder of managed files\""}));
}

TEST_F(ManagedFiles, ListedNamesThatLeadOutOfTheFolderAreNeverTouched) {
  Put("precious.txt", "x");
  Put(kPrivate, "ManagedFiles {\n  \"..\" [\"precious.txt\"]\n  plots [\"../../precious.txt\"]\n  \"/\" [\"x\"]\n}\n"
                "DeletedFiles {\n  \"..\" [\"precious.txt\"]\n}\n");
  Put(kCommitted, "IsBigEndian(true)\nManagedFiles {\n  \"..\" [\"precious.txt\"]\n}\n");
  Commit();
  Put(kPrivate, "ManagedFiles {\n  \"..\" [\"precious.txt\"]\n}\nDeletedFiles {}\n");
  manager.reset();
  EXPECT_TRUE(Stands("precious.txt"));
  EXPECT_EQ(AssertWatch::Take(), (std::vector<std::string>{"!\"A name leads out of the folder of managed files\""}));
}

TEST_F(ManagedFiles, ALinkIsNeverFollowed) {
  support::TemporaryFolder elsewhere;
  std::ofstream(elsewhere / "x.txt") << "other";
  std::filesystem::create_directory(folder / "mf_3");
  std::filesystem::create_directory_symlink(elsewhere.Path(), folder / "mf_3/plots");
  AString name;
  EXPECT_FALSE(Manager().CreateManagedFile(name, L"plots", L"txt"));
  EXPECT_FALSE(Manager().DeleteManagedFile(L"plots", L"x.txt"));
  Put(kPrivate, "ManagedFiles {\n  plots [\"x.txt\"]\n}\nDeletedFiles {}\n");
  manager.reset();
  EXPECT_TRUE(std::filesystem::exists(elsewhere / "x.txt"));
  EXPECT_EQ(AssertWatch::Take(), (std::vector<std::string>{"!\"A name leads out of the folder of managed files\""}));
}

TEST_F(ManagedFiles, AListThatCantBeWrittenLeavesTheOldOnesAsTheyWere) {
  Create(L"plots");
  Commit();
  Create(L"plots");
  std::string const lists = Content(kCommitted) + Content(kPrivate);
  AssertWatch::Expect("isReplaced");
  {
    support::FaultyFileSystem faulty;
    faulty.FailAt(1, true);
    Commit();
  }
  EXPECT_EQ(Content(kCommitted) + Content(kPrivate), lists);
  Commit();
  manager.reset();
  EXPECT_TRUE(Stands("mf_3/plots/tmp1.txt") && Stands("mf_3/plots/tmp2.txt"));
}

TEST_F(ManagedFiles, TheBackupServicesAreThoseOfTheHost) {
  Put("a", "A");
  Put("d/inside", "I");
  Put("b", "B");
  auto const path = [&](char const * name) { return text::FromUtf8((folder / name).string()); };
  IHubBackupHelperForManagedFiles & hub = Manager();
  IBackupHelperForManagedFiles & helper = Manager();
  EXPECT_FALSE(hub.MoveFileToBackup(path("a")) || hub.CopyDirToBackup(path("d")) || helper.CopyFileToBackup(path("a")));
  ASSERT_TRUE(BackupArea::Begin(Results() + AString(L"area"), Results()));
  EXPECT_TRUE(hub.CopyFileToBackup(path("a")) && helper.CopyFileToBackup(path("a")) &&
              helper.CopyDirToBackup(path("d")));
  EXPECT_TRUE(hub.MoveFileToBackup(path("a")) && hub.MoveDirToBackup(path("d")));
  EXPECT_TRUE(helper.DeleteFileOrMoveFileToBackup(path("b")));
  ASSERT_TRUE(BackupArea::Restore(Results() + AString(L"area"), Results()));
  EXPECT_TRUE(helper.DeleteDirOrMoveDirToBackup(path("d")));
  EXPECT_TRUE(Stands("a") && Stands("b") && !Stands("d"));
}
