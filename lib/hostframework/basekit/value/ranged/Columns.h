#pragma once

#include "basekit/value/ranged/Levels.h"

#include <vector>

namespace val::ranged {

/// Samples made from those of a trace.
struct Columns {
  std::vector<double> x;
  std::vector<double> y;
};

/// The trace at count even steps over its whole span, the last at its end exactly.
Columns EvenSteps(Column x, Column y, std::size_t count);

/// The trace's value at from, then all samples behind it.
Columns StartingAt(Column x, Column y, double from);

/// The trace's values at from and to, and the samples between them.
Columns Cut(Column x, Column y, double from, double to);

} // namespace val::ranged
