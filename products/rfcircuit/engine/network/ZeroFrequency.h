#pragma once

#include <vector>

namespace rf {

class Circuit;

/** What stays undetermined when capacitors are open, inductors and lines are shorts. */
struct ZeroFrequency {
  std::vector<int> loopClosers; ///< elements (inductors, lines) whose ends others have shorted already
  std::vector<int> heldNodes;   ///< one node of each part that only capacitors connect and nothing drives or observes

  static ZeroFrequency Of(Circuit const & circuit);
};

} // namespace rf
