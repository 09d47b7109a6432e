#include "tests/basekit/value/ranged/RangedSupport.h"

using namespace support;

TEST(ErrorFunctions, OfATraceOfTwoPiecesAreExactFractions) {
  Numbers const x = {0, 1, 3};
  Numbers const y = {0, 2, -1};
  // e = -1, 1, -2
  EXPECT_DOUBLE_EQ(Of(L"iae", x, y, {1}), 1 + 3);
  EXPECT_DOUBLE_EQ(Of(L"ise", x, y, {1}), 1 + 5);
  EXPECT_DOUBLE_EQ(Of(L"itae", x, y, {1}), 0.5 + 7);
  EXPECT_DOUBLE_EQ(Of(L"itse", x, y, {1}), 0.5 + 13);
}

TEST(ErrorFunctions, WithoutATargetAreThoseOfTheTraceItself) {
  Numbers const x = {1, 2, 4};
  Numbers const y = {1, -1, 2};
  EXPECT_DOUBLE_EQ(Of(L"iae", x, y), 1 + 3);
  EXPECT_DOUBLE_EQ(Of(L"ise", x, y), 1 + 5);
  EXPECT_DOUBLE_EQ(Of(L"itae", x, y), 1.5 + 10);
  EXPECT_DOUBLE_EQ(Of(L"itse", x, y), 1.5 + 18);
}

TEST(ErrorFunctions, OfAnExponentialApproachAreItsIntegrals) {
  Numbers const t = Steps(0, 40, 400001);
  Numbers const y = Map(t, [](double at) { return 3 - 2 * std::exp(-at); });
  EXPECT_NEAR(Of(L"iae", t, y, {3}), 2, 1e-8);
  EXPECT_NEAR(Of(L"ise", t, y, {3}), 4.0 / 2, 1e-8);
  EXPECT_NEAR(Of(L"itae", t, y, {3}), 2, 1e-8);
  EXPECT_NEAR(Of(L"itse", t, y, {3}), 4.0 / 4, 1e-8);
}

TEST(ErrorFunctions, TheWeightOfAnErrorCountsFromXZeroWhereverTheRangeStarts) {
  Numbers const y = {1, 1};
  EXPECT_EQ(Of(L"itae", {2, 4}, y), 6);
  EXPECT_EQ(Of(L"itae", {-4, -2}, y), -6);
  EXPECT_EQ(Of(L"itse", {2, 4}, y, {-1}), 24);
  EXPECT_EQ(Of(L"iae", {2, 4}, y), 2);
}

TEST(ErrorFunctions, OfATraceOnItsTargetAreNothing) {
  for (auto const name : {L"iae", L"ise", L"itae", L"itse"})
    EXPECT_EQ(Of(name, {0, 1, 2}, {7, 7, 7}, {7}), 0) << name;
}
