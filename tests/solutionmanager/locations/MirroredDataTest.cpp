#include "basekit/io/CBlock.h"
#include "basekit/io/CBlockFuncPtr.h"
#include "basekit/io/CNamed_value_manip.h"
#include "solutionmanager/locations/CMirroredBooleanData.h"
#include "tests/solutionmanager/support/StoreOwner.h"
#include "tests/support/AssertWatch.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>
#include <limits>

using io::named;

namespace {

struct MirroredData : testing::Test {
  support::StoreOwner owner;
  CMirroredData<long> store{&owner, L"Store", L"Entry", L"Datum"};
  VariationIDIndex const a = owner.Key(L"a=1", 5);
  VariationIDIndex const b = owner.Key(L"a=2", 5);

  AString Written() const {
    io::CBlock parent(L"Design");
    EXPECT_TRUE(store.Write(parent));
    return parent.Pack();
  }
  void Line(io::CBlock & block, long variation, long version, long value, bool hasValue = true) const {
    io::CBlockFuncPtr line(L"Entry");
    *line << named(L"VID", static_cast<long const &>(variation)) << named(L"Ver", static_cast<long const &>(version));
    if (hasValue)
      *line << named(L"Datum", static_cast<long const &>(value));
    block << line;
  }
};

/// Tells which of its operations were called through the table.
struct Watching : CMirroredData<long> {
  using CMirroredData<long>::CMirroredData;
  using CMirroredData<long>::DiscardMirroredData;
  std::string calls;
  void ClearMapContents() override { calls += "empty "; }
  void ClearNonCurrentData() override { calls += "noncurrent "; }
  bool DiscardMirroredData(AString const &) override { return (calls += "variation "), false; }
  bool DiscardMirroredData() override { return (calls += "all "), false; }
};

} // namespace

TEST_F(MirroredData, AKeyThatWasNeverSetHasNoValue) {
  EXPECT_EQ(store.GetData(a), -1);
  EXPECT_FALSE(store.HaveData(a));
  CMirroredBooleanData const flags(&owner, L"Flags", L"Flag", L"On");
  EXPECT_FALSE(flags.GetData(a));
}

TEST_F(MirroredData, TheSecondValueOfAKeyStays) {
  store.SetData(a, 3);
  store.SetData(a, 4);
  EXPECT_EQ(store.GetData(a), 4);
  EXPECT_TRUE(store.HaveData(a));
  EXPECT_TRUE(store.HaveData(5));
  EXPECT_FALSE(store.HaveData(100));
  EXPECT_TRUE(store.HaveData());
}

TEST_F(MirroredData, EitherNumberOfAVersionNamesTheEntry) {
  store.SetData(a, 3);
  EXPECT_EQ(store.GetData(owner.Key(L"a=1", 100)), 3);
}

TEST_F(MirroredData, ADiscardedChangeIsGoneUntilReinitBringsTheSavedValueBack) {
  store.SetData(a, 3);
  store.CommitMirroredData();
  store.SetData(a, 4);
  EXPECT_TRUE(store.DiscardMirroredData(a));
  EXPECT_EQ(store.GetData(a), -1);
  EXPECT_FALSE(store.HaveData());
  store.ReinitMirroredData();
  EXPECT_EQ(store.GetData(a), 3);
}

TEST_F(MirroredData, DiscardingWhatIsNotThereTellsSo) {
  EXPECT_FALSE(store.DiscardMirroredData(a));
  EXPECT_FALSE(store.DiscardMirroredData(L"a=1"));
  EXPECT_FALSE(store.DiscardMirroredData());
  store.SetData(a, 1);
  store.SetData(b, 2);
  EXPECT_FALSE(store.DiscardMirroredData(L"a=3"));
  EXPECT_TRUE(store.DiscardMirroredData(L"a=2"));
  EXPECT_TRUE(store.DiscardMirroredData());
}

TEST_F(MirroredData, VariationsAreCountedOncePerKeyOnTopOfWhatIsThere) {
  store.SetData(a, 1);
  store.SetData(owner.Key(L"a=1", 6), 1);
  store.SetData(b, 1);
  std::map<AString, int> counts{{L"a=2", 10}};
  store.ListVariations(counts);
  EXPECT_EQ(counts, (std::map<AString, int>{{L"a=1", 2}, {L"a=2", 11}}));
}

TEST_F(MirroredData, ListedKeysBearOriginalVersions) {
  store.SetData(b, 1);
  store.SetData(a, 1);
  std::vector<VariationIDIndex> keys{b, b, b};
  store.ListValidKeys(keys);
  EXPECT_EQ(keys, (std::vector<VariationIDIndex>{a, b}));
}

TEST_F(MirroredData, ASaveKeepsTheCurrentVersionAlone) {
  store.SetData(owner.Key(L"a=1", 4), 40);
  store.SetData(a, 50);
  store.CommitMirroredData();
  EXPECT_EQ(store.GetData(a), 50);
  EXPECT_EQ(store.GetData(owner.Key(L"a=1", 4)), -1);
  store.ReinitMirroredData();
  EXPECT_EQ(store.GetData(a), 50);
  EXPECT_FALSE(store.HaveData(4));
}

TEST_F(MirroredData, AWorkingEntryUnderThePlainCurrentNumberStaysToo) {
  // 100 is the mirrored number of 4, and then becomes the current version.
  store.SetData(owner.Key(L"a=1", 4), 40);
  owner.current = 100;
  store.ClearNonCurrentData();
  EXPECT_TRUE(store.HaveData(4));
}

TEST_F(MirroredData, VersionsThatNoMirroredNumberReachesHoldNothing) {
  long const huge = std::numeric_limits<long>::max();
  owner.current = huge;
  support::AssertWatch::Expect("isWithinReach");
  store.SetData(owner.Key(L"a=1", huge), 3);
  store.SetData(owner.Key(L"a=1", id::invalidID), 4);
  EXPECT_FALSE(store.HaveData(owner.Key(L"a=1", huge)) || store.HaveData(owner.Key(L"a=1", huge - 1)));
  EXPECT_EQ(store.GetData(owner.Key(L"a=1", huge)), -1);
  EXPECT_FALSE(store.DiscardMirroredData(owner.Key(L"a=1", huge)));
  EXPECT_EQ(store.GetData(owner.Key(L"a=1", id::invalidID)), 4);
  store.CommitMirroredData();
  EXPECT_FALSE(store.HaveData());
}

TEST_F(MirroredData, LinesOfAVariationThatTheOwnerDoesNotKnowArePassedOver) {
  io::CBlock block(L"Store");
  for (long const variation : {77L, 78L}) {
    io::CBlockFuncPtr line(L"Entry");
    *line << io::named(L"VID", static_cast<long const &>(variation)) << io::named(L"Ver", 5L)
          << io::named(L"Datum", static_cast<long const &>(variation));
    block << line;
  }
  io::CBlock parent(L"Design");
  parent << block;
  support::AssertWatch::Expect("isKnown");
  EXPECT_TRUE(store.Read(parent, true));
  EXPECT_FALSE(store.HaveData());
}

TEST_F(MirroredData, TheOneVariationOfADesignWithoutVariablesHasNoTextAndIsKnown) {
  store.SetData(owner.Key(L"", 5), 3);
  io::CBlock parent(L"Design");
  ASSERT_TRUE(store.Write(parent));
  CMirroredData<long> again(&owner, L"Store", L"Entry", L"Datum");
  ASSERT_TRUE(again.Read(parent, true));
  EXPECT_EQ(again.GetData(owner.Key(L"", 5)), 3);
}

TEST_F(MirroredData, DeletingAVariationEmptiesBothViews) {
  store.SetData(a, 1);
  store.SetData(b, 2);
  store.CommitMirroredData();
  store.ClearVariationData(L"a=1");
  store.ReinitMirroredData();
  EXPECT_FALSE(store.HaveData(a));
  EXPECT_TRUE(store.HaveData(b));
}

TEST_F(MirroredData, ClearingEmptiesBothViewsAndKeepsTheVersions) {
  store.SetData(a, 1);
  store.CommitMirroredData();
  store.ClearAllData();
  store.ReinitMirroredData();
  EXPECT_FALSE(store.HaveData());
  EXPECT_EQ(store.GetOriginalVersion(100), 5);
}

TEST_F(MirroredData, OperationsCallEachOtherThroughTheTable) {
  Watching watched(&owner, L"Store", L"Entry", L"Datum");
  watched.ClearAllData();
  watched.ClearVariationData(L"a=1");
  watched.CommitMirroredData();
  watched.ReinitMirroredData();
  EXPECT_EQ(watched.calls, "empty variation noncurrent all ");
}

TEST_F(MirroredData, WritesOneLineForEachWorkingEntryAndNoVersions) {
  store.SetData(b, 2);
  store.SetData(a, 1);
  EXPECT_EQ(Written(), L"Design { Store { Entry(VID = 1, Ver = 5, Datum = 1) Entry(VID = 2, Ver = 5, Datum = 2) } }");
  EXPECT_FALSE(store.NeedWriteVmap());
}

TEST_F(MirroredData, AWriteOfOneVariationHasAtMostOneLine) {
  store.SetData(a, 1);
  store.SetData(owner.Key(L"a=1", 4), 4);
  store.SetData(b, 2);
  owner.isOnlyOne = true;
  owner.onlyVariation = L"a=1";
  EXPECT_EQ(Written(), L"Design { Store { Entry(VID = 1, Ver = 5, Datum = 1) } }");
  owner.onlyVariation = L"a=9";
  EXPECT_EQ(Written(), L"Design { Store {} }");
}

TEST_F(MirroredData, WhatWasWrittenFillsBothViews) {
  store.SetData(a, 1);
  store.SetData(b, 2);
  io::CBlock parent(L"Design");
  ASSERT_TRUE(store.Write(parent));
  CMirroredData<long> again(&owner, L"Store", L"Entry", L"Datum");
  ASSERT_TRUE(again.Read(parent, true));
  EXPECT_EQ(again.GetData(a), 1);
  EXPECT_EQ(again.GetData(b), 2);
  again.DiscardMirroredData();
  again.ReinitMirroredData();
  EXPECT_EQ(again.GetData(b), 2);
}

TEST_F(MirroredData, OfTwoLinesForOneKeyTheFirstCounts) {
  io::CBlock block(L"Store");
  Line(block, 1, 5, 7);
  Line(block, 1, 5, 8);
  ASSERT_TRUE(store.ReadData(block));
  EXPECT_EQ(store.GetData(a), 7);
  store.ReinitMirroredData();
  EXPECT_EQ(store.GetData(a), 7);
}

TEST_F(MirroredData, ALineWithoutAValueTakesThatOfTheLineBeforeItOnPurpose) {
  io::CBlock block(L"Store");
  Line(block, 1, 5, 7);
  Line(block, 2, 5, 0, false);
  ASSERT_TRUE(store.ReadData(block));
  EXPECT_EQ(store.GetData(b), 7);
}

TEST_F(MirroredData, SkipsWhatIsNoLineOfItsOwn) {
  io::CBlock block(L"Store");
  block << io::CBlock(L"Entry") << named(L"Entry", 3L);
  io::CBlockFuncPtr other(L"Other");
  block << other;
  ASSERT_TRUE(store.ReadData(block));
  EXPECT_FALSE(store.HaveData());
}

TEST_F(MirroredData, ALineOfAVersionOutOfReachLeavesNoTrace) {
  io::CBlock block(L"Store");
  Line(block, 1, std::numeric_limits<long>::max(), 7);
  Line(block, 2, 5, 8);
  support::AssertWatch::Expect("isWithinReach");
  ASSERT_TRUE(store.ReadData(block));
  EXPECT_EQ(store.GetData(b), 8);
  store.ReinitMirroredData();
  EXPECT_FALSE(store.HaveData(std::numeric_limits<long>::max()));
}

TEST_F(MirroredData, AFlagIsTrueForAStoredOneAlone) {
  CMirroredBooleanData flags(&owner, L"Flags", L"Flag", L"On");
  flags.SetData(a, true);
  EXPECT_TRUE(flags.GetData(a));
  flags.SetData(a, false);
  EXPECT_FALSE(flags.GetData(a));
  EXPECT_TRUE(flags.HaveData(a));
  flags.CMirroredData<long>::SetData(a, 2);
  EXPECT_FALSE(flags.GetData(a));
  flags.SetData(b, true);
  io::CBlock parent(L"Design");
  ASSERT_TRUE(flags.Write(parent));
  EXPECT_EQ(parent.Pack(), L"Design { Flags { Flag(VID = 1, Ver = 5, On = 2) Flag(VID = 2, Ver = 5, On = 1) } }");
  CMirroredBooleanData const copy(flags);
  EXPECT_TRUE(copy.GetData(b));
}
