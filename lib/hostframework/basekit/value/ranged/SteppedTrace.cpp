#include "basekit/value/ranged/SteppedTrace.h"

namespace val::ranged {

SteppedTrace::SteppedTrace(RangedTrace const & trace, double numberOfPoints) {
  double const count = std::trunc(numberOfPoints);
  if (count <= 0) {
    m_x = trace.X();
    m_y = trace.Y();
  } else if (count > 1 && count <= 1e7 && trace.Span() > 0.0 && std::isfinite(trace.Span())) {
    m_steps = EvenSteps(trace.X(), trace.Y(), static_cast<std::size_t>(count));
    m_x = m_steps.x;
    m_y = m_steps.y;
  }
}

} // namespace val::ranged
