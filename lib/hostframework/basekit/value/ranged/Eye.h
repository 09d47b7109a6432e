#pragma once

#include "basekit/value/ranged/Columns.h"

#include <vector>

namespace val::ranged {

/// How an eye is to be read: times in the unit of x.
struct EyeSettings {
  double unitInterval = 0.0;
  double startOffset = 0.0;
  double endOffset = 0.0;
  bool isAmplitudeAutomatic = true;
  double crossingAmplitude = 0.0;
};

/// The mean of a set and its standard deviation, of all there is.
class Spread {
public:
  /// The scale keeps squares of the values from overflowing and vanishing.
  explicit Spread(double scale = 1.0) : m_scale(scale) {}
  void Add(double value);
  bool IsEmpty() const { return m_count == 0; }
  double Mean() const { return m_mean; }
  double Deviation() const { return std::sqrt(m_squares / static_cast<double>(m_count)) / m_scale; }

private:
  std::size_t m_count = 0;
  double m_mean = 0.0;
  double m_squares = 0.0; ///< of scaled distances
  double m_scale = 1.0;
};

/// The eye that a signal draws when all its unit intervals lie over each other.  Phases are parts of a unit interval,
/// counted from the start of the range.  Levels are read at even phases rather than at samples, so that they don't
/// depend on the steps of a solver.  An invalid eye has no measurements: no or too long a unit interval, more than a
/// million of them, a negative offset, a flat signal, fewer than two crossings, edges everywhere, or one level alone.
class Eye {
public:
  Eye(Column x, Column y, EyeSettings const & settings);

  bool IsValid() const { return m_isValid; }
  double UnitInterval() const { return m_unitInterval; }
  Spread const & One() const { return m_one; }
  Spread const & Zero() const { return m_zero; }
  double Amplitude() const { return m_one.Mean() - m_zero.Mean(); }
  double CrossingAmplitude() const { return m_crossingAmplitude; }
  /// Half a unit interval behind the mean crossing.
  double CentrePhase() const { return m_centre; }
  /// Of each crossing of the crossing amplitude.
  std::vector<double> const & CrossingPhases() const { return m_phases; }
  /// Of the crossings from their circular mean; their own mean is 0.
  std::vector<double> const & Deviations() const { return m_deviations; }
  /// The signal in the range.
  Columns const & Signal() const { return m_signal; }

  /// Reads the signal at these phases, in ascending order, in every unit interval: told(value).
  template <class Told> void Read(std::vector<double> const & phases, Told told) const;

private:
  bool CutToRange(Column x, Column y, EyeSettings const & settings);
  bool FindCrossings();
  bool ReadLevels();
  bool MeasureAt(double crossingAmplitude);

  Columns m_signal;
  std::vector<double> m_phases;
  std::vector<double> m_deviations;
  Spread m_one;
  Spread m_zero;
  double m_unitInterval = 0.0;
  double m_crossingAmplitude = 0.0;
  double m_centre = 0.0;
  bool m_isValid = false;
};

inline double PartOfOne(double value) { return value - std::floor(value); }

template <class Told> void Eye::Read(std::vector<double> const & phases, Told told) const {
  double const start = m_signal.x.front();
  double const end = m_signal.x.back();
  double const slack = 1e-9 * m_unitInterval;
  std::size_t first = 0;
  for (double k = -1.0; start + k * m_unitInterval <= end + slack; k += 1.0) {
    for (double const phase : phases) {
      double const at = start + (k + phase) * m_unitInterval;
      if (!(at >= start - slack && at <= end + slack))
        continue;
      double const inside = at < start ? start : at > end ? end : at;
      while (m_signal.x[first] < inside)
        ++first;
      told(ValueBefore(m_signal.x, m_signal.y, first, inside));
    }
  }
}

} // namespace val::ranged
