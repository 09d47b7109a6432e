#include "plotkit/sweep/SteppedRange.h"

#include "plotkit/sweep/SweepValues.h"

#include <cmath>

unsigned SteppedRange::GetCount() const {
  if (!std::isfinite(m_min) || !std::isfinite(m_max) || m_min > m_max)
    return 0;
  if (m_min == m_max)
    return 1;
  bool const reachesMax = m_increment > 0.0 && (m_max - m_min) / m_increment < core::kMaxSweepValues;
  if (!reachesMax)
    return 0;
  auto const steps = static_cast<unsigned>((m_max - m_min) / m_increment);
  bool const isPastMaxByLessThanHalf = m_increment * 0.5 + m_max > m_min + (steps + 1) * m_increment;
  return steps + 1 + (isPastMaxByLessThanHalf ? 1 : 0);
}

double SteppedRange::ValueAt(unsigned index) const {
  double const value = m_min + index * m_increment;
  return value < m_max ? value : m_max;
}
