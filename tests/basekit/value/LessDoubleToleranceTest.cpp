#include "basekit/value/less_double_tolerance.h"

#include <gtest/gtest.h>

#include <limits>
#include <set>

namespace {
core::less_double_tolerance<> const less;
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
} // namespace

TEST(LessDoubleTolerance, OrdersNumbersThatDiffer) {
  EXPECT_TRUE(less(1.0, 2.0));
  EXPECT_FALSE(less(2.0, 1.0));
  EXPECT_TRUE(less(-2.0, 1e-3));
}

TEST(LessDoubleTolerance, NumbersWithinTheRelativeToleranceAreEqual) {
  EXPECT_FALSE(less(1e9, 1e9 * (1 + 9e-13)));
  EXPECT_TRUE(less(1e9, 1e9 * (1 + 1.1e-12)));
}

TEST(LessDoubleTolerance, NumbersWithinTheAbsoluteToleranceAreEqual) {
  EXPECT_FALSE(less(-1e-15, 1e-15)) << "both are no larger than the tolerance";
  EXPECT_FALSE(less(2e-15, 2.9e-15));
  EXPECT_TRUE(less(1e-15, 2.1e-15));
}

TEST(LessDoubleTolerance, WithoutARelativeToleranceOnlyTheAbsoluteOneCounts) {
  core::less_double_tolerance<0.0, 1e-3> const absolute;
  EXPECT_FALSE(absolute(5.0, 5.0009));
  EXPECT_TRUE(absolute(5e9, 5e9 + 1));
}

TEST(LessDoubleTolerance, InfinitiesAreEqualToThemselvesAlone) {
  EXPECT_FALSE(less(kInfinity, kInfinity));
  EXPECT_TRUE(less(1e300, kInfinity));
  EXPECT_TRUE(less(-kInfinity, kInfinity));
  EXPECT_FALSE(less(kNan, 1.0));
  EXPECT_FALSE(less(1.0, kNan));
}

TEST(LessDoubleTolerance, ASetKeepsOneOfTwoNumbersThatAreEqual) {
  std::set<double, core::less_double_tolerance<>> const numbers{1e9, 1e9 + 1e-4, 2e9};
  EXPECT_EQ(numbers.size(), 2u);
}
