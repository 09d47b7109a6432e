#pragma once

/// The numbers min, min + increment, ... up to max, in SI units, told by their place: a range takes no memory for its
/// values, however many a file says there are.  A first number past max by less than half an increment is max itself.
/// min alone when max is the same.  A range that never ends, or has more than core::kMaxSweepValues numbers, is empty.
class SteppedRange {
public:
  SteppedRange() = default;
  SteppedRange(double min, double max, double increment) : m_min(min), m_max(max), m_increment(increment) {}

  double GetMin() const { return m_min; }
  double GetMax() const { return m_max; }
  double GetIncrement() const { return m_increment; }
  unsigned GetCount() const;
  /// A place past the count gives max.
  double ValueAt(unsigned index) const;

  friend bool operator==(SteppedRange const & a, SteppedRange const & b) = default;

private:
  double m_min = 0.0;
  double m_max = 0.0;
  double m_increment = 1.0;
};
