#include "products/rfcircuit/engine/closedform/Chebyshev.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

TEST(Chebyshev, PrototypeValuesAreThoseOfTheTables) {
  auto const values = rf::ChebyshevPrototype(7, 0.1);
  double const table[] = {1.1812, 1.4228, 2.0967, 1.5734, 2.0967, 1.4228, 1.1812};
  ASSERT_EQ(values.size(), 7u);
  for (std::size_t i = 0; i < values.size(); ++i)
    EXPECT_NEAR(values[i], table[i], 5e-5);
}

TEST(Chebyshev, TheRippleIsLeftAtTheCutoff) {
  EXPECT_NEAR(20 * std::log10(rf::ChebyshevLowPassS21(7, 0.1, 1e9, 1e9)), -0.1, 1e-12);
  EXPECT_EQ(rf::ChebyshevLowPassS21(7, 0.1, 1e9, 0), 1);
  EXPECT_LT(rf::ChebyshevLowPassS21(7, 0.1, 1e9, 2e9), 0.01);
}

TEST(Chebyshev, TheLadderHasTheIdealResponse) {
  for (int order : {1, 3, 5, 7, 9}) {
    auto const ladder = rf::ChebyshevLowPassLadder(order, 0.1, 1e9, 50);
    for (double frequency : {0.0, 1e8, 5e8, 9.9e8, 1e9, 1.3e9, 3e9})
      EXPECT_NEAR(std::abs(rf::LadderS21(ladder, 50, 50, frequency)),
                  rf::ChebyshevLowPassS21(order, 0.1, 1e9, frequency), 1e-12)
          << order << " at " << frequency;
  }
}

TEST(Chebyshev, EqualScalesMoveTheCutoff) {
  auto const ladder = rf::ChebyshevLowPassLadder(7, 0.1, 1e9, 50, 1.25, 1.25);
  for (double frequency : {2e8, 7.9e8, 8e8, 1e9})
    EXPECT_NEAR(std::abs(rf::LadderS21(ladder, 50, 50, frequency)), rf::ChebyshevLowPassS21(7, 0.1, 0.8e9, frequency),
                1e-12);
}

TEST(Chebyshev, TheBandPassLadderHasTheIdealResponse) {
  for (int order : {1, 3, 5}) {
    auto const ladder = rf::ChebyshevBandPassLadder(order, 0.1, 1e9, 0.05, 50);
    for (double frequency : {0.5e9, 0.97e9, 0.99e9, 1e9, 1.013e9, 1.2e9})
      EXPECT_NEAR(std::abs(rf::LadderS21(ladder, 50, 50, frequency)),
                  rf::ChebyshevBandPassS21(order, 0.1, 1e9, 0.05, frequency), 1e-11)
          << order << " at " << frequency;
  }
}

TEST(Chebyshev, LadderOfEachKindOfElement) {
  using Kind = rf::LadderElement::Kind;
  double const omega = 2 * M_PI * 1e9;
  std::complex<double> const j(0, 1);
  auto const series = [&](Kind kind, double value) { return rf::LadderS21({{kind, value}}, 50, 75, 1e9); };
  auto const ofSeries = [&](std::complex<double> z) { return 2 * std::sqrt(50.0 * 75) / (125.0 + z); };
  auto const ofShunt = [&](std::complex<double> y) { return 2 * std::sqrt(50.0 * 75) / (125.0 + y * 50.0 * 75.0); };
  EXPECT_LT(std::abs(series(Kind::SeriesResistor, 20) - ofSeries(20)), 1e-14);
  EXPECT_LT(std::abs(series(Kind::SeriesInductor, 5e-9) - ofSeries(j * omega * 5e-9)), 1e-14);
  EXPECT_LT(std::abs(series(Kind::SeriesCapacitor, 2e-12) - ofSeries(1.0 / (j * omega * 2e-12))), 1e-14);
  EXPECT_LT(std::abs(series(Kind::ShuntResistor, 20) - ofShunt(1.0 / 20)), 1e-14);
  EXPECT_LT(std::abs(series(Kind::ShuntInductor, 5e-9) - ofShunt(1.0 / (j * omega * 5e-9))), 1e-14);
  EXPECT_LT(std::abs(series(Kind::ShuntCapacitor, 2e-12) - ofShunt(j * omega * 2e-12)), 1e-14);
}

} // namespace
