// The category TR & DC: shape factors, the fundamental and what isn't it, and the times of a step response.  Times are
// x itself, counted from x = 0 where the step is applied; percentages are of the target.

#include "basekit/value/ranged/Averages.h"
#include "basekit/value/ranged/Columns.h"
#include "basekit/value/ranged/RangedTables.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace val::ranged {

namespace {

/// max |y| / rms
double CrestFactor(RangedTrace const & trace, double const *) {
  double const greatest = GreatestMagnitude(trace.Y());
  double const rms = RmsAround(trace.X(), trace.Y(), 0.0);
  return IsNothing(rms, greatest) ? kNoValue : greatest / rms;
}

/// rms / average of |y|
double FormFactor(RangedTrace const & trace, double const *) {
  double const average = AverageOfMagnitude(trace.X(), trace.Y());
  return IsNothing(average, GreatestMagnitude(trace.Y())) ? kNoValue : RmsAround(trace.X(), trace.Y(), 0.0) / average;
}

/// What a trace holds over its last whole number of periods, without the mean.  The last ones, since a start-up
/// transient stands at the beginning.  All magnitudes are multiplied by the scale.
struct Harmonics {
  double fundamental = kNoValue; ///< RMS: sqrt((a^2 + b^2) / 2) with the Fourier coefficients a, b
  double all = kNoValue;         ///< RMS of the whole
  double greatest = 0.0;         ///< max |y|
  double scale = 1.0;
};

Harmonics Analyse(RangedTrace const & trace, double frequency) {
  double const periods = std::floor(trace.Span() * frequency + 1e-9);
  if (!(frequency > 0.0) || !(periods >= 1.0) || !std::isfinite(periods))
    return {};
  double const end = trace.X().back();
  double const start = std::max(trace.X().front(), end - periods / frequency);
  Columns const window = StartingAt(trace.X(), trace.Y(), start);
  Column const x = window.x;
  Column const y = window.y;
  double const span = end - start;
  double const greatest = GreatestMagnitude(y);
  double const scale = ScaleOf(greatest);
  double const average = Average(x, y) * scale;
  double const omega = 2 * std::numbers::pi * frequency;
  double const a =
      Integral(x, [&](std::size_t i) { return (y[i] * scale - average) * std::cos(omega * (x[i] - start)); });
  double const b =
      Integral(x, [&](std::size_t i) { return (y[i] * scale - average) * std::sin(omega * (x[i] - start)); });
  return {2 / span * std::hypot(a, b) / std::numbers::sqrt2, RmsAround(x, y, average / scale) * scale, greatest * scale,
          scale};
}

double FundamentalMagnitude(RangedTrace const & trace, double const * parameters) {
  Harmonics const harmonics = Analyse(trace, parameters[0]);
  return harmonics.fundamental / harmonics.scale;
}

/// sqrt(R^2 - F^2) / F: everything that isn't the fundamental counts, interharmonics too; DC doesn't, as in IEC 61000
/// and IEEE 519
double Distortion(RangedTrace const & trace, double const * parameters) {
  Harmonics const harmonics = Analyse(trace, parameters[0]);
  double const f = harmonics.fundamental;
  if (IsNothing(f, harmonics.greatest) || !std::isfinite(harmonics.all))
    return kNoValue;
  return std::sqrt(std::max(0.0, harmonics.all * harmonics.all - f * f)) / f;
}

/// Where y / target first comes up to a level.
struct Reach {
  double x = kNoValue;
  std::size_t right = kNowhere; ///< the right end of its piece
};

Reach UpwardReach(RangedTrace const & trace, double target, double level, std::size_t firstRight) {
  Column const x = trace.X();
  Column const y = trace.Y();
  for (std::size_t i = firstRight; i < x.size(); ++i) {
    double const before = y[i - 1] / target;
    double const after = y[i] / target;
    if (before < level && level <= after)
      return {Meeting(x[i - 1], before, x[i], after, level), i};
  }
  return {};
}

Reach FirstUpwardReach(RangedTrace const & trace, double target, double level) {
  if (target == 0.0)
    return {};
  return trace.Y()[0] / target == level ? Reach{trace.X()[0], 1} : UpwardReach(trace, target, level, 1);
}

/// 50 % of the target
double DelayTime(RangedTrace const & trace, double const * parameters) {
  return FirstUpwardReach(trace, parameters[0], 0.5).x;
}

/// From 10 % of the target to 90 %
double RiseTime(RangedTrace const & trace, double const * parameters) {
  Reach const low = FirstUpwardReach(trace, parameters[0], 0.1);
  return low.right == kNowhere ? kNoValue : UpwardReach(trace, parameters[0], 0.9, low.right).x - low.x;
}

/// The latest x with |y| <= tolerance, met on its edge where the trace leaves the band for the last time
double DeadTime(RangedTrace const & trace, double const * parameters) {
  double const tolerance = std::fabs(parameters[0]);
  Column const x = trace.X();
  Column const y = trace.Y();
  if (std::fabs(y.back()) <= tolerance)
    return x.back();
  for (std::size_t i = x.size() - 1; i > 0; --i) {
    bool const leavesUpward = y[i] > 0;
    if (leavesUpward ? y[i - 1] <= tolerance : y[i - 1] >= -tolerance)
      return MeetingIn(x, y, i, leavesUpward ? tolerance : -tolerance);
  }
  return kNoValue;
}

/// Where the trace comes into Target +- tolerance, edges included, for good
double SettlingTime(RangedTrace const & trace, double const * parameters) {
  double const tolerance = std::fabs(parameters[1]);
  double const low = parameters[0] - tolerance;
  double const high = parameters[0] + tolerance;
  Column const x = trace.X();
  Column const y = trace.Y();
  for (std::size_t i = x.size(); i-- > 0;) {
    if (y[i] < low || y[i] > high)
      return i + 1 == x.size() ? kNoValue : MeetingIn(x, y, i + 1, y[i] < low ? low : high);
  }
  return x.front();
}

constexpr RangedParameter kFrequency[] = {{L"Frequency", 0.0}};
constexpr RangedParameter kTarget[] = {{L"Target", 0.0}};
constexpr RangedParameter kTolerance[] = {{L"Tolerance", 0.0}};
constexpr RangedParameter kBand[] = {{L"Target", 0.0}, {L"Tolerance", 0.0}};

constexpr RangedInput kReal = RangedInput::kRealTrace;
constexpr RangedFunction kResponse[] = {
    {L"crestfactor", kReal, {}, true, CrestFactor},
    {L"formfactor", kReal, {}, true, FormFactor},
    {L"distortion", kReal, kFrequency, true, Distortion},
    {L"fundamentalmag", kReal, kFrequency, true, FundamentalMagnitude},
    {L"delaytime", kReal, kTarget, true, DelayTime},
    {L"risetime", kReal, kTarget, true, RiseTime},
    {L"deadtime", kReal, kTolerance, true, DeadTime},
    {L"settlingtime", kReal, kBand, true, SettlingTime},
};

} // namespace

std::span<RangedFunction const> ResponseFunctions() { return kResponse; }

} // namespace val::ranged
