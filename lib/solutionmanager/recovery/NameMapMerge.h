#pragma once

#include "basekit/text/AString.h"

#include <map>

class CStreamioLibWritePrivate;
namespace io {
class CBlock;
}

/// How two maps of real block names to internal ones, out of two files, become one.
namespace recovery {

using NamePairs = std::map<AString, AString>;

NamePairs PairsOf(io::CBlock const & nameMap);

/// Adds what only the private file's map knows to `nameMap`, which takes the public file's map first.  False when a
/// map that is there can't be read.
bool MergeNameMaps(AString const & path, io::CBlock & nameMap, io::CBlock & privateMap);

/// The merged map is right but where the private file, which is younger, gave a block another name: an entry whose
/// block is gone, or belongs to another real name by now, takes the private file's pair, and goes when that has none.
NamePairs WithoutLostBlocks(NamePairs const & merged, NamePairs const & privatePairs,
                            CStreamioLibWritePrivate const & library);

} // namespace recovery
