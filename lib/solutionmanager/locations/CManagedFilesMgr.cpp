#include "solutionmanager/locations/CManagedFilesMgr.h"

#include "CoreInterfaces/desktop/IDesign.h"
#include "basekit/diag/Assert.h"
#include "basekit/file/FileOperations.h"
#include "basekit/file/PlaceInFolder.h"
#include "basekit/id/Id.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CToken_istream.h"
#include "basekit/io/CToken_ostream.h"
#include "basekit/io/GByteOrder.h"
#include "solutionmanager/locations/ManagedFileLists.h"
#include "viewkit/backup/BackupUtils.h"
#include "viewkit/backup/HubBackupUtils.h"

using managed::kDeletedFiles;
using managed::kManagedFiles;

namespace {

bool MakeEmptyFile(LongFileName const & path) {
  io::CToken_ostream out(path, managed::kWriteFlags);
  out.Close();
  return !out.fail();
}

} // namespace

CManagedFilesMgr::CManagedFilesMgr(LongFileName const & resultsDir, IDesign * design)
    : mResultsDir(resultsDir), m_design(design) {
  KVRO_ASSERT(mResultsDir.IsDirectory());
}

CManagedFilesMgr::~CManagedFilesMgr() { RollBack(); }

void CManagedFilesMgr::Initialize() {
  if (m_initialized)
    return;
  SetListFiles();
  DropForeignFiles();
  // Comes too early to do anything: what a crash left stays, and the next create or delete adds to it.
  RollBack();
  m_initialized = true;
}

bool CManagedFilesMgr::HasUncommitted() {
  Initialize();
  return LFN_Exists(m_privateListFile);
}

std::array<LongFileName, 2> CManagedFilesMgr::GetListFiles() {
  Initialize();
  return {m_committedListFile, m_privateListFile};
}

void CManagedFilesMgr::SetListFiles() {
  long const designID = m_design->GetDesignID();
  KVRO_ASSERT(designID != id::invalidID);
  AString const name = AString::Format(L"ManagedFiles_Design%d", designID);
  m_committedListFile = LongFileName(mResultsDir, name + L".qsol");
  m_privateListFile = LongFileName(mResultsDir, name + L".qsol_priv");
  m_subDir = AString::Format(L"mf_%d/", designID);
}

/// Files of a machine of the other byte order are no use here.
void CManagedFilesMgr::DropForeignFiles() {
  if (!LFN_Exists(m_committedListFile))
    return;
  io::CBlock block(kManagedFiles);
  {
    io::CToken_istream in_orig(m_committedListFile, managed::kReadFlags);
    if (managed::ReadByteOrder(in_orig) == io::GByteOrder)
      return;
    KVRO_ASSERT(in_orig.AtBeginBlock(kManagedFiles));
    in_orig >> block;
  }
  DeleteListed(block);
  LFN_DeleteFile(m_committedListFile);
}

bool CManagedFilesMgr::FindPlace(AString const & baseDir, AString const & fileName, LongFileName & place) const {
  AString const folder = baseDir.empty() ? m_subDir : m_subDir + baseDir + L"/";
  bool const isInside = (baseDir.empty() || LFN_IsTextOfPlaceInside(baseDir)) && LFN_IsTextOfPlaceInside(fileName) &&
                        LFN_IsPlaceInside(mResultsDir, folder + fileName);
  if (isInside)
    place = LongFileName(mResultsDir + folder, fileName);
  else
    KVRO_ASSERT(!"A name leads out of the folder of managed files");
  return isInside;
}

void CManagedFilesMgr::DeleteListed(io::CBlock const & block) {
  for (auto const & [baseDir, names] : managed::FoldersOf(block))
    for (auto const & name : names) {
      LongFileName lfn;
      if (!FindPlace(baseDir, name, lfn))
        continue;
      KVRO_ASSERT(LFN_Exists(lfn));
      LFN_DeleteFile(lfn);
    }
}

void CManagedFilesMgr::RollBack() {
  if (!m_initialized || !LFN_Exists(m_privateListFile))
    return;
  io::CBlock block(kManagedFiles);
  {
    io::CToken_istream in(m_privateListFile, managed::kReadFlags);
    KVRO_ASSERT(in.AtBeginBlock(kManagedFiles));
    in >> block;
  }
  DeleteListed(block);
  LFN_DeleteFile(m_privateListFile);
}

void CManagedFilesMgr::ReadPrivateList(io::CBlock & managedFiles, io::CBlock & deletedFiles) const {
  if (!LFN_Exists(m_privateListFile))
    return;
  io::CToken_istream in(m_privateListFile, managed::kReadFlags);
  KVRO_ASSERT(in.AtBeginBlock(kManagedFiles));
  in >> managedFiles >> deletedFiles;
}

bool CManagedFilesMgr::CreateManagedFile(AString & fileName, AString const & baseDir, AString const & extension) {
  Initialize();
  KVRO_ASSERT(!baseDir.empty());
  LongFileName place;
  // An extension with a folder in it would be one that leads elsewhere.
  if (!FindPlace(baseDir, extension.find(L'/') == AString::npos ? AString(L"tmp") : AString(L".."), place))
    return false;
  LongFileName const folder = place.DirPath();
  LFN_CreateDirectoryAndParents(folder);
  if (!KvroGetTempFileName(folder, L"tmp", extension, fileName) || !MakeEmptyFile(fileName)) {
    KVRO_ASSERT(!"Failed to create temporary file!!");
    return false;
  }
  fileName = LongFileName(fileName).NameAndExtension();
  io::CBlock managedFiles(kManagedFiles);
  io::CBlock deletedFiles(kDeletedFiles);
  ReadPrivateList(managedFiles, deletedFiles);
  managed::AppendName(managedFiles, baseDir, fileName);
  managed::WritePrivateList(m_privateListFile, managedFiles, deletedFiles);
  return true;
}

bool CManagedFilesMgr::DeleteManagedFile(AString const & baseDir, AString const & fileName) {
  Initialize();
  KVRO_ASSERT(!baseDir.empty());
  LongFileName place;
  if (!FindPlace(baseDir, fileName, place))
    return false;
  io::CBlock managedFiles(kManagedFiles);
  io::CBlock deletedFiles(kDeletedFiles);
  ReadPrivateList(managedFiles, deletedFiles);
  managed::AppendName(deletedFiles, baseDir, fileName);
  managed::WritePrivateList(m_privateListFile, managedFiles, deletedFiles);
  return true;
}

LongFileName CManagedFilesMgr::GetFullPathForManagedFile(AString const & baseDir, AString const & fileName) {
  Initialize();
  LongFileName place;
  FindPlace(baseDir, fileName, place);
  return place;
}

LongFileName CManagedFilesMgr::GetManagedFilesDir() {
  Initialize();
  LongFileName folder = mResultsDir + m_subDir;
  folder.MakeItDirectory();
  return folder;
}

AString CManagedFilesMgr::GetManagedFilesRelativeDir() {
  Initialize();
  LongFileName folder(m_subDir);
  folder.MakeItDirectory();
  return folder.FilePath();
}

bool CManagedFilesMgr::MoveFileToBackup(AString const & path) { return HubBackupUtils::MoveFileToBackup(path); }

bool CManagedFilesMgr::MoveDirToBackup(AString const & path) { return HubBackupUtils::MoveDirToBackup(path); }

bool CManagedFilesMgr::CopyFileToBackup(AString const & path) { return HubBackupUtils::CopyFileToBackup(path); }

bool CManagedFilesMgr::CopyDirToBackup(AString const & path) { return HubBackupUtils::CopyDirToBackup(path); }

bool CManagedFilesMgr::DeleteFileOrMoveFileToBackup(AString const & path) {
  return BackupUtils::DeleteFileOrMoveFileToBackup(path);
}

bool CManagedFilesMgr::DeleteDirOrMoveDirToBackup(AString const & path) {
  return BackupUtils::DeleteDirOrMoveDirToBackup(path);
}
