#pragma once

#include "basekit/value/ranged/Levels.h"

namespace val::ranged {

/// Averages over x of a trace with a span, by the trapezoid rule over the samples.  Both axes are scaled while they are
/// summed up, so that an average that is a number is found as one, however great or small the trace.

/// I(v) / span of the values that valueAt gives, which must be scaled
template <class ValueAt> double MeanOverX(Column x, ValueAt valueAt) {
  double const span = x.back() - x.front();
  double const scale = ScaleOf(span);
  double twice = 0.0;
  double left = valueAt(std::size_t(0));
  for (std::size_t i = 1; i < x.size(); ++i) {
    double const right = valueAt(i);
    twice += (x[i] - x[i - 1]) * scale * (left + right);
    left = right;
  }
  return twice / 2 / (span * scale);
}

/// A = I(y) / span
inline double Average(Column x, Column y) {
  double const scale = ScaleOf(GreatestMagnitude(y));
  return MeanOverX(x, [y, scale](std::size_t i) { return y[i] * scale; }) / scale;
}

/// I(|y|) / span: magnitudes of samples, not split at a zero between them
inline double AverageOfMagnitude(Column x, Column y) {
  double const scale = ScaleOf(GreatestMagnitude(y));
  return MeanOverX(x, [y, scale](std::size_t i) { return std::fabs(y[i]) * scale; }) / scale;
}

/// sqrt(I((y - level)^2) / span)
inline double RmsAround(Column x, Column y, double level) {
  double const scale = ScaleOf(GreatestMagnitude(y));
  auto const square = [y, level, scale](std::size_t i) {
    double const distance = y[i] * scale - level * scale;
    return distance * distance;
  };
  return std::sqrt(MeanOverX(x, square)) / scale;
}

} // namespace val::ranged
