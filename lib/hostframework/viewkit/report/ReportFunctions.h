#pragma once

#include "basekit/text/AString.h"

/// Functions as reports number and name them.
namespace rep {

/// The entry for no function.
inline constexpr int kNoFunctionID = 0;

/// The number of a function by name without case; that of no function for names that are none.
int GetFunctionID(AString const & name);
/// The name of a function; that of no function is "<none>", and numbers that are none have an empty name.
AString GetFunctionName(int id);

} // namespace rep
