#pragma once

#include "basekit/text/AString.h"

#include <vector>

namespace desktop {

/// A name of any length as a message tells it: what is long is cut.
AString ShortName(AString const & name);

/// Which names there are, as a message tells it: "a, b, c", or "none".  Of many only the nearest to the sought one are
/// told, or the first without such, and how many others there are.
AString NameList(std::vector<AString> const & names, AString const & sought = AString());

} // namespace desktop
