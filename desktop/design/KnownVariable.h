#pragma once

#include "basekit/text/AString.h"

namespace desktop {

class Design;

/// The design's spelling of a variable's name; throws Error (kUsage) that names `where` and the known variables for an
/// unknown one.
AString KnownVariable(Design const & design, AString const & name, AString const & where);

} // namespace desktop
