#include "viewkit/backup/BackupUtils.h"

#include "basekit/file/FileOperations.h"
#include "basekit/file/LongFileName.h"
#include "viewkit/backup/BackupArea.h"

namespace {

bool Remove(LongFileName const & path) {
  return BackupArea::Covers(path) ? BackupArea::MoveIn(path) : LFN_Delete(path);
}

} // namespace

bool BackupUtils::DeleteFileOrMoveFileToBackup(AString const & path) { return Remove(path); }

bool BackupUtils::DeleteDirOrMoveDirToBackup(AString const & path) { return Remove(path); }
