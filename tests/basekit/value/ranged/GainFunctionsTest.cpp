#include "tests/basekit/value/ranged/RangedSupport.h"

using namespace support;

namespace {

using Complex = std::complex<double>;
Complex const kJ(0, 1);

// Even steps of log x: 1 to 10^decades.
Numbers Decades(int decades, int stepsEach) {
  Numbers x;
  for (int i = 0; i <= decades * stepsEach; ++i)
    x.push_back(std::pow(10.0, static_cast<double>(i) / stepsEach));
  return x;
}

Numbers const kX = Decades(6, 200);

template <class F> ComplexNumbers Response(Numbers const & x, F f) {
  return Map(x, [&](double at) { return Complex(f(at)); });
}

} // namespace

TEST(GainFunctions, OfAnIntegratorAreExactOnLogFrequency) {
  // 1000/(j x): straight lines over log x, so few samples are enough.
  Numbers const x = {3, 70, 9000, 200000};
  ComplexNumbers const y = Response(x, [](double at) { return 1000.0 / (kJ * at); });
  EXPECT_NEAR(Of(L"gaincrossover", x, y), 1000, 1e-9);
  EXPECT_NEAR(Of(L"phasemargin", x, y), 90, 1e-12);
  EXPECT_NEAR(Of(L"gaincrossover", x, y, {10}), 100, 1e-10);
  EXPECT_NEAR(Of(L"phasemargin", x, y, {10, 30}), 60, 1e-12);
  EXPECT_NEAR(Of(L"peakgain", x, y), 20 * std::log10(1000.0 / 3), 1e-12);
  EXPECT_EQ(Of(L"peakgainfreq", x, y), 3);
  EXPECT_NEAR(Of(L"uppercutoff", x, y), 3 * std::sqrt(2.0), 1e-12);
  EXPECT_NEAR(Of(L"bandwidth", x, y), 3 * std::sqrt(2.0), 1e-12);
  EXPECT_NO_VALUE(Of(L"lowercutoff", x, y));
  EXPECT_NO_VALUE(Of(L"gainmargin", x, y)); // no phase crossover: not infinity
  EXPECT_NO_VALUE(Of(L"phasecrossover", x, y));
}

TEST(GainFunctions, OfThreeEqualLagsAreThoseOfControlTextbooks) {
  // K/(1 + j x/1000)^3 turns to -180 degrees at sqrt(3) of the corner, with a gain of K/8.
  for (double const k : {2.0, 4.0, 20.0}) {
    ComplexNumbers const y = Response(kX, [&](double at) { return k / std::pow(1.0 + kJ * at / 1000.0, 3); });
    EXPECT_NEAR(Of(L"phasecrossover", kX, y), 1000 * std::sqrt(3.0), 0.02) << k;
    EXPECT_NEAR(Of(L"gainmargin", kX, y), 20 * std::log10(8 / k), 1e-3) << k;
    double const crossover = 1000 * std::sqrt(std::pow(k, 2.0 / 3) - 1);
    EXPECT_NEAR(Of(L"gaincrossover", kX, y), crossover, 1e-4 * crossover) << k;
    EXPECT_NEAR(Of(L"phasemargin", kX, y), 180 - 3 * std::atan(crossover / 1000) * 180 / kPi, 0.02) << k;
    EXPECT_NEAR(Of(L"peakgain", kX, y), 20 * std::log10(k), 1e-4) << k;
    EXPECT_EQ(Of(L"peakgainfreq", kX, y), 1) << k;
  }
}

TEST(GainFunctions, ACutoffIsTheCornerOfAFirstOrderFilter) {
  double const corner = kX[700]; // a sample, so that nothing is interpolated
  ComplexNumbers const low = Response(kX, [&](double at) { return 5.0 / (1.0 + kJ * at / corner); });
  EXPECT_NEAR(Of(L"uppercutoff", kX, low), corner, 1e-3 * corner); // the peak at 1 is not quite that at 0
  EXPECT_EQ(Of(L"bandwidth", kX, low), Of(L"uppercutoff", kX, low));
  EXPECT_NO_VALUE(Of(L"lowercutoff", kX, low));

  ComplexNumbers const high = Response(kX, [&](double at) { return 5.0 / (1.0 + corner / (kJ * at)); });
  EXPECT_NEAR(Of(L"lowercutoff", kX, high), corner, 1e-3 * corner);
  EXPECT_NO_VALUE(Of(L"uppercutoff", kX, high));
  EXPECT_NO_VALUE(Of(L"bandwidth", kX, high));
}

TEST(GainFunctions, ABandPassHasTheWidthOfItsQuality) {
  double const centre = kX[600];
  for (double const q : {1.0, 5.0, 20.0}) {
    ComplexNumbers const y =
        Response(kX, [&](double at) { return 3.0 / (1.0 + kJ * q * (at / centre - centre / at)); });
    double const half = 1 / (2 * q);
    double const root = std::sqrt(1 + half * half);
    EXPECT_NEAR(Of(L"lowercutoff", kX, y), centre * (root - half), 1e-4 * centre) << q;
    EXPECT_NEAR(Of(L"uppercutoff", kX, y), centre * (root + half), 1e-4 * centre) << q;
    EXPECT_NEAR(Of(L"bandwidth", kX, y), centre / q, 1e-4 * centre) << q;
    EXPECT_NEAR(Of(L"peakgain", kX, y), 20 * std::log10(3.0), 1e-9) << q;
    EXPECT_EQ(Of(L"peakgainfreq", kX, y), centre) << q;
  }
}

TEST(GainFunctions, ASweepThatStartsAtZeroHasAStraightFirstPiece) {
  // 12 dB down over the first piece: half power a part of the way.
  Numbers const x = {0, 100, 1000};
  Numbers const y = {4, 1, 0.5};
  EXPECT_DOUBLE_EQ(Of(L"uppercutoff", x, y), 100 * std::log10(2.0) / (2 * std::log10(4.0)));
  EXPECT_NEAR(Of(L"gaincrossover", x, Numbers{4, 1.0 / 4, 0.1}), 50, 1e-12);
}

TEST(GainFunctions, OfARealTraceHavePhasesOfZeroAndHalfATurn) {
  Numbers const x = {1, 2, 3};
  EXPECT_NEAR(Of(L"phasemargin", {1, 100}, Numbers{10, 0.1}), 180, 1e-12);
  EXPECT_NEAR(Of(L"phasemargin", {1, 100}, Numbers{-10, -0.1}), 0, 1e-12); // a negative y has 180 degrees
  EXPECT_NEAR(Of(L"phasemargin", {1, 100}, ComplexNumbers{{-10, -0.0}, {-0.1, -0.0}}), 0, 1e-12); // -0 reads as +0
  EXPECT_EQ(Of(L"peakgainfreq", x, Numbers{1, -3, 2}), 2);                                        // of |y|
  EXPECT_DOUBLE_EQ(Of(L"peakgain", x, Numbers{1, -100, 2}), 40);
}

TEST(GainFunctions, UnwrappingFollowsTheTraceRoundAndCrossoversAreFoundOnAnyTurn) {
  // A delay: the phase falls by 100 degrees a sample, the gain by 1 dB.
  Numbers const x = {1, 2, 3, 4, 5, 6, 7};
  auto const delayed = [](double start) {
    return [start](double at) {
      return std::polar(std::pow(10.0, -(at - 3.5) / 20), (start - 100 * (at - 1)) * kPi / 180);
    };
  };
  // From 0: -180 lies at 0.8 of the piece from 2 to 3.
  EXPECT_NEAR(Of(L"phasecrossover", x, Response(x, delayed(0))), 2 * std::pow(1.5, 0.8), 1e-12);
  EXPECT_NEAR(Of(L"gainmargin", x, Response(x, delayed(0))), -0.7, 1e-12);
  // From 170 down through 70, -30, -130, -230: the piece from 4 to 5; no level lies between 170 and -130.
  EXPECT_NEAR(Of(L"phasecrossover", x, Response(x, delayed(170))), 4 * std::pow(1.25, 0.5), 1e-12);
  // Counted from a base of 360 degrees more it is the same place.
  EXPECT_NEAR(Of(L"phasecrossover", x, Response(x, delayed(170)), {1, 360}), 4 * std::pow(1.25, 0.5), 1e-12);
  EXPECT_NEAR(Of(L"gainmargin", x, Response(x, delayed(170)), {1, -720}), 1, 1e-12);
  // Half way between 3 and 4 the gain is 1: -250 degrees, a margin of -70.
  EXPECT_NEAR(Of(L"phasemargin", x, Response(x, delayed(0))), -70, 1e-12);
  EXPECT_NEAR(Of(L"gaincrossover", x, Response(x, delayed(0))), 3 * std::pow(4.0 / 3, 0.5), 1e-12);
}

TEST(GainFunctions, AStepOfHalfATurnGoesUp) {
  // 0 to 180 degrees: the step is brought to +180, so the second sample lies on the level and the third goes on.
  Numbers const x = {1, 2, 3};
  EXPECT_EQ(Of(L"phasecrossover", x, ComplexNumbers{{1, 0}, {-1, 0}, {-1, -1}}), 2);
  EXPECT_NO_VALUE(Of(L"phasecrossover", x, ComplexNumbers{{1, 0}, {-1, 0}, {-1, 1}})); // touches and turns back
}

TEST(GainFunctions, ValuesWithinABillionthOfTheLevelLieOnIt) {
  Numbers const x = {1, 2, 3};
  EXPECT_EQ(Of(L"gaincrossover", x, Numbers{2, 1 + 1e-11, 0.5}), 2);
  EXPECT_NO_VALUE(Of(L"gaincrossover", x, Numbers{2, 1 - 1e-11, 2}));
  EXPECT_NO_VALUE(Of(L"gaincrossover", x, Numbers{1, 0.5, 0.25})); // starts on it
}

TEST(GainFunctions, SamplesOfNothingAreLeftOut) {
  Numbers const x = {1, 10, 100};
  EXPECT_NEAR(Of(L"gaincrossover", x, Numbers{10, 0, 0.1}), 10, 1e-12);
  EXPECT_EQ(Of(L"peakgainfreq", x, Numbers{0, 0, 0.1}), 100);
  for (auto const name : {L"gainmargin", L"phasemargin", L"gaincrossover", L"phasecrossover", L"lowercutoff",
                          L"uppercutoff", L"bandwidth", L"peakgain", L"peakgainfreq"})
    EXPECT_NO_VALUE(Of(name, x, Numbers{0, 0, 0})) << name;
}

TEST(GainFunctions, ABaseGainThatIsNotPositiveIsNoValue) {
  for (auto const name : {L"gainmargin", L"phasemargin", L"gaincrossover", L"phasecrossover", L"lowercutoff",
                          L"uppercutoff", L"bandwidth", L"peakgain", L"peakgainfreq"}) {
    EXPECT_NO_VALUE(Of(name, {1, 2, 3}, Numbers{-1, 4, -1}, {0})) << name;
    EXPECT_NO_VALUE(Of(name, {1, 2, 3}, Numbers{-1, 4, -1}, {-1})) << name;
  }
}

TEST(GainFunctions, OneSampleHasAPeakAndNothingElse) {
  EXPECT_DOUBLE_EQ(Of(L"peakgain", {5}, Numbers{10}), 20);
  EXPECT_EQ(Of(L"peakgainfreq", {5}, Numbers{10}), 5);
  for (auto const name : {L"gainmargin", L"phasemargin", L"gaincrossover", L"phasecrossover", L"lowercutoff",
                          L"uppercutoff", L"bandwidth"})
    EXPECT_NO_VALUE(Of(name, {5}, Numbers{1})) << name;
}
