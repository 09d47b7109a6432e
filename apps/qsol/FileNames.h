#pragma once

#include "basekit/text/AString.h"

#include <string>

namespace qsol {

/// The name of a file in one folder for any text: letters, digits and a few signs stand for themselves, all else as
/// %XX of its UTF-8 bytes, a leading dot too.  No two texts share a name but for chance: one that would be too long
/// ends in '~' and a hash of the whole.
std::string FileNameOf(AString const & name);

} // namespace qsol
