#include "tests/basekit/value/ranged/RangedSupport.h"

using namespace support;

namespace {

// Whole periods with even samples: sums of sines and cosines are exact.
constexpr int kSteps = 360;
Numbers const kTurns = Steps(0, 3, 3 * kSteps + 1);
double Turn(double t) { return 2 * kPi * t; }

} // namespace

TEST(ResponseFunctions, ShapeFactorsAreThoseOfTextbooks) {
  Numbers const sine = Map(kTurns, [](double t) { return 5 * std::sin(Turn(t)); });
  // The trapezoid over |sin| at even samples: the sum is the cotangent of half a step.
  double const meanOfSine = 2.0 / kSteps / std::tan(kPi / kSteps);
  EXPECT_NEAR(Of(L"crestfactor", kTurns, sine), std::sqrt(2.0), 1e-12);
  EXPECT_NEAR(Of(L"formfactor", kTurns, sine), std::sqrt(0.5) / meanOfSine, 1e-12);

  EXPECT_DOUBLE_EQ(Of(L"crestfactor", {0, 1, 1, 2}, {-3, -3, 3, 3}), 1);
  EXPECT_DOUBLE_EQ(Of(L"formfactor", {0, 1, 1, 2}, {-3, -3, 3, 3}), 1);

  EXPECT_DOUBLE_EQ(Of(L"crestfactor", {0, 1, 3}, {0, 2, -1}), 2 / std::sqrt(7.0 / 3));
  EXPECT_DOUBLE_EQ(Of(L"formfactor", {0, 1, 3}, {0, 2, -1}), std::sqrt(7.0 / 3) / (4.0 / 3));
}

TEST(ResponseFunctions, NoShapeIsSaidOfNothing) {
  EXPECT_NO_VALUE(Of(L"crestfactor", {0, 1}, {0, 0}));
  EXPECT_NO_VALUE(Of(L"formfactor", {0, 1}, {0, 0}));
}

TEST(ResponseFunctions, TheFundamentalIsAnRmsWhateverItsPhase) {
  for (double const phase : {0.0, 0.7, 2.5}) {
    Numbers const y = Map(kTurns, [&](double t) { return 5 * std::sin(Turn(t) + phase); });
    EXPECT_NEAR(Of(L"fundamentalmag", kTurns, y, {1}), 5 / std::sqrt(2.0), 1e-12) << phase;
    EXPECT_NEAR(Of(L"distortion", kTurns, y, {1}), 0, 2e-7) << phase; // the root of a difference near 1e-15
  }
}

TEST(ResponseFunctions, EverythingThatIsNotTheFundamentalDistorts) {
  Numbers const harmonics = Map(kTurns, [](double t) {
    return 2 * std::sin(Turn(t)) + 0.6 * std::cos(Turn(3 * t)) + 0.8 * std::sin(Turn(5 * t));
  });
  EXPECT_NEAR(Of(L"distortion", kTurns, harmonics, {1}), 0.5, 1e-12);
  EXPECT_NEAR(Of(L"fundamentalmag", kTurns, harmonics, {1}), std::sqrt(2.0), 1e-12);
  // At three times the frequency the rest counts, interharmonics too.
  EXPECT_NEAR(Of(L"fundamentalmag", kTurns, harmonics, {3}), 0.6 / std::sqrt(2.0), 1e-12);
  EXPECT_NEAR(Of(L"distortion", kTurns, harmonics, {3}), std::sqrt(4.64) / 0.6, 1e-11);
  // A mean is no distortion.
  Numbers const raised = Map(harmonics, [](double y) { return y + 100; });
  EXPECT_NEAR(Of(L"distortion", kTurns, raised, {1}), 0.5, 1e-10);
}

TEST(ResponseFunctions, AStartUpTransientBeforeTheLastWholePeriodsDoesNotCount) {
  Numbers const x = Steps(0, 2.5, 901);
  Numbers const y = Map(x, [](double t) { return t < 0.49 ? 1000.0 : 4 * std::cos(Turn(t)) + std::cos(Turn(2 * t)); });
  EXPECT_NEAR(Of(L"fundamentalmag", x, y, {1}), 4 / std::sqrt(2.0), 1e-12);
  EXPECT_NEAR(Of(L"distortion", x, y, {1}), 0.25, 1e-12);
}

TEST(ResponseFunctions, AFrequencyOutOfRangeIsNoValue) {
  Numbers const y = Map(kTurns, [](double t) { return std::sin(Turn(t)); });
  for (auto const name : {L"fundamentalmag", L"distortion"}) {
    EXPECT_NO_VALUE(Of(name, kTurns, y)) << name;
    EXPECT_NO_VALUE(Of(name, kTurns, y, {-1})) << name;
    EXPECT_NO_VALUE(Of(name, kTurns, y, {0.3})) << name; // less than one period
    EXPECT_NO_VALUE(Of(name, kTurns, y, {kInfinity})) << name;
  }
  EXPECT_NO_VALUE(Of(L"distortion", kTurns, Numbers(kTurns.size(), 7.0), {1}));
  EXPECT_NEAR(Of(L"fundamentalmag", kTurns, Numbers(kTurns.size(), 7.0), {1}), 0, 1e-12);
  EXPECT_NEAR(Of(L"fundamentalmag", kTurns, y, {1.0 / 3}), 0, 1e-12); // one period exactly, nothing of it there
}

TEST(ResponseFunctions, TimesOfARampAreExact) {
  Numbers const x = {0, 2, 12, 20};
  Numbers const y = {0, 0, 10, 10};
  EXPECT_DOUBLE_EQ(Of(L"delaytime", x, y, {10}), 7);
  EXPECT_DOUBLE_EQ(Of(L"risetime", x, y, {10}), 8);
  EXPECT_DOUBLE_EQ(Of(L"delaytime", x, y, {5}), 4.5);
  EXPECT_DOUBLE_EQ(Of(L"risetime", x, y, {5}), 4);
  EXPECT_DOUBLE_EQ(Of(L"deadtime", x, y, {3}), 5);
  EXPECT_DOUBLE_EQ(Of(L"deadtime", x, y, {-3}), 5); // its magnitude
  EXPECT_DOUBLE_EQ(Of(L"deadtime", x, y), 2);
  EXPECT_DOUBLE_EQ(Of(L"settlingtime", x, y, {10, 1}), 11);
  EXPECT_DOUBLE_EQ(Of(L"settlingtime", x, y, {10, -2}), 10);
  EXPECT_DOUBLE_EQ(Of(L"settlingtime", x, y, {10}), 12);
}

TEST(ResponseFunctions, TimesOfAFirstOrderLagAreThoseOfItsFormula) {
  Numbers const t = Steps(0, 20, 200001);
  Numbers const y = Map(t, [](double at) { return 4 * (1 - std::exp(-at)); });
  EXPECT_NEAR(Of(L"delaytime", t, y, {4}), std::log(2.0), 1e-8);
  EXPECT_NEAR(Of(L"risetime", t, y, {4}), std::log(9.0), 1e-7);
  EXPECT_NEAR(Of(L"deadtime", t, y, {1}), std::log(4.0 / 3), 1e-8);
  EXPECT_NEAR(Of(L"settlingtime", t, y, {4, 0.04}), std::log(100.0), 1e-6);
}

TEST(ResponseFunctions, ANegativeTargetWorksAlike) {
  Numbers const x = {1, 2, 12, 20};
  Numbers const y = {0, 0, -10, -10};
  EXPECT_DOUBLE_EQ(Of(L"delaytime", x, y, {-10}), 7);
  EXPECT_DOUBLE_EQ(Of(L"risetime", x, y, {-10}), 8);
  EXPECT_DOUBLE_EQ(Of(L"deadtime", x, y, {3}), 5);
  EXPECT_DOUBLE_EQ(Of(L"settlingtime", x, y, {-10, 1}), 11);
}

TEST(ResponseFunctions, OnePieceMayHoldTheWholeRise) {
  EXPECT_DOUBLE_EQ(Of(L"risetime", {0, 1}, {0, 1}, {1}), 0.8);
  EXPECT_DOUBLE_EQ(Of(L"delaytime", {3, 4}, {0, 1}, {1}), 3.5); // x itself, not counted from x[0]
  EXPECT_EQ(Of(L"delaytime", {3, 4}, {1, 2}, {2}), 3);          // starts on the level
  EXPECT_EQ(Of(L"risetime", {0, 1, 2}, {1, 2, 10}, {10}), 1.875 - 0);
}

TEST(ResponseFunctions, ALevelThatIsNeverReachedUpwardIsNoValue) {
  EXPECT_NO_VALUE(Of(L"delaytime", {0, 1}, {1, 0}, {1}));
  EXPECT_NO_VALUE(Of(L"delaytime", {0, 1}, {0, 0.4}, {1}));
  EXPECT_NO_VALUE(Of(L"risetime", {0, 1}, {0, 0.8}, {1}));
  EXPECT_NO_VALUE(Of(L"risetime", {0, 1}, {0.5, 1}, {1})); // begins above 10 %
  EXPECT_NO_VALUE(Of(L"delaytime", {0, 1}, {0, 1}));       // a target of 0
  EXPECT_NO_VALUE(Of(L"risetime", {0, 1}, {0, 1}, {0}));
}

TEST(ResponseFunctions, DeadTimeIsTheLatestTimeInTheBand) {
  Numbers const x = {0, 1, 2, 3, 4};
  EXPECT_EQ(Of(L"deadtime", x, {0, 5, 0, 5, 5}, {0}), 2); // not the first exit
  EXPECT_DOUBLE_EQ(Of(L"deadtime", x, {0, 5, 5, -5, -5}, {1}), 2.6);
  EXPECT_EQ(Of(L"deadtime", x, {5, 5, 5, 5, 1}, {1}), 4);
  EXPECT_NO_VALUE(Of(L"deadtime", x, {5, 4, 3, 4, 5}, {1}));
  EXPECT_NO_VALUE(Of(L"deadtime", x, {5, 5, 5, 5, 5}));
}

TEST(ResponseFunctions, SettlingTimeIsTheComingInForGood) {
  Numbers const x = {0, 1, 2, 3, 4};
  EXPECT_DOUBLE_EQ(Of(L"settlingtime", x, {0, 2, 0, 1, 1}, {1, 0.25}), 2.75);
  EXPECT_DOUBLE_EQ(Of(L"settlingtime", x, {0, 1, 3, 1, 1}, {1, 0.5}), 2.75); // from above
  EXPECT_EQ(Of(L"settlingtime", x, {1, 1.25, 0.75, 1, 1}, {1, 0.25}), 0);    // edges are inside
  EXPECT_NO_VALUE(Of(L"settlingtime", x, {1, 1, 1, 1, 2}, {1, 0.25}));
}
