#include "basekit/value/units/Tolerance.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace {
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
} // namespace

TEST(Tolerance, OfANumberThatIsNotFiniteIsNone) {
  EXPECT_TRUE(val::EqualWithin(kInfinity, kInfinity, 1e-14, 0.0));
  EXPECT_FALSE(val::EqualWithin(kInfinity, -kInfinity, 1.0, kInfinity));
  EXPECT_FALSE(val::EqualWithin(kInfinity, 1e308, 1.0, 1.0));
  EXPECT_FALSE(val::EqualWithin(kNaN, kNaN, 1.0, 1.0));
}

TEST(Tolerance, IsRelativeToTheLargerMagnitude) {
  EXPECT_TRUE(val::EqualWithin(-4.0, -5.0, 0.2, 0.0));
  EXPECT_TRUE(val::EqualWithin(-5.0, -4.0, 0.2, 0.0));
  EXPECT_FALSE(val::EqualWithin(4.0, 5.5, 0.2, 0.0));
  EXPECT_FALSE(val::EqualWithin(1.0, 1.0 + 1e-13, 1e-14, 0.0));
  EXPECT_TRUE(val::EqualWithin(1.0, 1.0 + 5e-15, 1e-14, 0.0));
  EXPECT_FALSE(val::EqualWithin(0.0, 1e-300, 1e-14, 0.0)) << "nothing but 0 is near 0";
}

TEST(Tolerance, OfZeroAndZeroLetsEqualNumbersBeEqual) {
  EXPECT_TRUE(val::EqualWithin(3.0, 3.0, 0.0, 0.0));
  EXPECT_TRUE(val::EqualWithin(0.0, -0.0, 0.0, 0.0));
  EXPECT_FALSE(val::EqualWithin(3.0, std::nextafter(3.0, 4.0), 0.0, 0.0));
}

TEST(Tolerance, OfTheAbsoluteKindHoldsForTheDistanceAndForBothMagnitudes) {
  EXPECT_TRUE(val::EqualWithin(100.0, 100.5, 0.0, 0.5));
  EXPECT_FALSE(val::EqualWithin(100.0, 100.75, 0.0, 0.5));
  EXPECT_TRUE(val::EqualWithin(-0.5, 0.5, 0.0, 0.5)) << "both are as small as the tolerance";
}
