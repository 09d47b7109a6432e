#pragma once

class AString;

/// Removes what a later restore may want: into the open backup area, and where none is open for good.  Paths are full
/// ones; whatever stands there goes, file or folder.  A link goes, never what it points to; an open area refuses it.
/// False when nothing stood there, when it could not be kept and so was not removed, or when it would take the open
/// area with it.
class BackupUtils {
public:
  static bool DeleteFileOrMoveFileToBackup(AString const & path);
  static bool DeleteDirOrMoveDirToBackup(AString const & path);
};
