#pragma once

#include "basekit/value/expression/Error.h"
#include "basekit/value/expression/SyntaxTree.h"

#include <vector>

namespace expr {

/// Deeper nesting of parentheses, calls, signs and powers is an error.
inline constexpr int maxNesting = 200;

/// Reads an expression; false with the first error.  The tree is then of no use.
bool ReadSyntax(AString const & text, SyntaxTree & tree, Error & error);

/// The names of a text that are no function's, each once, in the order of the text.  A text with errors has names too:
/// they say what is wrong with it.
std::vector<AString> NamesIn(AString const & text);

} // namespace expr
