// The category Math: extremes, averages and single places of a trace.  Averages over x weigh each sample by its steps
// (trapezoid rule), so that uneven steps do no harm; sum, mean, variance and stddev count samples.

#include "basekit/value/ranged/Averages.h"
#include "basekit/value/ranged/RangedTables.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace val::ranged {

namespace {

double Maximum(RangedTrace const & trace, double const *) { return trace.Y()[PlaceOfMaximum(trace.Y())]; }
double Minimum(RangedTrace const & trace, double const *) { return trace.Y()[PlaceOfMinimum(trace.Y())]; }

double PeakToPeak(RangedTrace const & trace, double const *) { return Maximum(trace, {}) - Minimum(trace, {}); }

/// I(y)
double IntegralOf(RangedTrace const & trace, double const *) {
  return Integral(trace.X(), [y = trace.Y()](std::size_t i) { return y[i]; });
}

/// I(|y|)
double IntegralOfMagnitude(RangedTrace const & trace, double const *) {
  return Integral(trace.X(), [y = trace.Y()](std::size_t i) { return std::fabs(y[i]); });
}

double AverageOf(RangedTrace const & trace, double const *) { return Average(trace.X(), trace.Y()); }
double Rms(RangedTrace const & trace, double const *) { return RmsAround(trace.X(), trace.Y(), 0.0); }
double RmsAC(RangedTrace const & trace, double const *) {
  return RmsAround(trace.X(), trace.Y(), AverageOf(trace, {}));
}

double Sum(RangedTrace const & trace, double const *) {
  return std::accumulate(trace.Y().begin(), trace.Y().end(), 0.0);
}

double ScaledMean(Column y, double scale) {
  double const sum =
      std::accumulate(y.begin(), y.end(), 0.0, [scale](double before, double value) { return before + value * scale; });
  return sum / static_cast<double>(y.size());
}

double Mean(RangedTrace const & trace, double const *) {
  double const scale = ScaleOf(GreatestMagnitude(trace.Y()));
  return ScaledMean(trace.Y(), scale) / scale;
}

/// sum((y - mean)^2) / n: the trace is all there is, not a draw from more
double ScaledVariance(Column y, double scale) {
  double const mean = ScaledMean(y, scale);
  double squares = 0.0;
  for (double const value : y)
    squares += (value * scale - mean) * (value * scale - mean);
  return squares / static_cast<double>(y.size());
}

double Variance(RangedTrace const & trace, double const *) {
  double const scale = ScaleOf(GreatestMagnitude(trace.Y()));
  return ScaledVariance(trace.Y(), scale) / scale / scale;
}

double StandardDeviation(RangedTrace const & trace, double const *) {
  double const scale = ScaleOf(GreatestMagnitude(trace.Y()));
  return std::sqrt(ScaledVariance(trace.Y(), scale)) / scale;
}

double AverageMagnitude(RangedTrace const & trace, double const *) { return AverageOfMagnitude(trace.X(), trace.Y()); }

/// A quantity over |A|; nothing to say of a trace whose average is nothing
double OverAverage(RangedTrace const & trace, double quantity) {
  double const average = AverageOf(trace, {});
  return IsNothing(average, GreatestMagnitude(trace.Y())) ? kNoValue : quantity / std::fabs(average);
}

double Ripple(RangedTrace const & trace, double const *) { return OverAverage(trace, RmsAC(trace, {})); }
double PeakOverAverage(RangedTrace const & trace, double const *) { return OverAverage(trace, PeakToPeak(trace, {})); }

/// The sample itself: no curve is fitted between samples
double XAtYMin(RangedTrace const & trace, double const *) { return trace.X()[PlaceOfMinimum(trace.Y())]; }
double XAtYMax(RangedTrace const & trace, double const *) { return trace.X()[PlaceOfMaximum(trace.Y())]; }

double YAtXMin(RangedTrace const & trace, double const *) { return trace.Y().front(); }
double YAtXMax(RangedTrace const & trace, double const *) { return trace.Y().back(); }

/// Tells the x of each place where the trace has the value, in order, until told(x) is false.  A touch counts; a
/// stretch of equal samples counts once, at its first.
template <class Told> void WalkOccurrences(Column x, Column y, double value, Told told) {
  for (std::size_t i = 0; i < x.size(); ++i) {
    bool const follows = i > 0;
    if (follows && ((y[i - 1] < value && y[i] > value) || (y[i - 1] > value && y[i] < value))) {
      if (!told(MeetingIn(x, y, i, value)))
        return;
    } else if (y[i] == value && !(follows && y[i - 1] == value) && !told(x[i]))
      return;
  }
}

double XAtYVal(RangedTrace const & trace, double const * parameters) {
  double first = kNoValue;
  WalkOccurrences(trace.X(), trace.Y(), parameters[0], [&](double x) {
    first = x;
    return false;
  });
  return first;
}

/// Never beyond the trace
double YAtXVal(RangedTrace const & trace, double const * parameters) {
  double const at = parameters[0];
  return at >= trace.X().front() && at <= trace.X().back() ? ValueAt(trace.X(), trace.Y(), at) : kNoValue;
}

/// Second occurrence minus first
double XWidthAtYVal(RangedTrace const & trace, double const * parameters) {
  double first = kNoValue;
  double width = kNoValue;
  WalkOccurrences(trace.X(), trace.Y(), parameters[0], [&](double x) {
    width = x - first;
    first = x;
    return std::isnan(width);
  });
  return width;
}

constexpr RangedParameter kYValue[] = {{L"Y Value", 0.0}};
constexpr RangedParameter kXValue[] = {{L"X Value", 0.0}};

constexpr RangedInput kAny = RangedInput::kAnyTrace;
constexpr RangedFunction kMath[] = {
    {L"max", kAny, {}, false, Maximum},
    {L"min", kAny, {}, false, Minimum},
    {L"pk2pk", kAny, {}, false, PeakToPeak},
    {L"rms", kAny, {}, true, Rms},
    {L"avg", kAny, {}, true, AverageOf},
    {L"integ", kAny, {}, true, IntegralOf},
    {L"sum", kAny, {}, false, Sum},
    {L"mean", kAny, {}, false, Mean},
    {L"variance", kAny, {}, false, Variance},
    {L"stddev", kAny, {}, false, StandardDeviation},
    {L"integabs", kAny, {}, true, IntegralOfMagnitude},
    {L"avgabs", kAny, {}, true, AverageMagnitude},
    {L"rmsAC", kAny, {}, true, RmsAC},
    {L"ripple", kAny, {}, true, Ripple},
    {L"pkavg", kAny, {}, true, PeakOverAverage},
    {L"XAtYMin", kAny, {}, false, XAtYMin},
    {L"XAtYMax", kAny, {}, false, XAtYMax},
    {L"YAtXMin", kAny, {}, false, YAtXMin},
    {L"YAtXMax", kAny, {}, false, YAtXMax},
    {L"XAtYVal", kAny, kYValue, false, XAtYVal},
    {L"YAtXVal", kAny, kXValue, false, YAtXVal},
    {L"XWidthAtYVal", kAny, kYValue, false, XWidthAtYVal},
};

} // namespace

std::span<RangedFunction const> MathFunctions() { return kMath; }

} // namespace val::ranged
