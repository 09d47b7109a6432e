#include "basekit/io/CBlock.h"
#include "basekit/io/CBlockFuncPtr.h"
#include "basekit/io/CNamed_value_manip.h"
#include "solutionmanager/locations/CMirroredDoubleMapLocationData.h"
#include "tests/solutionmanager/support/StoreOwner.h"
#include "tests/support/AssertWatch.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>
#include <limits>

using io::named;

namespace {

struct DoubleLocationBlocks : testing::Test {
  support::StoreOwner owner;
  CMirroredDoubleMapLocationData store{&owner, L"Store", L"File", L"Path", true};
  VariationIDIndex const a = owner.Key(L"a=1", 5);
  VariationIDIndex const b = owner.Key(L"a=2", 5);
  io::CBlock block{L"Store"};

  void Solve(VariationIDIndex const & key, double value) {
    store.SetData(key, value);
    owner.Put(Working(key, value), "x");
  }
  AString Working(VariationIDIndex const & key, double value) {
    return store.GetRelativePath(key, value, false, false);
  }
  std::vector<AString> Committed(VariationIDIndex const & key) const {
    std::vector<AString> files;
    std::vector<AString> dirs;
    store.GetFilesAndDirsToCopyForExportingVariation(files, dirs, key.GetVariation());
    return files;
  }
  void IDs(std::vector<std::pair<long, double>> const & pairs) {
    io::CBlockFuncPtr line(L"IDDblMap");
    for (auto const & [id, value] : pairs)
      *line << id << value;
    block << line;
  }
  void Versions(long original, long mirrored) {
    io::CBlockFuncPtr line(L"Vmap");
    *line << original << mirrored;
    block << line;
  }
  void Entry(long variation, long version, std::vector<std::pair<long, AString>> const & lines) {
    io::CBlock map(L"DataMap");
    map << named(L"VID", static_cast<long const &>(variation)) << named(L"Ver", static_cast<long const &>(version));
    for (auto const & [id, path] : lines) {
      io::CBlockFuncPtr line(L"File");
      *line << named(L"DblID", static_cast<long const &>(id)) << named(L"Path", path);
      map << line;
    }
    block << map;
  }
  void Read() {
    io::CBlock parent(L"Design");
    parent << block;
    EXPECT_TRUE(store.Read(parent, true));
  }
  AString Written() const {
    io::CBlock parent(L"Design");
    EXPECT_TRUE(store.Write(parent));
    return parent.Pack();
  }
};

} // namespace

TEST_F(DoubleLocationBlocks, WritesVersionsIdentifiersAndABlockForEachEntry) {
  Solve(a, 2.5);
  Solve(a, 1.0);
  EXPECT_EQ(Written(),
            L"Design { Store { Vmap(5, 100) IDDblMap(101, 2.5, 102, 1) DataMap { VID = 1 Ver = 5 "
            L"File(DblID = 102, Path = \"res/V1_100_102\") File(DblID = 101, Path = \"res/V1_100_101\") } } }");
}

TEST_F(DoubleLocationBlocks, EntriesWithoutDataAreNotWrittenAndAloneWriteNoBlock) {
  Solve(a, 1.0);
  Solve(b, 2.0);
  store.CommitMirroredData();
  store.DiscardMirroredData(a);
  EXPECT_EQ(Written(), L"Design { Store { Vmap(5, 100) IDDblMap(101, 1, 102, 2) DataMap { VID = 2 Ver = 5 "
                       L"File(DblID = 102, Path = \"res/V2_5_102\") } } }");
  store.DiscardMirroredData(b);
  EXPECT_EQ(Written(), L"Design {}");
}

TEST_F(DoubleLocationBlocks, AWriteOfOneVariationHasAllIdentifiersAndItsEntryAlone) {
  Solve(a, 1.0);
  Solve(b, 2.0);
  owner.isOnlyOne = true;
  owner.onlyVariation = L"a=2";
  owner.setsWriteMode = true;
  EXPECT_EQ(Written(), L"Design { Store { IDDblMap(101, 1, 102, 2) DataMap { VID = 2 Ver = 5 "
                       L"File(DblID = 102, Path = \"res/V2_100_102\") } } }");
}

TEST_F(DoubleLocationBlocks, AWriteOfOneVariationNamesCommittedLocationsUnlessTheOwnerSaysElse) {
  Solve(a, 1.0);
  owner.isOnlyOne = true;
  owner.onlyVariation = L"a=1";
  EXPECT_EQ(Written(), L"Design { Store { IDDblMap(101, 1) DataMap { VID = 1 Ver = 5 "
                       L"File(DblID = 101, Path = \"res/V1_5_101\") } } }");
  EXPECT_EQ(Working(a, 1.0), L"res/V1_100_101");
}

TEST_F(DoubleLocationBlocks, ASnapshotNamesTheCommittedTextWhereThereIsOne) {
  owner.Put(L"res/V1_5_7", "x");
  store.SetData(a, 1.0, L"res/V1_5_7");
  Solve(a, 1.0);
  Solve(a, 2.0);
  owner.isOnlyOne = true;
  owner.onlyVariation = L"a=1";
  EXPECT_EQ(Written(), L"Design { Store { IDDblMap(7, 1, 101, 2) DataMap { VID = 1 Ver = 5 "
                       L"File(DblID = 7, Path = \"res/V1_5_7\") File(DblID = 101, Path = \"res/V1_5_101\") } } }");
}

TEST_F(DoubleLocationBlocks, WhatWasSavedComesBackInBothViews) {
  Solve(a, 1.0);
  Solve(a, 2.0);
  Solve(b, 1.0);
  store.CommitMirroredData();
  io::CBlock parent(L"Design");
  ASSERT_TRUE(store.Write(parent));
  store = CMirroredDoubleMapLocationData(&owner, L"Store", L"File", L"Path", true);
  ASSERT_TRUE(store.Read(parent, true));
  EXPECT_EQ(Working(a, 1.0), L"res/V1_5_101");
  EXPECT_EQ(Committed(a), (std::vector<AString>{L"res/V1_5_101", L"res/V1_5_102"}));
  EXPECT_EQ(Committed(b), (std::vector<AString>{L"res/V2_5_101"}));
  EXPECT_FALSE(store.NeedWriteVmap());
  EXPECT_EQ(store.GetRelativePath(a, 102L), L"res/V1_5_102");
}

TEST_F(DoubleLocationBlocks, AnUnsavedResultComesBackAsAWorkingOneOnly) {
  owner.Put(L"res/V1_70_7", "x");
  Versions(5, 70);
  IDs({{7, 1.5}});
  Entry(1, 5, {{7, L"res/V1_70_7"}});
  Read();
  EXPECT_EQ(Working(a, 1.5), L"res/V1_70_7");
  EXPECT_TRUE(Committed(a).empty());
}

TEST_F(DoubleLocationBlocks, TheCommittedNameIsAskedForWithTheLatestNumberCutToAWholeOneAsIsMeant) {
  for (AString const path : {L"res/V1_70_7", L"res/V1_70_8", L"res/V1_5_7", L"res/V1_5_8"})
    owner.Put(path, "x");
  Versions(5, 70);
  IDs({{7, 1.5}, {8, 7.9}});
  Entry(1, 5, {{7, L"res/V1_70_7"}, {8, L"res/V1_70_8"}});
  Read();
  // 7.9 was entered last, so all pairs ask for 7, which here is the identifier of another number.
  EXPECT_EQ(Committed(a), (std::vector<AString>{L"res/V1_5_7", L"res/V1_5_7"}));
}

TEST_F(DoubleLocationBlocks, ANumberBeyondAnyWholeOneIsAskedForAsTheLargest) {
  long const most = std::numeric_limits<long>::max();
  AString const path = AString::Format(L"res/V1_5_%ld", most);
  owner.Put(L"res/V1_70_7", "x");
  owner.Put(path, "x");
  Versions(5, 70);
  IDs({{7, 1e300}});
  Entry(1, 5, {{7, L"res/V1_70_7"}});
  Read();
  EXPECT_EQ(Committed(a), (std::vector<AString>{path}));
}

TEST_F(DoubleLocationBlocks, AFileThatIsGoneIsFoundUnderItsCommittedName) {
  owner.Put(L"res/V1_5_7", "x");
  Versions(5, 70);
  IDs({{7, 1.5}, {8, 2.5}});
  Entry(1, 5, {{7, L"res/V1_70_7"}, {8, L"res/V1_70_8"}});
  Read();
  EXPECT_EQ(Working(a, 1.5), L"res/V1_5_7");
  EXPECT_EQ(Committed(a), (std::vector<AString>{L"res/V1_5_7"}));
  EXPECT_FALSE(store.HaveData(a, 2.5));
}

TEST_F(DoubleLocationBlocks, AnEntryWhoseFilesAreAllGoneStaysWithoutData) {
  Versions(5, 70);
  IDs({{7, 1.5}});
  Entry(1, 5, {{7, L"res/V1_70_7"}});
  Read();
  EXPECT_FALSE(store.HaveData());
  std::vector<VariationIDIndex> keys;
  store.ListValidKeys(keys);
  EXPECT_EQ(keys, (std::vector<VariationIDIndex>{a}));
}

TEST_F(DoubleLocationBlocks, AnUnknownIdentifierIsReportedAndItsLineDropped) {
  owner.Put(L"res/V1_5_9", "x");
  IDs({{7, 1.5}});
  Entry(1, 5, {{9, L"res/V1_5_9"}});
  support::AssertWatch::Expect("dblIter != mIDDoubleMap.end()");
  Read();
  EXPECT_FALSE(store.HaveData());
}

TEST_F(DoubleLocationBlocks, OfEqualNumbersTheFirstIdentifierCounts) {
  IDs({{7, 1.5}, {8, 1.5 + 1e-13}});
  Read();
  EXPECT_EQ(store.GetRelativePath(a, 1.5, true, false), L"res/V1_100_7");
  double value = 0.0;
  EXPECT_TRUE(store.GetDoubleValueByID(8, value));
}

TEST_F(DoubleLocationBlocks, AnIdentifierOfNoNumberIsRefused) {
  IDs({{7, std::numeric_limits<double>::quiet_NaN()}, {8, 2.0}});
  support::AssertWatch::Expect("!std::isnan(value)");
  Read();
  double value = 0.0;
  EXPECT_FALSE(store.GetDoubleValueByID(7, value));
  EXPECT_TRUE(store.GetDoubleValueByID(8, value));
}

TEST_F(DoubleLocationBlocks, NamesOfEntriesAndLinesAreNotLookedAt) {
  owner.Put(L"res/V1_5_7", "x");
  IDs({{7, 1.5}});
  io::CBlock map(L"Anything");
  io::CBlockFuncPtr line(L"Else");
  *line << named(L"DblID", 7L) << named(L"Path", L"res/V1_5_7");
  map << named(L"VID", 1L) << named(L"Ver", 5L) << line;
  block << map;
  Read();
  EXPECT_EQ(Working(a, 1.5), L"res/V1_5_7");
}

TEST_F(DoubleLocationBlocks, LocationsThatLeadOutOfTheFolderAreRefusedAndNeverTouched) {
  auto const outside = owner.PathOf(L"") / ".." / "outside_of_the_numbers";
  AString const name = L"../outside_of_the_numbers";
  owner.Put(name, "precious");
  IDs({{7, 1.5}});
  Entry(1, 5, {{7, name}, {7, L""}, {7, L"/etc/hostname"}});
  Read();
  EXPECT_FALSE(store.HaveData());
  store.SetData(a, 1.5, name);
  EXPECT_FALSE(store.HaveData());
  store.ClearAllData();
  EXPECT_EQ(owner.Content(name), "precious");
  for (auto const & report : support::AssertWatch::Take())
    EXPECT_EQ(report, "!\"A location leads out of the results folder\"");
  std::filesystem::remove(outside);
}

TEST_F(DoubleLocationBlocks, AnEntryOfAVersionOutOfReachLeavesNoTrace) {
  Entry(1, std::numeric_limits<long>::max(), {});
  support::AssertWatch::Expect("isWithinReach");
  Read();
  std::vector<VariationIDIndex> keys;
  store.ListValidKeys(keys);
  EXPECT_TRUE(keys.empty());
}

TEST_F(DoubleLocationBlocks, AnIdentifierOfTwoNumbersIsThatOfTheFirst) {
  IDs({{7, 1.5}, {7, 2.5}});
  Read();
  Solve(a, 1.5);
  Solve(a, 2.5);
  EXPECT_EQ(Working(a, 1.5), L"res/V1_100_7");
  EXPECT_EQ(Working(a, 2.5), L"res/V1_100_101");
}

TEST_F(DoubleLocationBlocks, EntriesOfAVariationThatTheOwnerDoesNotKnowArePassedOver) {
  owner.Put(L"res/V77_5_7", "x");
  IDs({{7, 1.5}});
  Entry(77, 5, {{7, L"res/V77_5_7"}});
  support::AssertWatch::Expect("isKnown");
  Read();
  EXPECT_FALSE(store.HaveData());
}

TEST_F(DoubleLocationBlocks, AMissingFileWhoseNameCantBeParsedLeavesNoTrace) {
  IDs({{7, 1.5}});
  Entry(1, 5, {{7, L"gone.qsol"}});
  Read();
  EXPECT_FALSE(store.HaveData());
}

TEST_F(DoubleLocationBlocks, TheLatestNumberIsThatOfTheLastLineAlsoWhenItsNumberHasALocationAsIsMeant) {
  for (AString const path : {L"res/V1_70_7", L"res/V1_70_8", L"res/V1_70_9", L"res/V1_5_3"})
    owner.Put(path, "x");
  Versions(5, 70);
  IDs({{7, 3.5}, {8, 9.5}, {9, 3.5}});
  Entry(1, 5, {{7, L"res/V1_70_7"}, {8, L"res/V1_70_8"}, {9, L"res/V1_70_9"}});
  Read();
  EXPECT_EQ(Committed(a), (std::vector<AString>{L"res/V1_5_3", L"res/V1_5_3"}));
}

TEST_F(DoubleLocationBlocks, InfinitiesComeBack) {
  double const infinity = std::numeric_limits<double>::infinity();
  Solve(a, infinity);
  Solve(a, -infinity);
  store.CommitMirroredData();
  io::CBlock parent(L"Design");
  ASSERT_TRUE(store.Write(parent));
  io::CBlock again(L"Design");
  ASSERT_TRUE(again.Unpack(parent.Pack()));
  store = CMirroredDoubleMapLocationData(&owner, L"Store", L"File", L"Path", true);
  ASSERT_TRUE(store.Read(again, true));
  EXPECT_EQ(Working(a, infinity), L"res/V1_5_101");
  EXPECT_EQ(Working(a, -infinity), L"res/V1_5_102");
}

TEST_F(DoubleLocationBlocks, ASnapshotOfAllVariationsAsksForTheVariationThatTheOwnerNamedWhichIsNoneAsIsMeant) {
  Solve(a, 1.0);
  store.CommitMirroredData();
  Solve(a, 1.0);
  owner.setsWriteMode = true;
  owner.isSnapshot = true;
  owner.keepsWorkingLocations = false;
  EXPECT_EQ(Written(), L"Design { Store { Vmap(5, 100) IDDblMap(101, 1) DataMap { VID = 1 Ver = 5 "
                       L"File(DblID = 101, Path = \"res/V-1_5_101\") } } }");
}
