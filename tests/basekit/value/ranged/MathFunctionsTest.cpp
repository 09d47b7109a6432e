#include "tests/basekit/value/ranged/RangedSupport.h"

using namespace support;

namespace {

Numbers const kX = {0, 1, 3};
Numbers const kKinked = {0, 2, -1};

// Two whole periods of 3 + 2 sin, with samples on its extremes.
Numbers const kTwoPeriods = Steps(0, 2, 201);
double SineOnALevel(double t) { return 3 + 2 * std::sin(2 * kPi * t); }

} // namespace

TEST(MathFunctions, OfATraceOfTwoPiecesAreExactFractions) {
  EXPECT_EQ(Of(L"max", kX, kKinked), 2);
  EXPECT_EQ(Of(L"min", kX, kKinked), -1);
  EXPECT_EQ(Of(L"pk2pk", kX, kKinked), 3);
  EXPECT_DOUBLE_EQ(Of(L"rms", kX, kKinked), std::sqrt(7.0 / 3));
  EXPECT_DOUBLE_EQ(Of(L"avg", kX, kKinked), 2.0 / 3);
  EXPECT_DOUBLE_EQ(Of(L"integ", kX, kKinked), 2);
  EXPECT_EQ(Of(L"sum", kX, kKinked), 1);
  EXPECT_DOUBLE_EQ(Of(L"mean", kX, kKinked), 1.0 / 3);
  EXPECT_DOUBLE_EQ(Of(L"variance", kX, kKinked), 14.0 / 9);
  EXPECT_DOUBLE_EQ(Of(L"stddev", kX, kKinked), std::sqrt(14.0) / 3);
  EXPECT_DOUBLE_EQ(Of(L"integabs", kX, kKinked), 4);
  EXPECT_DOUBLE_EQ(Of(L"avgabs", kX, kKinked), 4.0 / 3);
  EXPECT_DOUBLE_EQ(Of(L"rmsAC", kX, kKinked), std::sqrt(17.0) / 3);
  EXPECT_DOUBLE_EQ(Of(L"ripple", kX, kKinked), std::sqrt(17.0) / 2);
  EXPECT_DOUBLE_EQ(Of(L"pkavg", kX, kKinked), 4.5);
  EXPECT_EQ(Of(L"XAtYMin", kX, kKinked), 3);
  EXPECT_EQ(Of(L"XAtYMax", kX, kKinked), 1);
  EXPECT_EQ(Of(L"YAtXMin", kX, kKinked), 0);
  EXPECT_EQ(Of(L"YAtXMax", kX, kKinked), -1);
}

TEST(MathFunctions, OfAConstantTraceAreTheConstantOrNothing) {
  Numbers const x = {0, 1, 4};
  Numbers const y = {-5, -5, -5};
  for (auto const name : {L"max", L"min", L"avg", L"mean", L"YAtXMin", L"YAtXMax"})
    EXPECT_EQ(Of(name, x, y), -5) << name;
  for (auto const name : {L"pk2pk", L"variance", L"stddev", L"rmsAC", L"ripple", L"pkavg", L"XAtYMin", L"XAtYMax"})
    EXPECT_EQ(Of(name, x, y), 0) << name;
  EXPECT_EQ(Of(L"rms", x, y), 5);
  EXPECT_EQ(Of(L"avgabs", x, y), 5);
  EXPECT_EQ(Of(L"integ", x, y), -20);
  EXPECT_EQ(Of(L"integabs", x, y), 20);
  EXPECT_EQ(Of(L"sum", x, y), -15);
}

TEST(MathFunctions, OfASineOnALevelAreThoseOfTextbooks) {
  Numbers const y = Map(kTwoPeriods, SineOnALevel);
  EXPECT_NEAR(Of(L"max", kTwoPeriods, y), 5, 1e-14);
  EXPECT_NEAR(Of(L"min", kTwoPeriods, y), 1, 1e-14);
  EXPECT_NEAR(Of(L"pk2pk", kTwoPeriods, y), 4, 1e-14);
  EXPECT_NEAR(Of(L"rms", kTwoPeriods, y), std::sqrt(11.0), 1e-13);
  EXPECT_NEAR(Of(L"avg", kTwoPeriods, y), 3, 1e-13);
  EXPECT_NEAR(Of(L"integ", kTwoPeriods, y), 6, 1e-13);
  EXPECT_NEAR(Of(L"sum", kTwoPeriods, y), 603, 1e-11);
  EXPECT_NEAR(Of(L"mean", kTwoPeriods, y), 3, 1e-13);
  EXPECT_NEAR(Of(L"variance", kTwoPeriods, y), 400.0 / 201, 1e-13); // 200 samples of two periods and one more, at 0
  EXPECT_NEAR(Of(L"stddev", kTwoPeriods, y), std::sqrt(400.0 / 201), 1e-13);
  EXPECT_NEAR(Of(L"integabs", kTwoPeriods, y), 6, 1e-13);
  EXPECT_NEAR(Of(L"avgabs", kTwoPeriods, y), 3, 1e-13);
  EXPECT_NEAR(Of(L"rmsAC", kTwoPeriods, y), std::sqrt(2.0), 1e-13);
  EXPECT_NEAR(Of(L"ripple", kTwoPeriods, y), std::sqrt(2.0) / 3, 1e-13);
  EXPECT_NEAR(Of(L"pkavg", kTwoPeriods, y), 4.0 / 3, 1e-13);
  EXPECT_DOUBLE_EQ(Of(L"XAtYMax", kTwoPeriods, y), 0.25);
  EXPECT_DOUBLE_EQ(Of(L"XAtYMin", kTwoPeriods, y), 0.75);
  EXPECT_DOUBLE_EQ(Of(L"YAtXMin", kTwoPeriods, y), 3);
  EXPECT_NEAR(Of(L"YAtXMax", kTwoPeriods, y), 3, 1e-13);
}

TEST(MathFunctions, WeighByXSoThatUnevenStepsDoNoHarm) {
  Numbers const x = {0, 1, 2, 2.25, 2.5, 2.75, 3, 4};
  Numbers const ramp = Map(x, [](double at) { return 2 * at - 4; });
  EXPECT_DOUBLE_EQ(Of(L"avg", x, ramp), 0.0);
  EXPECT_DOUBLE_EQ(Of(L"mean", x, ramp), 17.5 / 4 - 4); // counts samples
  EXPECT_DOUBLE_EQ(Of(L"integ", x, Map(x, [](double at) { return at; })), 8);
}

TEST(MathFunctions, MagnitudesAndSquaresAreThoseOfSamplesAsMeant) {
  EXPECT_DOUBLE_EQ(Of(L"rms", {0, 1}, {0, 1}), std::sqrt(0.5)); // not sqrt(1/3)
  EXPECT_DOUBLE_EQ(Of(L"integabs", {0, 2}, {-1, 1}), 2);        // not split at the zero between
  EXPECT_DOUBLE_EQ(Of(L"avgabs", {0, 2}, {-1, 1}), 1);
  EXPECT_DOUBLE_EQ(Of(L"integ", {0, 2}, {-1, 1}), 0);
}

TEST(MathFunctions, AComplexTraceCountsByItsMagnitudeAndARealOneKeepsItsSign) {
  ComplexNumbers const y = {{3, 4}, {0, -1}, {-2, 0}};
  EXPECT_EQ(Of(L"max", kX, y), 5);
  EXPECT_EQ(Of(L"min", kX, y), 1);
  EXPECT_EQ(Of(L"YAtXMax", kX, y), 2);
  EXPECT_EQ(Of(L"min", kX, Numbers{3, -1, -2}), -2);
  EXPECT_EQ(Of(L"pk2pk", kX, Numbers{3, -1, -2}), 5);
}

TEST(MathFunctions, TheFirstOfEqualsIsTheSampleOfTheExtreme) {
  EXPECT_EQ(Of(L"XAtYMax", {0, 1, 2, 3}, {1, 7, 7, 1}), 1);
  EXPECT_EQ(Of(L"XAtYMin", {0, 1, 2, 3}, {1, 7, 7, 1}), 0);
  EXPECT_EQ(Of(L"XAtYMax", {5, 6}, {-2, -2}), 5);
}

TEST(MathFunctions, NothingIsSaidOfTheRippleOfAPureSine) {
  Numbers const y = Map(kTwoPeriods, [](double t) { return std::sin(2 * kPi * t); });
  EXPECT_NO_VALUE(Of(L"ripple", kTwoPeriods, y));
  EXPECT_NO_VALUE(Of(L"pkavg", kTwoPeriods, y));
  EXPECT_NO_VALUE(Of(L"ripple", {0, 1}, {0, 0}));
  EXPECT_NO_VALUE(Of(L"pkavg", {0, 1}, {0, 0}));
}

TEST(MathFunctions, XAtYValIsTheFirstOccurrence) {
  EXPECT_DOUBLE_EQ(Of(L"XAtYVal", kX, kKinked, {1}), 0.5);
  EXPECT_DOUBLE_EQ(Of(L"XAtYVal", kX, kKinked, {-0.5}), 1 + 2.5 / 3 * 2);
  EXPECT_EQ(Of(L"XAtYVal", kX, kKinked, {2}), 1); // a touch counts
  EXPECT_EQ(Of(L"XAtYVal", kX, kKinked), 0);      // 0 without being told
  EXPECT_NO_VALUE(Of(L"XAtYVal", kX, kKinked, {2.5}));
  EXPECT_NO_VALUE(Of(L"XAtYVal", kX, kKinked, {kInfinity}));
}

TEST(MathFunctions, YAtXValIsNeverBeyondTheTrace) {
  EXPECT_DOUBLE_EQ(Of(L"YAtXVal", kX, kKinked, {0.25}), 0.5);
  EXPECT_DOUBLE_EQ(Of(L"YAtXVal", kX, kKinked, {2}), 0.5);
  EXPECT_EQ(Of(L"YAtXVal", kX, kKinked, {3}), -1);
  EXPECT_EQ(Of(L"YAtXVal", kX, kKinked), 0);
  EXPECT_NO_VALUE(Of(L"YAtXVal", kX, kKinked, {-0.001}));
  EXPECT_NO_VALUE(Of(L"YAtXVal", kX, kKinked, {3.001}));
  EXPECT_NO_VALUE(Of(L"YAtXVal", kX, kKinked, {-kInfinity}));
}

TEST(MathFunctions, XWidthAtYValIsBetweenTheFirstTwoOccurrences) {
  EXPECT_DOUBLE_EQ(Of(L"XWidthAtYVal", kX, kKinked, {1}), 1 + 2.0 / 3 - 0.5);
  EXPECT_DOUBLE_EQ(Of(L"XWidthAtYVal", kX, kKinked), 1 + 4.0 / 3);
  EXPECT_EQ(Of(L"XWidthAtYVal", {0, 1, 2, 3, 4, 5}, {2, 2, 0, 1, 2, 2}, {2}), 4); // a level stretch counts once
  EXPECT_EQ(Of(L"XWidthAtYVal", {0, 1, 2, 3}, {1, 0, 0, 1}, {1}), 3);
  EXPECT_NO_VALUE(Of(L"XWidthAtYVal", kX, kKinked, {2}));
  EXPECT_NO_VALUE(Of(L"XWidthAtYVal", {0, 1}, {3, 3}, {3}));
}

TEST(MathFunctions, AVerticalStepAddsNothingAndIsMetAtItsX) {
  Numbers const x = {0, 1, 1, 2};
  Numbers const y = {0, 0, 4, 4};
  EXPECT_DOUBLE_EQ(Of(L"integ", x, y), 4);
  EXPECT_DOUBLE_EQ(Of(L"avg", x, y), 2);
  EXPECT_DOUBLE_EQ(Of(L"rms", x, y), std::sqrt(8.0));
  EXPECT_EQ(Of(L"XAtYVal", x, y, {3}), 1);
  EXPECT_EQ(Of(L"YAtXVal", x, y, {1}), 0); // the first sample with this x
  EXPECT_EQ(Of(L"XWidthAtYVal", {0, 1, 1, 2}, {0, 0, 4, 0}, {2}), 0.5);
}

TEST(MathFunctions, OneSampleIsEnoughWhereNothingIsWeighedByX) {
  for (auto const name : {L"max", L"min", L"sum", L"mean", L"YAtXMin", L"YAtXMax"})
    EXPECT_EQ(Of(name, {2}, {-7}), -7) << name;
  for (auto const name : {L"pk2pk", L"variance", L"stddev"})
    EXPECT_EQ(Of(name, {2}, {-7}), 0) << name;
  EXPECT_EQ(Of(L"XAtYMin", {2}, {-7}), 2);
  EXPECT_EQ(Of(L"XAtYMax", {2}, {-7}), 2);
  EXPECT_EQ(Of(L"XAtYVal", {2}, {-7}, {-7}), 2);
  EXPECT_EQ(Of(L"YAtXVal", {2}, {-7}, {2}), -7);
  EXPECT_NO_VALUE(Of(L"XWidthAtYVal", {2}, {-7}, {-7}));
}

TEST(MathFunctions, AResultThatOverflowsIsNoValue) {
  EXPECT_NO_VALUE(Of(L"sum", {0, 1}, {1e308, 1e308}));
  EXPECT_EQ(Of(L"rms", {0, 1}, {1e200, 1e200}), 1e200); // its square does
  EXPECT_NO_VALUE(Of(L"pk2pk", {0, 1}, {-1e308, 1e308}));
}
