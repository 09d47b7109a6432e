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
#include "viewkit/backup/BackupArea.h"
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
  // Without a list there are none, whatever the order of this machine.
  if (!LFN_Exists(m_committedListFile) || !managed::CanRead(m_committedListFile))
    return;
  io::CBlock block(kManagedFiles);
  {
    io::CToken_istream in_orig(m_committedListFile, managed::kReadFlags);
    if (managed::ReadByteOrder(in_orig) == io::GByteOrder)
      return;
    KVRO_ASSERT(in_orig.AtBeginBlock(kManagedFiles));
    in_orig >> block;
  }
  DeleteListed(block, io::CBlock(kManagedFiles));
  LFN_DeleteFile(m_committedListFile);
}

bool CManagedFilesMgr::FindPlace(AString const & baseDir, AString const & fileName, LongFileName & place) const {
  AString const base = managed::FolderName(baseDir);
  AString const folder = base.empty() ? m_subDir : m_subDir + base + L"/";
  // The managed folder itself is a base directory too, by no name or by ".".
  bool const isInside = (base.empty() || (base[0] != L'/' && LFN_IsTextOfPlaceInside(folder))) &&
                        LFN_IsTextOfPlaceInside(fileName) && LFN_IsPlaceInside(mResultsDir, folder + fileName);
  if (isInside)
    place = LongFileName(mResultsDir + folder, fileName);
  else
    KVRO_ASSERT(!"A name leads out of the folder of managed files");
  return isInside;
}

void CManagedFilesMgr::DeleteListed(io::CBlock const & block, io::CBlock const & kept) {
  managed::Names const keptNames = managed::NamesOf(kept);
  for (auto const & [baseDir, names] : managed::FoldersOf(block)) {
    auto const keptHere = keptNames.find(baseDir);
    for (auto const & name : names) {
      LongFileName lfn;
      if ((keptHere != keptNames.end() && keptHere->second.contains(name)) || !FindPlace(baseDir, name, lfn))
        continue;
      KVRO_ASSERT(LFN_Exists(lfn));
      LFN_DeleteFile(lfn);
    }
  }
}

void CManagedFilesMgr::RollBack() {
  if (!m_initialized || !LFN_Exists(m_privateListFile))
    return;
  io::CBlock block(kManagedFiles);
  bool isWhole = managed::CanRead(m_privateListFile);
  if (isWhole) {
    io::CBlock deletedFiles(kDeletedFiles);
    io::CToken_istream in(m_privateListFile, managed::kReadFlags);
    KVRO_ASSERT(in.AtBeginBlock(kManagedFiles));
    isWhole = managed::ReadBlocks(in, block, &deletedFiles);
  }
  if (!isWhole) {
    SetAside(m_privateListFile);
    return;
  }
  // A list that outlived its commit names files that are saved: they stay.
  io::CBlock committedFiles(kManagedFiles);
  Reading const committed = ReadCommittedList(committedFiles);
  if (committed == Reading::Damaged || committed == Reading::Unreadable)
    return;
  DeleteListed(block, committedFiles);
  LFN_DeleteFile(m_privateListFile);
}

CManagedFilesMgr::Reading CManagedFilesMgr::ReadCommittedList(io::CBlock & managedFiles) const {
  if (!LFN_Exists(m_committedListFile))
    return Reading::Absent;
  if (!managed::CanRead(m_committedListFile))
    return Reading::Unreadable;
  io::CToken_istream in(m_committedListFile, managed::kReadFlags);
  managed::ReadByteOrder(in);
  KVRO_ASSERT(in.AtBeginBlock(kManagedFiles));
  return managed::ReadBlocks(in, managedFiles, nullptr) ? Reading::Whole : Reading::Damaged;
}

bool CManagedFilesMgr::ReadPrivateList(io::CBlock & managedFiles, io::CBlock & deletedFiles) {
  if (!LFN_Exists(m_privateListFile))
    return true;
  if (!managed::CanRead(m_privateListFile))
    return SetAside(m_privateListFile);
  io::CToken_istream in(m_privateListFile, managed::kReadFlags);
  KVRO_ASSERT(in.AtBeginBlock(kManagedFiles));
  return managed::ReadBlocks(in, managedFiles, &deletedFiles) || SetAside(m_privateListFile);
}

AString CManagedFilesMgr::NameAside(LongFileName const & list) const {
  AString name;
  return KvroGetTempFileName(mResultsDir, list.NameAndExtension() + L"_damaged", AString(), name) ? name : AString();
}

/// What a damaged list names is left alone, and the list kept for whoever wants to look.
bool CManagedFilesMgr::SetAside(LongFileName const & list) const {
  AString const name = NameAside(list);
  return !name.empty() && BackupArea::Rename(list, LongFileName(name));
}

/// Appends to a block of the private list.
bool CManagedFilesMgr::AddTo(bool toDeleted, AString const & baseDir, AString const & fileName) {
  io::CBlock managedFiles(kManagedFiles);
  io::CBlock deletedFiles(kDeletedFiles);
  if (!ReadPrivateList(managedFiles, deletedFiles))
    return false;
  managed::AppendName(toDeleted ? deletedFiles : managedFiles, managed::FolderName(baseDir), fileName);
  return managed::WritePrivateList(m_privateListFile, managedFiles, deletedFiles);
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
  LongFileName const created(fileName);
  fileName = created.NameAndExtension();
  if (AddTo(false, baseDir, fileName))
    return true;
  // A file in no list would stay for good.
  LFN_DeleteFile(created);
  return false;
}

bool CManagedFilesMgr::DeleteManagedFile(AString const & baseDir, AString const & fileName) {
  Initialize();
  KVRO_ASSERT(!baseDir.empty());
  LongFileName place;
  return FindPlace(baseDir, fileName, place) && managed::IsNoFolder(place) && AddTo(true, baseDir, fileName);
}

LongFileName CManagedFilesMgr::GetFullPathForManagedFile(AString const & baseDir, AString const & fileName) {
  Initialize();
  LongFileName place;
  // Any name tells the folder.
  if (!FindPlace(baseDir, fileName.empty() ? AString(L"tmp") : fileName, place))
    return LongFileName();
  return fileName.empty() ? LongFileName(place.DirPath()) : place;
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
