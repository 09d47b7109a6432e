#pragma once

#include <string>
#include <vector>

namespace bench {

/// A circuit as lines of a netlist, and the sweep over it in the words of a .sp line.
struct SweepCase {
  std::string name;
  std::string lines;
  std::string sweep;
};

/// Resonators, filters, ladders and lines; the numbers of points divided by `divisor`.
std::vector<SweepCase> SweepCases(int divisor);
/// A ladder of series coils with losses and capacitors to ground, with so many nodes between two ports.
std::string LadderOfNodes(int nodes);

} // namespace bench
