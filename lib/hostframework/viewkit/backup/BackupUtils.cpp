#include "viewkit/backup/BackupUtils.h"

#include "basekit/diag/Assert.h"
#include "basekit/file/FileOperations.h"
#include "basekit/file/LongFileName.h"
#include "viewkit/backup/BackupArea.h"

namespace {

bool Remove(LongFileName const & path) {
  // Covered paths are the area's to judge.
  bool const isFree = BackupArea::Covers(path) || !BackupArea::Overlaps(path);
  KVRO_ASSERT(isFree);
  if (!isFree) {
    BackupArea::MarkIncomplete(path.FilePath());
    return false;
  }
  return BackupArea::Covers(path) ? BackupArea::MoveIn(path) : LFN_Delete(path);
}

} // namespace

bool BackupUtils::DeleteFileOrMoveFileToBackup(AString const & path) { return Remove(path); }

bool BackupUtils::DeleteDirOrMoveDirToBackup(AString const & path) { return Remove(path); }
