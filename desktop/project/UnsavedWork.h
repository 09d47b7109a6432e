#pragma once

namespace desktop {

/// What stands beside the saved state of a project.
struct UnsavedWork {
  bool design = false;       ///< an autosave with other variables, setups or versions
  bool results = false;      ///< a private library file, or a library that went on from what was saved
  int points = 0;            ///< points solved since, those that are saved with former results among them
  int files = 0;             ///< result files that were not saved, managed files aside
  bool managedFiles = false; ///< managed files made or deleted since
};

} // namespace desktop
