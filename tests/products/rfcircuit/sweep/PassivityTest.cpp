#include "products/rfcircuit/engine/sweep/Passivity.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using Complex = std::complex<double>;

TEST(Passivity, HoldsForLosslessAndLossyNetworks) {
  double const half = std::sqrt(0.5);
  Complex const lossless[] = {Complex(0, half), half, half, Complex(0, half)};
  Complex const lossy[] = {0.1, 0.5, 0.5, -0.1};
  rf::Passivity passivity(2, 1e-12);
  EXPECT_TRUE(passivity.Holds(lossless));
  EXPECT_TRUE(passivity.Holds(lossy));
}

TEST(Passivity, IsLostWhereACombinationOfWavesGainsThoughNoEntryDoes) {
  Complex const entries[] = {0.8, 0.8, 0.8, 0.8};
  EXPECT_FALSE(rf::Passivity(2, 1e-12).Holds(entries));
}

TEST(Passivity, LeavesTheToleranceToTheLargestSingularValue) {
  Complex const entries[] = {1.0009, 0, 0, 0, 0.5, 0, 0, 0, 0.5};
  EXPECT_TRUE(rf::Passivity(3, 1e-3).Holds(entries));
  EXPECT_FALSE(rf::Passivity(3, 8e-4).Holds(entries));
}

TEST(Passivity, DoesNotHoldForWhatIsNotFinite) {
  Complex const entries[] = {std::nan("")};
  EXPECT_FALSE(rf::Passivity(1, 1).Holds(entries));
}

} // namespace
