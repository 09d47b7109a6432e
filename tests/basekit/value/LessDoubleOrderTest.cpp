#include "basekit/value/less_double_tolerance.h"

#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <set>

namespace {

using Less = core::less_double_tolerance<1e-12, 1e-15>;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

bool AreOne(double a, double b) { return !Less()(a, b) && !Less()(b, a); }

/// A number, and one of about its size within or beyond the tolerance.
std::pair<double, double> Neighbours(std::mt19937_64 & random) {
  double const a =
      std::ldexp(std::uniform_real_distribution<>(-1.0, 1.0)(random), std::uniform_int_distribution<>(-60, 60)(random));
  double const step = std::pow(10.0, std::uniform_real_distribution<>(-17.0, -6.0)(random));
  return {a, a * (1.0 + step)};
}

} // namespace

TEST(LessDoubleOrder, NumbersWithinTheRelativeToleranceAreOne) {
  EXPECT_TRUE(AreOne(1.0, 1.0 + 1e-13));
  EXPECT_TRUE(Less()(1.0, 1.0 + 1e-11));
  EXPECT_TRUE(AreOne(-1e9, -1e9 - 1e-4));
  EXPECT_TRUE(Less()(-1e9 - 1e-2, -1e9));
}

TEST(LessDoubleOrder, NumbersWithinTheAbsoluteToleranceAreOne) {
  EXPECT_TRUE(AreOne(0.0, 1e-16));
  EXPECT_TRUE(AreOne(1e-15, 2e-15));
  EXPECT_TRUE(AreOne(-1e-15, 1e-15));
  EXPECT_TRUE(Less()(1e-15, 3e-15));
}

TEST(LessDoubleOrder, WithoutARelativeToleranceTheAbsoluteOneDecidesAlone) {
  EXPECT_TRUE((core::less_double_tolerance<0.0, 1e-15>()(1.0, 1.0 + 1e-13)));
}

TEST(LessDoubleOrder, NaNComparesFalseBothWays) {
  for (double const other : {kNaN, 0.0, 1.0, kInfinity, -kInfinity})
    EXPECT_TRUE(AreOne(kNaN, other));
  EXPECT_FALSE(Less::AreEqual(kNaN, kNaN));
}

TEST(LessDoubleOrder, AnInfinityEqualsOnlyItself) {
  double const most = std::numeric_limits<double>::max();
  EXPECT_TRUE(AreOne(kInfinity, kInfinity));
  EXPECT_TRUE(Less()(most, kInfinity));
  EXPECT_TRUE(Less()(-kInfinity, -most));
  EXPECT_TRUE(Less()(-most, most));
}

TEST(LessDoubleOrder, NoNumberIsLessThanItselfAndNoTwoAreLessThanEachOther) {
  std::mt19937_64 random(1);
  for (int i = 0; i < 100000; ++i) {
    auto const [a, b] = Neighbours(random);
    ASSERT_FALSE(Less()(a, a));
    ASSERT_FALSE(Less()(a, b) && Less()(b, a));
    ASSERT_EQ(Less::AreEqual(a, b), Less::AreEqual(b, a));
    ASSERT_EQ(AreOne(a, b), Less::AreEqual(a, b));
    if (Less()(a, b)) {
      ASSERT_LT(a, b);
    }
  }
}

TEST(LessDoubleOrder, OfThreeNumbersLessCarriesOver) {
  std::mt19937_64 random(2);
  for (int i = 0; i < 100000; ++i) {
    auto const [a, b] = Neighbours(random);
    double const c = Neighbours(random).second;
    if (Less()(a, b) && Less()(b, c)) {
      ASSERT_TRUE(Less()(a, c)) << a << ' ' << b << ' ' << c;
    }
  }
}

TEST(LessDoubleOrder, EqualityDoesNotCarryOverAndThatIsAccepted) {
  double const a = 1.0;
  double const b = 1.0 + 8e-13;
  double const c = 1.0 + 16e-13;
  EXPECT_TRUE(AreOne(a, b));
  EXPECT_TRUE(AreOne(b, c));
  EXPECT_TRUE(Less()(a, c));
  EXPECT_EQ((std::set<double, Less>{a, b, c}).size(), 2u);
  EXPECT_EQ((std::set<double, Less>{b, a, c}).size(), 1u);
}
