#pragma once

#include "basekit/value/ranged/RangedFunction.h"

#include <gtest/gtest.h>

#include <cmath>
#include <concepts>
#include <limits>
#include <numbers>
#include <vector>

namespace support {

using Numbers = std::vector<double>;
using ComplexNumbers = std::vector<std::complex<double>>;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kPi = std::numbers::pi;

/// What a function says of columns.
inline double Of(std::wstring_view name, Numbers const & x, Numbers const & y, Numbers const & parameters = {}) {
  val::RangedFunction const * const function = val::FindRangedFunction(name);
  return function ? val::Measure(*function, val::RangedTrace(x, y), parameters) : kInfinity;
}

/// A template so that plain lists of numbers are real.
template <std::same_as<std::complex<double>> Complex>
double Of(std::wstring_view name, Numbers const & x, std::vector<Complex> const & y, Numbers const & parameters = {}) {
  val::RangedFunction const * const function = val::FindRangedFunction(name);
  return function ? val::Measure(*function, val::RangedTrace(x, y), parameters) : kInfinity;
}

/// count even steps from one number to another, both included.
inline Numbers Steps(double from, double to, int count) {
  Numbers steps;
  for (int i = 0; i < count; ++i)
    steps.push_back(from + (to - from) * i / (count - 1));
  return steps;
}

template <class F> auto Map(Numbers const & x, F f) {
  std::vector<decltype(f(0.0))> values;
  for (double const at : x)
    values.push_back(f(at));
  return values;
}

} // namespace support

#define EXPECT_NO_VALUE(value) EXPECT_TRUE(std::isnan(value))
