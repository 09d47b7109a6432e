// The life of the two files: attaching, saving under a new name, commit.

#include "solutionmanager/store/SolutionFileManager.h"

#include "CoreInterfaces/desktop/IProject.h"
#include "basekit/diag/Profiling.h"
#include "basekit/file/CFileUtilities.h"
#include "basekit/file/FileOperations.h"
#include "basekit/file/LongFileName.h"
#include "basekit/io/BlockJournal.h"
#include "solutionmanager/store/BlockKeyIndex.h"

#include <algorithm>

AString const SolutionFileManager::kRealToInternalBlkName(L"BlockMapName");

namespace {

constexpr auto kOrdinaryMode = static_cast<SolutionFileManager::TMode>(0);
constexpr auto kRecoveryMode = static_cast<SolutionFileManager::TMode>(1);

AString PrivateTwin(AString const & path) { return path + L"_priv"; }

// Without a project the folder is that of the path itself, whichever slash it uses.
AString FolderOf(AString const & path) {
  std::wstring folder(path.View());
  std::replace(folder.begin(), folder.end(), L'\\', L'/');
  auto const lastSlash = folder.rfind(L'/');
  return lastSlash == AString::npos ? AString() : AString(std::wstring_view(folder).substr(0, lastSlash + 1));
}

} // namespace

SolutionFileManager::SolutionFileManager(LongFileName const & file)
    : m_library(file, kOrdinaryMode), m_libPath(file.DirPath()), m_attachPending(false), m_project(nullptr),
      m_journal(NewJournal()) {}

SolutionFileManager::SolutionFileManager(IProject * project)
    : m_attachPending(true), m_project(project), m_journal(NewJournal()) {}

SolutionFileManager::~SolutionFileManager() {
  m_library.SendUnsent();
  m_journal->Close();
}

std::shared_ptr<io::BlockJournal> SolutionFileManager::NewJournal() const {
  return std::make_shared<io::BlockJournal>([this](io::CBlock & block) { FillNameMapBlock(block); });
}

bool SolutionFileManager::IsLibraryInitialized() const { return !m_libPath.empty() && !m_attachPending; }

void SolutionFileManager::AttachIfPending() const {
  if (!m_attachPending || m_libPath.empty())
    return;
  SetLibPathInternal(m_libPath, kOrdinaryMode);
  m_attachPending = false;
}

void SolutionFileManager::SetLibPath(AString const & path, TMode mode) {
  if (path != m_libPath) {
    m_libPath = path;
    m_attachPending = true;
  }
  if (mode == kRecoveryMode) {
    SetLibPathInternal(path, kRecoveryMode);
    m_attachPending = false;
    return;
  }
  // A private file that a former run left stays untouched until recovery has had its say.
  if (m_attachPending && LFN_Exists(LongFileName(path)) && !LFN_Exists(LongFileName(PrivateTwin(path)))) {
    SetLibPathInternal(path, mode);
    m_attachPending = false;
  }
}

void SolutionFileManager::SetLibPathInternal(AString const & path, TMode mode) const {
  LongFileName folder;
  if (m_project)
    m_project->GetResultsFolder(folder, true);
  else
    folder = LongFileName(FolderOf(path));
  if (!folder.FilePath().empty() && !folder.Exists()) {
    if (m_project)
      m_project->CreateResultsFolder(folder);
    else
      LFN_CreateDirectory(folder);
  }
  m_library.SendUnsent(); // With the map as it still is.
  ClearEntries();
  m_mapSeen = false;
  m_mapChanged = true;
  m_library.SetLibPath(path, mode);
}

void SolutionFileManager::ChangeLibPathForSaving(AString const & newPath) const {
  // Without an old path there is nothing to take along.
  if (newPath != m_libPath && !m_libPath.empty())
    SaveProfileData(LongFileName(m_libPath).DirPath(), LongFileName(newPath).DirPath());
  m_libPath = newPath;
  m_attachPending = false;
  m_library.CopyToNewLibPath(newPath);
  if (m_library.GetFileStats().status != 0)
    m_attachPending = true;
}

void SolutionFileManager::SaveProfileData(AString const & fromDir, AString const & toDir) const {
  for (auto const & file : CFileUtilities::SimpleFindWithWildCard(LongFileName(fromDir), L"*.profile"))
    LFN_Copy(file, LongFileName(AString::Format(L"%s%s", toDir, file.NameAndExtension())), kOverwrite);
}

SolutionFileManager::LibIOReturn SolutionFileManager::CommitAll(bool flag) {
  PROFILE_SCOPE("SolutionFileManager_CommitAll");
  return m_library.CommitAll(flag);
}

SolutionFileManager::LibIOReturn SolutionFileManager::UpdateOriginal() {
  PROFILE_SCOPE("SolutionFileManager_UpdateOriginal");
  AttachIfPending();
  WriteRealToInternalBlockNameMap();
  LibIOReturn const result = m_library.UpdateOriginal();
  m_mapChanged = true;
  return result;
}

SolutionFileManager::LibIOReturn SolutionFileManager::RewriteLibrary(bool flag) {
  AttachIfPending();
  return m_library.RewriteLibrary(flag);
}

// The map stays in memory as it is, here and where the library is deleted: what the library holds of it is another one
// from then on, so the next write is whole.
void SolutionFileManager::ResetPrivateLib() {
  if (!IsLibraryInitialized())
    return;
  m_library.ResetPrivateLib();
  m_journal->Restart();
}

void SolutionFileManager::DeleteLibrary() {
  m_library.DeleteLibrary();
  m_journal->Restart();
}

bool SolutionFileManager::IsRecovered() const { return !m_attachPending && m_library.IsRecovered(); }

bool SolutionFileManager::HavePrivQsolBlocks() const {
  std::list<AString> names;
  return IsLibraryInitialized() && m_library.PrivIndexKeyList(names) == CStreamioLibrary::kLibSuccess && !names.empty();
}

void SolutionFileManager::SetBinaryMode(bool binary) { m_library.SetBinaryMode(binary); }

bool SolutionFileManager::IsBinaryModeFile() const { return m_library.IsBinaryModeFile(); }

void SolutionFileManager::SetPrecision(int digits) { m_library.SetPrecision(digits); }

CStreamioLibraryStats SolutionFileManager::GetFileStats() const {
  AttachIfPending();
  return m_library.GetFileStats();
}

CStreamioLibWritePrivate & SolutionFileManager::GetLibraryForDirectAccess() const {
  AttachIfPending();
  return m_library;
}
