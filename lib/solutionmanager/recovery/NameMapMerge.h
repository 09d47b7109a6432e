#pragma once

#include "basekit/text/AString.h"

#include <map>
#include <vector>

class CStreamioLibWritePrivate;
namespace io {
class CBlock;
}

/// How two maps of real block names to internal ones, out of two files, become one.
namespace recovery {

using NamePairs = std::map<AString, AString>;

/// What one library file holds of its map: empty without a file or a map.  False when a map that is there can't be
/// read.
bool ReadNameMap(AString const & path, io::CBlock & nameMap);

NamePairs PairsOf(io::CBlock const & nameMap);

/// The merged map is right but where the private file, which is younger, gave a block another name: an entry whose
/// block is gone, or belongs to another real name by now, takes the private file's pair, and goes when that has none.
/// The names that went.
std::vector<AString> DropLostBlocks(NamePairs & merged, NamePairs const & privatePairs,
                                    CStreamioLibWritePrivate const & library);

} // namespace recovery
