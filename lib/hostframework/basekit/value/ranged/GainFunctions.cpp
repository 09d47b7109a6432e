// The category AC: margins, crossovers and cutoffs of a linear response over frequency, complex or real with imaginary
// part 0.  Gain is in dB of Base Gain, phase in degrees from Base Phase.

#include "basekit/value/ranged/Crossings.h"
#include "basekit/value/ranged/RangedTables.h"

#include <numbers>
#include <vector>

namespace val::ranged {

namespace {

/// Values so near to a level lie on it (dB, degrees).
constexpr double kOnLevel = 1e-9;

/// Into (-180, 180] by whole turns.
double PrincipalAngle(double degrees) {
  double const angle = std::remainder(degrees, 360.0);
  return angle == -180.0 ? 180.0 : angle;
}

/// Gain and phase at the samples that have one: a y of 0 is left out.  Between samples both are straight lines over log
/// x, where the asymptotes of a Bode plot are straight, and over x in a piece that starts at 0 Hz or below.
class Response {
public:
  Response(RangedTrace const & trace, double const * parameters) {
    double const baseGain = parameters[0];
    if (!(baseGain > 0.0))
      return;
    m_samples.reserve(trace.Count());
    m_gain.reserve(trace.Count());
    for (std::size_t i = 0; i < trace.Count(); ++i) {
      double const magnitude = std::fabs(trace.Y()[i]);
      if (magnitude == 0.0)
        continue;
      if (m_gain.empty() || magnitude > m_greatest) {
        m_greatest = magnitude;
        m_peak = m_gain.size();
      }
      m_samples.push_back(i);
      m_gain.push_back(20 * std::log10(magnitude / baseGain));
    }
    m_trace = &trace;
    m_basePhase = parameters[1];
  }

  bool IsEmpty() const { return m_gain.empty(); }
  std::size_t Count() const { return m_gain.size(); }
  Column Gain() const { return m_gain; }
  /// The sample of the greatest |y|; no curve is fitted.
  std::size_t Peak() const { return m_peak; }
  double X(std::size_t i) const { return m_trace->X()[m_samples[i]]; }

  /// Unwrapped from sample to sample, each step within (-180, 180], then counted from Base Phase.
  std::vector<double> Phase() const {
    std::vector<double> phase;
    phase.reserve(Count());
    double turns = 0.0;
    double former = 0.0;
    for (std::size_t i = 0; i < Count(); ++i) {
      double const angle = Argument(m_samples[i]);
      double const step = i == 0 ? 0.0 : angle - former;
      turns += step > 180.0 ? -1.0 : step <= -180.0 ? 1.0 : 0.0;
      phase.push_back(angle + 360.0 * turns - m_basePhase);
      former = angle;
    }
    return phase;
  }

  /// x at a part of the piece that ends at sample right.
  double XInside(std::size_t right, double part) const {
    double const a = X(right - 1);
    double const b = X(right);
    return a > 0.0 ? a * std::pow(b / a, part) : a + part * (b - a);
  }

private:
  /// Degrees in (-180, 180]; -0 counts as +0, so that a negative real number has 180.
  double Argument(std::size_t sample) const {
    bool const isComplex = !m_trace->Complex().empty();
    double const real = isComplex ? m_trace->Complex()[sample].real() : m_trace->Y()[sample];
    double const imaginary = isComplex ? m_trace->Complex()[sample].imag() : 0.0;
    return std::atan2(imaginary + 0.0, real + 0.0) * 180 / std::numbers::pi;
  }

  RangedTrace const * m_trace = nullptr;
  std::vector<std::size_t> m_samples;
  std::vector<double> m_gain;
  std::size_t m_peak = 0;
  double m_greatest = 0.0;
  double m_basePhase = 0.0;
};

/// A place on the response: a sample, or a part of the piece that ends there.
struct Place {
  std::size_t right = kNowhere;
  double part = 1.0;

  bool IsNone() const { return right == kNowhere; }
  double X(Response const & response) const { return part == 1.0 ? response.X(right) : response.XInside(right, part); }
  double Of(Column values) const {
    return part == 1.0 ? values[right] : values[right - 1] + part * (values[right] - values[right - 1]);
  }
};

Place PlaceInPiece(Column values, std::size_t right, double level) {
  return {right, (level - values[right - 1]) / (values[right] - values[right - 1])};
}

/// The first crossing, either way, of 0 dB
Place GainCrossover(Response const & response) {
  Place first;
  Column const gain = response.Gain();
  auto const sideOf = [&](std::size_t i) {
    return std::fabs(gain[i]) <= kOnLevel ? kNoValue : gain[i] > 0.0 ? 1.0 : -1.0;
  };
  WalkCrossings(response.Count(), sideOf, [&](Crossing const & crossing) {
    first = crossing.isOnSample ? Place{crossing.sample} : PlaceInPiece(gain, crossing.sample, 0.0);
    return false;
  });
  return first;
}

/// The first crossing, either way, of -180 degrees and whole turns from there: where the response cuts the negative
/// real axis, wherever unwrapping started.  The sides are the bands between those levels, by number
Place PhaseCrossover(Response const & response, Column phase) {
  Place first;
  auto const sideOf = [&](std::size_t i) {
    double const level = -180.0 + 360.0 * std::round((phase[i] + 180.0) / 360.0);
    return std::fabs(phase[i] - level) <= kOnLevel ? kNoValue : std::floor((phase[i] + 180.0) / 360.0);
  };
  WalkCrossings(response.Count(), sideOf, [&](Crossing const & crossing) {
    double const lowerEdge = crossing.isRising ? crossing.side : crossing.side + 1.0;
    first =
        crossing.isOnSample ? Place{crossing.sample} : PlaceInPiece(phase, crossing.sample, -180.0 + 360.0 * lowerEdge);
    return false;
  });
  return first;
}

/// -g at the phase crossover
double GainMargin(RangedTrace const & trace, double const * parameters) {
  Response const response(trace, parameters);
  Place const crossover = PhaseCrossover(response, response.Phase());
  return crossover.IsNone() ? kNoValue : -crossover.Of(response.Gain());
}

/// 180 + ph at the gain crossover: the margin, not the bare phase
double PhaseMargin(RangedTrace const & trace, double const * parameters) {
  Response const response(trace, parameters);
  Place const crossover = GainCrossover(response);
  return crossover.IsNone() ? kNoValue : PrincipalAngle(180.0 + crossover.Of(response.Phase()));
}

double GainCrossoverX(RangedTrace const & trace, double const * parameters) {
  Response const response(trace, parameters);
  Place const crossover = GainCrossover(response);
  return crossover.IsNone() ? kNoValue : crossover.X(response);
}

double PhaseCrossoverX(RangedTrace const & trace, double const * parameters) {
  Response const response(trace, parameters);
  Place const crossover = PhaseCrossover(response, response.Phase());
  return crossover.IsNone() ? kNoValue : crossover.X(response);
}

/// Half power below the peak, 10 log10(2) dB, so that a first-order filter gives its corner
double CutoffLevel(Response const & response) { return response.Gain()[response.Peak()] - 10 * std::log10(2.0); }

double CutoffX(Response const & response, std::size_t right, double level) {
  return right == kNowhere ? kNoValue : PlaceInPiece(response.Gain(), right, level).X(response);
}

double LowerCutoffOf(Response const & response) {
  Column const gain = response.Gain();
  double const level = CutoffLevel(response);
  return CutoffX(response, FallOnLeft([gain](std::size_t i) { return gain[i]; }, response.Peak(), level), level);
}

double UpperCutoffOf(Response const & response) {
  Column const gain = response.Gain();
  double const level = CutoffLevel(response);
  auto const gainAt = [gain](std::size_t i) { return gain[i]; };
  return CutoffX(response, FallOnRight(gainAt, response.Peak(), gain.size(), level), level);
}

double LowerCutoff(RangedTrace const & trace, double const * parameters) {
  Response const response(trace, parameters);
  return response.IsEmpty() ? kNoValue : LowerCutoffOf(response);
}

double UpperCutoff(RangedTrace const & trace, double const * parameters) {
  Response const response(trace, parameters);
  return response.IsEmpty() ? kNoValue : UpperCutoffOf(response);
}

/// Upper minus lower cutoff; a low-pass passes from 0
double Bandwidth(RangedTrace const & trace, double const * parameters) {
  Response const response(trace, parameters);
  if (response.IsEmpty())
    return kNoValue;
  double const lower = LowerCutoffOf(response);
  return UpperCutoffOf(response) - (std::isnan(lower) ? 0.0 : lower);
}

double PeakGain(RangedTrace const & trace, double const * parameters) {
  Response const response(trace, parameters);
  return response.IsEmpty() ? kNoValue : response.Gain()[response.Peak()];
}

double PeakGainFrequency(RangedTrace const & trace, double const * parameters) {
  Response const response(trace, parameters);
  return response.IsEmpty() ? kNoValue : response.X(response.Peak());
}

constexpr RangedParameter kBase[] = {{L"Base Gain", 1.0}, {L"Base Phase", 0.0, Units::kDegree}};

constexpr RangedInput kGain = RangedInput::kGain;
constexpr RangedFunction kFunctions[] = {
    {L"gainmargin", kGain, kBase, false, GainMargin},
    {L"phasemargin", kGain, kBase, false, PhaseMargin},
    {L"gaincrossover", kGain, kBase, false, GainCrossoverX},
    {L"phasecrossover", kGain, kBase, false, PhaseCrossoverX},
    {L"lowercutoff", kGain, kBase, false, LowerCutoff},
    {L"uppercutoff", kGain, kBase, false, UpperCutoff},
    {L"bandwidth", kGain, kBase, false, Bandwidth},
    {L"peakgain", kGain, kBase, false, PeakGain},
    {L"peakgainfreq", kGain, kBase, false, PeakGainFrequency},
};

} // namespace

std::span<RangedFunction const> GainFunctions() { return kFunctions; }

} // namespace val::ranged
