#include "basekit/id/Id.h"
#include "tests/solutionmanager/locations/ManagedFilesFixture.h"
#include "tests/support/AssertWatch.h"
#include "tests/support/FaultyFileSystem.h"
#include "tests/support/Printers.h"
#include "viewkit/backup/BackupArea.h"

#include <algorithm>
#include <set>
#include <sys/stat.h>

using support::AssertWatch;
using support::kCommitted;
using support::kPrivate;
using support::ManagedFiles;

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
  auto const parent = folder.Path().parent_path();
  auto const link = parent / (folder.Path().filename().string() + "_link");
  std::filesystem::create_directory_symlink(folder.Path(), link);
  std::string const relative = std::filesystem::relative(folder.Path()).string();
  std::set<std::string> listed;
  for (std::string const & spelling : {folder.Path().string(), folder.Path().string() + "//",
                                       folder.Path().string() + "/./", relative, link.string(), link.string() + "/"}) {
    listed.insert(text::ToUtf8(Create(L"plots")));
    Create(L"plots");
    AString const second = AString::Format(L"tmp%d.txt", 2);
    Manager().DeleteManagedFile(L"plots", second);
    Manager().Commit(text::FromUtf8(spelling));
    EXPECT_FALSE(Stands("mf_3/plots/tmp2.txt") || Stands(kPrivate)) << spelling;
    EXPECT_EQ(Content(kCommitted), "IsBigEndian(false)\nManagedFiles {\n  plots [\"tmp1.txt\"]\n}\n") << spelling;
    EXPECT_EQ(Manager().GetManagedFilesDir(), Results() + AString(L"mf_3/"));
    EXPECT_TRUE(Manager().DeleteManagedFile(L"plots", L"tmp1.txt"));
    Commit();
    manager.reset();
  }
  EXPECT_EQ(listed, (std::set<std::string>{"tmp1.txt"}));
  std::filesystem::remove(link);
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
