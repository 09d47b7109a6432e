#include "solutionmanager/locations/LocationFiles.h"

#include "basekit/diag/Assert.h"
#include "basekit/file/FileOperations.h"
#include "basekit/file/IFileSystem.h"
#include "basekit/file/PlaceInFolder.h"
#include "viewkit/backup/BackupArea.h"
#include "viewkit/backup/BackupUtils.h"

bool LocationFiles::IsInside(AString const & location) const {
  AString const folder = LongFileName(m_root).DirPath();
  bool const isInside =
      LFN_IsTextOfPlaceInside(location) && LFN_IsPlaceInside(folder, m_root.substr(folder.size()) + location);
  if (!isInside)
    KVRO_ASSERT(!"A location leads out of the results folder");
  return isInside;
}

bool LocationFiles::MayTouch(AString const & location) const {
  bool const isInside = IsInside(location);
  if (!isInside)
    BackupArea::MarkIncomplete(PathOf(location).FilePath());
  return isInside;
}

bool LocationFiles::Exists(AString const & location) const {
  return IsInside(location) && LFN_Exists(PathOf(location));
}

void LocationFiles::Delete(AString const & location) const {
  if (!MayTouch(location) || !Exists(location))
    return;
  LongFileName const lfn = PathOf(location);
  if (m_isFile) {
    KVRO_ASSERT(!LFN_IsDirectory(lfn));
    BackupUtils::DeleteFileOrMoveFileToBackup(lfn.FilePath());
  } else {
    KVRO_ASSERT(LFN_IsDirectory(lfn));
    BackupUtils::DeleteDirOrMoveDirToBackup(lfn.FilePath());
  }
}

void LocationFiles::DeleteOutright(AString const & location) const {
  LongFileName const lfn = PathOf(location);
  bool const isFree = !BackupArea::Overlaps(lfn);
  KVRO_ASSERT(isFree);
  if (!isFree || !MayTouch(location)) {
    BackupArea::MarkIncomplete(lfn.FilePath());
    return;
  }
  if (!m_isFile)
    LFN_DeleteDirectoryContents(lfn);
  LFN_Delete(lfn);
}

void LocationFiles::Move(AString const & from, AString const & to) const {
  if (!MayTouch(from) || !MayTouch(to))
    return;
  AString target = PathOf(to).FilePath();
  while (target.EndsWith(L"/"))
    target = target.substr(0, target.size() - 1);
  // The folder of the committed name may not be there yet.
  if (LFN_Exists(PathOf(from)))
    LFN_CreateDirectoryAndParents(LongFileName(target).DirPath());
  BackupArea::Rename(PathOf(from), target);
}

bool LocationFiles::AreSame(AString const & a, AString const & b) const {
  file::FileInfo first;
  file::FileInfo second;
  auto & system = file::FileSystem();
  return system.Describe(PathOf(a), first).Ok() && system.Describe(PathOf(b), second).Ok() && first.IsSameFile(second);
}

void LocationFiles::CreateDirectory(AString const & location) const {
  if (IsInside(location))
    LFN_CreateDirectory(PathOf(location));
}
