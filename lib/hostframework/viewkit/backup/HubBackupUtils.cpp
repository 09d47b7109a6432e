#include "viewkit/backup/HubBackupUtils.h"

#include "basekit/file/LongFileName.h"
#include "viewkit/backup/BackupArea.h"

bool HubBackupUtils::MoveFileToBackup(AString const & path) { return BackupArea::MoveIn(path); }

bool HubBackupUtils::MoveDirToBackup(AString const & path) { return BackupArea::MoveIn(path); }

bool HubBackupUtils::CopyFileToBackup(AString const & path) { return BackupArea::CopyIn(path); }

bool HubBackupUtils::CopyDirToBackup(AString const & path) { return BackupArea::CopyIn(path); }
