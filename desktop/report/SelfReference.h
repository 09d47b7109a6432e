#pragma once

#include "basekit/text/AString.h"

class BaseSolutionManager;

namespace desktop {

/// The way from an output variable that the expression refers to back to that variable, "gain -> more -> gain"; empty
/// without one.  No edit makes such variables, but a project file may bring them.
AString SelfReference(BaseSolutionManager const & manager, AString const & expression);

} // namespace desktop
