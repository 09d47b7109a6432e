#pragma once

#include "basekit/text/AString.h"
#include "solutionmanager/functions/RangedFunctionScales.h"

#include <optional>

class BaseSimDataExtractor;

namespace desktop {

/// Whether an expression asks for a curve as a whole, with a ranged function, a derivative or the like: over one sample
/// it has no value, or another one.  Output variables are looked into.
bool NeedsWholeCurve(BaseSimDataExtractor const & extractor, AString const & expression);

/// An expression that is one ranged function.
struct RangedCall {
  AString trace; ///< its first argument
  ranged::Scale scale = ranged::Scale::kNone;
};
/// Nothing for any other expression.  An output variable counts as what it stands for.
std::optional<RangedCall> AsRangedCall(BaseSimDataExtractor const & extractor, AString const & expression);

} // namespace desktop
