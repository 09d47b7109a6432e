#pragma once

#include "basekit/value/ranged/Levels.h"

#include <algorithm>

namespace val::ranged {

/// What is told of a run of widths or periods; each is no value when there were none.
class Distances {
public:
  void Add(double distance) {
    m_first = m_count == 0 ? distance : m_first;
    m_greatest = m_count == 0 ? distance : std::max(m_greatest, distance);
    m_least = m_count == 0 ? distance : std::min(m_least, distance);
    m_sum += distance;
    if (m_scale == 0.0 && distance > 0.0)
      m_scale = ScaleOf(distance);
    m_squares += (distance * m_scale) * (distance * m_scale);
    ++m_count;
  }

  double First() const { return m_first; }
  double Greatest() const { return m_greatest; }
  double Least() const { return m_least; }
  double Mean() const { return m_count == 0 ? kNoValue : m_sum / static_cast<double>(m_count); }
  double Rms() const {
    if (m_count == 0)
      return kNoValue;
    return m_scale == 0.0 ? 0.0 : std::sqrt(m_squares / static_cast<double>(m_count)) / m_scale;
  }

private:
  double m_first = kNoValue;
  double m_greatest = kNoValue;
  double m_least = kNoValue;
  double m_sum = 0.0;
  double m_squares = 0.0; ///< of scaled distances
  double m_scale = 0.0;   ///< that of the first distance that isn't 0
  std::size_t m_count = 0;
};

} // namespace val::ranged
