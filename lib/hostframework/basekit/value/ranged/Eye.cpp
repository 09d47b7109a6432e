#include "basekit/value/ranged/Eye.h"

#include "basekit/value/ranged/Crossings.h"

#include <algorithm>
#include <numbers>

namespace val::ranged {

namespace {
/// A slip in the unit interval is no eye rather than a long wait: each is read at 21 phases, twice.
constexpr double greatestCount = 1e6;
} // namespace

void Spread::Add(double value) {
  ++m_count;
  double const step = value - m_mean;
  m_mean += step / static_cast<double>(m_count);
  m_squares += (step * m_scale) * ((value - m_mean) * m_scale);
}

Eye::Eye(Column x, Column y, EyeSettings const & settings) {
  if (!CutToRange(x, y, settings))
    return;
  if (!settings.isAmplitudeAutomatic) {
    m_isValid = MeasureAt(settings.crossingAmplitude);
    return;
  }
  // The middle of the levels, where jitter is read; the middle of the range finds the levels.
  auto const [least, greatest] = std::minmax_element(m_signal.y.begin(), m_signal.y.end());
  m_isValid = MeasureAt((*greatest + *least) / 2) && MeasureAt((m_one.Mean() + m_zero.Mean()) / 2);
}

bool Eye::CutToRange(Column x, Column y, EyeSettings const & settings) {
  m_unitInterval = settings.unitInterval;
  if (!(m_unitInterval > 0.0) || !(settings.startOffset >= 0.0) || !(settings.endOffset >= 0.0))
    return false;
  double const start = x.front() + settings.startOffset;
  double const end = x.back() - settings.endOffset;
  double const intervals = (end - start) / m_unitInterval;
  if (!(end - start >= m_unitInterval * (1 - 1e-9)) || !(intervals <= greatestCount))
    return false;
  m_signal = Cut(x, y, start, end);
  auto const [least, greatest] = std::minmax_element(m_signal.y.begin(), m_signal.y.end());
  return *greatest > *least;
}

bool Eye::MeasureAt(double crossingAmplitude) {
  m_crossingAmplitude = crossingAmplitude;
  return FindCrossings() && ReadLevels();
}

bool Eye::FindCrossings() {
  m_phases.clear();
  WalkLevel(m_signal.x, m_signal.y, m_crossingAmplitude, [this](double x, bool) {
    m_phases.push_back(PartOfOne((x - m_signal.x.front()) / m_unitInterval));
    return true;
  });
  if (m_phases.size() < 2)
    return false;

  double sine = 0.0;
  double cosine = 0.0;
  for (double const phase : m_phases) {
    sine += std::sin(2 * std::numbers::pi * phase);
    cosine += std::cos(2 * std::numbers::pi * phase);
  }
  double const count = static_cast<double>(m_phases.size());
  if (std::hypot(sine, cosine) <= 1e-9 * count)
    return false;

  double const circularMean = std::atan2(sine, cosine) / (2 * std::numbers::pi);
  double sum = 0.0;
  m_deviations.clear();
  for (double const phase : m_phases) {
    double const distance = phase - circularMean;
    m_deviations.push_back(distance - std::floor(distance + 0.5));
    sum += m_deviations.back();
  }
  double const rest = sum / count;
  for (double & deviation : m_deviations)
    deviation -= rest;
  m_centre = PartOfOne(circularMean + rest + 0.5);
  return true;
}

/// From 40 % to 60 % of the eye.
bool Eye::ReadLevels() {
  std::vector<double> window;
  for (int j = 0; j <= 20; ++j)
    window.push_back(PartOfOne(m_centre + (j - 10) / 100.0));
  std::sort(window.begin(), window.end());
  double const scale = ScaleOf(GreatestMagnitude(m_signal.y));
  m_one = Spread(scale);
  m_zero = Spread(scale);
  Read(window, [this](double value) { (value > m_crossingAmplitude ? m_one : m_zero).Add(value); });
  return !m_one.IsEmpty() && !m_zero.IsEmpty();
}

} // namespace val::ranged
