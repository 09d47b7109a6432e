#pragma once

#include "basekit/value/Function.h"

#include <string_view>

namespace expr {

/// All overloads of all functions in the order of their numbers; made on first use.
std::vector<Function> const & AllFunctions();

/// The number of a function by name without case, 0 when there is none.  Numbers are written into files.
int FunctionNumber(std::wstring_view name);
/// The name as the table spells it; empty for numbers that are no function's.
AString FunctionNameOf(int number);

} // namespace expr
