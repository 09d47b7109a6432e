#include "products/rfcircuit/engine/sweep/RationalFit.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>

namespace {

using Complex = std::complex<double>;
using Function = std::function<Complex(double)>;

rf::FitSamples Samples(std::vector<Function> const & functions, int count, double start, double stop) {
  rf::FitSamples samples;
  samples.functions = functions.size();
  std::vector<Complex> row(functions.size());
  for (int i = 0; i < count; ++i) {
    double const point = start + (stop - start) * i / (count - 1);
    for (std::size_t e = 0; e < functions.size(); ++e)
      row[e] = functions[e](point);
    samples.Add(point, row.data());
  }
  return samples;
}

double ErrorOf(rf::RationalFit const & fit, std::vector<Function> const & functions, double start, double stop) {
  double error = 0;
  std::vector<Complex> row(functions.size());
  for (double point = start; point <= stop; point += (stop - start) / 1234.5) {
    EXPECT_TRUE(fit.At(point, row.data()));
    for (std::size_t e = 0; e < functions.size(); ++e)
      error = std::max(error, std::abs(row[e] - functions[e](point)));
  }
  return error;
}

Complex Pole(double f, double centre, double width) { return width / Complex(width, f - centre); }

TEST(RationalFit, OfARationalFunctionIsExactAtItsDegree) {
  std::vector<Function> const functions{[](double f) { return Pole(f, 3, 0.1) + Pole(f, 5, 0.3); }};
  rf::RationalFit const fit(Samples(functions, 20, 0, 10), 100);
  EXPECT_EQ(fit.Supports(), 3u);
  EXPECT_LT(fit.Residual(), 1e-13);
  EXPECT_LT(ErrorOf(fit, functions, 0, 10), 1e-11);
}

TEST(RationalFit, OfSeveralFunctionsHasOneDenominator) {
  std::vector<Function> functions;
  for (int e = 0; e < 4; ++e)
    functions.push_back([e](double f) { return Pole(f, 3, 0.1) * (1.0 + e) + Pole(f, 5, 0.3) * (2.0 - e); });
  rf::RationalFit const fit(Samples(functions, 20, 0, 10), 100);
  EXPECT_EQ(fit.Supports(), 3u);
  EXPECT_LT(ErrorOf(fit, functions, 0, 10), 1e-11);
}

TEST(RationalFit, OfManyFunctionsGoesThroughCombinations) {
  std::vector<Function> functions;
  for (int e = 0; e < 64; ++e)
    functions.push_back([e](double f) {
      return Pole(f, 3, 0.1) * std::cos(e) + Pole(f, 5, 0.3) * std::sin(3.0 * e) + Pole(f, 8, 0.01) * std::cos(7.0 * e);
    });
  rf::RationalFit const fit(Samples(functions, 30, 0, 10), 100);
  EXPECT_LT(ErrorOf(fit, functions, 0, 10), 1e-9);
}

TEST(RationalFit, SeesAPoleFarFromAllItsPoints) {
  // A millionth of the range wide, half a step from the next sample.
  std::vector<Function> const functions{[](double f) { return 1.0 - Pole(f, 4.75, 1e-5); }};
  rf::RationalFit const fit(Samples(functions, 21, 0, 10), 100);
  Complex value;
  ASSERT_TRUE(fit.At(4.75, &value));
  EXPECT_LT(std::abs(value), 1e-3);
}

TEST(RationalFit, UsesNoMoreSupportPointsThanAllowed) {
  std::vector<Function> const functions{[](double f) { return std::exp(Complex(0, 20 * f)); }};
  auto const samples = Samples(functions, 100, 0, 10);
  EXPECT_LE(rf::RationalFit(samples, 7).Supports(), 7u);
  EXPECT_LE(rf::RationalFit(samples, 1000).Supports(), 50u);
}

TEST(RationalFit, OfAConstantIsOnePoint) {
  std::vector<Function> const functions{[](double) { return Complex(0.25, -1); }};
  rf::RationalFit const fit(Samples(functions, 9, 1, 2), 100);
  EXPECT_EQ(fit.Supports(), 1u);
  EXPECT_LT(ErrorOf(fit, functions, 1, 2), 1e-15);
}

TEST(RationalFit, OfOneSampleIsItsValue) {
  rf::FitSamples samples;
  samples.functions = 1;
  Complex const value(3, 4);
  samples.Add(2, &value);
  Complex result;
  EXPECT_TRUE(rf::RationalFit(samples, 10).At(7, &result));
  EXPECT_LT(std::abs(result - value), 1e-15);
}

TEST(RationalFit, TellsWhereItHasNoFiniteValue) {
  std::vector<Function> const functions{[](double f) { return 1.0 / Complex(f - 1.5); }};
  rf::FitSamples samples;
  samples.functions = 1;
  for (double const point : {1.0, 1.25, 1.75, 2.0}) {
    Complex const value = functions[0](point);
    samples.Add(point, &value);
  }
  Complex value;
  bool const isFinite = rf::RationalFit(samples, 10).At(1.5, &value);
  EXPECT_TRUE(!isFinite || std::abs(value) > 1e12);
  EXPECT_EQ(isFinite, std::isfinite(value.real()) && std::isfinite(value.imag()));
}

} // namespace
