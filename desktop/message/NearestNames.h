#pragma once

#include "basekit/text/AString.h"

#include <vector>

namespace desktop {

/// The names that a misspelt word may mean, without case, the nearest first: those that begin alike or are a few
/// letters away.  At most five.
std::vector<AString> NearestNames(AString const & word, std::vector<AString> const & names);

} // namespace desktop
