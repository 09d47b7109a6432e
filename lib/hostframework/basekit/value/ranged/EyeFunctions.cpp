// The category Eye Measurements.  Height and width are statistical, three deviations from each side; the least ones
// are what the worst bits leave.

#include "basekit/value/ranged/Eye.h"
#include "basekit/value/ranged/RangedTables.h"

#include <algorithm>

namespace val::ranged {

namespace {

using OfEye = double (*)(Eye const & eye);

Eye EyeOf(RangedTrace const & trace, double const * parameters) {
  return Eye(trace.X(), trace.Y(), {parameters[0], parameters[1], parameters[2], parameters[3] != 0.0, parameters[4]});
}

template <OfEye formula> double Measured(RangedTrace const & trace, double const * parameters) {
  Eye const eye = EyeOf(trace, parameters);
  return eye.IsValid() ? formula(eye) : kNoValue;
}

double LevelZero(Eye const & eye) { return eye.Zero().Mean(); }
double LevelOne(Eye const & eye) { return eye.One().Mean(); }
double Amplitude(Eye const & eye) { return eye.Amplitude(); }

/// (One - 3 s1) - (Zero + 3 s0); negative: closed
double Height(Eye const & eye) {
  return (eye.One().Mean() - 3 * eye.One().Deviation()) - (eye.Zero().Mean() + 3 * eye.Zero().Deviation());
}

/// (One - Zero) / (s1 + s0), the Q factor; nothing to say of a signal without noise
double SignalToNoise(Eye const & eye) {
  double const noise = eye.One().Deviation() + eye.Zero().Deviation();
  return noise <= 1e-12 * eye.Amplitude() ? kNoValue : eye.Amplitude() / noise;
}

/// ((One - s1) - (Zero + s0)) / (One - Zero)
double OpeningFactor(Eye const & eye) {
  return ((eye.One().Mean() - eye.One().Deviation()) - (eye.Zero().Mean() + eye.Zero().Deviation())) / eye.Amplitude();
}

double JitterPeakToPeak(Eye const & eye) {
  auto const [least, greatest] = std::minmax_element(eye.Deviations().begin(), eye.Deviations().end());
  return (*greatest - *least) * eye.UnitInterval();
}

/// sqrt(mean of d^2) UI: the standard deviation of the crossing times
double JitterRms(Eye const & eye) {
  double squares = 0.0;
  for (double const deviation : eye.Deviations())
    squares += deviation * deviation;
  return std::sqrt(squares / static_cast<double>(eye.Deviations().size())) * eye.UnitInterval();
}

/// UI - 6 * rms jitter; negative: closed
double Width(Eye const & eye) { return eye.UnitInterval() - 6 * JitterRms(eye); }

/// The mean time from low to high of edges that go all the way; one that turns back isn't counted.  sign -1 sees the
/// signal upside down.
double EdgeTime(Columns const & signal, double sign, double low, double high) {
  Spread times;
  double left = kNoValue;
  for (std::size_t i = 1; i < signal.x.size(); ++i) {
    double const before = sign * signal.y[i - 1];
    double const after = sign * signal.y[i];
    if (before <= low && low < after)
      left = Meeting(signal.x[i - 1], before, signal.x[i], after, low);
    if (!std::isnan(left) && before < high && high <= after) {
      times.Add(Meeting(signal.x[i - 1], before, signal.x[i], after, high) - left);
      left = kNoValue;
    }
  }
  return times.IsEmpty() ? kNoValue : times.Mean();
}

double LevelAt(Eye const & eye, double part) { return eye.Zero().Mean() + part * eye.Amplitude(); }

/// From 20 % to 80 % of Zero..One, on the signal itself, not on the folded one
double RiseTime(Eye const & eye) { return EdgeTime(eye.Signal(), 1.0, LevelAt(eye, 0.2), LevelAt(eye, 0.8)); }
double FallTime(Eye const & eye) { return EdgeTime(eye.Signal(), -1.0, -LevelAt(eye, 0.8), -LevelAt(eye, 0.2)); }

/// Where the least eye is measured: the centre, or a time from the start of the range in any unit interval.
double MeasurementPhase(Eye const & eye, double const * parameters) {
  bool const isAutomatic = parameters[5] != 0.0;
  return isAutomatic ? eye.CentrePhase() : PartOfOne(parameters[6] / eye.UnitInterval());
}

/// The gap between crossings around the measurement point: (1 - max g + min g) UI, g = (f - P) mod 1
double LeastWidth(RangedTrace const & trace, double const * parameters) {
  Eye const eye = EyeOf(trace, parameters);
  if (!eye.IsValid())
    return kNoValue;
  double const phase = MeasurementPhase(eye, parameters);
  double least = kNoValue;
  double greatest = kNoValue;
  for (double const crossing : eye.CrossingPhases()) {
    double const behind = PartOfOne(crossing - phase);
    least = std::fmin(least, behind);
    greatest = std::fmax(greatest, behind);
  }
  return (1 - greatest + least) * eye.UnitInterval();
}

/// The least value above the crossing amplitude minus the greatest of the others, read at the measurement point
double LeastHeight(RangedTrace const & trace, double const * parameters) {
  Eye const eye = EyeOf(trace, parameters);
  if (!eye.IsValid())
    return kNoValue;
  double leastAbove = kNoValue;
  double greatestBelow = kNoValue;
  eye.Read({MeasurementPhase(eye, parameters)}, [&](double value) {
    if (value > eye.CrossingAmplitude())
      leastAbove = std::fmin(leastAbove, value);
    else
      greatestBelow = std::fmax(greatestBelow, value);
  });
  return leastAbove - greatestBelow;
}

constexpr RangedParameter kPoint[] = {
    {L"Unit Interval", 0.0},           {L"Start Offset", 0.0},       {L"End Offset", 0.0},
    {L"Auto Crossing Amplitude", 1.0}, {L"Crossing Amplitude", 0.0}, {L"Auto Compute Eye Measurement Point", 1.0},
    {L"Eye Measurement Point", 0.0},
};
constexpr std::span<RangedParameter const> kEye(kPoint, 5);

constexpr RangedInput kReal = RangedInput::kRealTrace;
constexpr RangedFunction kEyes[] = {
    {L"EyeLevelZero", kReal, kEye, true, Measured<LevelZero>},
    {L"EyeLevelOne", kReal, kEye, true, Measured<LevelOne>},
    {L"EyeAmplitude", kReal, kEye, true, Measured<Amplitude>},
    {L"EyeHeight", kReal, kEye, true, Measured<Height>},
    {L"EyeSignalToNoise", kReal, kEye, true, Measured<SignalToNoise>},
    {L"EyeOpeningFactor", kReal, kEye, true, Measured<OpeningFactor>},
    {L"EyeWidth", kReal, kEye, true, Measured<Width>},
    {L"EyeJitterP2P", kReal, kEye, true, Measured<JitterPeakToPeak>},
    {L"EyeJitterRMS", kReal, kEye, true, Measured<JitterRms>},
    {L"EyeRiseTime", kReal, kEye, true, Measured<RiseTime>},
    {L"EyeFallTime", kReal, kEye, true, Measured<FallTime>},
    {L"MinEyeWidth", kReal, kPoint, true, LeastWidth},
    {L"MinEyeHeight", kReal, kPoint, true, LeastHeight},
};

} // namespace

std::span<RangedFunction const> EyeFunctions() { return kEyes; }

} // namespace val::ranged
