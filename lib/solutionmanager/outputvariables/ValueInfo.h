#pragma once

#include "CoreInterfaces/ReportForward.h"
#include "basekit/text/AString.h"

class BaseSolutionManager;
class ISolution;

namespace outputvariables {

/// Checks an expression as one solution would evaluate it, and gives what is known of its value.  False for a bad one,
/// and for one whose quantities are not of exactly one report type and domain.
bool GetValueInfo(BaseSolutionManager const & manager, AString const & expression, ISolution const & solution,
                  Value & value);

} // namespace outputvariables
