#pragma once

#include "basekit/text/AString.h"

#include <string_view>
#include <vector>

namespace expr {

/// Advice for a name that nobody knows: "did you mean 'S21'?" after the nearest of the known names, of the
/// constants and of the functions; empty when none is near.
AString SuggestionFor(std::wstring_view unknown, std::vector<AString> const & known);

} // namespace expr
