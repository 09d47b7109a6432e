#include "basekit/diag/Debug.h"
#include "basekit/file/LongFileName.h"
#include "basekit/io/CBlock.h"
#include "solutionmanager/locations/CMirroredLocationData.h"
#include "tests/solutionmanager/support/StoreOwner.h"
#include "tests/support/AssertWatch.h"
#include "tests/support/FaultyFileSystem.h"
#include "tests/support/Printers.h"
#include "viewkit/backup/BackupArea.h"

#include <fstream>
#include <gtest/gtest.h>
#include <limits>

using Calls = std::vector<std::string>;

namespace {

std::vector<AString> s_traces;

struct LocationData : testing::Test {
  support::StoreOwner owner;
  CMirroredLocationData store{&owner, L"Store", L"File", L"Path", true};
  CMirroredLocationData folders{&owner, L"Folders", L"Folder", L"Path", false};
  VariationIDIndex const a = owner.Key(L"a=1", 5);
  VariationIDIndex const b = owner.Key(L"a=2", 5);

  /// A working result with its file; the mirrored number of version 5 is 100.
  void Solve(VariationIDIndex const & key, std::string const & content) {
    store.SetData(key);
    owner.Put(store.GetRelativePath(key, false, false), content);
  }
  void Save() { store.CommitMirroredData(); }
  /// A saved result that is being solved anew.
  void SaveAndSolveAgain() {
    Solve(a, "saved");
    Save();
    Solve(a, "new");
    owner.TakeCalls();
  }
  std::set<AString> Files() const { return owner.AllFiles(); }
};

} // namespace

TEST_F(LocationData, AnUnknownKeyHasNoPathToRead) {
  EXPECT_EQ(store.GetRelativePath(a, false, true), L"");
  EXPECT_FALSE(store.HaveData());
}

TEST_F(LocationData, ThePathToWriteBearsTheMirroredNumberAndMakesNoEntry) {
  EXPECT_EQ(store.GetRelativePath(a, true, false), L"res/V1_100");
  EXPECT_FALSE(store.HaveData(a));
  EXPECT_EQ(store.GetRelativePath(a, false, false), L"");
}

TEST_F(LocationData, OnlyAStoreOfFoldersMakesThePathToWrite) {
  store.GetRelativePath(a, true, true);
  EXPECT_FALSE(owner.Exists(L"res/V1_100"));
  folders.GetRelativePath(a, true, false);
  EXPECT_FALSE(owner.Exists(L"res/V1_101"));
  folders.GetRelativePath(a, true, true);
  EXPECT_TRUE(std::filesystem::is_directory(owner.PathOf(L"res/V1_101")));
}

TEST_F(LocationData, TheFullPathIsTheRootWithTheRelativeOne) {
  store.SetData(a);
  AString const root = owner.GetRootDirectory(false);
  EXPECT_EQ(store.GetFullPath(a, false, true), root + L"res/V1_100");
  EXPECT_TRUE(owner.rootAsked.back());
}

TEST_F(LocationData, TheFullPathAsksTheOverrideForTheRelativeOne) {
  struct Override : CMirroredLocationData {
    using CMirroredLocationData::CMirroredLocationData;
    AString GetRelativePath(VariationIDIndex const &, bool, bool) override { return L"mine"; }
  } const other(&owner, L"Store", L"File", L"Path", true);
  EXPECT_EQ(other.GetFullPath(a, false, false), owner.GetRootDirectory(false) + L"mine");
}

TEST_F(LocationData, ALocationUnderTheOriginalNumberIsTheCommittedOneToo) {
  owner.Put(L"res/V1_5", "old");
  store.SetData(a, L"res/V1_5");
  EXPECT_FALSE(store.NeedWriteVmap());
  EXPECT_FALSE(store.DiscardMirroredData(a));
  EXPECT_TRUE(owner.Exists(L"res/V1_5"));
  store.ReinitMirroredData();
  EXPECT_EQ(store.GetRelativePath(a, false, false), L"res/V1_5");
}

TEST_F(LocationData, ALocationUnderAnotherNumberIsAWorkingOneOnly) {
  store.SetData(a, L"res/V1_100");
  EXPECT_TRUE(store.NeedWriteVmap());
  store.ReinitMirroredData();
  EXPECT_FALSE(store.HaveData(a));
}

TEST_F(LocationData, SolvingAgainWritesBesideTheSavedFile) {
  SaveAndSolveAgain();
  EXPECT_EQ(Files(), (std::set<AString>{L"res/V1_5", L"res/V1_100"}));
  EXPECT_EQ(owner.Content(L"res/V1_5"), "saved");
  EXPECT_TRUE(store.NeedWriteVmap());
}

TEST_F(LocationData, ASaveMovesTheNewFileToItsCommittedName) {
  Solve(a, "new");
  Save();
  EXPECT_EQ(Files(), (std::set<AString>{L"res/V1_5"}));
  EXPECT_EQ(store.GetRelativePath(a, false, false), L"res/V1_5");
  EXPECT_FALSE(store.NeedWriteVmap());
  EXPECT_EQ(owner.TakeCalls(), (Calls{"commit a=1 5 100", "move a=1 5 100"}));
}

TEST_F(LocationData, ASaveReplacesTheSavedFile) {
  SaveAndSolveAgain();
  Save();
  EXPECT_EQ(Files(), (std::set<AString>{L"res/V1_5"}));
  EXPECT_EQ(owner.Content(L"res/V1_5"), "new");
  EXPECT_EQ(owner.TakeCalls(), (Calls{"commit a=1 5 100", "move a=1 5 100"}));
}

TEST_F(LocationData, ASaveWithoutAChangeMovesNothing) {
  Solve(a, "saved");
  Save();
  owner.TakeCalls();
  Save();
  EXPECT_EQ(owner.Content(L"res/V1_5"), "saved");
  EXPECT_EQ(owner.TakeCalls(), (Calls{"commit a=1 5 100"}));
}

TEST_F(LocationData, ASaveDeletesASavedFileThatNoWorkingEntryMirrors) {
  Solve(a, "saved");
  Save();
  store.DiscardMirroredData(a);
  EXPECT_TRUE(owner.Exists(L"res/V1_5"));
  owner.TakeCalls();
  Save();
  EXPECT_TRUE(Files().empty());
  EXPECT_EQ(owner.TakeCalls(), (Calls{"delete a=1 5 5"}));
}

TEST_F(LocationData, TheOwnerMayChangeALocationBeforeItIsCommitted) {
  Solve(a, "ignored");
  owner.Put(L"res/elsewhere", "meant");
  owner.commitAs = L"res/elsewhere";
  Save();
  EXPECT_EQ(owner.Content(L"res/V1_5"), "meant");
  EXPECT_EQ(store.GetRelativePath(a, false, false), L"res/V1_5");
}

TEST_F(LocationData, AMoveThatFailsStillGivesTheCommittedLocation) {
  store.SetData(a);
  Save();
  EXPECT_EQ(store.GetRelativePath(a, false, false), L"res/V1_5");
  EXPECT_TRUE(Files().empty());
}

TEST_F(LocationData, ASaveDropsWhatOtherVersionsHad) {
  Solve(owner.Key(L"a=1", 4), "older");
  Solve(a, "new");
  Save();
  EXPECT_EQ(Files(), (std::set<AString>{L"res/V1_5"}));
  EXPECT_FALSE(store.HaveData(4));
}

TEST_F(LocationData, ADiscardRemovesTheNewFileAndKeepsTheSavedOne) {
  SaveAndSolveAgain();
  EXPECT_TRUE(store.DiscardMirroredData(a));
  EXPECT_EQ(Files(), (std::set<AString>{L"res/V1_5"}));
  EXPECT_EQ(owner.TakeCalls(), (Calls{"delete a=1 5 100"}));
  EXPECT_FALSE(store.DiscardMirroredData(a));
}

TEST_F(LocationData, ADiscardOfTheSavedFileTellsFalseAndLeavesIt) {
  Solve(a, "saved");
  Save();
  owner.TakeCalls();
  EXPECT_FALSE(store.DiscardMirroredData(a));
  EXPECT_FALSE(store.HaveData(a));
  EXPECT_TRUE(owner.Exists(L"res/V1_5"));
  EXPECT_TRUE(owner.TakeCalls().empty());
}

TEST_F(LocationData, ADiscardByTheMirroredNumberMissesTheTwinAndDeletesTheFileAsIsMeant) {
  Solve(a, "saved");
  Save();
  EXPECT_TRUE(store.DiscardMirroredData(owner.Key(L"a=1", 100)));
  EXPECT_FALSE(owner.Exists(L"res/V1_5"));
}

TEST_F(LocationData, ADiscardOfAVariationTellsWhetherDataWasDeleted) {
  SaveAndSolveAgain();
  EXPECT_TRUE(store.DiscardMirroredData(L"a=1"));
  EXPECT_EQ(Files(), (std::set<AString>{L"res/V1_5"}));
  store.ReinitMirroredData();
  EXPECT_FALSE(store.DiscardMirroredData(L"a=1"));
  EXPECT_FALSE(store.HaveData());
  EXPECT_TRUE(owner.Exists(L"res/V1_5"));
}

TEST_F(LocationData, ADiscardOfAllTellsWhetherThereWasAnything) {
  Solve(a, "saved");
  Save();
  Solve(b, "new");
  EXPECT_TRUE(store.DiscardMirroredData());
  EXPECT_FALSE(store.DiscardMirroredData());
  EXPECT_EQ(Files(), (std::set<AString>{L"res/V1_5"}));
  store.ReinitMirroredData();
  // Nothing but shared entries counts too, other than in the form for one variation.
  EXPECT_TRUE(store.DiscardMirroredData());
}

TEST_F(LocationData, ReinitTouchesNoSavedFile) {
  SaveAndSolveAgain();
  store.ReinitMirroredData();
  EXPECT_EQ(store.GetRelativePath(a, false, false), L"res/V1_5");
  EXPECT_EQ(Files(), (std::set<AString>{L"res/V1_5"}));
}

TEST_F(LocationData, ClearingAVariationDeletesBothFiles) {
  SaveAndSolveAgain();
  Solve(b, "other");
  store.ClearVariationData(L"a=1");
  EXPECT_EQ(Files(), (std::set<AString>{L"res/V2_100"}));
  EXPECT_EQ(owner.TakeCalls(), (Calls{"delete a=1 5 5", "delete a=1 5 100"}));
}

TEST_F(LocationData, ClearingAVariationDeletesASharedFile) {
  Solve(a, "saved");
  Save();
  store.ClearVariationData(L"a=1");
  EXPECT_TRUE(Files().empty());
  EXPECT_FALSE(store.HaveData());
}

TEST_F(LocationData, ClearingAllDeletesAllAndTellsTheOwnerTheOriginalTwice) {
  SaveAndSolveAgain();
  store.ClearAllData();
  EXPECT_TRUE(Files().empty());
  EXPECT_FALSE(store.HaveData());
  EXPECT_EQ(owner.TakeCalls(), (Calls{"delete a=1 5 5", "delete a=1 5 100"}));
}

TEST_F(LocationData, ClearingAllEmptiesFoldersFirst) {
  folders.SetData(a);
  AString const location = folders.GetRelativePath(a, true, true);
  owner.Put(location + L"/inside", "x");
  folders.ClearAllData();
  EXPECT_FALSE(owner.Exists(location));
}

TEST_F(LocationData, ClearingAllNeverMovesAnythingToABackupAsIsMeant) {
  SaveAndSolveAgain();
  LongFileName const root(owner.GetRootDirectory(false));
  LongFileName const area = root + AString(L"backup");
  ASSERT_TRUE(BackupArea::Begin(area, root));
  store.ClearAllData();
  ASSERT_TRUE(BackupArea::Restore(area, root));
  EXPECT_TRUE(Files().empty());
}

TEST_F(LocationData, ASaveCanBeTakenBackFromTheBackupArea) {
  SaveAndSolveAgain();
  Solve(b, "second");
  LongFileName const root(owner.GetRootDirectory(false));
  LongFileName const area = root + AString(L"backup");
  ASSERT_TRUE(BackupArea::Begin(area, root));
  Save();
  EXPECT_TRUE(BackupArea::IsWhole());
  EXPECT_EQ(owner.Content(L"res/V1_5"), "new");
  ASSERT_TRUE(BackupArea::Restore(area, root));
  EXPECT_EQ(Files(), (std::set<AString>{L"res/V1_5", L"res/V1_100", L"res/V2_100"}));
  EXPECT_EQ(owner.Content(L"res/V1_5"), "saved");
  EXPECT_EQ(owner.Content(L"res/V1_100"), "new");
}

TEST_F(LocationData, EmptyingTheMapsLeavesTheDisk) {
  SaveAndSolveAgain();
  store.ClearMapContents();
  EXPECT_FALSE(store.HaveData());
  store.ReinitMirroredData();
  EXPECT_FALSE(store.HaveData());
  EXPECT_EQ(Files().size(), 2u);
  EXPECT_EQ(store.GetOriginalVersion(100), 5);
}

TEST_F(LocationData, AFolderInAStoreOfFilesIsReportedAndDeleted) {
  store.SetData(a);
  owner.MakeFolder(store.GetRelativePath(a, false, false));
  support::AssertWatch::Expect("!LFN_IsDirectory(lfn)");
  EXPECT_TRUE(store.DiscardMirroredData(a));
  EXPECT_FALSE(owner.Exists(L"res/V1_100"));
}

TEST_F(LocationData, AFileInAStoreOfFoldersIsReportedAndDeleted) {
  folders.SetData(a);
  owner.Put(folders.GetRelativePath(a, false, false), "x");
  support::AssertWatch::Expect("LFN_IsDirectory(lfn)");
  EXPECT_TRUE(folders.DiscardMirroredData(a));
  EXPECT_TRUE(Files().empty());
}

TEST_F(LocationData, FoldersMoveWithWhatTheyHold) {
  for (std::string const content : {"saved", "new"}) {
    folders.SetData(a);
    AString const location = folders.GetRelativePath(a, true, true);
    owner.Put(location + L"/inside", content);
    folders.CommitMirroredData();
    EXPECT_EQ(owner.Content(L"res/V1_5/inside"), content);
  }
  EXPECT_EQ(Files(), (std::set<AString>{L"res/V1_5/inside"}));
}

TEST_F(LocationData, ASaveMakesTheFolderOfTheCommittedName) {
  struct Nested : support::StoreOwner {
    AString GetRelativeLocation(AString const &, VariationIDIndex const & key) override {
      return AString::Format(L"v%ld/data", key.GetVersionID());
    }
  } nested;
  CMirroredLocationData other(&nested, L"Store", L"File", L"Path", true);
  VariationIDIndex const key = nested.Key(L"a=1", 5);
  other.SetData(key);
  nested.MakeFolder(L"v100");
  nested.Put(L"v100/data", "new");
  other.CommitMirroredData();
  EXPECT_EQ(nested.Content(L"v5/data"), "new");
}

TEST_F(LocationData, TwoSpellingsOfOneFileLoseNothing) {
  owner.Put(L"res/V1_5", "saved");
  store.SetData(a, L"res/V1_5");
  owner.commitAs = L"res//V1_5";
  Save();
  EXPECT_EQ(owner.Content(L"res/V1_5"), "saved");
}

TEST_F(LocationData, AFailingDiskLeavesTheViewsAsAfterASave) {
  SaveAndSolveAgain();
  {
    support::FaultyFileSystem faulty;
    faulty.FailAt(1, true);
    Save();
  }
  EXPECT_EQ(store.GetRelativePath(a, false, false), L"res/V1_5");
  EXPECT_EQ(Files().size(), 2u);
}

TEST_F(LocationData, TheListingOfTheCommittedStateNamesTheSavedFile) {
  SaveAndSolveAgain();
  std::vector<AString> files{L"before"};
  std::vector<AString> dirs;
  s_traces.clear();
  diag::SetDebugSink([](AString const & category, int level, AString const & text) {
    s_traces.push_back(category + AString::Format(L" %d ", level) + text);
  });
  EXPECT_TRUE(store.GetFilesAndDirsToCopyForExportingVariation(files, dirs, L"a=1"));
  EXPECT_TRUE(store.GetFilesAndDirsToCopyForExportingVariation(files, dirs, L"a=2"));
  folders.SetData(a, L"res/V1_5");
  EXPECT_TRUE(folders.GetFilesAndDirsToCopyForExportingVariation(files, dirs, L"a=1"));
  diag::SetDebugSink(nullptr);
  EXPECT_EQ(files, (std::vector<AString>{L"before", L"res/V1_5"}));
  EXPECT_EQ(dirs, (std::vector<AString>{L"res/V1_5"}));
  AString const where =
      L"in CMirroredLocationData::GetFilesAndDirsToCopyForExportingVariation for exporting variation ";
  EXPECT_EQ(s_traces, (std::vector<AString>{
                          AString(L"SolutionManager 1 Returning file res/V1_5 ") + where + L"a=1\n",
                          AString(L"SolutionManager 1 Nothing ") + where + L"a=2\n",
                          AString(L"SolutionManager 1 Returning dir res/V1_5 ") + where + L"a=1\n",
                      }));
}

TEST_F(LocationData, TheListingOfTheWorkingStateRenamesToTheCommittedName) {
  SaveAndSolveAgain();
  std::map<AString, AString> renames;
  std::vector<AString> files;
  std::vector<AString> dirs;
  EXPECT_TRUE(store.GetFilesAndDirsToCopyForExportingVariation(renames, files, dirs, L"a=1"));
  EXPECT_EQ(files, (std::vector<AString>{L"res/V1_100"}));
  EXPECT_EQ(renames, (std::map<AString, AString>{{L"res/V1_100", L"res/V1_5"}}));
  Save();
  renames.clear();
  EXPECT_TRUE(store.GetFilesAndDirsToCopyForExportingVariation(renames, files, dirs, L"a=1"));
  EXPECT_TRUE(renames.empty());
  EXPECT_TRUE(store.GetFilesAndDirsToCopyForExportingVariation(renames, files, dirs, L"a=9"));
  EXPECT_EQ(files.size(), 2u);
  EXPECT_TRUE(dirs.empty());
}

TEST_F(LocationData, ALocationOfItsOwnNeverReplacesACommittedOne) {
  owner.Put(L"res/V1_5", "first");
  owner.Put(L"res/V1_5b", "second");
  store.SetData(a, L"res/V1_5");
  store.SetData(a, L"res/V1_5b");
  EXPECT_EQ(store.GetRelativePath(a, false, false), L"res/V1_5b");
  store.ReinitMirroredData();
  EXPECT_EQ(store.GetRelativePath(a, false, false), L"res/V1_5");
}

TEST_F(LocationData, ASaveOfAMissingFileDeletesTheSavedOneAsIsMeant) {
  SaveAndSolveAgain();
  std::filesystem::remove(owner.PathOf(L"res/V1_100"));
  Save();
  EXPECT_TRUE(Files().empty());
  EXPECT_EQ(store.GetRelativePath(a, false, false), L"res/V1_5");
}

TEST_F(LocationData, ALocationThatCantBeMovedReplacesNothing) {
  SaveAndSolveAgain();
  support::TemporaryFolder elsewhere;
  std::filesystem::create_directory_symlink(elsewhere.Path(), owner.PathOf(L"link"));
  LongFileName const root(owner.GetRootDirectory(false));
  LongFileName const area = root + AString(L"backup");
  support::AssertWatch::Expect("!\"A location leads out of the results folder\"");
  for (AString const & changed : {AString(L"../outside"), AString(L"link/x"), AString(L"")}) {
    if (!changed.empty())
      owner.commitAs = changed;
    else
      store.SetData(a), owner.commitAs = L"/etc/hostname";
    ASSERT_TRUE(BackupArea::Begin(area, root));
    Save();
    EXPECT_FALSE(BackupArea::IsWhole());
    ASSERT_TRUE(BackupArea::Drop(area));
    EXPECT_EQ(owner.Content(L"res/V1_5"), "saved");
  }
}

TEST_F(LocationData, AFolderThatBecameALinkReplacesNothingAndIsNotFollowed) {
  support::TemporaryFolder elsewhere;
  std::ofstream(elsewhere / "precious") << "x";
  folders.SetData(a);
  owner.MakeFolder(folders.GetRelativePath(a, false, false));
  folders.CommitMirroredData();
  owner.Put(L"res/V1_5/inside", "saved");
  folders.SetData(a);
  std::filesystem::create_directory_symlink(elsewhere.Path(), owner.PathOf(folders.GetRelativePath(a, false, false)));
  support::AssertWatch::Expect("!\"A location leads out of the results folder\"");
  folders.CommitMirroredData();
  EXPECT_EQ(owner.Content(L"res/V1_5/inside"), "saved");
  folders.ClearAllData();
  EXPECT_TRUE(std::filesystem::exists(elsewhere / "precious"));
}

TEST_F(LocationData, AFolderNamedWithSlashesBehindItMovesWithoutAStrayOne) {
  struct Slashed : support::StoreOwner {
    AString GetRelativeLocation(AString const & keyword, VariationIDIndex const & key) override {
      return StoreOwner::GetRelativeLocation(keyword, key) + L"//";
    }
  } slashed;
  CMirroredLocationData other(&slashed, L"Store", L"File", L"Path", false);
  other.SetData(slashed.Key(L"a=1", 5));
  slashed.MakeFolder(L"res/V1_100");
  slashed.Put(L"res/V1_100/inside", "new");
  other.CommitMirroredData();
  EXPECT_EQ(slashed.AllFiles(), (std::set<AString>{L"res/V1_5/inside"}));
  std::set<std::string> names;
  for (auto const & entry : std::filesystem::directory_iterator(slashed.PathOf(L"res")))
    names.insert(entry.path().filename().string());
  EXPECT_EQ(names, (std::set<std::string>{"V1_5"}));
}

TEST_F(LocationData, TheBackupAreaIsNoLocation) {
  LongFileName const root(owner.GetRootDirectory(false));
  LongFileName const area = root + AString(L"backup");
  SaveAndSolveAgain();
  for (AString const & bad : {AString(L"backup"), AString(L"backup/journal"), AString(L"backup/1")}) {
    ASSERT_TRUE(BackupArea::Begin(area, root));
    store.SetData(b, bad);
    store.DiscardMirroredData(b);
    store.SetData(b, bad);
    store.ClearAllData();
    EXPECT_FALSE(BackupArea::IsWhole());
    EXPECT_TRUE(BackupArea::IsPending(area));
    EXPECT_TRUE(BackupArea::Restore(area, root));
  }
  EXPECT_FALSE(support::AssertWatch::Take().empty());
}

TEST_F(LocationData, AVersionThatNoMirroredNumberReachesHasNoLocation) {
  VariationIDIndex const far = owner.Key(L"a=1", std::numeric_limits<long>::max());
  support::AssertWatch::Expect("isWithinReach");
  store.SetData(far);
  store.SetData(far, L"res/V1_5");
  EXPECT_FALSE(store.HaveData() || store.HaveData(far));
  EXPECT_EQ(store.GetRelativePath(far, true, true), L"");
  EXPECT_FALSE(store.DiscardMirroredData(far));
}

namespace {

/// Answers in place of a product's override.
struct WatchingLocations : CMirroredLocationData {
  using CMirroredLocationData::CMirroredLocationData;
  using CMirroredLocationData::DiscardMirroredData;
  std::string calls;
  void ClearNonCurrentData() override { calls += "noncurrent "; }
  bool DiscardMirroredData(AString const &) override { return (calls += "variation "), false; }
  bool DiscardMirroredData() override { return (calls += "all "), false; }
};

} // namespace

TEST_F(LocationData, OverridesAreAskedWhereOneOperationUsesAnother) {
  WatchingLocations watched(&owner, L"Store", L"File", L"Path", true);
  watched.ClearVariationData(L"a=1");
  watched.CommitMirroredData();
  watched.ReinitMirroredData();
  EXPECT_EQ(watched.calls, "variation noncurrent all ");
}
