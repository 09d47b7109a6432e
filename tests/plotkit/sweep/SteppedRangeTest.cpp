#include "plotkit/sweep/SteppedRange.h"

#include "basekit/value/AComplex.h"
#include "plotkit/sweep/SweepValues.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

std::vector<double> ValuesOf(SteppedRange const & range) {
  std::vector<double> values;
  for (unsigned place = 0; place < range.GetCount(); ++place)
    values.push_back(range.ValueAt(place));
  return values;
}

} // namespace

TEST(SteppedRange, StepsUpToItsMaximum) {
  EXPECT_EQ(ValuesOf(SteppedRange(1.0, 2.0, 0.25)), (std::vector<double>{1.0, 1.25, 1.5, 1.75, 2.0}));
  EXPECT_EQ(ValuesOf(SteppedRange(1.0, 2.0, 0.4)), (std::vector<double>{1.0, 1.4, 1.8}));
  EXPECT_EQ(ValuesOf(SteppedRange(0.0, 1.0, 0.35)).size(), 4u);
}

TEST(SteppedRange, PullsAFirstNumberPastTheMaximumBackWhenLessThanHalfAStepIsMissing) {
  EXPECT_EQ(ValuesOf(SteppedRange(0.0, 0.3, 0.1)), (std::vector<double>{0.0, 0.1, 0.2, 0.3}));
  EXPECT_EQ(ValuesOf(SteppedRange(0.0, 1.0, 0.4)), (std::vector<double>{0.0, 0.4, 0.8}));
  EXPECT_EQ(ValuesOf(SteppedRange(0.0, 1.0, 0.375)), (std::vector<double>{0.0, 0.375, 0.75, 1.0}));
}

TEST(SteppedRange, HoldsTheNumbersOfASteppedSweep) {
  for (double const step : {0.1, 0.3, 0.7, 1.0, 1.5, 10.0}) {
    std::vector<double> expected;
    core::GetSteppedValues(expected, -1.0, 2.5, step);
    std::vector<double> const values = ValuesOf(SteppedRange(-1.0, 2.5, step));
    ASSERT_EQ(values.size(), expected.size()) << step;
    for (std::size_t place = 0; place < values.size(); ++place)
      EXPECT_DOUBLE_EQ(values[place], expected[place]) << step;
  }
}

TEST(SteppedRange, OneNumberNeedsNoUsableStep) {
  EXPECT_EQ(ValuesOf(SteppedRange(1e30, 1e30, 1.0)), std::vector<double>{1e30});
  EXPECT_EQ(ValuesOf(SteppedRange(2.0, 2.0, 0.0)), std::vector<double>{2.0});
}

TEST(SteppedRange, IsEmptyWhenItNeverEndsOrHoldsTooMany) {
  double const infinite = std::numeric_limits<double>::infinity();
  double const nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(SteppedRange(2.0, 1.0, 0.1).GetCount(), 0u);
  EXPECT_EQ(SteppedRange(0.0, 1.0, 0.0).GetCount(), 0u);
  EXPECT_EQ(SteppedRange(0.0, 1.0, -1.0).GetCount(), 0u);
  EXPECT_EQ(SteppedRange(0.0, 1.0, nan).GetCount(), 0u);
  EXPECT_EQ(SteppedRange(0.0, 1.0, 1e-300).GetCount(), 0u);
  EXPECT_EQ(SteppedRange(0.0, infinite, 1.0).GetCount(), 0u);
  EXPECT_EQ(SteppedRange(nan, 1.0, 1.0).GetCount(), 0u);
  EXPECT_EQ(SteppedRange(1e30, 2e30, 1.0).GetCount(), 0u);
}
