#include "plotkit/sweep/SweepValues.h"

#include "tests/support/AssertWatch.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using support::AssertWatch;

namespace {

std::vector<double> Log(double base, double start, double stop, double count) {
  std::vector<double> values;
  core::GetLogScaleValues(values, base, start, stop, count, 0);
  return values;
}

std::vector<double> Stepped(double start, double stop, double step) {
  std::vector<double> values;
  core::GetSteppedValues(values, start, stop, step);
  return values;
}

} // namespace

TEST(SweepValues, ADecadeHasCountSamplesAndTheStop) {
  auto const values = Log(10.0, 1e6, 1e9, 10);
  ASSERT_EQ(values.size(), 31u);
  EXPECT_EQ(values.front(), 1e6);
  EXPECT_EQ(values.back(), 1e9);
  for (int k = 0; k < 30; ++k)
    EXPECT_EQ(values[static_cast<std::size_t>(k)], k == 0 ? 1e6 : 1e6 * std::pow(10.0, k / 10.0));
}

TEST(SweepValues, ALastSampleThatRoundsJustBelowTheStopIsTheStop) {
  for (double start : {1.0, 3.0, 7.7, 1.1e9})
    for (unsigned count = 1; count < 60; ++count) {
      auto const values = Log(10.0, start, start * 100.0, count);
      ASSERT_EQ(values.size(), 2 * count + 1) << start << ' ' << count;
      EXPECT_EQ(values.back(), start * 100.0);
    }
}

TEST(SweepValues, AFirstSamplePastTheStopByLessThanHalfAStepIsPulledBackOntoIt) {
  EXPECT_EQ(Log(2.0, 1.0, 7.0, 1), (std::vector<double>{1.0, 2.0, 4.0, 7.0}));
  EXPECT_EQ(Log(2.0, 1.0, 5.0, 1), (std::vector<double>{1.0, 2.0, 4.0}));
  EXPECT_EQ(Log(2.0, 8.0, 7.0, 1), std::vector<double>{7.0});
  EXPECT_TRUE(Log(2.0, 80.0, 7.0, 1).empty());
}

TEST(SweepValues, ACountOfZeroGivesNothing) { EXPECT_TRUE(Log(10.0, 1.0, 10.0, 0).empty()); }

TEST(SweepValues, LogLimitsThatAreNotPositiveAreRefused) {
  AssertWatch::Expect("areLimitsPositive");
  EXPECT_TRUE(Log(10.0, 0.0, 10.0, 5).empty());
  EXPECT_TRUE(Log(10.0, 1.0, std::numeric_limits<double>::infinity(), 5).empty());
}

TEST(SweepValues, ABaseThatDoesNotGrowIsRefused) {
  AssertWatch::Expect("isSpacingValid");
  EXPECT_TRUE(Log(1.0, 1.0, 10.0, 5).empty());
  EXPECT_TRUE(Log(10.0, 1.0, 10.0, -5).empty());
}

TEST(SweepValues, CountsThatWouldOnlyFillMemoryAreRefused) {
  AssertWatch::Expect("isCountInRange");
  AssertWatch::Expect("isCountInRange");
  EXPECT_TRUE(Log(10.0, 1.0, 1e9, 1e9).empty());
  std::vector<double> values;
  core::GetLinearCountValues(values, 0.0, 1.0, 4000000000u);
  EXPECT_TRUE(values.empty());
}

TEST(SweepValues, ALinearCountEndsOnTheStop) {
  std::vector<double> values{-1.0};
  core::GetLinearCountValues(values, 1.0, 2.0, 3);
  EXPECT_EQ(values, (std::vector<double>{-1.0, 1.0, 1.5, 2.0}));
  values.clear();
  core::GetLinearCountValues(values, 0.0, 0.7, 8);
  EXPECT_EQ(values.size(), 8u);
  EXPECT_EQ(values.back(), 0.7);
}

TEST(SweepValues, ALinearCountOfOneIsTheStart) {
  std::vector<double> values;
  core::GetLinearCountValues(values, 1.0, 2.0, 1);
  EXPECT_EQ(values, std::vector<double>{1.0});
  core::GetLinearCountValues(values, 1.0, 2.0, 0);
  EXPECT_EQ(values.size(), 1u);
}

TEST(SweepValues, StepsThatNeverReachTheStopAreRefused) {
  AssertWatch::Expect("reachesTheStop");
  EXPECT_TRUE(Stepped(1.0, 2.0, 0.0).empty());
  EXPECT_TRUE(Stepped(1.0, 2.0, -0.1).empty());
  EXPECT_TRUE(Stepped(1.0, 2.0, 1e-12).empty());
  EXPECT_TRUE(Stepped(std::numeric_limits<double>::quiet_NaN(), 2.0, 1.0).empty());
}

TEST(SweepValues, AStepThatIsLostBesideTheLimitsIsRefused) {
  AssertWatch::Expect("reachesTheStop");
  EXPECT_TRUE(Stepped(1e30, 1.0000001e30, 1e23 * 1e-8).empty());
  EXPECT_TRUE(Stepped(1e17, 1e17 + 64, 1.0).empty());
  EXPECT_EQ(Stepped(1e30, 1e30, 1.0), std::vector<double>{1e30});
}

TEST(SweepValues, StepsAreMultipliedNotAccumulated) {
  auto const values = Stepped(0.1, 1000.0, 0.1);
  ASSERT_EQ(values.size(), 10000u);
  for (int i = 0; i < 9999; ++i)
    ASSERT_EQ(values[static_cast<std::size_t>(i)], i * 0.1 + 0.1);
}
