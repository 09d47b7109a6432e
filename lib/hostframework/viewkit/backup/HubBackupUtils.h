#pragma once

class AString;

/// Puts files and folders into the open backup area; paths are full ones.  False, and nothing done, where no area is
/// open.  Copying a path where nothing stands notes that, so that a restore removes what comes there.
class HubBackupUtils {
public:
  static bool MoveFileToBackup(AString const & path);
  static bool MoveDirToBackup(AString const & path);
  static bool CopyFileToBackup(AString const & path);
  static bool CopyDirToBackup(AString const & path);
};
