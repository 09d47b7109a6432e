#pragma once

#include "basekit/text/AString.h"

/// Keeps what a save replaces where a later restore finds it.  False when the path could not be kept.
class IHubBackupHelperForManagedFiles {
public:
  virtual bool MoveFileToBackup(AString const & path) = 0;
  virtual bool MoveDirToBackup(AString const & path) = 0;
  virtual bool CopyFileToBackup(AString const & path) = 0;
  virtual bool CopyDirToBackup(AString const & path) = 0;

protected:
  ~IHubBackupHelperForManagedFiles() = default;
};
