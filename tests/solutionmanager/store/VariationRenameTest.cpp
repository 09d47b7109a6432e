// A design variation gets a new text.

#include "tests/solutionmanager/support/StoreTest.h"

#include <random>

class VariationRenameTest : public support::StoreTest {
protected:
  /// What a rename is to make of a map: a new one filled in the order of the old.
  static SolutionFileManager::NameMap Renamed(SolutionFileManager::NameMap const & map, AString const & oldKey,
                                              AString const & newKey) {
    SolutionFileManager::NameMap renamed;
    for (auto const & [name, entry] : map) {
      bool const moves = entry.key.GetDesignVariationKey().Compare(oldKey) == 0;
      SRealToInternalData copy = entry;
      if (moves)
        copy.key.SetDesignVariationKey(newKey);
      renamed.emplace(moves ? copy.key.Pack() : name, copy);
    }
    return renamed;
  }
  static Pairs PairsOf(SolutionFileManager::NameMap const & map) {
    Pairs pairs;
    for (auto const & [name, entry] : map)
      pairs.emplace_back(name, entry.internalName);
    return pairs;
  }
};

TEST_F(VariationRenameTest, BlocksOfAllKindsOfTheVariationMove) {
  for (long const solution : {2L, Key::kConvDataKey, Key::kProfileDataKey})
    ASSERT_EQ(Save(Key(1, L"a=1", solution, 4).Pack(), 10 + solution), kOk);
  Files().VariationKeyChanged(L"a=1", L"b=1");
  for (long const solution : {2L, Key::kConvDataKey, Key::kProfileDataKey})
    EXPECT_EQ(ContentOf(Key(1, L"b=1", solution, 4).Pack()), 10 + solution);
  EXPECT_EQ(Names().size(), 3u);
  EXPECT_EQ(NamesInLibrary(), Names());
}

TEST_F(VariationRenameTest, TheTextIsComparedAsItStands) {
  ASSERT_EQ(Save(DataName(1, L"a=1"), 1), kOk);
  for (auto const * other : {L"A=1", L"a=1.0", L" a=1", L"NotSet"})
    Files().VariationKeyChanged(other, L"b=1");
  EXPECT_EQ(Names(), std::vector<AString>{DataName(1, L"a=1")});
}

TEST_F(VariationRenameTest, ATextThatNoEntryHasWritesNothing) {
  ASSERT_EQ(Save(DataName(1), 1), kOk);
  Files().ExtendNameMap(DataName(2), L"SolutionBlock2");
  EXPECT_FALSE(Writes([this] { Files().VariationKeyChanged(L"no such text", L"b=1"); }));
}

TEST_F(VariationRenameTest, ARenameLoadsNoMapOnPurpose) {
  Commit({1});
  EXPECT_FALSE(Writes([this] { Reopen().VariationKeyChanged(L"a=1", L"b=1"); }));
  EXPECT_TRUE(MapInMemory().empty());
  EXPECT_EQ(Names(), std::vector<AString>{DataName(1, L"a=1")});
}

TEST_F(VariationRenameTest, OntoANameThatStoodLaterInTheMapTheMovedEntryWinsAndTheOtherIsLostOnPurpose) {
  ASSERT_EQ(Save(DataName(1, L"a=1"), 1), kOk);
  ASSERT_EQ(Save(DataName(1, L"b=1"), 2), kOk);
  Files().VariationKeyChanged(L"a=1", L"b=1");
  EXPECT_EQ(Names(), std::vector<AString>{DataName(1, L"b=1")});
  EXPECT_EQ(ContentOf(DataName(1, L"b=1")), 1);
}

TEST_F(VariationRenameTest, OntoANameThatStoodBeforeInTheMapTheMovedEntryIsLostOnPurpose) {
  ASSERT_EQ(Save(DataName(1, L"a=1"), 1), kOk);
  ASSERT_EQ(Save(DataName(1, L"b=1"), 2), kOk);
  Files().VariationKeyChanged(L"b=1", L"a=1");
  EXPECT_EQ(Names(), std::vector<AString>{DataName(1, L"a=1")});
  EXPECT_EQ(ContentOf(DataName(1, L"a=1")), 1);
}

TEST_F(VariationRenameTest, ANameWrittenOtherwiseBecomesThePackedOne) {
  AString const other(L"SolutionKey( VersionID=4, Solution=2, Instance=\"a=1\", SimSetup=1 )");
  ASSERT_EQ(Save(other, 5), kOk);
  Files().VariationKeyChanged(L"a=1", L"a=1");
  EXPECT_EQ(Names(), std::vector<AString>{DataName(4, L"a=1")});
  EXPECT_EQ(ContentOf(DataName(4, L"a=1")), 5);
}

TEST_F(VariationRenameTest, TheMapIsAsIfFilledAnewInItsFormerOrder) {
  std::mt19937 engine(3);
  std::vector<AString> const texts{L"a=1", L"b=1", L"A=1", L"SetupDefinition", L"NotSet", L""};
  auto const any = [&] { return texts[engine() % texts.size()]; };
  Unattached();
  for (int round = 0; round < 200; ++round) {
    for (int i = 0; i < 4; ++i) {
      Key const key(static_cast<long>(engine() % 2), any(), 2, static_cast<long>(engine() % 3));
      AString const name = engine() % 4 ? key.Pack() : AString(L" ") + key.Pack();
      Files().ExtendNameMap(name, AString::Format(L"SolutionBlock%d", 10 * round + i));
    }
    auto const before = MapInMemory();
    AString const oldKey = any(), newKey = any();
    Files().VariationKeyChanged(oldKey, newKey);
    ASSERT_EQ(PairsOf(MapInMemory()), PairsOf(Renamed(before, oldKey, newKey)));
    std::list<AString> found, expected;
    Files().GetKeyList(Key(1, newKey, 2, -1), found);
    for (auto const & [name, entry] : MapInMemory())
      if (entry.key.Match(Key(1, newKey, 2, -1)))
        expected.push_back(entry.internalName);
    ASSERT_EQ(found, expected);
  }
}
