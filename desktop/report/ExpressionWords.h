#pragma once

#include "basekit/text/AString.h"

#include <vector>

namespace desktop {

/// The names in an expression, in the order of the text; of a text that is none, as far as it can be read.
std::vector<AString> ExpressionWords(AString const & expression);
/// The expression with another name for one of its words, whose case does not count.
AString WithRenamedWord(AString const & expression, AString const & from, AString const & to);

} // namespace desktop
