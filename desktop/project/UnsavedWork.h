#pragma once

#include "basekit/text/AString.h"

namespace desktop {

/// What stands beside the saved state of a project.
struct UnsavedWork {
  bool design = false;  ///< an autosave with other variables, setups or versions
  bool results = false; ///< a private library file
  int points = 0;       ///< solved points that it holds and the library doesn't
};

/// Solved points that only the private file of a library holds; read without changing anything.
int CountUnsavedPoints(AString const & libraryPath);

} // namespace desktop
