#pragma once

#include "basekit/text/AString.h"

#include <string_view>

class Variable;

namespace desktop {

class Design;
class Session;
struct ReportDefinition;

/// Refuses a definition that can never be shown, whatever the project comes to hold: a name or text that is none, a
/// value that is no number.  Throws Error (kUsage).
void RefuseUnshowable(Session & session, ReportDefinition const & report);

/// Refuses a text that is no number where the design has a number; one that the design itself says is taken.  Throws
/// Error (kUsage).
void RefuseNoNumber(Design const & design, Variable const & variable, std::wstring_view value);

} // namespace desktop
