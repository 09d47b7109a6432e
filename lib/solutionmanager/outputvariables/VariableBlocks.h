#pragma once

#include "basekit/io/ReadError.h"
#include "basekit/text/AString.h"

#include <map>

class BaseSolutionManager;
class OutputVariable;

namespace io {
class CBlock;
}

/// Output variables in the design file: one function item each, named by the variable.
namespace outputvariables {

using Map = std::map<AString, OutputVariable *, AString::NoCaseLess>;

/// A variable that has nothing to write is left out; false then.
bool WriteVariables(io::CBlock & variables, Map const & map);
/// Enters what is read.  What is no variable is left out, and the user is told; kWarning then, but for a bad name.
io::ReadError ReadVariables(io::CBlock const & variables, BaseSolutionManager const & manager, Map & map);

} // namespace outputvariables
