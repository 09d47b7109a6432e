// How managed files become final, in their place or in a new one.

#include "basekit/diag/Assert.h"
#include "basekit/file/FileOperations.h"
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
  return a == b;
}

void ReadCommittedList(LongFileName const & path, io::CBlock & managedFiles) {
  io::CToken_istream in(path, managed::kReadFlags);
  managed::ReadByteOrder(in);
  if (in.AtBeginBlock(kManagedFiles))
    in >> managedFiles;
}

} // namespace

void CManagedFilesMgr::Commit(LongFileName const & directory) {
  Initialize();
  if (!AreSameDirectory(directory, mResultsDir))
    MoveTo(directory);
  CommitInPlace();
}

void CManagedFilesMgr::CommitInPlace() {
  io::CBlock managedFiles(kManagedFiles);
  io::CBlock deletedFiles(kDeletedFiles);
  if (LFN_Exists(m_privateListFile)) {
    io::CToken_istream in_priv(m_privateListFile, managed::kReadFlags);
    KVRO_ASSERT(in_priv.AtBeginBlock(kManagedFiles));
    in_priv >> managedFiles >> deletedFiles;
  }
  io::CBlock committedFiles(kManagedFiles);
  ReadCommittedList(m_committedListFile, committedFiles);

  managed::Names managedFilesMap;
  auto const take = [&](io::CBlock const & block, bool add) {
    for (auto const & [dir, names] : managed::FoldersOf(block)) {
      KVRO_ASSERT(add || managedFilesMap.find(dir) != managedFilesMap.end());
      if (add)
        managedFilesMap[dir].insert(names.begin(), names.end());
      else
        for (auto const & name : names) {
          if (auto const folder = managedFilesMap.find(dir); folder != managedFilesMap.end())
            folder->second.erase(name);
          RemoveDeleted(dir, name);
        }
    }
  };
  take(committedFiles, true);
  take(managedFiles, true);
  take(deletedFiles, false);

  // As long as the names stand nowhere else, the private list stays.
  if (!CanBeGivenUp(m_committedListFile) ||
      !managed::WriteCommittedList(m_committedListFile, managed::BlockOf(managedFilesMap)))
    return;
  if (LFN_Exists(m_privateListFile) && CanBeGivenUp(m_privateListFile))
    LFN_DeleteFile(m_privateListFile);
}

/// Copies a list to the backup.  An open backup area that could not take it could not bring it back either.
bool CManagedFilesMgr::CanBeGivenUp(LongFileName const & list) {
  bool const isKept = CopyFileToBackup(list.FilePath());
  return isKept || !BackupArea::Covers(list);
}

void CManagedFilesMgr::RemoveDeleted(AString const & baseDir, AString const & fileName) {
  LongFileName lfn;
  if (!FindPlace(baseDir, fileName, lfn))
    return;
  KVRO_ASSERT(LFN_Exists(lfn));
  MoveFileToBackup(lfn.FilePath());
  // What an open backup area could not take stays, as nobody could bring it back.
  if (LFN_Exists(lfn) && !BackupArea::Covers(lfn))
    LFN_DeleteFile(lfn);
}

void CManagedFilesMgr::MoveTo(LongFileName const & newDir) {
  LongFileName const oldFolder = mResultsDir + m_subDir;
  LongFileName const newFolder = newDir + m_subDir;
  if (LFN_Exists(oldFolder)) {
    if (!LFN_CreateDirectory(newFolder))
      KVRO_ASSERT(!"Unable to create mf_<design> directory");
    if (!LFN_CopyDirectoryContents(oldFolder, newFolder, false))
      KVRO_ASSERT(!"Unable to copy directory contents to new location");
  }
  for (LongFileName const & list : {m_committedListFile, m_privateListFile})
    if (LFN_Exists(list))
      LFN_Copy(list, LongFileName(newDir, list.NameAndExtension()), kOverwriteReadOnly);
  // The files since the last commit leave the old directory; their copies stay in the new one.
  RollBack();
  mResultsDir = newDir;
  SetListFiles();
}
