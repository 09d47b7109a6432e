// One pulse of a trace, in the terms of impulse testing (front, tail and virtual points as in IEC 60060-1 for voltages
// and IEC 62475 for currents) and of IEEE 181 (pulse, fall time).

#include "basekit/value/ranged/Levels.h"
#include "basekit/value/ranged/RangedTables.h"

#include <algorithm>

namespace val::ranged {

namespace {

/// The pulse that a trace has: its polarity, its peak, and its levels in parts of the way from base to peak.  The base
/// is the least value of the front, where the pulse rises from, so that an undershoot in the tail doesn't move the
/// levels.  A negative pulse is seen upside down.
class Pulse {
public:
  explicit Pulse(RangedTrace const & trace) : m_x(trace.X()), m_y(trace.Y()) {
    double const least = *std::min_element(m_y.begin(), m_y.end());
    double const greatest = *std::max_element(m_y.begin(), m_y.end());
    m_sign = m_y[0] - least > greatest - m_y[0] ? -1.0 : 1.0;
    m_peak = m_sign < 0 ? PlaceOfMinimum(m_y) : PlaceOfMaximum(m_y);
    m_base = Value(0);
    for (std::size_t i = 1; i <= m_peak; ++i)
      m_base = std::min(m_base, Value(i));
  }

  /// Where the part is met outward from the peak, so that noise far from it doesn't count.
  double Front(double part) const {
    double const level = Level(part);
    return HasFront() ? Met(FallOnLeft([this](std::size_t i) { return Value(i); }, m_peak, level), level) : kNoValue;
  }
  double Tail(double part) const {
    double const level = Level(part);
    auto const value = [this](std::size_t i) { return Value(i); };
    return HasFront() ? Met(FallOnRight(value, m_peak, m_x.size(), level), level) : kNoValue;
  }

private:
  double Value(std::size_t i) const { return m_sign * m_y[i]; }
  bool HasFront() const { return Value(m_peak) > m_base; }
  double Level(double part) const { return m_base + part * (Value(m_peak) - m_base); }
  double Met(std::size_t right, double level) const {
    return right == kNowhere ? kNoValue : Meeting(m_x[right - 1], Value(right - 1), m_x[right], Value(right), level);
  }

  Column m_x;
  Column m_y;
  std::size_t m_peak = 0;
  double m_sign = 1.0;
  double m_base = 0.0;
};

/// The lower of the least values of front and tail is that of the whole, whatever the polarity; a flat trace has no
/// pulse
std::size_t PlaceOfPulseMin(Column y) {
  std::size_t const place = PlaceOfMinimum(y);
  return y[place] < y[PlaceOfMaximum(y)] ? place : kNowhere;
}

std::size_t PlaceOfPulseMax(Column y) {
  std::size_t const place = PlaceOfMaximum(y);
  return y[place] > y[PlaceOfMinimum(y)] ? place : kNowhere;
}

double At(Column column, std::size_t place) { return place == kNowhere ? kNoValue : column[place]; }

double PulseMin(RangedTrace const & trace, double const *) { return At(trace.Y(), PlaceOfPulseMin(trace.Y())); }
double PulseMax(RangedTrace const & trace, double const *) { return At(trace.Y(), PlaceOfPulseMax(trace.Y())); }
double PulseMinTime(RangedTrace const & trace, double const *) { return At(trace.X(), PlaceOfPulseMin(trace.Y())); }
double PulseMaxTime(RangedTrace const & trace, double const *) { return At(trace.X(), PlaceOfPulseMax(trace.Y())); }

/// Fall time of IEEE 181: the plain time from 90 % to 10 %
double PulseFall9010(RangedTrace const & trace, double const *) {
  Pulse const pulse(trace);
  return pulse.Tail(0.1) - pulse.Tail(0.9);
}

/// The whole front that the line through 10 % and 90 % estimates, as for impulse currents: T1 = 1.25 T
double PulseFront1090(RangedTrace const & trace, double const *) {
  Pulse const pulse(trace);
  return (pulse.Front(0.9) - pulse.Front(0.1)) / 0.8;
}

/// The whole front that the line through 30 % and 90 % estimates, as for impulse voltages: T1 = 1.67 T
double PulseFront3090(RangedTrace const & trace, double const *) {
  Pulse const pulse(trace);
  return (pulse.Front(0.9) - pulse.Front(0.3)) / 0.6;
}

/// From the virtual peak, where the line through 30 % and 90 % of the front comes to 100 %, to 50 % of the tail
double PulseTail50(RangedTrace const & trace, double const *) {
  Pulse const pulse(trace);
  double const virtualPeak = pulse.Front(0.3) + (pulse.Front(0.9) - pulse.Front(0.3)) * 0.7 / 0.6;
  return pulse.Tail(0.5) - virtualPeak;
}

double PulseWidth5050(RangedTrace const & trace, double const *) {
  Pulse const pulse(trace);
  return pulse.Tail(0.5) - pulse.Front(0.5);
}

constexpr RangedInput kReal = RangedInput::kRealTrace;
constexpr RangedFunction kPulse[] = {
    {L"pulsemin", kReal, {}, true, PulseMin},
    {L"pulsemax", kReal, {}, true, PulseMax},
    {L"pulsemintime", kReal, {}, true, PulseMinTime},
    {L"pulsemaxtime", kReal, {}, true, PulseMaxTime},
    {L"pulsefall9010", kReal, {}, true, PulseFall9010},
    {L"pulsefront1090", kReal, {}, true, PulseFront1090},
    {L"pulsefront3090", kReal, {}, true, PulseFront3090},
    {L"pulsetail50", kReal, {}, true, PulseTail50},
    {L"pulsewidth5050", kReal, {}, true, PulseWidth5050},
};

} // namespace

std::span<RangedFunction const> PulseFunctions() { return kPulse; }

} // namespace val::ranged
