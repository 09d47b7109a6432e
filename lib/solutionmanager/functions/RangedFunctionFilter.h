#pragma once

#include "CoreInterfaces/ReportForward.h"
#include "basekit/text/AString.h"

/// Which ranged functions a display has use for.  It follows from the overloads that expressions know: a function may
/// take columns of real numbers, of complex ones, or both.  As the engine's table stands, displays of complex traces
/// (2, 5, 9, 11) have the functions that take complex columns (Math, AC, Radiation); data tables (4) and display 0 have
/// all; all other displays show real traces and have those that take real columns, so all but AC, whose phase a real
/// trace has lost.  An eye display (15) has the category of eyes, without the two functions that measure single edges.
namespace ranged {

bool CategoryFits(AString const & category, rep::DisplayType displayType);
bool FunctionFits(AString const & name, rep::DisplayType displayType);

} // namespace ranged
