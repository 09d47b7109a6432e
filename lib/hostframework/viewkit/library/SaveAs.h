#pragma once

#include "viewkit/library/LibraryState.h"

namespace library {

/// Makes a library at another path with the committed state of this one as its public file and the rest as its private
/// file; `copy` is attached to it.  A public file that stands there is replaced, a private one set aside.  After a
/// failure this library is as it was.
LibIOReturn CopyLibrary(LibraryState & from, LongFileName const & path, std::unique_ptr<LibraryState> & copy);

} // namespace library
