#pragma once

#include "basekit/text/AString.h"

#include <set>

namespace desktop {

/// The real names of the blocks in the committed state of a solution library, read beside whoever writes it; empty
/// when there is none.
std::set<AString> CommittedBlockNames(AString const & libraryPath);

} // namespace desktop
