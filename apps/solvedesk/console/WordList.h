#pragma once

#include "basekit/text/AString.h"

#include <string>
#include <vector>

namespace solvedesk {

/// Names out of words such as "C1,L1", each once; throws desktop::Error (kUsage) that names `where` for an empty one or
/// one that comes twice.
std::vector<AString> WordList(std::vector<std::string> const & words, AString const & where);

} // namespace solvedesk
