#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <span>

/// What the formulas of ranged functions share: where a trace meets a level, and integrals over it.  Columns are in
/// order and without holes; between two samples a trace is the straight line.
namespace val::ranged {

using Column = std::span<double const>;

constexpr double kNoValue = std::numeric_limits<double>::quiet_NaN();
constexpr std::size_t kNowhere = static_cast<std::size_t>(-1);

/// How far value lies on the way between two numbers, also where the way is longer than any number.
inline double PartOfWay(double from, double to, double value) {
  double const way = to - from;
  if (std::isfinite(way))
    return (value - from) / way;
  double const half = to / 2 - from / 2;
  return std::isfinite(half) ? (value / 2 - from / 2) / half : kNoValue;
}

/// The number at a part of the way.
inline double Between(double from, double to, double part) {
  double const way = to - from;
  return std::isfinite(way) ? from + part * way : (1 - part) * from + part * to;
}

/// Where the line from (xa, ya) to (xb, yb) has the value level.
inline double Meeting(double xa, double ya, double xb, double yb, double level) {
  return Between(xa, xb, PartOfWay(ya, yb, level));
}

/// The same for the piece that ends at sample right.
inline double MeetingIn(Column x, Column y, std::size_t right, double level) {
  return Meeting(x[right - 1], y[right - 1], x[right], y[right], level);
}

/// A divisor that is nothing beside the greatest magnitude of what is divided, or that is no finite number: dividing
/// by an infinity would invent a zero.
inline bool IsNothing(double divisor, double greatest) {
  return !std::isfinite(divisor) || std::fabs(divisor) <= 1e-12 * greatest;
}

/// The power of two that brings numbers up to a greatest magnitude near 1, so that their sums and squares neither
/// overflow nor vanish.  Multiplying by it and dividing again is exact.
inline double ScaleOf(double greatest) {
  constexpr int farthest = 1000;
  return greatest > 0.0 && std::isfinite(greatest)
             ? std::ldexp(1.0, -std::clamp(std::ilogb(greatest), -farthest, farthest))
             : 1.0;
}

/// The trapezoid rule over the values that valueAt gives for each sample.
template <class ValueAt> double Integral(Column x, ValueAt valueAt) {
  double twice = 0.0;
  double left = valueAt(std::size_t(0));
  for (std::size_t i = 1; i < x.size(); ++i) {
    double const right = valueAt(i);
    twice += (x[i] - x[i - 1]) * (left + right);
    left = right;
  }
  return twice / 2;
}

std::size_t PlaceOfMaximum(Column y);
std::size_t PlaceOfMinimum(Column y);
double GreatestMagnitude(Column y);

/// The value at x of a trace that reaches there, which it is for the caller to know: that of the first sample with
/// this x, otherwise the line's.
double ValueAt(Column x, Column y, double at);
/// The same where the first sample with x >= at is known.
double ValueBefore(Column x, Column y, std::size_t first, double at);

/// Where v, falling away from sample p, first comes down to the level: the right end of that piece, on the left of p
/// and on its right.  kNowhere when it never does.
template <class V> std::size_t FallOnLeft(V v, std::size_t p, double level) {
  for (std::size_t i = p; i-- > 0;) {
    if (v(i) <= level)
      return i + 1;
  }
  return kNowhere;
}
template <class V> std::size_t FallOnRight(V v, std::size_t p, std::size_t count, double level) {
  for (std::size_t j = p + 1; j < count; ++j) {
    if (v(j) <= level)
      return j;
  }
  return kNowhere;
}

} // namespace val::ranged
