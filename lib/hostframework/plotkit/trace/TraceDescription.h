#pragma once

#include "basekit/text/AString.h"

/// What was entered for a subcircuit, as the whole design calls it: subcircuit:name.  Without a subcircuit, and for
/// expressions, which name their subcircuits themselves, it is the text.
AString AddSubcircuitToTraceDescription(AString const & text, AString const & subcircuit);
