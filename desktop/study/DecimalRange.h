#pragma once

namespace desktop {

/// The values start, start + step, ... up to stop, which is one of them when it falls on a step.  Reckoned in decimals
/// as a person would: 0.9:1.1:0.05 holds 0.95 and not 0.9500000000000001, and ends at 1.1.
/// Numbers too far apart for that are reckoned by multiplication, start + i * step, with the end reached to 1e-9 steps.
class DecimalRange {
public:
  /// The step is above zero and the stop not below the start.
  DecimalRange(double start, double stop, double step);

  /// How many values there are; a count above the largest is not worked out.
  double Count() const { return m_count; }
  double At(long long index) const;

private:
  bool CountExactly(double stop);

  double m_start;
  double m_step;
  double m_count = 0;
  bool m_isExact = false;
  // Exact values are integers times ten to this power.
  int m_exponent = 0;
  __int128 m_exactStart = 0;
  __int128 m_exactStep = 0;
};

} // namespace desktop
