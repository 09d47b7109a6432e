#pragma once

#include "CoreInterfaces/ReportForward.h"
#include "basekit/text/AString.h"

#include <vector>

class BaseSolutionManager;

namespace outputvariables {

/// Appends the words of an expression that are neither variables nor output variables, those of the output variables'
/// own expressions in the place of these.  False when definitions go round in a circle.
bool FindReferencedWords(BaseSolutionManager const & manager, AString const & expression, std::vector<AString> & names,
                         SolutionPointSet * pointSet);

} // namespace outputvariables
