#include "tests/basekit/value/ranged/RangedSupport.h"

using namespace support;

namespace {

// A signal of unit intervals of length 1: a level each, straight edges with their middles on the boundaries, moved by
// the jitters in turn.
struct Signal {
  Signal(Numbers const & levels, double edgeTime, Numbers const & jitters = {0}) {
    x.push_back(0);
    y.push_back(levels.front());
    std::size_t edge = 0;
    for (std::size_t k = 1; k < levels.size(); ++k) {
      if (levels[k] == levels[k - 1])
        continue;
      double const middle = static_cast<double>(k) + jitters[edge++ % jitters.size()];
      x.insert(x.end(), {middle - edgeTime / 2, middle + edgeTime / 2});
      y.insert(y.end(), {levels[k - 1], levels[k]});
    }
    x.push_back(static_cast<double>(levels.size()));
    y.push_back(levels.back());
  }
  double Of(std::wstring_view name, Numbers const & parameters) const { return support::Of(name, x, y, parameters); }

  Numbers x;
  Numbers y;
};

Numbers const kBits = {0, 1, 1, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 1, 1, 0};
Numbers const kEdges = {0, 1, 0, 1, 0, 1, 0, 1, 0, 1, 0, 1, 0};

wchar_t const * const kAll[] = {L"EyeLevelZero", L"EyeLevelOne",      L"EyeAmplitude",     L"EyeHeight",
                                L"EyeWidth",     L"EyeSignalToNoise", L"EyeOpeningFactor", L"EyeJitterP2P",
                                L"EyeJitterRMS", L"EyeRiseTime",      L"EyeFallTime",      L"MinEyeWidth",
                                L"MinEyeHeight"};

} // namespace

TEST(EyeFunctions, OfACleanSignalAreThoseOfItsMaking) {
  Signal const signal(kBits, 0.2);
  EXPECT_NEAR(signal.Of(L"EyeLevelZero", {1}), 0, 1e-15);
  EXPECT_NEAR(signal.Of(L"EyeLevelOne", {1}), 1, 1e-15);
  EXPECT_NEAR(signal.Of(L"EyeAmplitude", {1}), 1, 1e-15);
  EXPECT_NEAR(signal.Of(L"EyeHeight", {1}), 1, 1e-12);
  EXPECT_NEAR(signal.Of(L"EyeOpeningFactor", {1}), 1, 1e-12);
  EXPECT_NEAR(signal.Of(L"EyeWidth", {1}), 1, 1e-13);
  EXPECT_NEAR(signal.Of(L"EyeJitterP2P", {1}), 0, 1e-13);
  EXPECT_NEAR(signal.Of(L"EyeJitterRMS", {1}), 0, 1e-13);
  EXPECT_NEAR(signal.Of(L"EyeRiseTime", {1}), 0.12, 1e-13);
  EXPECT_NEAR(signal.Of(L"EyeFallTime", {1}), 0.12, 1e-13);
  EXPECT_NEAR(signal.Of(L"MinEyeWidth", {1}), 1, 1e-13);
  EXPECT_NEAR(signal.Of(L"MinEyeHeight", {1}), 1, 1e-15);
  EXPECT_NO_VALUE(signal.Of(L"EyeSignalToNoise", {1})); // no noise to divide by
}

TEST(EyeFunctions, OfASignalInVoltsAndNanosecondsScaleWithIt) {
  Signal const unit({1, 3, 1, 1, 3, 3, 1, 3, 1}, 0.5, {0.0625, -0.0625});
  Numbers const x = Map(unit.x, [](double t) { return 7e-9 + t * 2e-9; });
  Numbers const y = Map(unit.y, [](double v) { return v * 0.25; });
  auto const of = [&](std::wstring_view name) { return Of(name, x, y, {2e-9}); };
  EXPECT_NEAR(of(L"EyeLevelZero"), 0.25, 1e-15);
  EXPECT_NEAR(of(L"EyeLevelOne"), 0.75, 1e-15);
  EXPECT_NEAR(of(L"EyeAmplitude"), 0.5, 1e-15);
  EXPECT_NEAR(of(L"EyeHeight"), 0.5, 1e-12);
  EXPECT_NEAR(of(L"EyeOpeningFactor"), 1, 1e-12);
  EXPECT_NEAR(of(L"EyeJitterP2P"), 0.25e-9, 1e-20);
  EXPECT_NEAR(of(L"EyeJitterRMS"), 0.125e-9, 1e-20);
  EXPECT_NEAR(of(L"EyeWidth"), 1.25e-9, 1e-20);
  EXPECT_NEAR(of(L"EyeRiseTime"), 0.6e-9, 1e-20);
  EXPECT_NEAR(of(L"EyeFallTime"), 0.6e-9, 1e-20);
  EXPECT_NEAR(of(L"MinEyeWidth"), 1.75e-9, 1e-20);
  EXPECT_NEAR(of(L"MinEyeHeight"), 0.5, 1e-15);
}

TEST(EyeFunctions, JitterNarrowsTheEyeByThreeDeviationsOnEachSide) {
  for (double const shift : {0.01, 0.05, 0.1}) {
    Signal const signal(kEdges, 0.2, {shift, -shift});
    EXPECT_NEAR(signal.Of(L"EyeJitterP2P", {1}), 2 * shift, 1e-13);
    EXPECT_NEAR(signal.Of(L"EyeJitterRMS", {1}), shift, 1e-13);
    EXPECT_NEAR(signal.Of(L"EyeWidth", {1}), 1 - 6 * shift, 1e-13);
    EXPECT_NEAR(signal.Of(L"MinEyeWidth", {1}), 1 - 2 * shift, 1e-13);
  }
  // Three quarters early, one quarter late: the deviations count from their mean.
  Signal const uneven(kEdges, 0.2, {0.09, -0.03, -0.03, -0.03});
  EXPECT_NEAR(uneven.Of(L"EyeJitterP2P", {1}), 0.12, 1e-13);
  EXPECT_NEAR(uneven.Of(L"EyeJitterRMS", {1}), std::sqrt((0.0081 + 3 * 0.0009) / 4), 1e-13);
}

TEST(EyeFunctions, ManyJitteredEdgesCanCloseTheEye) {
  Signal const signal(kEdges, 0.1, {0.2, -0.2});
  EXPECT_NEAR(signal.Of(L"EyeWidth", {1}), -0.2, 1e-13); // negative: closed
  EXPECT_NEAR(signal.Of(L"MinEyeWidth", {1}), 0.6, 1e-13);
}

TEST(EyeFunctions, LevelsOfDifferentHeightAreNoise) {
  // Ones of 1.1 and 1.3, zeros of -0.1 and 0.1, as many of each.
  Signal const signal({-0.1, 1.1, 0.1, 1.3, -0.1, 1.3, 0.1, 1.1}, 0.2);
  EXPECT_NEAR(signal.Of(L"EyeLevelOne", {1}), 1.2, 1e-14);
  EXPECT_NEAR(signal.Of(L"EyeLevelZero", {1}), 0, 1e-14);
  EXPECT_NEAR(signal.Of(L"EyeAmplitude", {1}), 1.2, 1e-14);
  EXPECT_NEAR(signal.Of(L"EyeHeight", {1}), 1.2 - 0.6, 1e-13);
  EXPECT_NEAR(signal.Of(L"EyeSignalToNoise", {1}), 6, 1e-12);
  EXPECT_NEAR(signal.Of(L"EyeOpeningFactor", {1}), 1 / 1.2, 1e-13);
  EXPECT_NEAR(signal.Of(L"MinEyeHeight", {1}), 1.0, 1e-14);

  Signal const wide({-2, 6, 2, 10, -2, 10, 2, 6}, 0.2);
  EXPECT_NEAR(wide.Of(L"EyeSignalToNoise", {1}), 2, 1e-12);
  EXPECT_NEAR(wide.Of(L"EyeHeight", {1}), 8 - 12, 1e-12); // negative: closed
  EXPECT_NEAR(wide.Of(L"EyeOpeningFactor", {1}), 0.5, 1e-13);
  EXPECT_NEAR(wide.Of(L"MinEyeHeight", {1}), 4, 1e-13);
  Signal const shifted({8, 16, 12, 20, 8, 20, 12, 16}, 0.2);
  EXPECT_NEAR(shifted.Of(L"EyeSignalToNoise", {1}), 2, 1e-12);
  EXPECT_NEAR(shifted.Of(L"EyeLevelZero", {1}), 10, 1e-12);
  EXPECT_NEAR(shifted.Of(L"EyeLevelOne", {1}), 18, 1e-12);
}

TEST(EyeFunctions, TheCrossingAmplitudeIsTheMiddleOfTheLevelsNotOfTheRange) {
  // A ring to 1.5 behind the first edge lifts the middle of the range to 0.75, but not the levels.
  Signal ringing(kBits, 0.2);
  ringing.x.insert(ringing.x.begin() + 3, {1.15, 1.2});
  ringing.y.insert(ringing.y.begin() + 3, {1.5, 1.0});
  EXPECT_NEAR(ringing.Of(L"EyeLevelOne", {1}), 1, 1e-13);
  EXPECT_NEAR(ringing.Of(L"EyeJitterP2P", {1}), 0, 1e-13);
  EXPECT_NEAR(ringing.Of(L"EyeJitterP2P", {1, 0, 0, 0, 0.75}), 0.1, 1e-13); // what it would be there
  Signal const clean(kEdges, 0.2);
  EXPECT_NEAR(clean.Of(L"EyeJitterP2P", {1, 0, 0, 0, 0.25}), 0.1, 1e-13);
  EXPECT_NEAR(clean.Of(L"EyeJitterRMS", {1, 0, 0, 0, 0.25}), 0.05, 1e-13);
  EXPECT_NEAR(clean.Of(L"EyeWidth", {1, 0, 0, 0, 0.25}), 0.7, 1e-13);
  EXPECT_NEAR(clean.Of(L"MinEyeWidth", {1, 0, 0, 0, 0.25}), 0.9, 1e-13);
  EXPECT_NEAR(clean.Of(L"EyeJitterP2P", {1, 0, 0, 1, 0.25}), 0, 1e-13); // automatic: not as given
  for (auto const name : kAll)
    EXPECT_NO_VALUE(clean.Of(name, {1, 0, 0, 0, 1.5})) << name; // never crossed
}

TEST(EyeFunctions, OffsetsLeaveOutBothEnds) {
  Numbers levels = {7, -7, 7};
  levels.insert(levels.end(), kBits.begin(), kBits.end());
  levels.insert(levels.end(), {9, -9});
  Signal const signal(levels, 0.2);
  auto const of = [&](std::wstring_view name) { return signal.Of(name, {1, 3.5, 2.5}); };
  EXPECT_NEAR(of(L"EyeLevelZero"), 0, 1e-14);
  EXPECT_NEAR(of(L"EyeLevelOne"), 1, 1e-14);
  EXPECT_NEAR(of(L"EyeJitterP2P"), 0, 1e-13);
  EXPECT_NEAR(of(L"EyeRiseTime"), 0.12, 1e-13);
  EXPECT_NEAR(of(L"EyeFallTime"), 0.12, 1e-13);
  EXPECT_NEAR(of(L"MinEyeWidth"), 1, 1e-13);
  EXPECT_NEAR(of(L"MinEyeHeight"), 1, 1e-14);
}

TEST(EyeFunctions, RiseAndFallAreMeansOfWholeEdgesAlone) {
  // Edges of 0.2 up and 0.4 down; a runt to 0.6 is no edge.
  Numbers const x = {0, 0.9, 1.1, 1.8, 2.2, 2.9, 3.1, 3.8, 4.2, 4.9, 5, 5.1, 6.9, 7.1, 8};
  Numbers const y = {0, 0, 1, 1, 0, 0, 1, 1, 0, 0, 0.6, 0, 0, 1, 1};
  EXPECT_NEAR(Of(L"EyeRiseTime", x, y, {1}), 0.12, 1e-13);
  EXPECT_NEAR(Of(L"EyeFallTime", x, y, {1}), 0.24, 1e-13);
  // Up in 0.2 and 0.6: their mean.
  Numbers const twoX = {0, 0.9, 1.1, 1.9, 2.1, 2.7, 3.3, 3.9, 4.1, 5};
  Numbers const twoY = {0, 0, 1, 1, 0, 0, 1, 1, 0, 0};
  EXPECT_NEAR(Of(L"EyeRiseTime", twoX, twoY, {1}), 0.24, 1e-13);
  EXPECT_NEAR(Of(L"EyeFallTime", twoX, twoY, {1}), 0.12, 1e-13);
  // Vertical edges take no time.
  EXPECT_NEAR(Signal(kBits, 0).Of(L"EyeRiseTime", {1}), 0, 1e-15);
  EXPECT_NEAR(Signal(kBits, 0).Of(L"EyeFallTime", {1}), 0, 1e-15);
}

TEST(EyeFunctions, AMeasurementPointCountsFromTheRangeInAnyUnitInterval) {
  Signal const signal(kBits, 0.2);
  for (double const point : {0.95, 3.95, -0.05}) {
    EXPECT_NEAR(signal.Of(L"MinEyeHeight", {1, 0, 0, 1, 0, 0, point}), 0.5, 1e-13) << point; // on the edges
    EXPECT_NEAR(signal.Of(L"MinEyeWidth", {1, 0, 0, 1, 0, 0, point}), 1, 1e-13) << point;
  }
  EXPECT_NEAR(signal.Of(L"MinEyeHeight", {1, 0, 0, 1, 0, 1, 0.95}), 1, 1e-13); // automatic: not as given
  EXPECT_NEAR(signal.Of(L"MinEyeHeight", {1, 0, 0, 1, 0, 0, 0.5}), 1, 1e-13);
  // Between the two groups of crossings of a jittered signal the gap is theirs.
  Signal const jittered(kEdges, 0.1, {0.1, -0.1});
  EXPECT_NEAR(jittered.Of(L"MinEyeWidth", {1, 0, 0, 1, 0, 0, 0.5}), 0.8, 1e-13);
  EXPECT_NEAR(jittered.Of(L"MinEyeWidth", {1, 0, 0, 1, 0, 0, 0}), 0.2, 1e-13);
}

TEST(EyeFunctions, NoEyeIsNoValue) {
  Signal const signal(kBits, 0.2);
  for (auto const name : kAll) {
    EXPECT_NO_VALUE(signal.Of(name, {})) << name; // the default unit interval of 0
    EXPECT_NO_VALUE(signal.Of(name, {-1})) << name;
    EXPECT_NO_VALUE(signal.Of(name, {kInfinity})) << name;
    EXPECT_NO_VALUE(signal.Of(name, {1, -1})) << name;
    EXPECT_NO_VALUE(signal.Of(name, {1, 0, -1})) << name;
    EXPECT_NO_VALUE(signal.Of(name, {1, 8, 7.5})) << name;                          // less than one unit interval left
    EXPECT_NO_VALUE(signal.Of(name, {1, 20})) << name;                              // nothing left
    EXPECT_NO_VALUE(signal.Of(name, {5e-6})) << name;                               // more than a million of them
    EXPECT_NO_VALUE(Of(name, {0, 5}, {2, 2}, {1})) << name;                         // flat
    EXPECT_NO_VALUE(Of(name, {0, 5}, {0, 1}, {1})) << name;                         // one crossing
    EXPECT_NO_VALUE(Signal({0, 1, 0, 1, 0}, 0.2).Of(name, {4})) << name;            // edges everywhere
    EXPECT_NO_VALUE(Of(name, {0, 0.2, 0.3, 0.4, 1}, {0, 0, 1, 0, 0}, {1})) << name; // one level alone at the centre
  }
}
