#pragma once

#include "basekit/value/ranged/Levels.h"

namespace val::ranged {

/// Averages over x of a trace with a span, by the trapezoid rule over the samples.

/// A = I(y) / span
inline double Average(Column x, Column y) {
  return Integral(x, [y](std::size_t i) { return y[i]; }) / (x.back() - x.front());
}

/// I(|y|) / span: magnitudes of samples, not split at a zero between them
inline double AverageOfMagnitude(Column x, Column y) {
  return Integral(x, [y](std::size_t i) { return std::fabs(y[i]); }) / (x.back() - x.front());
}

/// sqrt(I((y - level)^2) / span)
inline double RmsAround(Column x, Column y, double level) {
  double const squares = Integral(x, [y, level](std::size_t i) { return (y[i] - level) * (y[i] - level); });
  return std::sqrt(squares / (x.back() - x.front()));
}

} // namespace val::ranged
