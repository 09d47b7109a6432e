// Going back to the saved state of a project: what is unsaved is dropped, or set aside.
#include "basekit/file/FileOperations.h"
#include "basekit/file/IFileSystem.h"
#include "basekit/file/PlaceInFolder.h"
#include "desktop/Error.h"
#include "desktop/design/Design.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/product/StaleResults.h"
#include "desktop/product/StrayResultFiles.h"
#include "desktop/project/AutosaveChoice.h"
#include "desktop/project/CommittedLibrary.h"
#include "desktop/project/ManagedFiles.h"
#include "desktop/project/Project.h"
#include "desktop/project/ProjectFile.h"
#include "desktop/project/ProjectLock.h"
#include "desktop/project/SavedLibrary.h"
#include "desktop/project/Session.h"
#include "viewkit/library/LibraryReader.h"

namespace desktop {

namespace {

LongFileName PrivateFileOf(AString const & libraryPath) { return libraryPath + L"_priv"; }

void RefuseInUse(AString const & libraryPath) {
  using library::LibraryReader;
  if (LibraryReader::StateOfPrivateFile(LongFileName(libraryPath)) == LibraryReader::PrivateFile::InUse)
    throw Error(ErrorKind::kLocked,
                libraryPath + L": another process writes the project's library; wait until it is done");
}

void Remove(LongFileName const & file) {
  if (LFN_Exists(file) && !LFN_Delete(file))
    throw Error(ErrorKind::kStorage, file.FilePath() + L": can't be removed (" + LFN_LastError() +
                                         L"); get permission to write to the folder, and try again");
}

} // namespace

void Session::Discard() {
  RefuseWhenReadOnly();
  LongFileName const file = m_project->GetFile();
  ProjectRecord const saved = DecodeProject(ReadProjectBytes(file), ProjectFileKind::kProject, file);
  m_notices.clear();
  m_access = Access::kReadOnly; // After a failure nothing may be written over what stands.
  CheckSavedState(saved);
  DropUnsaved(saved);
  MakeDesign(saved);
  ReadLibrary(saved);
  m_access = Access::kWrite;
  m_generation = saved.generation;
  TellOfForeignObjects();
  NoteAsWritten();
}

// Nothing is given up for a state that can't be had.
void Session::CheckSavedState(ProjectRecord const & saved) {
  MakeDesign(saved);
  AString const path = m_manager->GetQsolPath();
  if (!LFN_Exists(LongFileName(path)))
    throw Error(ErrorKind::kProject, path + L": the library is missing, so there is no saved state to go back to; put "
                                            L"back a copy of it first");
  m_savedLength = SavedLibrary(path).Length(saved.generation);
  m_manager->SetReadOnly(m_savedLength);
  ReadLibrary(saved);
  m_notices.clear(); // They come again.
}

void Session::DropUnsaved(ProjectRecord const & saved) {
  AString const path = m_manager->GetQsolPath();
  RefuseInUse(path);
  auto const strays = StrayFiles({&saved});
  bool const hasManagedFiles = HaveUnsavedManagedFiles(*m_manager);
  DropManagedFilesWith(*m_manager);
  m_manager.reset();
  m_dropped = {JudgeAutosave(m_project->GetAutosaveFile(), saved).changesDesign,
               LFN_Exists(PrivateFileOf(path)) || IsLibraryAhead(path),
               static_cast<int>(PointsStoredSince(path, m_savedLength).size()), static_cast<int>(strays.size()),
               hasManagedFiles};
  // The results first: an autosave without them is a design to solve, they without it would be results of nothing.
  Remove(PrivateFileOf(path));
  StaleResults(path).Drop();
  TakeLibraryBack(path);
  for (LongFileName const & file : strays)
    Remove(file);
  Remove(m_project->GetAutosaveFile());
  m_hasAutosave = false;
  // Files that a loss of power brings back are unsaved work again.
  static_cast<void>(file::FileSystem().SyncFolder(LongFileName(path).DirPath()));
  static_cast<void>(file::FileSystem().SyncFolder(m_project->GetFolder()));
}

bool Session::IsLibraryAhead(AString const & path) const {
  file::FileInfo info;
  return m_savedLength && file::FileSystem().Describe(LongFileName(path), info).Ok() && info.length > *m_savedLength;
}

void Session::TakeLibraryBack(AString const & path) {
  if (IsLibraryAhead(path))
    SavedLibrary(path).GoBack(*m_savedLength);
  SavedLibrary(path).Forget();
  m_savedLength.reset();
}

void Session::SetUnsavedAside(ProjectRecord const & saved) {
  AString const path = m_manager->GetQsolPath();
  RefuseInUse(path);
  SetFilesAside(saved);
  m_manager.reset();
  if (IsLibraryAhead(path))
    CopyAside(path, L"it holds unsaved work");
  for (LongFileName const & file : {PrivateFileOf(path), m_project->GetAutosaveFile()})
    if (LFN_Exists(file))
      SetAside(file, L"left out as was asked for");
  TakeLibraryBack(path);
}

// Result files under the names that they have in the results folder, and copies of all managed files with their lists.
void Session::SetFilesAside(ProjectRecord const & saved) {
  LongFileName const results = m_project->GetResultsFolder();
  auto const strays = StrayFiles({&saved});
  bool const hasManaged = HaveUnsavedManagedFiles(*m_manager);
  if (strays.empty() && !hasManaged)
    return;
  AString name;
  bool isDone =
      KvroGetTempFileName(m_project->GetFolder(), m_project->GetName() + L".results.set-aside-", AString(), name);
  LongFileName const aside(name + L"/");
  isDone = isDone && LFN_CreateDirectoryAndParents(aside);
  for (std::size_t at = 0; isDone && at < strays.size(); ++at) {
    AString inside;
    isDone = LFN_RelativeTo(results, strays[at], inside);
    LongFileName const target = aside + inside;
    isDone = isDone && LFN_CreateDirectoryAndParents(target.DirPath()) && LFN_Move(strays[at], target, kFailIfExists);
  }
  if (hasManaged)
    isDone = isDone && CopyManagedFiles(*m_manager, aside);
  if (!isDone)
    throw Error(ErrorKind::kStorage, results.FilePath() + L": files that are not saved can't be set aside (" +
                                         LFN_LastError() + L"); make room or get permission, and try again");
  DropManagedFilesWith(*m_manager);
  m_notices.push_back(results.FilePath() + L": files that are not saved were set aside in " + aside.FilePath());
}

std::vector<LongFileName> Session::StrayFiles(std::initializer_list<ProjectRecord const *> known) const {
  StrayResultFiles strays(*m_manager, m_project->GetResultsFolder());
  for (ProjectRecord const * const record : known)
    strays.Spare(record->module);
  return strays.Find();
}

void Session::CopyAside(LongFileName const & file, AString const & why) {
  AString aside;
  bool const isCopied =
      KvroGetTempFileName(LongFileName(file.DirPath()), file.NameAndExtension() + L".set-aside-", AString(), aside) &&
      LFN_Copy(file, LongFileName(aside), kFailIfExists);
  if (!isCopied)
    throw Error(ErrorKind::kStorage, file.FilePath() + L": can't be copied aside (" + LFN_LastError() +
                                         L"); make room or get permission, and try again");
  m_notices.push_back(file.FilePath() + L": " + why + L"; a copy was set aside as " + aside);
}

} // namespace desktop
