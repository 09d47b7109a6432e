#include "viewkit/backup/BackupArea.h"

#include "basekit/file/LongFileName.h"
#include "basekit/text/Utf8.h"
#include "tests/support/AssertWatch.h"
#include "tests/support/FaultyFileSystem.h"
#include "tests/support/TemporaryFolder.h"
#include "viewkit/backup/BackupUtils.h"
#include "viewkit/backup/HubBackupUtils.h"

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <map>
#include <random>

namespace {

using Tree = std::map<std::string, std::string>;

struct Backup : testing::Test {
  Backup() {
    std::filesystem::create_directory(root);
    std::filesystem::create_directory(root / "folder");
    Put("a", "A");
    Put("b", "B");
    Put("folder/inside", "I");
  }
  ~Backup() override {
    if (BackupArea::IsOpen())
      BackupArea::Drop(Area());
  }
  LongFileName Area() const { return text::FromUtf8((folder / "area").string()); }
  LongFileName Root() const { return text::FromUtf8(root.string() + "/"); }
  AString Path(std::string const & name) const { return text::FromUtf8((root / name).string()); }
  void Put(std::string const & name, std::string const & content) { std::ofstream(root / name) << content; }
  /// All files by their paths, folders by their paths with a slash.
  Tree Now() const {
    Tree tree;
    for (auto const & entry : std::filesystem::recursive_directory_iterator(root)) {
      auto const name = std::filesystem::relative(entry.path(), root).string();
      if (entry.is_directory()) {
        tree[name + '/'] = "";
        continue;
      }
      std::ifstream in(entry.path());
      tree[name] = std::string(std::istreambuf_iterator<char>(in), {});
    }
    return tree;
  }
  static std::string Content(std::filesystem::path const & path) {
    std::ifstream in(path);
    return std::string(std::istreambuf_iterator<char>(in), {});
  }
  void Damage(std::streamoff at, char byte = '!') const {
    std::fstream journal(folder / "area" / "journal", std::ios::in | std::ios::out);
    journal.seekp(at);
    journal.put(byte);
  }
  bool Begin() const { return BackupArea::Begin(Area(), Root()); }
  bool Restore() const { return BackupArea::Restore(Area(), Root()); }
  /// What a save does: replaces, deletes, moves, adds.
  void Save() {
    BackupUtils::DeleteFileOrMoveFileToBackup(Path("b"));
    BackupArea::Rename(Path("a"), Path("b"));
    HubBackupUtils::CopyFileToBackup(Path("list"));
    Put("list", "new");
    HubBackupUtils::CopyFileToBackup(Path("list"));
    Put("list", "newer");
    BackupUtils::DeleteDirOrMoveDirToBackup(Path("folder"));
    std::filesystem::create_directory(root / "folder");
    Put("folder/other", "O");
  }

  support::TemporaryFolder folder;
  std::filesystem::path const root = folder / "root";
};

} // namespace

TEST_F(Backup, WithoutAnAreaADeleteDeletes) {
  EXPECT_TRUE(BackupUtils::DeleteFileOrMoveFileToBackup(Path("a")));
  EXPECT_TRUE(BackupUtils::DeleteDirOrMoveDirToBackup(Path("folder")));
  EXPECT_EQ(Now(), (Tree{{"b", "B"}}));
  EXPECT_FALSE(BackupUtils::DeleteFileOrMoveFileToBackup(Path("a")));
}

TEST_F(Backup, WithoutAnAreaNothingIsKept) {
  Tree const before = Now();
  EXPECT_FALSE(HubBackupUtils::MoveFileToBackup(Path("a")));
  EXPECT_FALSE(HubBackupUtils::MoveDirToBackup(Path("folder")));
  EXPECT_FALSE(HubBackupUtils::CopyFileToBackup(Path("a")));
  EXPECT_FALSE(HubBackupUtils::CopyDirToBackup(Path("folder")));
  EXPECT_EQ(Now(), before);
  EXPECT_TRUE(BackupArea::Rename(Path("a"), Path("b")));
  EXPECT_FALSE(BackupArea::IsWhole());
}

TEST_F(Backup, WhatTheAreaTookComesBack) {
  Tree const before = Now();
  ASSERT_TRUE(Begin());
  EXPECT_TRUE(BackupUtils::DeleteFileOrMoveFileToBackup(Path("a")));
  EXPECT_TRUE(HubBackupUtils::MoveFileToBackup(Path("b")));
  EXPECT_TRUE(HubBackupUtils::CopyDirToBackup(Path("folder")));
  Put("folder/inside", "changed");
  EXPECT_TRUE(HubBackupUtils::MoveDirToBackup(Path("folder")));
  EXPECT_TRUE(Now().empty());
  EXPECT_TRUE(BackupArea::IsWhole());
  EXPECT_TRUE(Restore());
  EXPECT_EQ(Now(), before);
  EXPECT_FALSE(std::filesystem::exists(folder / "area"));
  EXPECT_FALSE(BackupArea::IsOpen());
}

TEST_F(Backup, AWholeSaveIsTakenBackInTheSameProcessOrALaterOne) {
  Tree const before = Now();
  ASSERT_TRUE(Begin());
  Save();
  EXPECT_NE(Now(), before);
  EXPECT_TRUE(BackupArea::IsPending(Area()));
  EXPECT_TRUE(Restore());
  EXPECT_EQ(Now(), before);
  EXPECT_FALSE(BackupArea::IsPending(Area()));
  EXPECT_TRUE(Restore());
  EXPECT_EQ(Now(), before);
}

TEST_F(Backup, ADropKeepsTheSaveAndCanBeRepeated) {
  ASSERT_TRUE(Begin());
  Save();
  Tree const after = Now();
  EXPECT_TRUE(BackupArea::Drop(Area()));
  EXPECT_TRUE(BackupArea::Drop(Area()));
  EXPECT_TRUE(Restore());
  EXPECT_EQ(Now(), after);
  EXPECT_FALSE(std::filesystem::exists(folder / "area"));
}

TEST_F(Backup, OneAreaIsOpenAtATimeAndBeginCanBeRepeated) {
  ASSERT_TRUE(Begin());
  EXPECT_TRUE(BackupArea::Begin(text::FromUtf8((folder / "area").string() + "/"), Root()));
  EXPECT_FALSE(BackupArea::Begin(text::FromUtf8((folder / "second").string()), Root()));
}

TEST_F(Backup, AnUnfinishedSaveMustBeSettledBeforeTheNext) {
  ASSERT_TRUE(Begin());
  Save();
  std::filesystem::copy(folder / "area", folder / "left", std::filesystem::copy_options::recursive);
  ASSERT_TRUE(BackupArea::Drop(Area()));
  LongFileName const left = text::FromUtf8((folder / "left").string());
  EXPECT_FALSE(BackupArea::Begin(left, Root()));
  EXPECT_TRUE(BackupArea::Drop(left));
  EXPECT_TRUE(BackupArea::Begin(left, Root()));
  EXPECT_TRUE(BackupArea::Drop(left));
}

TEST_F(Backup, ARenameOntoAFileTakesBoth) {
  Tree const before = Now();
  ASSERT_TRUE(Begin());
  EXPECT_TRUE(BackupArea::Rename(Path("a"), Path("b")));
  EXPECT_EQ(Now().at("b"), "A");
  EXPECT_TRUE(Restore());
  EXPECT_EQ(Now(), before);
}

TEST_F(Backup, ChainsOfRenamesComeBack) {
  Tree const before = Now();
  ASSERT_TRUE(Begin());
  EXPECT_TRUE(BackupArea::Rename(Path("a"), Path("c")));
  EXPECT_TRUE(BackupArea::Rename(Path("b"), Path("a")));
  EXPECT_TRUE(BackupArea::Rename(Path("c"), Path("b")));
  EXPECT_TRUE(Restore());
  EXPECT_EQ(Now(), before);
}

TEST_F(Backup, ARenameOfAFileOntoItselfDoesNothing) {
  Tree const before = Now();
  ASSERT_TRUE(Begin());
  EXPECT_TRUE(BackupArea::Rename(Path("a"), Path("a")));
  EXPECT_TRUE(BackupArea::Rename(Path("./a"), Path("a")));
  EXPECT_FALSE(BackupArea::Rename(Path("absent"), Path("a")));
  EXPECT_EQ(Now(), before);
  EXPECT_TRUE(BackupArea::IsWhole());
}

TEST_F(Backup, WhatLiesOutsideOfTheRootIsDeleted) {
  std::ofstream(folder / "outside") << "x";
  ASSERT_TRUE(Begin());
  EXPECT_TRUE(BackupUtils::DeleteFileOrMoveFileToBackup(text::FromUtf8((folder / "outside").string())));
  EXPECT_FALSE(std::filesystem::exists(folder / "outside"));
}

TEST_F(Backup, NamesOfAnyScriptAndWithLineBreaksComeBack) {
  std::string const name = "\xc3\xb6 \"quoted\"\nnext \xe6\xbc\xa2";
  Put(name, "x");
  Tree const before = Now();
  ASSERT_TRUE(Begin());
  EXPECT_TRUE(BackupUtils::DeleteFileOrMoveFileToBackup(Path(name)));
  EXPECT_TRUE(Restore());
  EXPECT_EQ(Now(), before);
}

TEST_F(Backup, TheJournalCanBeCutAnywhereAndTheWholeEntriesComeBack) {
  ASSERT_TRUE(Begin());
  EXPECT_TRUE(HubBackupUtils::MoveFileToBackup(Path("a")));
  auto const journal = folder / "area" / "journal";
  auto const whole = std::filesystem::file_size(journal);
  // The move that this line tells of never began.
  std::ofstream(journal, std::ios::app) << "12345678 Kept(2, \"b";
  EXPECT_GT(std::filesystem::file_size(journal), whole);
  EXPECT_TRUE(Restore());
  EXPECT_EQ(Now().size(), 4u);
}

TEST_F(Backup, ALastLineThatTheDiskNeverWroteWasNotActedOn) {
  Tree const before = Now();
  ASSERT_TRUE(Begin());
  EXPECT_TRUE(HubBackupUtils::MoveFileToBackup(Path("a")));
  std::ofstream(folder / "area" / "journal", std::ios::app) << std::string(20, '\0') + "\"b\", \"\")\n";
  EXPECT_TRUE(Restore());
  EXPECT_EQ(Now(), before);
}

TEST_F(Backup, ABlankThatBecameNothingIsDamageAndNotAnUnwrittenLine) {
  ASSERT_TRUE(Begin());
  EXPECT_TRUE(HubBackupUtils::MoveFileToBackup(Path("a")));
  Damage(8, '\0');
  support::AssertWatch::Expect("!\"A line of a backup journal is damaged\"");
  std::vector<AString> touched;
  EXPECT_FALSE(BackupArea::ListTouched(Area(), touched));
  EXPECT_TRUE(touched.empty());
  EXPECT_FALSE(Restore());
  EXPECT_EQ(Content(folder / "area/1"), "A");
  EXPECT_TRUE(BackupArea::Drop(Area()));
}

TEST_F(Backup, ADamagedLineKeepsTheAreaAndWhatCameBehindItComesBack) {
  ASSERT_TRUE(Begin());
  EXPECT_TRUE(HubBackupUtils::MoveFileToBackup(Path("a")));
  EXPECT_TRUE(HubBackupUtils::MoveFileToBackup(Path("b")));
  Damage(12);
  support::AssertWatch::Expect("!\"A line of a backup journal is damaged\"");
  EXPECT_FALSE(Restore());
  EXPECT_EQ(Now().at("b"), "B");
  EXPECT_EQ(Content(folder / "area/1"), "A");
  EXPECT_TRUE(BackupArea::IsPending(Area()));
  EXPECT_FALSE(Restore());
  EXPECT_EQ(Content(folder / "area/1"), "A");
  EXPECT_TRUE(BackupArea::Drop(Area()));
}

TEST_F(Backup, NothingInFrontOfADamagedLineIsTouched) {
  ASSERT_TRUE(Begin());
  EXPECT_TRUE(HubBackupUtils::MoveFileToBackup(Path("b")));
  auto const second = std::filesystem::file_size(folder / "area/journal");
  EXPECT_TRUE(BackupArea::Rename(Path("a"), Path("b")));
  Damage(static_cast<std::streamoff>(second) + 12);
  support::AssertWatch::Expect("!\"A line of a backup journal is damaged\"");
  EXPECT_FALSE(Restore());
  EXPECT_EQ(Now().at("b"), "A");
  EXPECT_EQ(Content(folder / "area/1"), "B");
  EXPECT_TRUE(BackupArea::Drop(Area()));
}

TEST_F(Backup, AJournalWithoutLineEndsIsNotTakenIntoMemory) {
  ASSERT_TRUE(Begin());
  EXPECT_TRUE(HubBackupUtils::MoveFileToBackup(Path("a")));
  std::filesystem::resize_file(folder / "area/journal", std::uintmax_t{1} << 40);
  support::AssertWatch::Expect("!\"A line of a backup journal is damaged\"");
  EXPECT_FALSE(Restore());
  EXPECT_EQ(Content(folder / "area/1"), "A");
  EXPECT_TRUE(BackupArea::Drop(Area()));
}

TEST_F(Backup, AJournalNeverLeadsOutOfItsRootAndKeepsWhatItCantTakeBack) {
  ASSERT_TRUE(Begin());
  std::filesystem::create_directory(root / "deep");
  Put("deep/x", "mine");
  EXPECT_TRUE(HubBackupUtils::MoveFileToBackup(Path("deep/x")));
  support::TemporaryFolder elsewhere;
  std::ofstream(elsewhere / "x") << "other";
  std::filesystem::remove(root / "deep");
  std::filesystem::create_symlink(elsewhere.Path(), root / "deep");
  support::AssertWatch::Expect("isInside");
  EXPECT_FALSE(Restore());
  EXPECT_EQ(Content(elsewhere / "x"), "other");
  std::filesystem::remove(root / "deep");
  EXPECT_TRUE(Restore());
  EXPECT_EQ(Now().at("deep/x"), "mine");
}

TEST_F(Backup, ALinkIsNeitherTakenNorFollowedAndTheSaveIsNotWhole) {
  support::TemporaryFolder elsewhere;
  std::ofstream(elsewhere / "x") << "other";
  std::filesystem::create_symlink(elsewhere.Path(), root / "link");
  support::AssertWatch::Expect("isInside");
  for (auto remove :
       {BackupUtils::DeleteFileOrMoveFileToBackup, HubBackupUtils::MoveFileToBackup, HubBackupUtils::CopyDirToBackup})
    for (std::string const name : {"link", "link/x"}) {
      ASSERT_TRUE(Begin());
      EXPECT_FALSE(remove(Path(name)));
      EXPECT_FALSE(BackupArea::IsWhole());
      EXPECT_TRUE(Restore());
    }
  EXPECT_TRUE(std::filesystem::exists(elsewhere / "x"));
  EXPECT_TRUE(std::filesystem::is_symlink(root / "link"));
}

TEST_F(Backup, WithoutAnAreaALinkGoesAndWhatItPointsToStays) {
  std::filesystem::create_symlink("folder", root / "link");
  EXPECT_TRUE(BackupUtils::DeleteDirOrMoveDirToBackup(Path("link")));
  EXPECT_EQ(Now().at("folder/inside"), "I");
  EXPECT_FALSE(std::filesystem::is_symlink(root / "link"));
}

TEST_F(Backup, AnAreaThatIsALinkIsRefusedAndWhatItPointsToStays) {
  support::TemporaryFolder elsewhere;
  std::ofstream(elsewhere / "precious") << "x";
  std::ofstream(elsewhere / "journal") << "";
  std::filesystem::create_directory_symlink(elsewhere.Path(), folder / "area");
  EXPECT_FALSE(Begin());
  EXPECT_FALSE(BackupArea::Begin(text::FromUtf8((folder / "area").string() + "/"), Root()));
  EXPECT_FALSE(BackupArea::IsPending(Area()));
  EXPECT_FALSE(Restore());
  EXPECT_TRUE(BackupArea::Drop(Area()));
  EXPECT_EQ(Content(elsewhere / "precious"), "x");
  EXPECT_TRUE(std::filesystem::exists(elsewhere / "journal"));
  EXPECT_TRUE(Begin());
}

TEST_F(Backup, AJournalThatIsALinkIsNotRead) {
  std::filesystem::create_directory(folder / "area");
  std::ofstream(folder / "foreign") << "";
  std::filesystem::create_symlink("../foreign", folder / "area/journal");
  EXPECT_FALSE(Begin());
  EXPECT_FALSE(Restore());
  EXPECT_TRUE(BackupArea::Drop(Area()));
  EXPECT_TRUE(std::filesystem::exists(folder / "foreign"));
}

TEST_F(Backup, TwoSpellingsOfTheRootAreCovered) {
  Tree const before = Now();
  std::filesystem::create_directory_symlink("root", folder / "spelled");
  ASSERT_TRUE(Begin());
  auto const path = [&](char const * name) { return text::FromUtf8((folder / "spelled" / name).string()); };
  EXPECT_TRUE(BackupUtils::DeleteFileOrMoveFileToBackup(path("a")));
  EXPECT_TRUE(BackupArea::Rename(path("b"), path("c")));
  EXPECT_TRUE(BackupArea::IsWhole());
  EXPECT_TRUE(Restore());
  EXPECT_EQ(Now(), before);
}

TEST_F(Backup, AnotherRootIsAnotherArea) {
  ASSERT_TRUE(Begin());
  EXPECT_TRUE(Begin());
  EXPECT_FALSE(BackupArea::Begin(Area(), text::FromUtf8((root / "folder").string())));
}

TEST_F(Backup, NeitherTheAreaNorWhatItLiesInIsTaken) {
  LongFileName const area = Path("deep/area");
  std::filesystem::create_directory(root / "deep");
  for (std::string const name : {"deep", "deep/area", "deep/area/journal", "deep/area/1", "."}) {
    ASSERT_TRUE(BackupArea::Begin(area, Root()));
    EXPECT_TRUE(BackupUtils::DeleteFileOrMoveFileToBackup(Path("a")));
    EXPECT_FALSE(BackupUtils::DeleteDirOrMoveDirToBackup(Path(name))) << name;
    EXPECT_TRUE(BackupArea::Overlaps(Path(name)));
    EXPECT_FALSE(BackupArea::IsWhole());
    EXPECT_TRUE(BackupArea::Restore(area, Root()));
    EXPECT_EQ(Now().at("a"), "A");
  }
  ASSERT_TRUE(BackupArea::Begin(area, Root()));
  EXPECT_FALSE(BackupArea::Overlaps(Path("deeper")) || BackupArea::Overlaps(Path("deep/areas")));
  EXPECT_FALSE(BackupArea::Rename(Path("a"), Path("deep/area/7")));
  EXPECT_FALSE(BackupArea::Rename(Path("deep/area/journal"), Path("z")));
  EXPECT_EQ(support::AssertWatch::Take(), (std::vector<std::string>{"isInside", "isFree"}));
  EXPECT_TRUE(BackupArea::Drop(area));
}

TEST_F(Backup, WhatWasNotDoneElsewhereIsNotWholeEither) {
  BackupArea::MarkIncomplete(L"there");
  ASSERT_TRUE(Begin());
  EXPECT_TRUE(BackupArea::IsWhole());
  BackupArea::MarkIncomplete(L"there");
  EXPECT_FALSE(BackupArea::IsWhole());
}

TEST_F(Backup, TheFolderOfACopiedFileIsSyncedBeforeTheSaveIsWhole) {
  ASSERT_TRUE(Begin());
  EXPECT_TRUE(HubBackupUtils::CopyFileToBackup(Path("folder/inside")));
  support::FaultyFileSystem faulty;
  EXPECT_TRUE(BackupArea::IsWhole());
  EXPECT_EQ(faulty.Operations(), 2); // that folder, and the area's own
}

TEST_F(Backup, EveryOperationOfASaveMayFailAndTheSaveIsTakenBack) {
  Tree const before = Now();
  for (int operation = 1;; ++operation) {
    bool hasFailed = false;
    bool isWhole = false;
    {
      support::FaultyFileSystem faulty;
      faulty.FailAt(operation, true);
      if (Begin()) {
        Save();
        isWhole = BackupArea::IsWhole();
      }
      hasFailed = faulty.HasFailed();
    }
    EXPECT_EQ(isWhole, !hasFailed) << operation;
    ASSERT_TRUE(Restore()) << operation;
    // Files that the save itself writes come back only when it could note them.
    Tree after = Now();
    if (hasFailed) {
      after.erase("list");
      after.erase("folder/other");
    }
    ASSERT_EQ(after, before) << operation;
    std::filesystem::remove(root / "list");
    std::filesystem::remove(root / "folder/other");
    if (!hasFailed)
      break;
  }
}

TEST_F(Backup, EveryOperationOfARestoreMayFailAndItIsTriedAgain) {
  Tree const before = Now();
  for (int operation = 1;; ++operation) {
    ASSERT_TRUE(Begin());
    Save();
    bool hasFailed = false;
    bool isRestored = false;
    {
      support::FaultyFileSystem faulty;
      faulty.FailAt(operation, true);
      isRestored = Restore();
      hasFailed = faulty.HasFailed();
    }
    EXPECT_EQ(isRestored, !hasFailed) << operation;
    ASSERT_TRUE(Restore()) << operation;
    ASSERT_EQ(Now(), before) << operation;
    if (!hasFailed)
      break;
  }
}

TEST_F(Backup, EveryOperationOfADropMayFailAndItIsTriedAgain) {
  for (int operation = 1;; ++operation) {
    ASSERT_TRUE(Begin());
    EXPECT_TRUE(HubBackupUtils::CopyFileToBackup(Path("a")));
    EXPECT_TRUE(HubBackupUtils::CopyDirToBackup(Path("folder")));
    bool hasFailed = false;
    {
      support::FaultyFileSystem faulty;
      faulty.FailAt(operation, true);
      BackupArea::Drop(Area());
      hasFailed = faulty.HasFailed();
    }
    ASSERT_TRUE(BackupArea::Drop(Area())) << operation;
    EXPECT_EQ(Now().at("a"), "A");
    if (!hasFailed)
      break;
  }
}

TEST_F(Backup, TheJournalTellsWhatWasDoneLineByLine) {
  ASSERT_TRUE(Begin());
  EXPECT_TRUE(BackupArea::Rename(Path("a"), Path("b")));
  EXPECT_TRUE(HubBackupUtils::CopyFileToBackup(Path("list")));
  std::ifstream in(folder / "area" / "journal");
  std::string text;
  for (std::string line; std::getline(in, line);)
    text += line.substr(8) + '\n';
  EXPECT_EQ(text, " Kept(1, \"b\", \"\")\n Renamed(2, \"a\", \"b\")\n Absent(3, \"list\", \"\")\n");
}

TEST_F(Backup, AGroupIsDoneAtItsEndAndReachesTheJournalAtOnce) {
  constexpr int kCount = 1000;
  for (int i = 0; i < kCount; ++i) {
    Put("old" + std::to_string(i), "old");
    Put("new" + std::to_string(i), "new");
  }
  Tree const before = Now();
  support::FaultyFileSystem counted;
  ASSERT_TRUE(Begin());
  int const begun = counted.Operations();
  BackupArea::BeginGroup();
  for (int i = 0; i < kCount; ++i) {
    EXPECT_TRUE(BackupUtils::DeleteFileOrMoveFileToBackup(Path("old" + std::to_string(i))));
    EXPECT_TRUE(BackupArea::Rename(Path("new" + std::to_string(i)), Path("old" + std::to_string(i))));
  }
  EXPECT_EQ(counted.Operations(), begun);
  EXPECT_TRUE(BackupArea::EndGroup());
  EXPECT_EQ(counted.Operations() - begun, 2 * kCount + 2) << "two moves for each, one write and one sync";
  EXPECT_TRUE(BackupArea::IsWhole());
  EXPECT_EQ(Now().size(), before.size() - kCount);
  EXPECT_EQ(Now().at("old7"), "new");
  int const done = counted.Operations();
  EXPECT_TRUE(Restore());
  EXPECT_LT(counted.Operations() - done, 2 * kCount + 20) << "the journal is cut once";
  EXPECT_EQ(Now(), before);
}

namespace {

/// Deletes, moves and copies of few names, so that most steps are about places of others.
void RandomSteps(Backup const & backup, unsigned seed) {
  char const * const names[] = {"a", "b", "c", "d", "folder", "folder/inside", "folder/x"};
  std::mt19937 random(seed);
  auto const any = [&] { return backup.Path(names[random() % std::size(names)]); };
  for (int step = 0; step < 12; ++step)
    switch (random() % 5) {
    case 0:
      BackupUtils::DeleteFileOrMoveFileToBackup(any());
      break;
    case 1:
      HubBackupUtils::CopyFileToBackup(any());
      break;
    default:
      BackupArea::Rename(any(), any());
    }
}

} // namespace

TEST_F(Backup, StepsOfAGroupGiveWhatTheyGiveOneByOneAndComeBackWhereverTheyFail) {
  Tree const before = Now();
  for (unsigned seed = 0; seed < 25; ++seed) {
    SCOPED_TRACE(seed);
    ASSERT_TRUE(Begin());
    RandomSteps(*this, seed);
    Tree const after = Now();
    ASSERT_TRUE(Restore());
    ASSERT_EQ(Now(), before);
    bool hasFailed = true;
    for (int operation = 1; hasFailed; ++operation) {
      SCOPED_TRACE(operation);
      ASSERT_TRUE(Begin());
      {
        support::FaultyFileSystem faulty;
        faulty.FailAt(operation, true);
        BackupArea::BeginGroup();
        RandomSteps(*this, seed);
        BackupArea::EndGroup();
        hasFailed = faulty.HasFailed();
      }
      if (!hasFailed) {
        ASSERT_EQ(Now(), after);
      }
      // So may the way back, which then begins again.
      {
        support::FaultyFileSystem faulty;
        faulty.FailAt(1 + operation % 7, true);
        Restore();
      }
      ASSERT_TRUE(Restore());
      ASSERT_EQ(Now(), before);
      ASSERT_LT(operation, 200);
    }
  }
}
