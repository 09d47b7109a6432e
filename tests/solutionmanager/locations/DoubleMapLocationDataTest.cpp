#include "basekit/diag/Debug.h"
#include "basekit/file/LongFileName.h"
#include "solutionmanager/locations/CMirroredDoubleMapLocationData.h"
#include "tests/solutionmanager/support/StoreOwner.h"
#include "tests/support/AssertWatch.h"
#include "tests/support/Printers.h"
#include "viewkit/backup/BackupArea.h"

#include <gtest/gtest.h>
#include <limits>

using Calls = std::vector<std::string>;
using Doubles = std::vector<double>;

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

std::vector<AString> s_traces;

// The mirrored number of version 5 is 100, the identifiers of the numbers follow it: 101, 102 ...
struct DoubleLocations : testing::Test {
  support::StoreOwner owner;
  CMirroredDoubleMapLocationData store{&owner, L"Store", L"File", L"Path", true};
  VariationIDIndex const a = owner.Key(L"a=1", 5);
  VariationIDIndex const b = owner.Key(L"a=2", 5);

  void Solve(VariationIDIndex const & key, double value, std::string const & content = "x") {
    store.SetData(key, value);
    owner.Put(Path(key, value), content);
  }
  AString Path(VariationIDIndex const & key, double value) { return store.GetRelativePath(key, value, false, false); }
  void Save() { store.CommitMirroredData(); }
  void SaveAndSolveAgain() {
    Solve(a, 1.0, "saved");
    Solve(a, 2.0, "saved");
    Save();
    Solve(a, 1.0, "new");
    owner.TakeCalls();
  }
  Doubles Values(VariationIDIndex const & key) const {
    Doubles values;
    store.ListValidDoubles(key, values);
    return values;
  }
  std::size_t Keys() const {
    std::vector<VariationIDIndex> keys;
    store.ListValidKeys(keys);
    return keys.size();
  }
  std::set<AString> Files() const { return owner.AllFiles(); }
};

} // namespace

TEST_F(DoubleLocations, NumbersWithinTheToleranceAreOneKey) {
  store.SetData(a, 1.0);
  store.SetData(a, 1.0 + 1e-13);
  EXPECT_EQ(Values(a), (Doubles{1.0}));
  store.SetData(a, 1.0 + 1e-11);
  EXPECT_EQ(Values(a), (Doubles{1.0, 1.0 + 1e-11}));
  store.SetData(b, 0.0);
  store.SetData(b, 1e-16);
  EXPECT_EQ(Values(b), (Doubles{0.0}));
  store.SetData(b, 4e-15);
  store.SetData(b, 5e-15);
  EXPECT_EQ(Values(b), (Doubles{0.0, 4e-15}));
}

TEST_F(DoubleLocations, AnInfinityIsANumberLikeOthers) {
  double const infinity = std::numeric_limits<double>::infinity();
  store.SetData(a, infinity);
  store.SetData(a, 1.0);
  store.SetData(a, -infinity);
  EXPECT_EQ(Values(a), (Doubles{-infinity, 1.0, infinity}));
  EXPECT_TRUE(store.DiscardMirroredData(a, -infinity));
  EXPECT_TRUE(store.HaveData(a, infinity));
}

TEST_F(DoubleLocations, WhatIsNoNumberEqualsNothingAndIsRefused) {
  Solve(a, 1.0);
  EXPECT_FALSE(store.HaveData(a, kNaN));
  EXPECT_EQ(Path(a, kNaN), L"");
  EXPECT_FALSE(store.DiscardMirroredData(a, kNaN));
  store.ClearData(L"a=1", kNaN);
  support::AssertWatch::Expect("!std::isnan(value)");
  store.SetData(a, kNaN);
  store.SetData(a, kNaN, L"res/V1_5_7");
  EXPECT_EQ(store.GetRelativePath(a, kNaN, true, false), L"");
  EXPECT_EQ(Values(a), (Doubles{1.0}));
}

TEST_F(DoubleLocations, WhatIsNoNumberClearsNothingAndSparesNothing) {
  SaveAndSolveAgain();
  store.ClearData(std::set<double, CMirroredDoubleMapLocationData::Less>{kNaN});
  EXPECT_EQ(Files().size(), 3u);
  EXPECT_EQ(Values(a), (Doubles{1.0, 2.0}));
  Doubles valid;
  store.GetValidDoubles(a, valid);
  EXPECT_EQ(valid, (Doubles{1.0, 2.0}));
  EXPECT_TRUE(store.DiscardMirroredDataExcept(kNaN));
  EXPECT_TRUE(Values(a).empty());
  store.GetValidDoubles(a, valid);
  EXPECT_EQ(valid, (Doubles{1.0, 2.0}));
}

TEST_F(DoubleLocations, TinyNumbersWithinTheAbsoluteToleranceAreOneKey) {
  store.SetData(a, 1e-15);
  store.SetData(a, 2e-15);
  EXPECT_EQ(Values(a), (Doubles{1e-15}));
  EXPECT_TRUE(store.HaveData(a, 2e-15));
}

TEST_F(DoubleLocations, AnIdentifierOfAPathToWriteOutlivesADiscardInBothMaps) {
  EXPECT_EQ(store.GetRelativePath(a, 1.5, true, false), L"res/V1_100_101");
  EXPECT_FALSE(store.DiscardMirroredData());
  double value = 0.0;
  EXPECT_TRUE(store.GetDoubleValueByID(101, value));
  EXPECT_EQ(value, 1.5);
  EXPECT_EQ(store.GetRelativePath(a, 1.5, true, false), L"res/V1_100_101");
  EXPECT_EQ(owner.nextID, 102);
}

TEST_F(DoubleLocations, ThePathToWriteBearsTheMirroredNumberAndTheIdentifier) {
  EXPECT_EQ(store.GetRelativePath(a, 1.5, true, false), L"res/V1_100_101");
  EXPECT_EQ(store.GetRelativePath(b, 1.5, true, false), L"res/V2_100_101");
  EXPECT_FALSE(store.HaveData());
  double value = 0.0;
  EXPECT_TRUE(store.GetDoubleValueByID(101, value));
  EXPECT_EQ(value, 1.5);
}

TEST_F(DoubleLocations, AnIdentifierOutlivesADiscard) {
  Solve(a, 1.5);
  EXPECT_EQ(store.GetRelativePath(a, 101L), L"res/V1_100_101");
  EXPECT_TRUE(store.DiscardMirroredData());
  EXPECT_EQ(store.GetRelativePath(a, 1.5, true, false), L"res/V1_100_101");
  double value = 0.0;
  EXPECT_TRUE(store.GetDoubleValueByID(101, value));
  EXPECT_EQ(store.GetRelativePath(a, 101L), L"");
  EXPECT_EQ(store.GetRelativePath(a, 999L), L"");
  EXPECT_FALSE(store.GetDoubleValueByID(999, value));
}

TEST_F(DoubleLocations, OnlyAStoreOfFoldersMakesThePathToWrite) {
  store.GetRelativePath(a, 1.0, true, true);
  EXPECT_FALSE(owner.Exists(L"res/V1_100_101"));
  CMirroredDoubleMapLocationData folders(&owner, L"Store", L"File", L"Path", false);
  AString const path = folders.GetRelativePath(a, 1.0, true, true);
  EXPECT_TRUE(std::filesystem::is_directory(owner.PathOf(path)));
  EXPECT_EQ(folders.GetFullPath(a, 1.0, true, false), owner.GetRootDirectory(false) + path);
}

TEST_F(DoubleLocations, ListsOfNumbersStartAnewOrGoOn) {
  store.SetData(a, 2.0);
  store.SetData(a, 1.0);
  Doubles values{9.0};
  store.GetValidDoubles(a, values);
  EXPECT_EQ(values, (Doubles{9.0, 1.0, 2.0}));
  store.ListValidDoubles(a, values);
  EXPECT_EQ(values, (Doubles{1.0, 2.0}));
  store.ListValidDoubles(b, values);
  EXPECT_TRUE(values.empty());
}

TEST_F(DoubleLocations, SolvingAgainWritesBesideTheSavedFile) {
  SaveAndSolveAgain();
  EXPECT_EQ(Path(a, 1.0), L"res/V1_100_101");
  EXPECT_EQ(Path(a, 2.0), L"res/V1_5_102");
  EXPECT_EQ(owner.Content(L"res/V1_5_101"), "saved");
  EXPECT_TRUE(store.NeedWriteVmap());
  EXPECT_TRUE(owner.TakeCalls().empty());
}

TEST_F(DoubleLocations, ANewLocationLeavesASavedFileInItsPlace) {
  owner.Put(L"res/V1_5_7", "saved");
  store.SetData(a, 1.0, L"res/V1_5_7");
  store.SetData(a, 1.0);
  EXPECT_EQ(Path(a, 1.0), L"res/V1_100_7");
  EXPECT_TRUE(owner.Exists(L"res/V1_5_7"));
}

TEST_F(DoubleLocations, ANewLocationUnderTheMirroredNumberMissesTheTwinAndDeletesTheFileAsIsMeant) {
  owner.Put(L"res/V1_5_7", "saved");
  store.SetData(a, 1.0, L"res/V1_5_7");
  store.SetData(owner.Key(L"a=1", 100), 1.0);
  EXPECT_EQ(Path(a, 1.0), L"res/V1_100_7");
  EXPECT_TRUE(Files().empty());
  EXPECT_EQ(owner.TakeCalls(), (Calls{"delete a=1 5 100 1"}));
}

TEST_F(DoubleLocations, ASeededLocationStandsInBothViewsUnderTheKeyAsGiven) {
  owner.Put(L"res/V1_5_7", "old");
  store.SetData(a, 1.0, L"res/V1_5_7");
  EXPECT_EQ(Path(a, 1.0), L"res/V1_5_7");
  EXPECT_FALSE(store.NeedWriteVmap());
  double value = 0.0;
  EXPECT_TRUE(store.GetDoubleValueByID(7, value));
  store.SetData(a, 1.0 + 1e-13, L"res/other");
  EXPECT_EQ(Path(a, 1.0), L"res/V1_5_7");
  store.SetData(a, 2.0, L"res/V1_5_8");
  EXPECT_FALSE(store.NeedWriteVmap());
  EXPECT_EQ(Values(a), (Doubles{1.0, 2.0}));
}

TEST_F(DoubleLocations, ASeededLocationMakesTheCommittedEntryThatIsMissing) {
  store.SetData(a, 1.0);
  store.SetData(a, 2.0, L"res/V1_5_8");
  store.ReinitMirroredData();
  EXPECT_EQ(Values(a), (Doubles{2.0}));
}

TEST_F(DoubleLocations, ASaveMovesNewFilesAndTellsTheOwner) {
  Solve(a, 1.0);
  Solve(a, 2.0);
  Save();
  EXPECT_EQ(Files(), (std::set<AString>{L"res/V1_5_101", L"res/V1_5_102"}));
  EXPECT_EQ(owner.TakeCalls(),
            (Calls{"commit a=1 5 100 1", "move a=1 5 100 1", "commit a=1 5 100 2", "move a=1 5 100 2"}));
  EXPECT_FALSE(store.NeedWriteVmap());
}

TEST_F(DoubleLocations, ASaveOverASavedFileTellsOfItsOneMoveTwiceAsIsMeant) {
  SaveAndSolveAgain();
  Save();
  EXPECT_EQ(owner.Content(L"res/V1_5_101"), "new");
  EXPECT_EQ(Files().size(), 2u);
  EXPECT_EQ(owner.TakeCalls(),
            (Calls{"commit a=1 5 100 1", "move a=1 5 100 1", "move a=1 5 100 1", "commit a=1 5 100 2"}));
}

TEST_F(DoubleLocations, ASaveAddsANumberToASavedEntry) {
  SaveAndSolveAgain();
  Solve(a, 3.0, "third");
  Save();
  EXPECT_EQ(owner.Content(L"res/V1_5_103"), "third");
  store.ReinitMirroredData();
  EXPECT_EQ(Values(a), (Doubles{1.0, 2.0, 3.0}));
}

TEST_F(DoubleLocations, ASaveErasesASavedNumberThatTheWorkingEntryLost) {
  SaveAndSolveAgain();
  EXPECT_TRUE(store.DiscardMirroredData(a, 2.0));
  EXPECT_TRUE(owner.Exists(L"res/V1_5_102"));
  Save();
  EXPECT_EQ(Files(), (std::set<AString>{L"res/V1_5_101"}));
  store.ReinitMirroredData();
  EXPECT_EQ(Values(a), (Doubles{1.0}));
}

TEST_F(DoubleLocations, ASaveComparesWithTheCanonicalNameNotWithTheSavedOneAsIsMeant) {
  owner.Put(L"res/seeded", "old");
  store.SetData(a, 1.0, L"res/seeded");
  Save();
  EXPECT_EQ(owner.Content(L"res/V1_5_-1"), "old");
  EXPECT_EQ(Path(a, 1.0), L"res/V1_5_-1");
  // The committed text is left as it was.
  store.ReinitMirroredData();
  EXPECT_EQ(Path(a, 1.0), L"res/seeded");
}

TEST_F(DoubleLocations, TheOwnerMayChangeALocationBeforeItIsCommitted) {
  store.SetData(a, 1.0);
  owner.Put(L"res/elsewhere", "meant");
  owner.commitAs = L"res/elsewhere";
  Save();
  EXPECT_EQ(owner.Content(L"res/V1_5_101"), "meant");
}

TEST_F(DoubleLocations, ASaveDropsIdentifiersThatTheToleranceMerged) {
  store.SetData(a, 1.0, L"res/V1_5_7");
  store.SetData(b, 1.0 + 1e-13, L"res/V2_5_8");
  double value = 0.0;
  EXPECT_TRUE(store.GetDoubleValueByID(8, value));
  Save();
  EXPECT_FALSE(store.GetDoubleValueByID(8, value));
  EXPECT_TRUE(store.GetDoubleValueByID(7, value));
}

TEST_F(DoubleLocations, ADiscardOfANumberRemovesTheNewFileAndKeepsTheSavedOne) {
  SaveAndSolveAgain();
  EXPECT_TRUE(store.DiscardMirroredData(a, 1.0));
  EXPECT_TRUE(store.DiscardMirroredData(a, 2.0));
  EXPECT_FALSE(store.DiscardMirroredData(a, 2.0));
  EXPECT_FALSE(store.DiscardMirroredData(b, 2.0));
  EXPECT_EQ(Files(), (std::set<AString>{L"res/V1_5_101", L"res/V1_5_102"}));
  EXPECT_EQ(owner.TakeCalls(), (Calls{"delete a=1 5 100 1"}));
}

TEST_F(DoubleLocations, ADiscardOfASavedKeyLeavesItWithoutData) {
  SaveAndSolveAgain();
  EXPECT_TRUE(store.DiscardMirroredData(a));
  EXPECT_FALSE(store.HaveData(a));
  EXPECT_FALSE(store.HaveData(5));
  EXPECT_FALSE(store.HaveData());
  EXPECT_EQ(Keys(), 1u);
  std::map<AString, int> variations;
  store.ListVariations(variations);
  EXPECT_EQ(variations[L"a=1"], 1);
  EXPECT_FALSE(store.DiscardMirroredData(a));
  EXPECT_EQ(Files(), (std::set<AString>{L"res/V1_5_101", L"res/V1_5_102"}));
}

TEST_F(DoubleLocations, ADiscardOfAnUnsavedKeyRemovesIt) {
  Solve(a, 1.0);
  EXPECT_TRUE(store.DiscardMirroredData(a));
  EXPECT_EQ(Keys(), 0u);
  EXPECT_TRUE(Files().empty());
}

TEST_F(DoubleLocations, DiscardsOfAVariationPassOverEntriesWithoutDataAndThoseOfAllSweepThemAway) {
  SaveAndSolveAgain();
  store.DiscardMirroredData(a);
  EXPECT_FALSE(store.DiscardMirroredData(L"a=1"));
  EXPECT_EQ(Keys(), 1u);
  EXPECT_FALSE(store.DiscardMirroredData());
  EXPECT_EQ(Keys(), 0u);
}

TEST_F(DoubleLocations, ADiscardOfSharedFilesAloneTellsTrueOtherThanForSingleLocations) {
  Solve(a, 1.0);
  Save();
  EXPECT_TRUE(store.DiscardMirroredData(L"a=1"));
  EXPECT_EQ(Keys(), 0u);
  store.ReinitMirroredData();
  EXPECT_TRUE(store.DiscardMirroredData());
  EXPECT_EQ(Files(), (std::set<AString>{L"res/V1_5_101"}));
}

TEST_F(DoubleLocations, DiscardingAllButANumberComparesExactlyAndDeletesSharedFilesAsIsMeant) {
  Solve(a, 1.0 + 1e-13);
  Solve(b, 1.0);
  Save();
  EXPECT_TRUE(store.DiscardMirroredDataExcept(1.0));
  EXPECT_EQ(Files(), (std::set<AString>{L"res/V2_5_101"}));
  EXPECT_FALSE(store.DiscardMirroredDataExcept(1.0));
  EXPECT_FALSE(store.HaveData(a));
  EXPECT_EQ(Keys(), 2u);
}

TEST_F(DoubleLocations, ReinitBringsTheSavedNumbersBack) {
  SaveAndSolveAgain();
  Solve(a, 3.0);
  store.ReinitMirroredData();
  EXPECT_EQ(Values(a), (Doubles{1.0, 2.0}));
  EXPECT_EQ(Path(a, 1.0), L"res/V1_5_101");
  EXPECT_EQ(Files().size(), 2u);
}

TEST_F(DoubleLocations, ClearingAVariationDeletesTheFilesOfBothViews) {
  SaveAndSolveAgain();
  Solve(b, 1.0);
  store.ClearVariationData(L"a=1");
  EXPECT_EQ(Files(), (std::set<AString>{L"res/V2_100_101"}));
}

TEST_F(DoubleLocations, ClearingAllForgetsTheIdentifiersToo) {
  SaveAndSolveAgain();
  store.ClearAllData();
  EXPECT_TRUE(Files().empty());
  double value = 0.0;
  EXPECT_FALSE(store.GetDoubleValueByID(101, value));
}

TEST_F(DoubleLocations, ClearingAllGoesThroughTheBackupOtherThanForSingleLocations) {
  SaveAndSolveAgain();
  LongFileName const root(owner.GetRootDirectory(false));
  LongFileName const area = root + AString(L"backup");
  ASSERT_TRUE(BackupArea::Begin(area, root));
  store.ClearAllData();
  EXPECT_FALSE(owner.Exists(L"res/V1_5_101"));
  ASSERT_TRUE(BackupArea::Restore(area, root));
  EXPECT_EQ(Files().size(), 3u);
}

TEST_F(DoubleLocations, EmptyingTheMapsLeavesTheDisk) {
  SaveAndSolveAgain();
  store.ClearMapContents();
  EXPECT_EQ(Files().size(), 3u);
  EXPECT_EQ(Keys(), 0u);
  double value = 0.0;
  EXPECT_FALSE(store.GetDoubleValueByID(101, value));
}

TEST_F(DoubleLocations, OtherVersionsGoWithTheirFiles) {
  Solve(owner.Key(L"a=1", 4), 1.0);
  Solve(a, 1.0);
  store.ClearNonCurrentData();
  EXPECT_EQ(Keys(), 1u);
  EXPECT_EQ(Files().size(), 1u);
}

TEST_F(DoubleLocations, ClearingANumberLeavesItsEntries) {
  SaveAndSolveAgain();
  Solve(b, 1.0);
  store.ClearData(L"a=1", 1.0 + 1e-13);
  EXPECT_EQ(Files(), (std::set<AString>{L"res/V1_5_102", L"res/V2_100_101"}));
  store.ClearData(std::set<double, CMirroredDoubleMapLocationData::Less>{1.0, 2.0});
  EXPECT_TRUE(Files().empty());
  EXPECT_EQ(Keys(), 2u);
}

TEST_F(DoubleLocations, ListingsNameEachFileOfTheVariation) {
  SaveAndSolveAgain();
  std::map<AString, AString> renames;
  std::vector<AString> files;
  std::vector<AString> dirs;
  s_traces.clear();
  diag::SetDebugSink([](AString const &, int, AString const & text) { s_traces.push_back(text); });
  EXPECT_TRUE(store.GetFilesAndDirsToCopyForExportingVariation(files, dirs, L"a=1"));
  EXPECT_EQ(files, (std::vector<AString>{L"res/V1_5_101", L"res/V1_5_102"}));
  files.clear();
  EXPECT_TRUE(store.GetFilesAndDirsToCopyForExportingVariation(renames, files, dirs, L"a=1"));
  EXPECT_EQ(files, (std::vector<AString>{L"res/V1_100_101", L"res/V1_5_102"}));
  EXPECT_EQ(renames, (std::map<AString, AString>{{L"res/V1_100_101", L"res/V1_5_101"}}));
  s_traces.clear();
  EXPECT_TRUE(store.GetFilesAndDirsToCopyForExportingVariation(renames, files, dirs, L"a=2"));
  EXPECT_TRUE(store.GetFilesAndDirsToCopyForExportingVariation(files, dirs, L"a=2"));
  store.DiscardMirroredData(a);
  EXPECT_TRUE(store.GetFilesAndDirsToCopyForExportingVariation(renames, files, dirs, L"a=1"));
  diag::SetDebugSink(nullptr);
  // An entry without data is no missing one.
  AString const nothing = L"Nothing in CMirroredDoubleMapLocationData::GetFilesAndDirsToCopyForExportingVariation for "
                          L"exporting variation a=2\n";
  EXPECT_EQ(s_traces, (std::vector<AString>{nothing, nothing}));
}

TEST_F(DoubleLocations, SeededPathsThatCantBeParsedAreSavedToFilesOfTheirOwn) {
  owner.Put(L"res/one", "first");
  owner.Put(L"res/two", "second");
  store.SetData(a, 1.0, L"res/one");
  store.SetData(a, 2.0, L"res/two");
  EXPECT_EQ(owner.nextID, 102);
  Save();
  EXPECT_EQ(owner.Content(L"res/V1_5_-1"), "first");
  EXPECT_EQ(owner.Content(L"res/V1_5_101"), "second");
}

TEST_F(DoubleLocations, ASeededIdentifierThatAnotherNumberHasIsNotTakenTwice) {
  owner.Put(L"res/V1_5_7", "first");
  owner.Put(L"res/V2_5_7", "second");
  store.SetData(a, 1.0, L"res/V1_5_7");
  store.SetData(b, 2.0, L"res/V2_5_7");
  double value = 0.0;
  EXPECT_TRUE(store.GetDoubleValueByID(7, value));
  EXPECT_EQ(value, 1.0);
  Solve(a, 2.0, "third");
  Save();
  EXPECT_EQ(owner.Content(L"res/V1_5_7"), "first");
  EXPECT_EQ(owner.Content(L"res/V1_5_101"), "third");
  EXPECT_EQ(owner.Content(L"res/V2_5_101"), "second");
}

TEST_F(DoubleLocations, ALocationThatCantBeMovedReplacesNothing) {
  SaveAndSolveAgain();
  owner.commitAs = L"../outside";
  support::AssertWatch::Expect("!\"A location leads out of the results folder\"");
  Save();
  EXPECT_EQ(owner.Content(L"res/V1_5_101"), "saved");
  EXPECT_EQ(owner.Content(L"res/V1_5_102"), "saved");
}

TEST_F(DoubleLocations, AVersionThatNoMirroredNumberReachesHasNoLocations) {
  VariationIDIndex const far = owner.Key(L"a=1", std::numeric_limits<long>::max());
  support::AssertWatch::Expect("isWithinReach");
  store.SetData(far, 1.0);
  store.SetData(far, 2.0, L"res/V1_5_7");
  EXPECT_EQ(store.GetRelativePath(far, 3.0, true, true), L"");
  EXPECT_EQ(Keys(), 0u);
  double value = 0.0;
  EXPECT_FALSE(store.GetDoubleValueByID(7, value));
}

TEST_F(DoubleLocations, TheCommittedTwinIsTheOneOfTheNumberThatWasAsked) {
  // Each neighbour is equal to the next, the outer two are not.
  double const low = 1.0;
  double const middle = 1.0 + 0.8e-12;
  double const high = 1.0 + 1.6e-12;
  owner.Put(L"res/V1_5_7", "saved");
  store.SetData(a, high, L"res/V1_5_7");
  store.DiscardMirroredData();
  owner.Put(L"res/V1_5_7", "saved");
  store.SetData(a, low, L"res/V1_5_7");
  ASSERT_EQ(Values(a), (Doubles{low}));
  store.SetData(a, middle);
  EXPECT_EQ(Path(a, low), L"res/V1_100_101");
  EXPECT_EQ(owner.Content(L"res/V1_5_7"), "saved");
}

TEST_F(DoubleLocations, TheOwnerHearsOfEachFileUnderTheVersionsOfItsView) {
  SaveAndSolveAgain();
  store.ClearData(std::set<double, CMirroredDoubleMapLocationData::Less>{1.0});
  EXPECT_EQ(owner.TakeCalls(), (Calls{"delete a=1 5 5 1", "delete a=1 5 100 1"}));
  Solve(a, 3.0);
  EXPECT_TRUE(store.DiscardMirroredDataExcept(3.0));
  EXPECT_EQ(owner.TakeCalls(), (Calls{"delete a=1 5 100 2"}));
  store.ClearAllData();
  EXPECT_EQ(owner.TakeCalls(), (Calls{"delete a=1 5 5 2", "delete a=1 5 100 3"}));
  Solve(a, 1.0);
  store.ClearData(L"a=1", 1.0);
  EXPECT_EQ(owner.TakeCalls(), (Calls{"delete a=1 5 100 1"}));
}

namespace {

/// Answers in place of a product's override.
struct WatchingNumbers : CMirroredDoubleMapLocationData {
  using CMirroredDoubleMapLocationData::CMirroredDoubleMapLocationData;
  using CMirroredDoubleMapLocationData::DiscardMirroredData;
  std::string calls;
  void ClearNonCurrentData() override { calls += "noncurrent "; }
  bool DiscardMirroredData(AString const &) override { return (calls += "variation "), false; }
  bool DiscardMirroredData() override { return (calls += "all "), false; }
};

} // namespace

TEST_F(DoubleLocations, OverridesAreAskedWhereOneOperationUsesAnother) {
  WatchingNumbers watched(&owner, L"Store", L"File", L"Path", true);
  watched.ClearVariationData(L"a=1");
  watched.CommitMirroredData();
  watched.ReinitMirroredData();
  EXPECT_EQ(watched.calls, "variation noncurrent all ");
}
