#pragma once

#include "basekit/text/AString.h"

#include <set>

class BaseSolutionManager;
class IKelvroCommand;
class ITracePasteContext;
namespace io {
class CBlock;
}

/// The output variables that copied traces refer to, in block "OutputVars": one function for each, by name.
namespace pastedvariables {

/// Names that are no output variable's are left out, with an assertion.
void Write(io::CBlock & block, BaseSolutionManager const & manager, std::set<AString> const & names);
/// Adds to the manager, undoably, what it lacks.  Of a name that is there already a variable of the same parameter type
/// serves; one of another type comes in under a new name, and context and user are told.
void Read(io::CBlock const & block, BaseSolutionManager & manager, IKelvroCommand * command,
          ITracePasteContext * context);

} // namespace pastedvariables
