#include "solutionmanager/store/BlockKeyIndex.h"

#include "basekit/value/variation/VariationText.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>
#include <random>

namespace {

using Key = SolutionVariationKey;
using Map = RealToInternalMap;

std::vector<AString> Names(std::vector<BlockKeyIndex::Place> const & places) {
  std::vector<AString> names;
  for (auto const & at : places)
    names.push_back(at->first);
  return names;
}

/// Keys and patterns of all kinds, over few numbers so that they meet.
class Dice {
public:
  explicit Dice(unsigned seed) : m_engine(seed) {}

  std::size_t Below(std::size_t limit) { return std::uniform_int_distribution<std::size_t>(0, limit - 1)(m_engine); }
  template <class T> T Of(std::vector<T> const & choices) { return choices[Below(choices.size())]; }

  AString Variation() {
    switch (Below(8)) {
    case 0:
      return Of<AString>({L"SetupDefinition", L"setupdefinition", L"SolutionDefinition", L"SOLUTIONDEFINITION"});
    case 1:
      return Of<AString>({L"", L"  ", L";", L"NotSet", L"notset", L"no variation", L"NO VARIATION", L"a=1; a=2"});
    case 2:
      return Of<AString>({L"t=\"FR 4\"", L"T=\"fr 4\"", L"t=\"\\n\"", L"t=\"\\N\"", L"t=1mF", L"t=1MF"});
    default:
      return Pairs();
    }
  }
  Key Stored() { return Key(Of(setups), Variation(), Of(solutions), Of(versions)); }
  Key Pattern() {
    auto const number = [&](std::vector<long> const & from) { return Below(2) ? -1L : Of(from); };
    return Key(number(setups), Below(3) ? Variation() : AString(L"NotSet"), number(solutions), number(versions));
  }

private:
  AString Pairs() {
    AString const a = Of<AString>({L"1", L"1.0", L"1000m", L"1.00000000000000008", L"1.000000000000009",
                                   L"1.00000000000002", L"0.99999999999999489", L"1e0", L"2", L"-1", L"0", L"-0"});
    AString const b = Of<AString>({L"4nH", L"4e-9", L"4.00000000000000001nH", L"4.0000000001nH", L"5nH", L"word"});
    switch (Below(4)) {
    case 0:
      return AString::Format(L"a=%s; b=%s", a, b);
    case 1:
      return AString::Format(L" B = %s ;A=%s", b, a);
    case 2:
      return AString::Format(L"a=%s", a);
    default:
      return AString::Format(L"A=%s;;b=%s;", a, b);
    }
  }

  std::mt19937 m_engine;
  std::vector<long> const setups{-1, 0, 1, 2, 7, std::numeric_limits<long>::max()};
  std::vector<long> const solutions{
      -1, Key::kProfileDataKey, Key::kConvDataKey, 3, 4, std::numeric_limits<long>::min()};
  std::vector<long> const versions{-1, 0, 5, 6, 1000000, std::numeric_limits<long>::max()};
};

std::vector<AString> ByWalk(Map const & map, Key const & pattern) {
  std::vector<AString> names;
  for (auto const & [name, entry] : map)
    if (entry.key.Match(pattern))
      names.push_back(name);
  return names;
}

void ExpectSameAsWalk(Map const & map, BlockKeyIndex const & index, Dice & dice, int patterns) {
  for (int i = 0; i < patterns; ++i) {
    Key const pattern = dice.Pattern();
    auto const expected = ByWalk(map, pattern);
    ASSERT_EQ(Names(index.Matches(pattern)), expected) << testing::PrintToString(pattern.Pack());
    ASSERT_EQ(index.HasMatch(pattern), !expected.empty()) << testing::PrintToString(pattern.Pack());
  }
}

Map::iterator Put(Map & map, Key const & key) { return map.emplace(key.Pack(), SRealToInternalData{key, L"x"}).first; }

} // namespace

TEST(BlockKeyIndex, AnswersAsAWalkOverTheMapDoesInItsOrder) {
  for (unsigned seed = 1; seed <= 5; ++seed) {
    Dice dice(seed);
    Map map;
    for (int i = 0; i < 500; ++i)
      Put(map, dice.Stored());
    ExpectSameAsWalk(map, BlockKeyIndex(map), dice, 250);
  }
}

TEST(BlockKeyIndex, KeepsUpWithEntriesThatComeAndGo) {
  Dice dice(11);
  Map map;
  BlockKeyIndex index(map);
  for (int round = 0; round < 20; ++round) {
    for (int i = 0; i < 40; ++i) {
      Key const key = dice.Stored();
      if (!map.count(key.Pack()))
        index.Insert(Put(map, key));
    }
    for (auto at = map.begin(); at != map.end();) {
      bool const goes = dice.Below(3) == 0;
      if (goes)
        index.Erase(at);
      at = goes ? map.erase(at) : std::next(at);
    }
    ExpectSameAsWalk(map, index, dice, 20);
  }
}

TEST(BlockKeyIndex, FindsWhatIsRareAmongManyWithoutSortingAll) {
  Map map;
  for (long version = 0; version < 3000; ++version)
    Put(map, Key(1, AString::Format(L"a=%d", version), 2 + version % 3, version));
  Put(map, Key(9, L"a=1", 2, 2999));
  BlockKeyIndex const index(map);
  EXPECT_EQ(index.Matches(Key(-1, L"NotSet", -1, 2999)).size(), 2u);
  EXPECT_EQ(index.Matches(Key(9, L"NotSet", -1, -1)).size(), 1u);
  EXPECT_EQ(index.Matches(Key(-1, L"A = 1.0", -1, -1)).size(), 2u);
  EXPECT_EQ(index.Matches(Key(1, L"NotSet", 3, -1)).size(), 1000u);
  EXPECT_EQ(index.Matches(Key()).size(), 3001u);
}

TEST(BlockKeyIndex, NumbersOnTheEdgesOfTheirCellsAreFoundAmongAllVariations) {
  // Each value lies on an edge of its cell: together they would have to be looked for in more places than is sensible.
  AString text;
  for (int i = 0; i < 12; ++i)
    text += AString::Format(L"v%d=1.0000000000072760;", i);
  std::vector<std::uint64_t> places;
  ASSERT_FALSE(VariationText(text).ProbeKeys(places));
  Map map;
  Put(map, Key(1, text, 2, 3));
  Put(map, Key(1, L"a=1", 2, 3));
  EXPECT_EQ(BlockKeyIndex(map).Matches(Key(1, text + L" ", 2, -1)).size(), 1u);
}

TEST(BlockKeyIndex, OfOneVariationItGivesTheVeryTextAlone) {
  Map map;
  for (auto const * text : {L"a=1", L"A=1", L"a=1.0", L"SetupDefinition", L"NotSet"})
    for (long solution : {2L, Key::kConvDataKey, Key::kProfileDataKey})
      Put(map, Key(1, text, solution, 4));
  BlockKeyIndex const index(map);
  for (auto const * text : {L"a=1", L"A=1", L"SetupDefinition", L"NotSet"}) {
    std::vector<AString> expected;
    for (auto const & [name, entry] : map)
      if (entry.key.GetDesignVariationKey() == AString(text))
        expected.push_back(name);
    EXPECT_EQ(Names(index.OfVariation(text)), expected);
    EXPECT_EQ(expected.size(), 3u);
  }
  EXPECT_TRUE(index.OfVariation(L"a=2").empty());
}
