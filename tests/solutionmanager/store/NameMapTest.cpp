// The map from real block names to internal ones.

#include "tests/solutionmanager/support/StoreTest.h"
#include "tests/support/AssertWatch.h"
#include "tests/support/FaultyFileSystem.h"

#include <algorithm>
#include <array>

using NameMapTest = support::StoreTest;
using Key = SolutionVariationKey;

TEST_F(NameMapTest, NumbersOfInternalNamesBeginAtOne) {
  EXPECT_EQ(Unattached().GenerateUniqueBlockName(), AString(L"SolutionBlock1"));
  EXPECT_EQ(Files().GenerateUniqueBlockName(), AString(L"SolutionBlock2"));
}

TEST_F(NameMapTest, AnEmptyMapBeginsAtOneAgain) {
  Unattached().GenerateUniqueBlockName();
  Files().InitNextAvailableIndex();
  EXPECT_EQ(Files().GenerateUniqueBlockName(), AString(L"SolutionBlock1"));
}

TEST_F(NameMapTest, NumbersGoOnBehindTheHighestOfTheFile) {
  Commit({1, 2, 3});
  ASSERT_EQ(Reopen().LoadRealToInternalBlockNameMap(), kOk);
  EXPECT_EQ(Files().GenerateUniqueBlockName(), AString(L"SolutionBlock4"));
}

TEST_F(NameMapTest, AFreedNumberIsNotUsedAgainWhileAHigherOneRemains) {
  Commit({1, 2, 3});
  EXPECT_EQ(Reopen().DeleteBlocks(Key(1, L"NotSet", 2, 1)), kOk);
  EXPECT_EQ(Files().CommitAll(false), kOk);
  Reopen();
  ASSERT_EQ(Save(DataName(9), 9), kOk);
  EXPECT_EQ(Files().GetInternalBlockName(DataName(9)), AString(L"SolutionBlock4"));
}

TEST_F(NameMapTest, AReloadUsesTheHighestNumberAgainOnceItIsFree) {
  Commit({1, 2, 3});
  EXPECT_EQ(Reopen().DeleteBlocks(Key(1, L"NotSet", 2, 3)), kOk);
  EXPECT_EQ(Files().CommitAll(false), kOk);
  Reopen();
  ASSERT_EQ(Save(DataName(9), 9), kOk);
  EXPECT_EQ(Files().GetInternalBlockName(DataName(9)), AString(L"SolutionBlock3"));
}

TEST_F(NameMapTest, RealNamesAreLookedUpWithCase) {
  ASSERT_EQ(Save(L"Notes", 1), kOk);
  ASSERT_EQ(Save(L"NOTES", 2), kOk);
  bool found = false;
  EXPECT_EQ(Files().GetInternalBlockName(found, L"notes"), AString(L"notes"));
  EXPECT_FALSE(found);
  EXPECT_EQ(ContentOf(L"Notes"), 1);
  EXPECT_EQ(ContentOf(L"NOTES"), 2);
}

TEST_F(NameMapTest, TheNameOfTheMapsBlockCountsInAnyCase) {
  ASSERT_EQ(Save(DataName(1), 1), kOk);
  Save(L"BLOCKMAPNAME", 5);
  EXPECT_EQ(Names(), std::vector<AString>{DataName(1)});
}

TEST_F(NameMapTest, ALookUpLoadsNoMap) {
  Commit({1});
  bool found = true;
  EXPECT_EQ(Reopen().GetInternalBlockName(found, DataName(1)), DataName(1));
  EXPECT_FALSE(found);
}

TEST_F(NameMapTest, ANameOutsideTheMapReachesTheLibraryAsItStands) {
  io::CBlock block = Block(L"Foreign", 7);
  ASSERT_EQ(Files().GetLibraryForDirectAccess().SaveDefinition(block), kOk);
  EXPECT_EQ(ContentOf(L"Foreign"), 7);
}

TEST_F(NameMapTest, ACopyOfTheMapReplacesWhatStoodThereAndLoadsNothing) {
  Commit({1});
  SolutionFileManager::NameMap map;
  map[L"former"];
  Reopen().GetRealToInternalNameMap(map);
  EXPECT_TRUE(map.empty());
  ASSERT_EQ(Files().LoadRealToInternalBlockNameMap(), kOk);
  Files().GetRealToInternalNameMap(map);
  ASSERT_EQ(map.size(), 1u);
  EXPECT_EQ(map.begin()->first, DataName(1));
  EXPECT_TRUE(map.begin()->second.key == Key(1, L"a=1", 2, 1));
  EXPECT_EQ(map.begin()->second.internalName, AString(L"SolutionBlock1"));
}

TEST_F(NameMapTest, TheMapsBlockHoldsAllEntriesInMapOrder) {
  for (long const version : {30, 4, 100, 2})
    ASSERT_EQ(Save(DataName(version), version), kOk);
  ASSERT_EQ(Save(L"A product's own", 1), kOk);
  Pairs expected;
  for (auto const & [name, entry] : MapInMemory())
    expected.emplace_back(name, entry.internalName);
  EXPECT_EQ(expected.size(), 5u);
  EXPECT_TRUE(std::is_sorted(expected.begin(), expected.end()));
  EXPECT_EQ(MapInLibrary(), expected);
}

TEST_F(NameMapTest, AnEmptyMapIsLoadedAgainOnEachCall) {
  SolutionFileManager late{LongFileName(Path())};
  EXPECT_NE(late.LoadRealToInternalBlockNameMap(), kOk);
  io::CBlock map(SolutionFileManager::kRealToInternalBlkName);
  map << io::CBlock_named_value(DataName(1), io::CBlock_value(AString(L"SolutionBlock9")));
  ASSERT_EQ(late.GetLibraryForDirectAccess().SaveDefinition(map), kOk);
  EXPECT_EQ(late.LoadRealToInternalBlockNameMap(), kOk);
  EXPECT_EQ(late.GenerateUniqueBlockName(), AString(L"SolutionBlock10"));
}

TEST_F(NameMapTest, LoadingLeavesTheMapMarkedAsChanged) {
  Commit({1});
  ASSERT_EQ(Reopen().LoadRealToInternalBlockNameMap(), kOk);
  EXPECT_TRUE(Writes([this] { EXPECT_EQ(Files().WriteRealToInternalBlockNameMap(), kOk); }));
  EXPECT_FALSE(Writes([this] { EXPECT_EQ(Files().WriteRealToInternalBlockNameMap(), kOk); }));
}

TEST_F(NameMapTest, AWriteWithTheFlagClearWritesNothingEvenAfterDeleteBlock) {
  ASSERT_EQ(Save(DataName(1), 1), kOk);
  ASSERT_EQ(Save(DataName(2), 2), kOk);
  ASSERT_EQ(Files().DeleteBlock(DataName(1)), kOk);
  EXPECT_FALSE(Writes([this] { EXPECT_EQ(Files().WriteRealToInternalBlockNameMap(), kOk); }));
  EXPECT_EQ(NamesInLibrary(), (std::vector<AString>{DataName(1), DataName(2)}));
}

TEST_F(NameMapTest, TheNextChangeTakesTheErasureOfDeleteBlockAlong) {
  for (long const version : {1, 2, 3})
    ASSERT_EQ(Save(DataName(version), version), kOk);
  ASSERT_EQ(Files().DeleteBlock(DataName(2)), kOk);
  ASSERT_EQ(Save(DataName(4), 4), kOk);
  EXPECT_EQ(NamesInLibrary(), (std::vector<AString>{DataName(1), DataName(3), DataName(4)}));
}

TEST_F(NameMapTest, ExtendingTakesTheNumberAndDoesNotMovePastItOnPurpose) {
  Unattached().ExtendNameMap(DataName(1), L"SolutionBlock7");
  EXPECT_EQ(Files().GenerateUniqueBlockName(), AString(L"SolutionBlock7"));
  Files().ExtendNameMap(DataName(2), L"SolutionBlock3");
  EXPECT_EQ(Files().GenerateUniqueBlockName(), AString(L"SolutionBlock8"));
  Files().InitNextAvailableIndex();
  EXPECT_EQ(Files().GenerateUniqueBlockName(), AString(L"SolutionBlock8"));
}

TEST_F(NameMapTest, ExtendingMarksTheMapAsChangedUnlessTheNameIsThere) {
  ASSERT_EQ(Save(DataName(1), 1), kOk);
  Files().ExtendNameMap(DataName(1), L"SolutionBlock5");
  EXPECT_FALSE(Writes([this] { Files().WriteRealToInternalBlockNameMap(); }));
  Files().ExtendNameMap(DataName(2), L"SolutionBlock5");
  EXPECT_TRUE(Writes([this] { Files().WriteRealToInternalBlockNameMap(); }));
  EXPECT_EQ(MapInLibrary(), (Pairs{{DataName(1), L"SolutionBlock1"}, {DataName(2), L"SolutionBlock5"}}));
}

TEST_F(NameMapTest, UpdatingTheOriginalMarksTheMapAsChanged) {
  ASSERT_EQ(Save(DataName(1), 1), kOk);
  EXPECT_FALSE(MapIsMarkedAsChanged());
  ASSERT_EQ(Files().UpdateOriginal(), kOk);
  EXPECT_TRUE(MapIsMarkedAsChanged());
  EXPECT_FALSE(MapIsMarkedAsChanged());
}

TEST_F(NameMapTest, AnUpdateOfTheOriginalThatFailsMarksTheMapAsChangedToo) {
  support::FaultyFileSystem disk;
  ASSERT_EQ(Save(DataName(1), 1), kOk);
  disk.FailAt(1, true);
  EXPECT_NE(Files().UpdateOriginal(), kOk);
  disk.FailAt(0, false);
  EXPECT_TRUE(MapIsMarkedAsChanged());
}

// One failure at each file operation of a save in turn: among them are those that hit the map's block alone.
TEST_F(NameMapTest, AFailedSaveOfTheMapClearsTheFlagOnPurpose) {
  support::FaultyFileSystem disk;
  int mapFailures = 0;
  for (int operation = 1; operation <= 4; ++operation) {
    ASSERT_EQ(Save(DataName(50 + operation), 1), kOk);
    AString const name = DataName(1 + operation);
    disk.FailAt(operation, true);
    LibIOReturn const result = Save(name, operation);
    disk.FailAt(0, false);
    if (result == kOk || ContentOf(name) != operation)
      continue;
    ++mapFailures;
    EXPECT_FALSE(Writes([this] { EXPECT_EQ(Files().WriteRealToInternalBlockNameMap(), kOk); }));
    EXPECT_EQ(MapInMemory().count(name), 1u);
    EXPECT_EQ(MapInLibrary().size(), MapInMemory().size() - 1);
    ASSERT_EQ(Save(DataName(100 + operation), 0), kOk);
    EXPECT_EQ(MapInLibrary().size(), MapInMemory().size());
  }
  EXPECT_GT(mapFailures, 0);
}

TEST_F(NameMapTest, TheStoredMapIsThatOfTheMemoryAfterAnyMixOfChanges) {
  for (long version = 0; version < 60; ++version) {
    ASSERT_EQ(Save(DataName(version * 37 % 100, AString::Format(L"a=%d", version % 5)), version), kOk);
    if (version % 7 == 3)
      Files().VariationKeyChanged(AString::Format(L"a=%d", version % 5), AString::Format(L"b=%d", version));
    if (version % 11 == 5)
      Files().DeleteBlocks(Key(1, AString::Format(L"a=%d", version % 4), -1, -1));
    if (version % 13 == 6)
      Files().DeleteBlock(Names().front());
    if (version == 30) {
      ASSERT_EQ(Files().UpdateOriginal(), kOk);
    }
    if (version == 45) {
      ASSERT_EQ(Files().CommitAll(false), kOk);
    }
  }
  ASSERT_EQ(Save(L"last", 1), kOk);
  Pairs expected;
  for (auto const & [name, entry] : MapInMemory())
    expected.emplace_back(name, entry.internalName);
  EXPECT_GT(expected.size(), 10u);
  EXPECT_EQ(MapInLibrary(), expected);
  ASSERT_EQ(Files().CommitAll(false), kOk);
  Reopen();
  EXPECT_EQ(MapInLibrary(), expected);
}

TEST_F(NameMapTest, AChangeWritesAsLittleInALargeLibraryAsInASmallOne) {
  auto const growth = [this](auto const & work) {
    auto const before = Length("d.qsol_priv");
    work();
    return Length("d.qsol_priv") - before;
  };
  long next = 10000;
  auto const save = [&] { ASSERT_EQ(Save(DataName(++next), 1), kOk); };
  auto const rename = [&] {
    Files().VariationKeyChanged(AString::Format(L"v=%d", next), AString::Format(L"v=%d", next + 1));
    ASSERT_EQ(Save(DataName(++next, AString::Format(L"v=%d", next)), 1), kOk);
  };
  auto const remove = [&] { ASSERT_EQ(Files().DeleteBlocks(Key(1, L"NotSet", 2, next)), kOk); };
  for (int i = 0; i < 10; ++i)
    save();
  auto const small = std::array{growth(save), growth(rename), growth(rename), growth(remove)};
  for (int i = 0; i < 500; ++i)
    save();
  auto const large = std::array{growth(save), growth(rename), growth(rename), growth(remove)};
  for (std::size_t i = 0; i < small.size(); ++i)
    EXPECT_LE(large[i], 2 * small[i] + 100) << i;
}
