#pragma once

#include "products/rfcircuit/engine/netlist/Netlist.h"
#include "products/rfcircuit/engine/network/Circuit.h"

namespace rf {

/** Evaluates all expressions, with design variables replaced by the overrides, and expands all subcircuits.
    The result passed CheckCircuit.  Throws NetlistError. */
Circuit Elaborate(Netlist const & netlist, Overrides const & overrides = {});

} // namespace rf
