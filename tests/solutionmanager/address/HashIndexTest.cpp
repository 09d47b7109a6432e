#include "solutionmanager/address/HashIndex.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <unordered_map>

namespace {

template <Slots kSlots> std::vector<long> Under(HashIndex<long, kSlots> const & index, std::uint64_t hash) {
  std::vector<long> found;
  index.Find(hash, [&](long value) {
    found.push_back(value);
    return false;
  });
  std::sort(found.begin(), found.end());
  return found;
}

} // namespace

TEST(HashIndex, AnEmptyIndexFindsNothing) {
  HashIndex<long> const index;
  EXPECT_EQ(index.Find(0, [](long) { return true; }), nullptr);
}

TEST(HashIndex, SeveralValuesStandUnderOneHash) {
  HashIndex<long> index;
  for (long value = 0; value < 5; ++value)
    index.Insert(7, value);
  EXPECT_EQ(Under(index, 7), (std::vector<long>{0, 1, 2, 3, 4}));
  EXPECT_TRUE(Under(index, 8).empty());
  *index.Find(7, [](long value) { return value == 3; }) = 30;
  EXPECT_EQ(Under(index, 7), (std::vector<long>{0, 1, 2, 4, 30}));
}

TEST(HashIndex, RoomThatIsMadeBeforehandChangesNothingOfWhatItHolds) {
  HashIndex<long> index;
  for (long value = 0; value < 100; ++value) {
    if (value == 50)
      index.Reserve(1000);
    index.Insert(static_cast<std::uint64_t>(value / 2), value);
  }
  index.Reserve(1);
  EXPECT_EQ(Under(index, 7), (std::vector<long>{14, 15}));
  EXPECT_EQ(Under(index, 49), (std::vector<long>{98, 99}));
}

TEST(HashIndex, NumbersInRunsAreFoundWhateverTheirDistance) {
  for (std::uint64_t const distance : {1u, 7u, 8u, 1024u, 1u << 20}) {
    HashIndex<long, Slots::kRunsOf8> index;
    for (long value = 0; value < 1000; ++value)
      index.Insert(static_cast<std::uint64_t>(value) * distance, value);
    for (long value = 0; value < 1000; ++value)
      ASSERT_EQ(Under(index, static_cast<std::uint64_t>(value) * distance), std::vector<long>{value}) << distance;
    EXPECT_TRUE(Under(index, 1000 * distance).empty());
  }
}

namespace {

template <Slots kSlots> void ExpectAsAnOrdinaryMap() {
  std::mt19937 random(3);
  HashIndex<long, kSlots> index;
  std::unordered_multimap<std::uint64_t, long> plain;
  for (long step = 0; step < 20000; ++step) {
    // Few hashes, zero among them, so that they crowd.
    std::uint64_t const hash = random() % 300;
    auto const at = plain.find(hash);
    if (at != plain.end() && random() % 2 == 0) {
      index.Erase(index.Find(hash, [&](long value) { return value == at->second; }));
      plain.erase(at);
    } else {
      index.Insert(hash, step);
      plain.emplace(hash, step);
    }
  }
  for (std::uint64_t hash = 0; hash < 301; ++hash) {
    std::vector<long> expected;
    for (auto [at, end] = plain.equal_range(hash); at != end; ++at)
      expected.push_back(at->second);
    std::sort(expected.begin(), expected.end());
    ASSERT_EQ(Under(index, hash), expected) << hash;
  }
}

} // namespace

TEST(HashIndex, ItHoldsWhatAnOrdinaryMapHoldsThroughInsertionsAndErasures) {
  ExpectAsAnOrdinaryMap<Slots::kScattered>();
  ExpectAsAnOrdinaryMap<Slots::kRunsOf8>();
}
