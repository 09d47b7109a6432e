#include "basekit/io/CBlock.h"
#include "basekit/io/CBlockFuncPtr.h"
#include "basekit/io/CNamed_value_manip.h"
#include "solutionmanager/locations/CMirroredData.h"
#include "tests/solutionmanager/support/StoreOwner.h"
#include "tests/support/AssertWatch.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>
#include <limits>

using support::AssertWatch;

namespace {

struct Owner : support::StoreOwner {
  std::vector<long> script;
  std::size_t asked = 0;
  long GetNewID() override { return asked < script.size() ? script[asked++] : (++asked, nextID++); }
};

struct VersionMap : testing::Test {
  Owner owner;
  CMirroredData<long> store{&owner, L"Store", L"Entry", L"Datum"};

  io::CBlock Block(io::CBlockFuncPtr const & line) const {
    io::CBlock block(L"Store");
    block << line;
    io::CBlock parent(L"Design");
    parent << block;
    return parent;
  }
};

} // namespace

TEST_F(VersionMap, ANumberThatIsMirroredAlreadyStaysAndAddsNothing) {
  long const mirrored = store.GetMirroredVersion(5);
  EXPECT_EQ(mirrored, 100);
  EXPECT_EQ(store.GetMirroredVersion(mirrored), mirrored);
  EXPECT_EQ(store.GetMirroredVersion(5), mirrored);
  EXPECT_EQ(owner.asked, 1u);
}

TEST_F(VersionMap, AnOriginalIsItsOwnOriginal) {
  store.GetMirroredVersion(5);
  EXPECT_EQ(store.GetOriginalVersion(5), 5);
}

TEST_F(VersionMap, EveryOriginalComesBackFromItsMirroredNumber) {
  for (long version = id::invalidID; version < 40; ++version)
    EXPECT_EQ(store.GetOriginalVersion(store.GetMirroredVersion(version)), version);
}

TEST_F(VersionMap, AnUnknownVersionHasNoOriginal) { EXPECT_EQ(store.GetOriginalVersion(77), id::invalidID); }

TEST_F(VersionMap, ThrowsFreshNumbersAwayThatAreNotAboveTheOriginal) {
  owner.script = {3, 7, 8, 9};
  EXPECT_EQ(store.GetMirroredVersion(7), 8);
  EXPECT_EQ(owner.asked, 3u);
}

TEST_F(VersionMap, BelowTheInvalidNumberAllVersionsShareIt) {
  EXPECT_EQ(store.GetMirroredVersion(-7), id::invalidID);
  EXPECT_EQ(store.GetMirroredVersion(-9), id::invalidID);
  EXPECT_EQ(owner.asked, 0u);
  EXPECT_EQ(store.GetOriginalVersion(id::invalidID), -9);
}

TEST_F(VersionMap, AskingAConstQueryGrowsTheMapOnPurpose) {
  CMirroredData<long> const & asked = store;
  EXPECT_FALSE(asked.HaveData(owner.Key(L"a=1", 5)));
  EXPECT_EQ(owner.asked, 1u);
  EXPECT_EQ(store.GetMirroredVersion(5), 100);
  EXPECT_EQ(owner.asked, 1u);
}

TEST_F(VersionMap, OfTwoOriginalsOfOneNumberTheFirstInOrderCounts) {
  // Only below the invalid number can there be two.
  io::CBlockFuncPtr line(L"Vmap");
  *line << -4L << id::invalidID << -9L << id::invalidID << id::invalidID << 50L;
  ASSERT_TRUE(store.Read(Block(line), true));
  EXPECT_EQ(store.GetMirroredVersion(-4), id::invalidID);
  EXPECT_EQ(store.GetMirroredVersion(id::invalidID), 50);
  io::CBlockFuncPtr other(L"Vmap");
  *other << -4L << id::invalidID << -9L << id::invalidID;
  CMirroredData<long> second(&owner, L"Store", L"Entry", L"Datum");
  ASSERT_TRUE(second.Read(Block(other), true));
  EXPECT_EQ(second.GetOriginalVersion(id::invalidID), -9);
}

TEST_F(VersionMap, PairsThatNoStoreMadeAreRefused) {
  io::CBlockFuncPtr line(L"Vmap");
  *line << 5L << 5L << 8L << 7L << 10L << 70L << 11L << 70L << 70L << 71L << 12L << 10L << 20L << 21L;
  AssertWatch::Expect("isTaken");
  ASSERT_TRUE(store.Read(Block(line), true));
  EXPECT_EQ(store.GetMirroredVersion(10), 70);
  EXPECT_EQ(store.GetMirroredVersion(20), 21);
  for (long const refused : {5L, 8L, 11L, 12L})
    EXPECT_GE(store.GetMirroredVersion(refused), 100) << refused;
  EXPECT_EQ(store.GetOriginalVersion(70), 10);
}

TEST_F(VersionMap, AnOriginalThatIsKnownKeepsItsNumberOnReading) {
  EXPECT_EQ(store.GetMirroredVersion(5), 100);
  io::CBlockFuncPtr line(L"Vmap");
  *line << 5L << 60L << 6L << 61L << 7L;
  ASSERT_TRUE(store.Read(Block(line), true));
  EXPECT_EQ(store.GetMirroredVersion(5), 100);
  EXPECT_EQ(store.GetMirroredVersion(6), 61);
  // The last number had no partner.
  EXPECT_EQ(store.GetMirroredVersion(7), 101);
}

TEST_F(VersionMap, AVersionThatNoFreshNumberReachesIsRefused) {
  AssertWatch::Expect("isWithinReach");
  EXPECT_EQ(store.GetMirroredVersion(std::numeric_limits<long>::max()), id::invalidID);
  EXPECT_EQ(store.GetMirroredVersion(1L << 60), id::invalidID);
  auto const asked = owner.asked;
  EXPECT_LT(asked, 10u);
  // Nobody asks again.
  EXPECT_EQ(store.GetMirroredVersion(1L << 60), id::invalidID);
  EXPECT_EQ(owner.asked, asked);
  EXPECT_EQ(store.GetOriginalVersion(std::numeric_limits<long>::max()), id::invalidID);
}

TEST_F(VersionMap, TheVersionsOfOneFileTogetherReachNoFartherThanOne) {
  io::CBlock block(L"Store");
  for (long line = 1; line <= 1000; ++line) {
    io::CBlockFuncPtr entry(L"Entry");
    long const version = line * 1000000;
    *entry << io::named(L"VID", 1L) << io::named(L"Ver", static_cast<long const &>(version)) << io::named(L"Datum", 1L);
    block << entry;
  }
  owner.Key(L"a=1", 5);
  io::CBlock parent(L"Design");
  parent << block;
  AssertWatch::Expect("isWithinReach");
  ASSERT_TRUE(store.Read(parent, true));
  EXPECT_TRUE(store.HaveData(1000000));
  EXPECT_LT(owner.asked, 1100000u);
  // A later version is not held to what the file used up.
  EXPECT_GT(store.GetMirroredVersion(2000000), 2000000);
}

TEST_F(VersionMap, ACopyGoesItsOwnWay) {
  store.GetMirroredVersion(5);
  CMirroredData<long> copy(store);
  EXPECT_EQ(copy.GetMirroredVersion(6), 101);
  EXPECT_EQ(copy.GetOriginalVersion(100), 5);
  EXPECT_EQ(store.GetOriginalVersion(101), id::invalidID);
  store = copy;
  EXPECT_EQ(store.GetOriginalVersion(101), 6);
}

TEST_F(VersionMap, AStoreWithoutDataWritesNothing) {
  io::CBlock parent(L"Design");
  EXPECT_TRUE(store.Write(parent));
  EXPECT_TRUE(parent.Empty());
}

TEST_F(VersionMap, AMissingBlockIsAFailureOnlyWhenItMustExist) {
  io::CBlock const parent(L"Design");
  EXPECT_TRUE(store.Read(parent, false));
  EXPECT_FALSE(store.Read(parent, true));
}

TEST_F(VersionMap, ALineWithTheInvalidIDIsReadInTheOlderForm) {
  io::CBlockFuncPtr line(L"Entry");
  *line << io::named(L"VID", static_cast<long const &>(id::invalidID)) << io::named(L"Variation", L"a=1")
        << io::named(L"Version", 5L) << io::named(L"Datum", 17L);
  ASSERT_TRUE(store.Read(Block(line), true));
  EXPECT_EQ(store.GetData(owner.Key(L"a=1", 5)), 17);
}

TEST_F(VersionMap, ALineWithoutAnIDIsReadInTheOlderForm) {
  io::CBlockFuncPtr line(L"Entry");
  *line << io::named(L"Variation", L"a=1") << io::named(L"Version", 5L) << io::named(L"Datum", 17L);
  ASSERT_TRUE(store.Read(Block(line), true));
  EXPECT_EQ(store.GetData(owner.Key(L"a=1", 5)), 17);
}

TEST_F(VersionMap, AnotherKeywordNamesTheLines) {
  store.SetData(owner.Key(L"a=1", 5), 3);
  store.SetFunctionKeyword(L"Other");
  io::CBlock parent(L"Design");
  ASSERT_TRUE(store.Write(parent));
  EXPECT_EQ(parent.Pack(), L"Design { Store { Other(VID = 1, Ver = 5, Datum = 3) } }");
}

TEST_F(VersionMap, TheBaseExportsNothing) {
  store.SetData(owner.Key(L"a=1", 5), 3);
  std::map<AString, AString> renames;
  std::vector<AString> files;
  std::vector<AString> dirs;
  EXPECT_TRUE(store.GetFilesAndDirsToCopyForExportingVariation(renames, files, dirs, L"a=1"));
  EXPECT_TRUE(store.GetFilesAndDirsToCopyForExportingVariation(files, dirs, L"a=1"));
  EXPECT_TRUE(renames.empty() && files.empty() && dirs.empty());
}
