#pragma once

#include "basekit/text/AString.h"

/// Removes files and folders so that a later restore finds them, where one may come.  False when that failed.
class IBackupHelperForManagedFiles {
public:
  virtual bool DeleteFileOrMoveFileToBackup(AString const & path) = 0;
  virtual bool DeleteDirOrMoveDirToBackup(AString const & path) = 0;
  virtual bool CopyFileToBackup(AString const & path) = 0;
  virtual bool CopyDirToBackup(AString const & path) = 0;

protected:
  ~IBackupHelperForManagedFiles() = default;
};
