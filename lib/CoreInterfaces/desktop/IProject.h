#pragma once

#include "basekit/text/AString.h"

class LongFileName;

/// A project of the desktop, as far as the solution manager needs it.
class IProject {
public:
  virtual ~IProject() = default;
  virtual AString GetName() const = 0;
  /// The folder that holds the results of all designs, as a directory name ending in a separator.  With forWriting
  /// the place where results are to go, which need not exist yet.
  virtual void GetResultsFolder(LongFileName & folder, bool forWriting) const = 0;
  /// Makes that folder with its parents; false when it can't be made.
  virtual bool CreateResultsFolder(LongFileName const & folder) = 0;
  virtual bool HasUnsavedChanges() const = 0;
};
