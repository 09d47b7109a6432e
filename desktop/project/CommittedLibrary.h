#pragma once

#include "basekit/text/AString.h"

#include <cstdint>
#include <map>
#include <optional>
#include <set>

namespace desktop {

/// The real names of the blocks of a library as they stand in its file, committed ones alone, with the internal names;
/// with a length as of when the file had that.  Empty without a library.
std::map<AString, AString> CommittedBlocks(AString const & libraryPath, std::optional<std::uint64_t> length = {});

/// The solved points, by the real names of their blocks, that were not part of the committed state: those alone whose
/// block the library or its private file got since.  One that was renamed since is none.
std::set<AString> UnsavedPoints(AString const & libraryPath);

/// The points whose block the library or its private file got since, also of those that are saved with a former one.
std::set<AString> PointsStoredSince(AString const & libraryPath, std::optional<std::uint64_t> savedLength = {});

/// The blocks of the private file that bear no name any more, since the entries of the name map that told of them stood
/// in its torn end; 0 for a file that is whole.
std::size_t CountNamelessBlocks(AString const & libraryPath);

} // namespace desktop
