#pragma once

#include "basekit/text/AString.h"

namespace desktop {

/// A name as one word of a command line: in quotes where it needs them, so that a command that is told can be typed.
AString WordOfCommand(AString const & text);

} // namespace desktop
