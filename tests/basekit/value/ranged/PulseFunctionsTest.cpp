#include "tests/basekit/value/ranged/RangedSupport.h"

using namespace support;

namespace {

// A front from 1 to 3, a tail from 5 to 9.
Numbers const kX = {0, 1, 3, 5, 9, 10};
Numbers const kPulse = {0, 0, 10, 10, 0, 0};

Numbers const kFine = Steps(-8, 8, 16001);
double Bell(double t) { return std::exp(-t * t / 2); }
// Where the bell has fallen to a part.
double BellAt(double part) { return std::sqrt(2 * std::log(1 / part)); }

} // namespace

TEST(PulseFunctions, OfAPulseWithStraightEdgesAreExact) {
  EXPECT_EQ(Of(L"pulsemin", kX, kPulse), 0);
  EXPECT_EQ(Of(L"pulsemax", kX, kPulse), 10);
  EXPECT_EQ(Of(L"pulsemintime", kX, kPulse), 0);
  EXPECT_EQ(Of(L"pulsemaxtime", kX, kPulse), 3);
  EXPECT_DOUBLE_EQ(Of(L"pulsefall9010", kX, kPulse), 3.2);
  EXPECT_DOUBLE_EQ(Of(L"pulsefront1090", kX, kPulse), 2);
  EXPECT_DOUBLE_EQ(Of(L"pulsefront3090", kX, kPulse), 2);
  EXPECT_DOUBLE_EQ(Of(L"pulsetail50", kX, kPulse), 4);
  EXPECT_DOUBLE_EQ(Of(L"pulsewidth5050", kX, kPulse), 5);
}

TEST(PulseFunctions, OfANegativePulseOnALevelHaveItsTimesButTheValuesOfY) {
  Numbers const y = Map(kPulse, [](double v) { return 5 - 2 * v; });
  EXPECT_EQ(Of(L"pulsemin", kX, y), -15);
  EXPECT_EQ(Of(L"pulsemax", kX, y), 5);
  EXPECT_EQ(Of(L"pulsemintime", kX, y), 3);
  EXPECT_EQ(Of(L"pulsemaxtime", kX, y), 0);
  EXPECT_DOUBLE_EQ(Of(L"pulsefall9010", kX, y), 3.2);
  EXPECT_DOUBLE_EQ(Of(L"pulsefront1090", kX, y), 2);
  EXPECT_DOUBLE_EQ(Of(L"pulsefront3090", kX, y), 2);
  EXPECT_DOUBLE_EQ(Of(L"pulsetail50", kX, y), 4);
  EXPECT_DOUBLE_EQ(Of(L"pulsewidth5050", kX, y), 5);
}

TEST(PulseFunctions, OfABellAreThoseOfItsFormula) {
  Numbers const y = Map(kFine, Bell);
  double const front = (BellAt(0.3) - BellAt(0.9)) / 0.6;
  double const virtualPeak = -BellAt(0.3) + (BellAt(0.3) - BellAt(0.9)) * 0.7 / 0.6;
  EXPECT_EQ(Of(L"pulsemax", kFine, y), 1);
  EXPECT_NEAR(Of(L"pulsemaxtime", kFine, y), 0, 1e-12);
  EXPECT_EQ(Of(L"pulsemin", kFine, y), std::exp(-32.0));
  EXPECT_EQ(Of(L"pulsemintime", kFine, y), -8);
  EXPECT_NEAR(Of(L"pulsefall9010", kFine, y), BellAt(0.1) - BellAt(0.9), 1e-6);
  EXPECT_NEAR(Of(L"pulsefront1090", kFine, y), (BellAt(0.1) - BellAt(0.9)) / 0.8, 1e-6);
  EXPECT_NEAR(Of(L"pulsefront3090", kFine, y), front, 1e-6);
  EXPECT_NEAR(Of(L"pulsetail50", kFine, y), BellAt(0.5) - virtualPeak, 1e-6);
  EXPECT_NEAR(Of(L"pulsewidth5050", kFine, y), 2 * BellAt(0.5), 1e-6);
}

TEST(PulseFunctions, AFrontWithAKinkHasTwoDifferentFrontTimes) {
  // 0 to 50 % in 1, 50 % to 100 % in 4; the tail falls in 2.
  Numbers const x = {0, 1, 5, 7};
  Numbers const y = {0, 5, 10, 0};
  EXPECT_DOUBLE_EQ(Of(L"pulsefront1090", x, y), (4.2 - 0.2) / 0.8);
  EXPECT_DOUBLE_EQ(Of(L"pulsefront3090", x, y), (4.2 - 0.6) / 0.6);
  EXPECT_DOUBLE_EQ(Of(L"pulsetail50", x, y), 6 - (0.6 + 3.6 * 0.7 / 0.6));
  EXPECT_DOUBLE_EQ(Of(L"pulsewidth5050", x, y), 5);
  EXPECT_DOUBLE_EQ(Of(L"pulsefall9010", x, y), 1.6);
}

TEST(PulseFunctions, AnUndershootInTheTailDoesNotMoveTheLevels) {
  Numbers const x = {0, 1, 3, 5, 9, 10};
  Numbers const y = {0, 0, 10, 10, 0, -9};
  EXPECT_DOUBLE_EQ(Of(L"pulsefall9010", x, y), 3.2);
  EXPECT_DOUBLE_EQ(Of(L"pulsewidth5050", x, y), 5);
  EXPECT_EQ(Of(L"pulsemin", x, y), -9);
  EXPECT_EQ(Of(L"pulsemintime", x, y), 10);
}

TEST(PulseFunctions, NoiseFarFromThePeakDoesNotCount) {
  // A bump of 60 % long before the pulse: the last passage before the peak is the front.
  Numbers const x = {0, 1, 2, 3, 5, 6};
  Numbers const y = {0, 6, 0, 0, 10, 0};
  EXPECT_DOUBLE_EQ(Of(L"pulsewidth5050", x, y), 5.5 - 4);
  EXPECT_DOUBLE_EQ(Of(L"pulsefront1090", x, y), 2);
}

TEST(PulseFunctions, APulseWithoutATailHasItsFrontAlone) {
  Numbers const falling = {10, 5, 0}; // the furthest from y[0] is below it: a negative pulse without a tail
  EXPECT_EQ(Of(L"pulsemax", {0, 1, 2}, falling), 10);
  EXPECT_DOUBLE_EQ(Of(L"pulsefront1090", {0, 1, 2}, falling), 2);
  for (auto const name : {L"pulsefall9010", L"pulsetail50", L"pulsewidth5050"})
    EXPECT_NO_VALUE(Of(name, {0, 1, 2}, falling)) << name;
  for (auto const name : {L"pulsefall9010", L"pulsetail50", L"pulsewidth5050"})
    EXPECT_NO_VALUE(Of(name, {0, 1, 2}, {0, 1, 0.95})) << name; // never falls to 90 %
  EXPECT_DOUBLE_EQ(Of(L"pulsefront3090", {0, 1, 2}, {0, 1, 0.95}), 1);
}

TEST(PulseFunctions, AFlatTraceHasNoPulse) {
  for (auto const name : {L"pulsemin", L"pulsemax", L"pulsemintime", L"pulsemaxtime", L"pulsefall9010",
                          L"pulsefront1090", L"pulsefront3090", L"pulsetail50", L"pulsewidth5050"})
    EXPECT_NO_VALUE(Of(name, {0, 1, 2}, {4, 4, 4})) << name;
}
