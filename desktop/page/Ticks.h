#pragma once

#include "basekit/text/AString.h"

#include <string>
#include <vector>

namespace desktop::page {

/// Where an axis bears numbers, and the unit in which they are told: in "GHz" where values are in "Hz".
struct Ticks {
  struct Tick {
    double value = 0.0;
    std::string text; ///< UTF-8; empty for a line without a number
  };
  std::vector<Tick> ticks;
  std::string unit;
};

/// Ticks at steps of 1, 2 or 5 times a power of ten, at most as many steps as there is room for.
Ticks LinearTicks(double low, double high, int room, AString const & unit);

/// Ticks of a logarithmic axis; both ends are above 0.  Ranges of less than five to one get linear ones.
Ticks DecadeTicks(double low, double high, int room, AString const & unit);

} // namespace desktop::page
