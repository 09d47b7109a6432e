#pragma once

#include "basekit/value/ranged/Columns.h"
#include "basekit/value/ranged/RangedTrace.h"

namespace val::ranged {

/// A trace as a "Number of Points" parameter wants it: as it is for 0 and less, otherwise at that many even steps.
/// Fractions are cut.  The trace must outlive it.
class SteppedTrace {
public:
  SteppedTrace(RangedTrace const & trace, double numberOfPoints);

  /// False for 1 point, for more than ten million, and for steps over a trace without a span
  /// or with one that is no number.
  bool IsValid() const { return !m_x.empty(); }
  Column X() const { return m_x; }
  Column Y() const { return m_y; }

private:
  Columns m_steps;
  Column m_x;
  Column m_y;
};

} // namespace val::ranged
