#pragma once

#include "products/rfcircuit/engine/netlist/Statements.h"
#include "products/rfcircuit/engine/network/Circuit.h"

#include <optional>

namespace rf {

class ParameterScope;

/** Evaluates a statement's numbers into the element, whose name is set; nodes and references are not touched.
    Returns the number of the port when it is one.  Throws NetlistError for values that make no sense. */
std::optional<int> EvaluateElement(ElementStatement const & statement, ParameterScope & scope, Element & element);

/** The factor of a coupling, checked to lie between -1 and 1. */
double EvaluateCoupling(ElementStatement const & statement, ParameterScope & scope, std::string const & name);

} // namespace rf
