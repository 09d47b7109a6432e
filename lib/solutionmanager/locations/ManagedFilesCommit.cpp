// How managed files become final, in their place or in a new one.

#include "basekit/diag/Assert.h"
#include "basekit/file/FileOperations.h"
#include "basekit/file/IFileSystem.h"
#include "basekit/file/PlaceInFolder.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CToken_istream.h"
#include "solutionmanager/locations/CManagedFilesMgr.h"
#include "solutionmanager/locations/ManagedFileLists.h"
#include "viewkit/backup/BackupArea.h"

using managed::kDeletedFiles;
using managed::kManagedFiles;

namespace {

bool AreSameDirectory(LongFileName a, LongFileName b) {
  a.MakeItDirectory();
  b.MakeItDirectory();
  file::FileInfo first;
  file::FileInfo second;
  auto & system = file::FileSystem();
  return LFN_AbsolutePath(a) == LFN_AbsolutePath(b) ||
         (system.Describe(a, first).Ok() && system.Describe(b, second).Ok() && first.IsSameFile(second));
}

} // namespace

void CManagedFilesMgr::Commit(LongFileName const & directory) {
  Initialize();
  if (!AreSameDirectory(directory, mResultsDir))
    MoveTo(directory);
  CommitInPlace();
}

void CManagedFilesMgr::CommitInPlace() {
  if (!CommitLists())
    BackupArea::MarkIncomplete(m_committedListFile.FilePath());
}

bool CManagedFilesMgr::CommitLists() {
  io::CBlock managedFiles(kManagedFiles);
  io::CBlock deletedFiles(kDeletedFiles);
  bool isPrivateWhole = true;
  if (LFN_Exists(m_privateListFile)) {
    isPrivateWhole = managed::CanRead(m_privateListFile);
    if (isPrivateWhole) {
      io::CToken_istream in_priv(m_privateListFile, managed::kReadFlags);
      KVRO_ASSERT(in_priv.AtBeginBlock(kManagedFiles));
      isPrivateWhole = managed::ReadBlocks(in_priv, managedFiles, &deletedFiles);
    }
  }
  // What can't be read now may be read later, and is not written over.
  io::CBlock committedFiles(kManagedFiles);
  Reading const committed = ReadCommittedList(committedFiles);
  if (committed == Reading::Unreadable || (!isPrivateWhole && !SetAside(m_privateListFile)) ||
      (committed == Reading::Damaged && !SetAside(m_committedListFile)))
    return false;

  bool isDone = true;
  managed::Names managedFilesMap;
  auto const take = [&](io::CBlock const & block, bool add) {
    for (auto const & [dir, names] : managed::FoldersOf(block)) {
      KVRO_ASSERT(add || managedFilesMap.find(dir) != managedFilesMap.end());
      if (add)
        managedFilesMap[dir].insert(names.begin(), names.end());
      else
        for (auto const & name : names) {
          // A file that stays keeps its name, so that it is never in no list.
          bool const isGone = RemoveDeleted(dir, name);
          isDone = isDone && isGone;
          if (auto const folder = managedFilesMap.find(dir); isGone && folder != managedFilesMap.end())
            folder->second.erase(name);
        }
    }
  };
  take(committedFiles, true);
  take(managedFiles, true);
  take(deletedFiles, false);

  // As long as the names stand nowhere else, the private list stays.
  if (!CanBeGivenUp(m_committedListFile) ||
      !managed::WriteCommittedList(m_committedListFile, managed::BlockOf(managedFilesMap)))
    return false;
  if (LFN_Exists(m_privateListFile))
    isDone = CanBeGivenUp(m_privateListFile) && LFN_DeleteFile(m_privateListFile) &&
             file::FileSystem().SyncFolder(m_privateListFile.DirPath()).Ok() && isDone;
  return isDone;
}

/// Copies a list to the backup.  An open backup area that could not take it could not bring it back either.
bool CManagedFilesMgr::CanBeGivenUp(LongFileName const & list) {
  bool const isKept = CopyFileToBackup(list.FilePath());
  return isKept || !BackupArea::Covers(list);
}

bool CManagedFilesMgr::RemoveDeleted(AString const & baseDir, AString const & fileName) {
  LongFileName lfn;
  if (!FindPlace(baseDir, fileName, lfn) || !managed::IsNoFolder(lfn))
    return true;
  KVRO_ASSERT(LFN_Exists(lfn));
  // A move may wait for its group.
  if (MoveFileToBackup(lfn.FilePath()))
    return true;
  // What an open backup area could not take stays, as nobody could bring it back.
  if (LFN_Exists(lfn) && !BackupArea::Covers(lfn))
    LFN_DeleteFile(lfn);
  return !LFN_Exists(lfn);
}

void CManagedFilesMgr::MoveTo(LongFileName const & newDir) {
  // The files since the last commit leave the old directory; their copies stay in the new one.  Where there are no
  // copies the files stay.
  if (CopyTo(newDir))
    RollBack();
  else
    BackupArea::MarkIncomplete(newDir.FilePath());
  mResultsDir = newDir;
  m_committedListFile = LongFileName(newDir, m_committedListFile.NameAndExtension());
  m_privateListFile = LongFileName(newDir, m_privateListFile.NameAndExtension());
}

bool CManagedFilesMgr::CopyTo(LongFileName const & newDir) const {
  LongFileName const oldFolder = mResultsDir + m_subDir;
  LongFileName const newFolder = newDir + m_subDir;
  bool isCopied = LFN_IsPlaceInside(mResultsDir, m_subDir) && LFN_IsPlaceInside(newDir, m_subDir);
  if (!isCopied)
    KVRO_ASSERT(!"The folder of managed files is a link");
  if (isCopied && LFN_Exists(oldFolder)) {
    if (!LFN_CreateDirectory(newFolder))
      KVRO_ASSERT(!"Unable to create mf_<design> directory");
    isCopied = LFN_CopyDirectoryContents(oldFolder, newFolder, false);
    if (!isCopied)
      KVRO_ASSERT(!"Unable to copy directory contents to new location");
  }
  for (LongFileName const & list : {m_committedListFile, m_privateListFile})
    if (LFN_Exists(list))
      isCopied = managed::CanRead(list) &&
                 LFN_Copy(list, LongFileName(newDir, list.NameAndExtension()), kOverwriteReadOnly) && isCopied;
  return isCopied;
}
