// Lists that are damaged or hostile, operations that fail, and moves to another folder.

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
  // The opening, the write, the sync, the rename.
  for (int operation = 1; operation <= 4; ++operation) {
    support::FaultyFileSystem faulty;
    faulty.FailAt(operation, true);
    Commit();
    EXPECT_TRUE(faulty.HasFailed());
    EXPECT_EQ(Content(kCommitted) + Content(kPrivate), lists) << operation;
  }
  Commit();
  manager.reset();
  EXPECT_TRUE(Stands("mf_3/plots/tmp1.txt") && Stands("mf_3/plots/tmp2.txt"));
}

TEST_F(ManagedFiles, EveryOperationOfACommitMayFailAndNoFileIsLostOrInNoList) {
  for (bool const forGood : {false, true})
    for (int operation = 1;; ++operation) {
      SetUpPending();
      bool hasFailed = false;
      {
        support::FaultyFileSystem faulty;
        faulty.FailAt(operation, forGood);
        Commit();
        hasFailed = faulty.HasFailed();
      }
      // The second is saved or pending; the first is gone, listed, or to be deleted at the next commit.
      EXPECT_TRUE(Stands("mf_3/plots/tmp2.txt")) << operation;
      EXPECT_NE((Content(kCommitted) + Content(kPrivate)).find("tmp2"), std::string::npos) << operation;
      if (Stands("mf_3/plots/tmp1.txt")) {
        EXPECT_NE(Content(kCommitted).find("tmp1"), std::string::npos) << operation;
      }
      Commit();
      manager.reset();
      EXPECT_TRUE(Stands("mf_3/plots/tmp2.txt")) << operation;
      EXPECT_EQ(Stands("mf_3/plots/tmp1.txt"), Content(kCommitted).find("tmp1") != std::string::npos) << operation;
      if (!hasFailed)
        break;
    }
  AssertWatch::Take();
}

TEST_F(ManagedFiles, ASaveIsNotWholeWhenAPartOfItsCommitFails) {
  for (int operation = 1;; ++operation) {
    SetUpPending();
    std::string const lists = Content(kCommitted) + Content(kPrivate);
    ASSERT_TRUE(BackupArea::Begin(Results() + AString(L"area"), Results()));
    bool hasFailed = false;
    {
      support::FaultyFileSystem faulty;
      faulty.FailAt(operation, false);
      Commit();
      hasFailed = faulty.HasFailed();
    }
    EXPECT_EQ(BackupArea::IsWhole(), !hasFailed) << operation;
    ASSERT_TRUE(BackupArea::Restore(Results() + AString(L"area"), Results()));
    EXPECT_EQ(Content(kCommitted) + Content(kPrivate), lists) << operation;
    EXPECT_TRUE(Stands("mf_3/plots/tmp1.txt") && Stands("mf_3/plots/tmp2.txt")) << operation;
    if (!hasFailed)
      break;
  }
  AssertWatch::Take();
}

TEST_F(ManagedFiles, ACommitInAGroupOfStepsTakesDeletedFilesOutOfTheList) {
  SetUpPending();
  ASSERT_TRUE(BackupArea::Begin(Results() + AString(L"area"), Results()));
  BackupArea::BeginGroup();
  Commit();
  EXPECT_TRUE(BackupArea::EndGroup());
  EXPECT_TRUE(BackupArea::IsWhole());
  EXPECT_EQ(Content(kCommitted), "IsBigEndian(false)\nManagedFiles {\n  plots [\"tmp2.txt\"]\n}\n");
  EXPECT_FALSE(Stands("mf_3/plots/tmp1.txt"));
  EXPECT_TRUE(BackupArea::Drop(Results() + AString(L"area")));
}

TEST_F(ManagedFiles, DamagedListsAreSetAsideInAGroupOfStepsToo) {
  SetUpPending();
  std::string const cut = "ManagedFiles { plots [\"tmp2.txt\"";
  Put(kCommitted, cut);
  ASSERT_TRUE(BackupArea::Begin(Results() + AString(L"area"), Results()));
  BackupArea::BeginGroup();
  Commit();
  EXPECT_TRUE(BackupArea::EndGroup());
  EXPECT_TRUE(BackupArea::IsWhole());
  EXPECT_EQ(Content(std::string(kCommitted) + "_damaged1"), cut);
  EXPECT_EQ(Content(kCommitted), "IsBigEndian(false)\nManagedFiles {\n  plots [\"tmp2.txt\"]\n}\n");
  ASSERT_TRUE(BackupArea::Restore(Results() + AString(L"area"), Results()));
  EXPECT_EQ(Content(kCommitted), cut);
  EXPECT_TRUE(Stands("mf_3/plots/tmp1.txt") && Stands(kPrivate));
  AssertWatch::Take();
}

TEST_F(ManagedFiles, AFileThatNoListTookIsNotMade) {
  Create(L"plots");
  std::string const list = Content(kPrivate);
  AssertWatch::Expect("isReplaced");
  {
    support::FaultyFileSystem faulty;
    // The file itself is opened first, then the list.
    faulty.FailAt(2, false);
    AString name;
    EXPECT_FALSE(Manager().CreateManagedFile(name, L"plots", L"txt"));
  }
  EXPECT_FALSE(Stands("mf_3/plots/tmp2.txt"));
  EXPECT_EQ(Content(kPrivate), list);
}

TEST_F(ManagedFiles, ADeleteThatNoListTookIsToldAsNone) {
  Create(L"plots");
  AssertWatch::Expect("isReplaced");
  support::FaultyFileSystem faulty;
  faulty.FailAt(1, false);
  EXPECT_FALSE(Manager().DeleteManagedFile(L"plots", L"tmp1.txt"));
}

TEST_F(ManagedFiles, APendingDeleteAloneLeavesTheFileWhenTheManagerGoes) {
  Create(L"plots");
  Commit();
  EXPECT_TRUE(Manager().DeleteManagedFile(L"plots", L"tmp1.txt"));
  EXPECT_TRUE(Stands(kPrivate));
  manager.reset();
  EXPECT_TRUE(Stands("mf_3/plots/tmp1.txt"));
  EXPECT_FALSE(Stands(kPrivate));
}

TEST_F(ManagedFiles, SlashesBehindAFolderMakeNoOtherOne) {
  EXPECT_EQ(Create(L"plots/"), L"tmp1.txt");
  EXPECT_EQ(Create(L"plots"), L"tmp2.txt");
  EXPECT_EQ(Manager().GetFullPathForManagedFile(L"plots//", L"x"), Results() + AString(L"mf_3/plots/x"));
  EXPECT_TRUE(Manager().DeleteManagedFile(L"plots//", L"tmp1.txt"));
  Commit();
  EXPECT_FALSE(Stands("mf_3/plots/tmp1.txt"));
  EXPECT_EQ(Content(kCommitted), "IsBigEndian(false)\nManagedFiles {\n  plots [\"tmp2.txt\"]\n}\n");
}

TEST_F(ManagedFiles, TwoSpellingsOfAFolderInAListAreOneFolder) {
  Put(kCommitted, "IsBigEndian(false)\nManagedFiles {\n  plots [\"a\"]\n  \"plots/\" [\"b\"]\n}\n");
  Commit();
  EXPECT_EQ(Content(kCommitted), "IsBigEndian(false)\nManagedFiles {\n  plots [\"a\", \"b\"]\n}\n");
}

TEST_F(ManagedFiles, WithoutAFileNameThePathIsTheFolder) {
  EXPECT_EQ(Manager().GetFullPathForManagedFile(L"plots", L""), Results() + AString(L"mf_3/plots/"));
  EXPECT_EQ(Manager().GetFullPathForManagedFile(L".", L"x"), Results() + AString(L"mf_3/./x"));
}

TEST_F(ManagedFiles, FoldersAreNeverDeleted) {
  Put("mf_3/plots/sub/x.txt", "x");
  EXPECT_FALSE(Manager().DeleteManagedFile(L"plots", L"sub"));
  Put(kPrivate, "ManagedFiles {}\nDeletedFiles {\n  \"\" [\"plots\"]\n  plots [\"sub\"]\n}\n");
  ASSERT_TRUE(BackupArea::Begin(Results() + AString(L"area"), Results()));
  Commit();
  ASSERT_TRUE(BackupArea::Drop(Results() + AString(L"area")));
  EXPECT_EQ(Content("mf_3/plots/sub/x.txt"), "x");
  auto const reports = AssertWatch::Take();
  EXPECT_EQ(std::count(reports.begin(), reports.end(), "isNoFolder"), 1);
}

TEST_F(ManagedFiles, ThePlaceOfANewListIsNeverWrittenThrough) {
  support::TemporaryFolder elsewhere;
  std::ofstream(elsewhere / "precious") << "x";
  std::filesystem::create_symlink(elsewhere / "precious", folder / (std::string(kCommitted) + "_new"));
  std::filesystem::create_symlink("nowhere", folder / (std::string(kPrivate) + "_new"));
  Create(L"plots");
  Commit();
  std::ifstream in(elsewhere / "precious");
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in), {}), "x");
  EXPECT_FALSE(Stands("nowhere"));
  EXPECT_EQ(Content(kCommitted), "IsBigEndian(false)\nManagedFiles {\n  plots [\"tmp1.txt\"]\n}\n");
  ASSERT_EQ(::mkfifo((folder / (std::string(kCommitted) + "_new")).c_str(), 0600), 0);
  Commit();
  EXPECT_FALSE(Stands(std::string(kCommitted) + "_new"));
}

TEST_F(ManagedFiles, ALinkInThePlaceOfAListIsNotRead) {
  support::TemporaryFolder elsewhere;
  std::ofstream(elsewhere / "list") << "ManagedFiles {\n  plots [\"saved\"]\n}\nDeletedFiles {}\n";
  Put("mf_3/plots/saved", "x");
  Manager().GetManagedFilesDir();
  std::filesystem::create_symlink(elsewhere / "list", folder / kPrivate);
  AssertWatch::Expect("canRead");
  manager.reset();
  EXPECT_TRUE(Stands("mf_3/plots/saved"));
  EXPECT_TRUE(std::filesystem::exists(elsewhere / "list"));
}

TEST_F(ManagedFiles, AListOfAbsurdSizeIsNotTakenIntoMemory) {
  Put(kPrivate, "ManagedFiles {}\nDeletedFiles {}\n");
  std::filesystem::resize_file(folder / kPrivate, std::uintmax_t{1} << 40);
  AssertWatch::Expect("canRead");
  EXPECT_EQ(Create(L"plots"), L"tmp1.txt");
  EXPECT_EQ(Content(kPrivate), "ManagedFiles {\n  plots [\"tmp1.txt\"]\n}\nDeletedFiles {}\n");
}

TEST_F(ManagedFiles, APrivateListThatIsCutIsSetAsideAndItsFilesStay) {
  std::string const whole = "ManagedFiles {\n  plots [\"tmp1.txt\"]\n}\nDeletedFiles {\n  plots [\"old.txt\"]\n}\n";
  for (std::size_t length = 15; length + 2 < whole.size(); ++length)
    for (int way = 0; way < 3; ++way) {
      Manager().GetManagedFilesDir();
      Put("mf_3/plots/tmp1.txt", "new");
      Put("mf_3/plots/old.txt", "old");
      Put(kPrivate, whole.substr(0, length));
      if (way == 0)
        Commit();
      if (way == 1) {
        EXPECT_EQ(Create(L"plots"), L"tmp2.txt");
      }
      // What the whole part names is as pending as it was.
      bool const isKnown = Content(kPrivate).find("tmp1.txt") != std::string::npos && way == 1;
      manager.reset();
      EXPECT_EQ(Content("mf_3/plots/tmp1.txt"), isKnown ? "-" : "new") << length;
      EXPECT_EQ(Content("mf_3/plots/old.txt"), "old") << length;
      EXPECT_EQ(Content(std::string(kPrivate) + "_damaged1"), whole.substr(0, length)) << length << ' ' << way;
      std::filesystem::remove(folder / (std::string(kPrivate) + "_damaged1"));
      std::filesystem::remove(folder / kCommitted);
    }
  AssertWatch::Take();
}

TEST_F(ManagedFiles, ACommittedListThatIsCutIsSetAsideAndWhatIsPendingIsCommitted) {
  std::string const whole = "IsBigEndian(false)\nManagedFiles {\n  plots [\"old.txt\"]\n}\n";
  for (std::size_t length = 0; length + 2 < whole.size(); ++length) {
    Put("mf_3/plots/old.txt", "old");
    Put(kCommitted, whole.substr(0, length));
    Create(L"plots");
    Commit();
    EXPECT_EQ(Content(kCommitted), "IsBigEndian(false)\nManagedFiles {\n  plots [\"tmp1.txt\"]\n}\n") << length;
    EXPECT_EQ(Content(std::string(kCommitted) + "_damaged1"), whole.substr(0, length)) << length;
    EXPECT_TRUE(Stands("mf_3/plots/old.txt") && Stands("mf_3/plots/tmp1.txt")) << length;
    std::filesystem::remove(folder / (std::string(kCommitted) + "_damaged1"));
    std::filesystem::remove(folder / "mf_3/plots/tmp1.txt");
    manager.reset();
  }
  AssertWatch::Take();
}

TEST_F(ManagedFiles, ACommittedListThatCantBeReadIsNotWrittenOver) {
  Create(L"plots");
  Commit();
  Create(L"plots");
  Manager().DeleteManagedFile(L"plots", L"tmp1.txt");
  std::filesystem::rename(folder / kCommitted, folder / "list");
  std::filesystem::create_symlink("list", folder / kCommitted);
  AssertWatch::Expect("canRead");
  Commit();
  EXPECT_TRUE(std::filesystem::is_symlink(folder / kCommitted));
  EXPECT_TRUE(Stands("mf_3/plots/tmp1.txt") && Stands("mf_3/plots/tmp2.txt") && Stands(kPrivate));
  manager.reset();
  EXPECT_TRUE(Stands("mf_3/plots/tmp2.txt"));
}

TEST_F(ManagedFiles, ValuesThatAreNoTextsArePassedOverAndTheOthersStay) {
  Put(kCommitted, "IsBigEndian(false)\nManagedFiles {\n  plots [\"a.txt\", 5, \"b.txt\", 1.5, 2]\n}\n");
  AssertWatch::Expect("!run.empty()");
  Commit();
  EXPECT_EQ(Content(kCommitted), "IsBigEndian(false)\nManagedFiles {\n  plots [\"a.txt\", \"b.txt\"]\n}\n");
}

TEST_F(ManagedFiles, ACreateKeepsWhatTheVectorHasThatIsNoText) {
  Put(kPrivate, "ManagedFiles {\n  plots [\"a.txt\", 5]\n}\nDeletedFiles {}\n");
  Create(L"plots");
  EXPECT_EQ(Content(kPrivate), "ManagedFiles {\n  plots [\"a.txt\", 5, \"tmp1.txt\"]\n}\nDeletedFiles {}\n");
  std::filesystem::remove(folder / kPrivate);
}

TEST_F(ManagedFiles, APrivateListThatOutlivedItsCommitDeletesNoSavedFile) {
  Create(L"plots");
  std::string const left = Content(kPrivate);
  Commit();
  Put(kPrivate, left);
  manager.reset();
  EXPECT_TRUE(Stands("mf_3/plots/tmp1.txt"));
  EXPECT_FALSE(Stands(kPrivate));
}

TEST_F(ManagedFiles, ADesignWhoseIDChangesKeepsItsFilesInAMove) {
  Create(L"plots");
  Commit();
  Create(L"plots");
  std::filesystem::create_directory(folder / "new");
  design.designID = 4;
  Manager().Commit(Results() + AString(L"new/"));
  EXPECT_TRUE(Stands("new/mf_3/plots/tmp1.txt") && Stands("new/mf_3/plots/tmp2.txt"));
  EXPECT_EQ(Content(std::string("new/") + kCommitted),
            "IsBigEndian(false)\nManagedFiles {\n  plots [\"tmp1.txt\", \"tmp2.txt\"]\n}\n");
  EXPECT_EQ(Manager().GetManagedFilesDir(), Results() + AString(L"new/mf_3/"));
}

TEST_F(ManagedFiles, AMoveTakesPendingDeletesAlongAndLeavesTheFilesOfTheOldPlace) {
  SetUpPending();
  Put(std::string("new/") + kCommitted, "IsBigEndian(false)\nManagedFiles {\n  plots [\"there.txt\"]\n}\n");
  Put("new/mf_3/plots/tmp2.txt", "theirs");
  Manager().Commit(Results() + AString(L"new/"));
  EXPECT_EQ(Content("mf_3/plots/tmp1.txt"), "first");
  EXPECT_FALSE(Stands("mf_3/plots/tmp2.txt") || Stands("new/mf_3/plots/tmp1.txt"));
  // What stands in the new place stays, but for the lists.
  EXPECT_EQ(Content("new/mf_3/plots/tmp2.txt"), "theirs");
  EXPECT_EQ(Content(std::string("new/") + kCommitted),
            "IsBigEndian(false)\nManagedFiles {\n  plots [\"tmp2.txt\"]\n}\n");
}

TEST_F(ManagedFiles, AMoveWhoseCopyFailsHalfWayDeletesNothing) {
  for (int operation = 1;; ++operation) {
    SetUpPending();
    std::filesystem::remove_all(folder / "new");
    std::filesystem::create_directory(folder / "new");
    {
      support::FaultyFileSystem faulty;
      faulty.FailAt(operation, true);
      Manager().Commit(Results() + AString(L"new/"));
      if (!faulty.HasFailed())
        break;
    }
    EXPECT_EQ(Content("mf_3/plots/tmp1.txt"), "first") << operation;
    EXPECT_TRUE(Content("mf_3/plots/tmp2.txt") == "second" || Content("new/mf_3/plots/tmp2.txt") == "second")
        << operation;
    manager.reset();
    for (char const * const list : {kCommitted, kPrivate})
      std::filesystem::remove(folder / list);
  }
  AssertWatch::Take();
}

TEST_F(ManagedFiles, AMoveFollowsNoLink) {
  support::TemporaryFolder elsewhere;
  std::ofstream(elsewhere / "secret") << "s";
  SetUpPending();
  std::filesystem::create_directory_symlink(elsewhere.Path(), folder / "mf_3/plots/link");
  std::filesystem::create_directory(folder / "new");
  AssertWatch::Expect("!\"Unable to copy directory contents to new location\"");
  Manager().Commit(Results() + AString(L"new/"));
  EXPECT_FALSE(Stands("new/mf_3/plots/link"));
  // Not all of the folder was copied, so the old one stays as it was.
  EXPECT_EQ(Content("mf_3/plots/tmp2.txt"), "second");
}

TEST_F(ManagedFiles, AMoveToAFolderThatIsALinkCopiesNothing) {
  support::TemporaryFolder elsewhere;
  SetUpPending();
  std::filesystem::create_directory(folder / "new");
  std::filesystem::create_directory_symlink(elsewhere.Path(), folder / "new/mf_3");
  AssertWatch::Expect("!\"The folder of managed files is a link\"");
  AssertWatch::Expect("!\"A name leads out of the folder of managed files\"");
  Manager().Commit(Results() + AString(L"new/"));
  EXPECT_TRUE(std::filesystem::is_empty(elsewhere.Path()));
  EXPECT_EQ(Content("mf_3/plots/tmp2.txt"), "second");
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
