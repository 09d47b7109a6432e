#pragma once

#include "products/rfcircuit/engine/netlist/LogicalLine.h"
#include "products/rfcircuit/engine/netlist/Statements.h"

#include <functional>
#include <vector>

namespace rf {

class LineCursor;

/** Reads an element line; NetlistError for an unknown element or a line of the wrong shape. */
ElementStatement ReadElement(LogicalLine const & line);

/** Reads NAME = VALUE pairs up to the end of the line, or to where `isEnd` says; a word `params:` before or between
   them is passed over. */
std::vector<NameAndExpression> ReadAssignments(LineCursor & cursor, std::string const & thing,
                                               std::function<bool(LineCursor &)> const & isEnd = {});

} // namespace rf
