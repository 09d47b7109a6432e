#pragma once

#include "viewkit/library/Compaction.h"

namespace library {

struct LibraryState;

/// Brings the public file up to date; the private one stays, unless it may end: the first commit of a library makes
/// the public file of it.  kLibDamaged: all is committed but blocks that can't be read any more.
LibIOReturn Commit(LibraryState & state, bool mayEndPrivateFile);
/// The same by a whole new file, which holds live blocks alone.  A file that loses damaged bytes by it is copied aside
/// first.
LibIOReturn CommitWhole(LibraryState & state, Conversion const & conversion, bool isBinary);
/// Fails when another file stands under the name of the public one; one that vanished is to be written anew.
LibIOReturn CheckPublicFile(LibraryState & state);
/// Takes the public file back to the commit that ended at the length.
LibIOReturn RevertCommit(LibraryState & state, std::uint64_t length);

} // namespace library
