#pragma once

#include "basekit/value/ranged/Levels.h"

namespace val::ranged {

/// A place where a trace changes sides: at a sample that lies on the level, or inside the piece that ends there.
struct Crossing {
  std::size_t sample = 0;
  bool isOnSample = false;
  bool isRising = false;
  double side = 0.0; ///< the side reached
};

/// Tells each crossing in order, until told(crossing) is false.  sideOf(i) is a number that grows with the value and
/// is one for all values of one side; NaN for a sample that lies on the level.  A touch is no crossing, and neither
/// is a level on which the trace starts.
template <class SideOf, class Told> void WalkCrossings(std::size_t count, SideOf sideOf, Told told) {
  double last = kNoValue;
  std::size_t onLevel = kNowhere;
  for (std::size_t i = 0; i < count; ++i) {
    double const side = sideOf(i);
    if (std::isnan(side)) {
      if (onLevel == kNowhere)
        onLevel = i;
      continue;
    }
    bool const isCrossing = !std::isnan(last) && side != last;
    if (isCrossing && !told(Crossing{onLevel == kNowhere ? i : onLevel, onLevel != kNowhere, side > last, side}))
      return;
    last = side;
    onLevel = kNowhere;
  }
}

/// The crossings of one level: told(x, isRising) is false to stop.
template <class Told> void WalkLevel(Column x, Column y, double level, Told told) {
  auto const sideOf = [&](std::size_t i) { return y[i] > level ? 1.0 : y[i] < level ? -1.0 : kNoValue; };
  WalkCrossings(x.size(), sideOf, [&](Crossing const & crossing) {
    std::size_t const i = crossing.sample;
    return told(crossing.isOnSample ? x[i] : MeetingIn(x, y, i, level), crossing.isRising);
  });
}

} // namespace val::ranged
