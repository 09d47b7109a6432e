// Opening a project: which of its files count, and what a crash left.
#include "basekit/file/FileOperations.h"
#include "basekit/file/IFileSystem.h"
#include "desktop/Error.h"
#include "desktop/command/EditLog.h"
#include "desktop/design/Design.h"
#include "desktop/product/IDesktopProduct.h"
#include "desktop/product/ProductRegistry.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/project/CommittedLibrary.h"
#include "desktop/project/Project.h"
#include "desktop/project/ProjectFile.h"
#include "desktop/project/ProjectLock.h"
#include "desktop/project/Session.h"
#include "viewkit/library/LibraryReader.h"

namespace desktop {

namespace {

using PrivateFile = library::LibraryReader::PrivateFile;

constexpr int kReadAttempts = 5;

// Solved points of the library that are not among the given ones.
int CountNewPoints(ProductSolutionManager const & manager, std::set<AString> const & known) {
  std::list<AString> names;
  manager.GetSolutionFileManager().IndexKeyList(names, false);
  int count = 0;
  for (AString const & name : names) {
    SolutionVariationKey key;
    count += !known.contains(name) && key.Unpack(name) && key.IsValidVariationDataKey() ? 1 : 0;
  }
  return count;
}

AString RecoveryNotice(AString const & project, int points) {
  return points == 0 ? project + L": the last session ended in a crash; no solved point was unsaved"
                     : project + AString::Format(L": recovered %d %s after a crash", points,
                                                 AString(points == 1 ? L"point" : L"points"));
}

// Of bytes that no commit covers.  Beside a writer they may be those of a commit on its way.
AString NoticeOfTail(AString const & path) {
  library::LibraryReader reader;
  if (library::LibraryReader::StateOfPrivateFile(LongFileName(path)) == PrivateFile::InUse ||
      reader.Open(LongFileName(path), false) != CStreamioLibrary::kLibSuccess)
    return AString();
  auto const facts = reader.PublicFacts();
  if (!facts.exists || facts.length <= facts.end)
    return AString();
  return path + AString::Format(L": %lu bytes behind the last commit don't count: a save was interrupted or the file "
                                L"was cut; `qsol verify` tells more",
                                static_cast<unsigned long>(facts.length - facts.end));
}

bool HoldTheSame(ProjectRecord const & a, ProjectRecord b) {
  b.generation = a.generation;
  return EncodeProject(a, ProjectFileKind::kProject) == EncodeProject(b, ProjectFileKind::kProject);
}

} // namespace

std::unique_ptr<Session> Session::Open(AString const & projectPath, Access access) {
  std::unique_ptr<Session> session(new Session(access));
  session->m_project = std::make_unique<Project>(projectPath);
  session->m_project->SetReadOnly(access == Access::kReadOnly);
  if (access == Access::kReadOnly)
    session->OpenForReading();
  else
    session->OpenForWriting();
  session->m_lastWritten = EncodeProject(session->MakeRecord(), ProjectFileKind::kAutosave);
  session->m_project->SetUnsavedChangesQuestion([opened = session.get()] { return opened->HasUnsavedChanges(); });
  return session;
}

void Session::OpenForReading() {
  // A writer may save in between: project file and library are to be of one moment.
  for (int attempt = 1;; ++attempt) {
    std::string const bytes = ReadProjectBytes(m_project->GetFile());
    ProjectRecord const record = DecodeProject(bytes, ProjectFileKind::kProject, m_project->GetFile());
    m_manager.reset();
    MakeDesign(record);
    m_manager->SetReadOnly();
    ReadLibrary(record);
    if (attempt == kReadAttempts || ReadProjectBytes(m_project->GetFile()) == bytes)
      return;
  }
}

void Session::OpenForWriting() {
  LongFileName const file = m_project->GetFile();
  ReadProjectBytes(file); // A project that isn't there is told as such, and no lock file made.
  m_lock = std::make_unique<ProjectLock>(m_project->GetLockFile());
  ProjectRecord const saved = DecodeProject(ReadProjectBytes(file), ProjectFileKind::kProject, file);
  ProjectRecord const record = RecordToOpen(saved);
  MakeDesign(record);
  if (m_hasAutosave)
    m_manager->SetDeletionsUnsaved();
  AString const path = m_manager->GetQsolPath();
  AString const project = m_project->GetName();
  switch (library::LibraryReader::StateOfPrivateFile(LongFileName(path))) {
  case PrivateFile::InUse:
    throw Error(ErrorKind::kLocked, path + L": another process writes the project's library; wait until it is done");
  case PrivateFile::LeftByCrash: {
    auto const committed = CommittedBlockNames(path);
    m_manager->SetRecoverOnRead(true);
    ReadLibrary(record);
    m_notices.push_back(RecoveryNotice(project, CountNewPoints(*m_manager, committed)));
    return;
  }
  case PrivateFile::OtherGeneration:
  case PrivateFile::Unreadable: {
    ReadLibrary(record);
    auto & library = m_manager->GetSolutionFileManager().GetLibraryForDirectAccess();
    if (library.AcquireForWriting() != CStreamioLibrary::kLibSuccess)
      RefuseStorage(library.LastError());
    if (!library.WasSetAside().empty())
      m_notices.push_back(path + L"_priv: does not belong to the saved results; it was set aside as " +
                          library.WasSetAside());
    return;
  }
  case PrivateFile::None:
  case PrivateFile::ClosedInOrder:
    ReadLibrary(record);
  }
}

// The autosave wins when it continues the project file that is there.
ProjectRecord Session::RecordToOpen(ProjectRecord const & saved) {
  m_generation = saved.generation;
  LongFileName const file = m_project->GetAutosaveFile();
  if (!LFN_Exists(file))
    return saved;
  try {
    ProjectRecord autosave = DecodeProject(ReadProjectBytes(file), ProjectFileKind::kAutosave, file);
    if (autosave.generation == saved.generation) {
      m_hasAutosave = true;
      return autosave;
    }
    // A save that was cut off before its last step left it, and it holds nothing else.
    if (HoldTheSame(saved, autosave))
      LFN_DeleteFile(file);
    else
      SetAside(file.FilePath(), L"it continues another state of the project file");
  } catch (Error const & error) {
    SetAside(file.FilePath(), L"it can't be read");
  }
  return saved;
}

void Session::SetAside(AString const & file, wchar_t const * why) {
  AString aside;
  LongFileName const path(file);
  bool const isMoved =
      KvroGetTempFileName(LongFileName(path.DirPath()), path.NameAndExtension() + L".set-aside-", AString(), aside) &&
      LFN_Rename(path, LongFileName(aside));
  if (!isMoved)
    throw Error(ErrorKind::kStorage,
                file + L": can't be set aside (" + LFN_LastError() + L"); get permission to write to the folder");
  m_notices.push_back(file + L": " + why + L"; it was set aside as " + aside);
}

void Session::MakeDesign(ProjectRecord const & record) {
  m_product = ProductRegistry::Instance().Find(record.productName);
  if (!m_product)
    throw Error(ErrorKind::kProject, m_project->GetFile().FilePath() + L": the project needs the product '" +
                                         record.productName +
                                         L"', which this program does not have; use one that has it");
  m_project->SetSourceFiles(record.sources);
  SourceBase base;
  // A project from before there was one: its next reload takes what the source says.
  if (!ReadSourceBase(record.sourceBase, base))
    base = SourceBase::Of({}, record.sources);
  m_project->SetSourceBase(base);
  m_editLog->Read(record.edits); // What can't be read there leaves the reasons unknown, no more.
  m_design = std::make_unique<Design>(*m_project, record.designName, record.designID, m_product->GetName());
  if (!m_design->Read(record.design))
    throw Error(ErrorKind::kProject, m_project->GetFile().FilePath() +
                                         L": the design's variables can't be read; put back a copy of the file");
  m_manager = m_product->MakeManager(m_design.get());
  m_manager->ResetNextUniqueID(record.ids);
}

void Session::ReadLibrary(ProjectRecord const & record) {
  AString const path = m_manager->GetQsolPath();
  bool const isThere = LFN_Exists(LongFileName(path));
  AString const tail = NoticeOfTail(path); // A writer may write over it from here on.
  m_manager->InitializeFromDesign(false);
  io::ReadError const result = m_manager->ReadModule(record.module, false, ReadMethod::kAllFiles);
  if (result != io::kNoError)
    RefuseLibrary(m_manager->GetSolutionFileManager().GetLibraryForDirectAccess().LastError());
  if (!tail.empty())
    m_notices.push_back(tail);
  if (!isThere)
    m_notices.push_back(path + L": the library is missing, and with it all solved points; put back a copy of it before "
                               L"you save, or solve again");
}

void Session::RefuseLibrary(AString const & what) const {
  throw Error(ErrorKind::kProject, m_manager->GetQsolPath() + L": the results can't be read" +
                                       (what.empty() ? AString() : AString(L" (") + what + L")") +
                                       L"; put back a copy of the results folder");
}

} // namespace desktop
