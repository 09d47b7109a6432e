#pragma once

#include "products/rfcircuit/engine/netlist/Netlist.h"
#include "products/rfcircuit/engine/netlist/StatementFingerprint.h"
#include "products/rfcircuit/engine/netlist/Statements.h"

#include <set>

namespace rf {

/** What a Netlist holds: the engine's own view of it. */
struct NetlistContent {
  std::string title;
  std::vector<std::string> files;
  StatementBlock top;
  std::set<std::string> globalNodes; ///< folded
  std::vector<SweepStatement> sweeps;
  std::vector<TransientLine> transients;
  std::vector<DesignVariable> designVariables;
  std::vector<NetlistNote> notes;
  StatementFingerprint fingerprint; ///< of what makes up the circuit
};

} // namespace rf
