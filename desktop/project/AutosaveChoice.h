#pragma once

#include "desktop/project/ProjectFile.h"

namespace desktop {

/// Whether the autosave that stands beside a project file goes on from it.
struct AutosaveChoice {
  enum class Fate {
    kNone,     ///< there is none
    kWins,     ///< it continues this project file
    kObsolete, ///< a save came to all but its last step: it holds nothing else
    kForeign   ///< to be set aside
  };
  Fate fate = Fate::kNone;
  ProjectRecord record; ///< of one that wins
  AString why;          ///< of a foreign one, in words
  /// It tells of another design than the project file, or nobody can say what it tells of.
  bool changesDesign = false;
};

/// Reads the autosave; changes nothing.
AutosaveChoice JudgeAutosave(LongFileName const & file, ProjectRecord const & saved);

} // namespace desktop
