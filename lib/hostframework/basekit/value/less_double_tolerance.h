#pragma once

#include <algorithm>
#include <cmath>

namespace core {

/// Order of doubles in which two numbers are equal within a relative tolerance of the larger magnitude or an absolute
/// tolerance; numbers that are not finite are equal only when they compare so.
template <double RelativeTolerance = 1e-12, double AbsoluteTolerance = 1e-15> struct less_double_tolerance {
  bool operator()(double a, double b) const { return !AreEqual(a, b) && b > a; }

  static bool AreEqual(double a, double b) {
    if (!std::isfinite(a) || !std::isfinite(b))
      return a == b;
    double const scale = std::max(std::abs(a), std::abs(b));
    double const difference = std::abs(a - b);
    return scale <= AbsoluteTolerance || difference <= AbsoluteTolerance ||
           (RelativeTolerance != 0.0 && scale * RelativeTolerance >= difference);
  }
};

} // namespace core
