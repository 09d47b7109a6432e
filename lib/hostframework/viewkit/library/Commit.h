#pragma once

#include "viewkit/library/Compaction.h"

namespace library {

struct LibraryState;

/// Brings the public file up to date; the private one stays.  kLibDamaged: all is committed but blocks that can't be
/// read any more.
LibIOReturn Commit(LibraryState & state);
/// The same by a whole new file, which holds live blocks alone.  A file that loses damaged bytes by it is copied aside
/// first.
LibIOReturn CommitWhole(LibraryState & state, Conversion const & conversion, bool isBinary);
/// Takes the public file back to the commit that ended at the length.
LibIOReturn RevertCommit(LibraryState & state, std::uint64_t length);

} // namespace library
