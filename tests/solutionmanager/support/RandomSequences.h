#pragma once

#include "tests/solutionmanager/support/StoreOwner.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <random>

namespace support {

/// What random sequences over a store share: an owner over a folder of its own, few variations, few versions.
class RandomSequence {
public:
  explicit RandomSequence(unsigned seed) : m_random(seed) {
    for (long variation = 1; variation <= kVariations; ++variation)
      owner.GetVariationID(TextOf(variation));
  }

  StoreOwner owner;

protected:
  static constexpr long kVariations = 3;
  using Key = std::pair<long, long>; // variation ID, original version

  long Pick(long count) { return std::uniform_int_distribution<long>(0, count - 1)(m_random); }
  long AnyVariation() { return 1 + Pick(kVariations); }
  Key AnyKey() { return {AnyVariation(), 5 + Pick(2)}; }
  static AString TextOf(long variation) { return AString::Format(L"a=%ld", variation); }
  static VariationIDIndex KeyOf(Key const & key) { return VariationIDIndex(TextOf(key.first), key.second, key.first); }

private:
  std::mt19937_64 m_random;
};

/// Plays so many sequences of 30 steps, each from its own seed; STORE_SEQUENCES in the environment asks for more.
template <class Play> void PlaySequences(unsigned sequences) {
  if (char const * const asked = std::getenv("STORE_SEQUENCES"))
    sequences = static_cast<unsigned>(std::strtoul(asked, nullptr, 10));
  for (unsigned seed = 1; seed <= sequences; ++seed) {
    Play play(seed);
    for (int step = 0; step < 30; ++step) {
      play.Step();
      play.Check();
      if (testing::Test::HasFatalFailure()) {
        ADD_FAILURE() << "sequence " << seed << ", step " << step;
        return;
      }
    }
  }
}

} // namespace support
