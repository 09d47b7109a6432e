#pragma once

#include "products/rfcircuit/engine/closedform/Ladder.h"

#include <string>

namespace rf {

/** The lines of a netlist for a ladder between two ports, without a title; numbers to the last digit. */
std::string LadderNetlist(std::vector<LadderElement> const & ladder, double sourceZ0, double loadZ0);

} // namespace rf
