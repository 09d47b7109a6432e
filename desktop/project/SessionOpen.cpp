// Opening a project: which of its files count, and what a crash left.
#include "basekit/file/FileOperations.h"
#include "basekit/file/IFileSystem.h"
#include "basekit/io/CBlock.h"
#include "desktop/Error.h"
#include "desktop/command/EditLog.h"
#include "desktop/command/Editor.h"
#include "desktop/command/MisfitVariations.h"
#include "desktop/design/Design.h"
#include "desktop/product/IDesktopProduct.h"
#include "desktop/product/ProductRegistry.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/product/StaleResults.h"
#include "desktop/product/StoresAndData.h"
#include "desktop/project/AutosaveChoice.h"
#include "desktop/project/CommittedLibrary.h"
#include "desktop/project/LibraryLengths.h"
#include "desktop/project/PortsOfProject.h"
#include "desktop/project/Project.h"
#include "desktop/project/ProjectFile.h"
#include "desktop/project/ProjectLock.h"
#include "desktop/project/RecoveryFailed.h"
#include "desktop/project/SaveProtocol.h"
#include "desktop/project/SavedLibrary.h"
#include "desktop/project/Session.h"
#include "desktop/report/LiveReports.h"
#include "desktop/report/ReportList.h"
#include "desktop/report/ShownNumbers.h"
#include "solutionmanager/recovery/RecoveryReport.h"
#include "viewkit/library/LibraryReader.h"

#include <algorithm>
#include <chrono>
#include <map>
#include <thread>

namespace desktop {

namespace {

using PrivateFile = library::LibraryReader::PrivateFile;

constexpr int kReadAttempts = 5;
constexpr int kSaveWaits = 100;
constexpr std::chrono::milliseconds kSaveWait(20);

// How many of the points the library has.
int CountThere(ProductSolutionManager const & manager, std::set<AString> const & points) {
  std::list<AString> names;
  manager.GetSolutionFileManager().IndexKeyList(names, false);
  return static_cast<int>(
      std::count_if(names.begin(), names.end(), [&](AString const & name) { return points.contains(name); }));
}

std::uint64_t CommittedLengthOf(AString const & libraryPath) {
  library::LibraryReader::CommitFacts facts;
  library::LibraryReader::FactsOfLastCommit(LongFileName(libraryPath), facts);
  return facts.commits > 0 ? facts.end : 0;
}

// The reasons of what is gone for good, each with its number of blocks.
AString TextOfDropped(std::vector<RecoveryReport::Dropped> const & dropped) {
  std::map<RecoveryReport::Reason, int> counts;
  for (RecoveryReport::Dropped const & block : dropped)
    ++counts[block.reason];
  AString text;
  for (auto const & [reason, count] : counts)
    text += AString::Format(L"; %d %s not taken over: %s", count, AString(count == 1 ? L"block was" : L"blocks were"),
                            TextOf(reason));
  return text;
}

AString RecoveryNotice(AString const & project, int points, bool isComplete) {
  if (points == 0 && !isComplete)
    return project + L": the last session ended in a crash; none of what it solved could be taken over";
  return points == 0 ? project + L": the last session ended in a crash; no solved point was unsaved"
                     : project + AString::Format(L": recovered %d %s after a crash", points,
                                                 AString(points == 1 ? L"point" : L"points"));
}

// Of a save that another process has under way; one that takes long is looked at as it is.
void WaitForSave(Project const & project) {
  for (int count = 0; count < kSaveWaits && LFN_Exists(project.GetSaveNote()); ++count) {
    if (!ProjectLock::IsTaken(project.GetLockFile()))
      return;
    std::this_thread::sleep_for(kSaveWait);
  }
}

// Of bytes that no commit covers.  Beside a writer they may be those of a commit on its way.
AString NoticeOfTail(AString const & path) {
  library::LibraryReader::CommitFacts facts;
  if (library::LibraryReader::StateOfPrivateFile(LongFileName(path)) == PrivateFile::InUse ||
      library::LibraryReader::FactsOfLastCommit(LongFileName(path), facts) != CStreamioLibrary::kLibSuccess ||
      facts.length <= facts.end)
    return AString();
  return path + AString::Format(L": %lu bytes behind the last commit don't count: a save was interrupted or the file "
                                L"was cut; `qsol verify` tells more",
                                static_cast<unsigned long>(facts.length - facts.end));
}

} // namespace

std::unique_ptr<Session> Session::Open(AString const & projectPath, Access access, LeftWork work) {
  std::unique_ptr<Session> session(new Session(access));
  session->m_project = std::make_unique<Project>(projectPath);
  session->m_project->SetReadOnly(access == Access::kReadOnly);
  if (access == Access::kReadOnly)
    session->OpenForReading();
  else
    session->OpenForWriting(work);
  session->NoteAsWritten();
  session->m_project->SetUnsavedChangesQuestion([opened = session.get()] { return opened->HasUnsavedChanges(); });
  return session;
}

void Session::OpenForReading() {
  SaveProtocol const protocol(*m_project);
  // A writer may save in between: project file, library and result files are to be of one moment.
  for (int attempt = 1;; ++attempt) {
    WaitForSave(*m_project);
    std::string const bytes = ReadProjectBytes(m_project->GetFile());
    ProjectRecord const record = DecodeProject(bytes, ProjectFileKind::kProject, m_project->GetFile());
    MakeDesign(record);
    SavedLibrary const savedLibrary(m_manager->GetQsolPath());
    m_savedLength = savedLibrary.Length(record.generation);
    m_manager->SetReadOnly(m_savedLength);
    auto const before = protocol.Judge(record.generation);
    ReadLibrary(record);
    auto const left = protocol.Judge(record.generation);
    bool const isOfOneMoment = ReadProjectBytes(m_project->GetFile()) == bytes && left == before &&
                               savedLibrary.Length(record.generation) == m_savedLength;
    if (attempt < kReadAttempts && !isOfOneMoment)
      continue;
    if (left == SaveProtocol::Left::kBack)
      LeaveOutFilesOfASave();
    return;
  }
}

// They may hold what was not saved by now, or lie elsewhere.
void Session::LeaveOutFilesOfASave() {
  auto const touched = SaveProtocol(*m_project).TouchedFiles();
  if (touched.empty())
    return;
  m_manager->LeaveOutResultFiles(touched);
  m_notices.push_back(m_project->GetResultsFolder().FilePath() +
                      L": a save is under way or was interrupted; result files that it touched are not shown (opening "
                      L"the project for writing takes an interrupted save back)");
}

void Session::OpenForWriting(LeftWork work) {
  LongFileName const file = m_project->GetFile();
  ReadProjectBytes(file); // A project that isn't there is told as such, and no lock file made.
  m_lock = std::make_unique<ProjectLock>(m_project->GetLockFile());
  ProjectRecord const saved = DecodeProject(ReadProjectBytes(file), ProjectFileKind::kProject, file);
  m_generation = saved.generation;
  SettleInterruptedSave(saved.generation);
  if (work != LeftWork::kGoOn) {
    CheckSavedState(saved);
    work == LeftWork::kDiscard ? DropUnsaved(saved) : SetUnsavedAside(saved);
  }
  using Fate = AutosaveChoice::Fate;
  LongFileName const autosaveFile = m_project->GetAutosaveFile();
  AutosaveChoice const autosave = JudgeAutosave(autosaveFile, saved);
  m_hasAutosave = autosave.fate == Fate::kWins;
  bool const isAutosaveLost = autosave.fate == Fate::kForeign;
  m_goesOnFrom = m_hasAutosave ? &saved.module : nullptr;
  ReadWithWork(m_hasAutosave ? autosave.record : saved, !isAutosaveLost);
  m_goesOnFrom = nullptr;
  // Not before the project is known to open.
  if (autosave.fate == Fate::kObsolete)
    LFN_DeleteFile(autosaveFile);
  else if (isAutosaveLost)
    SetAside(autosaveFile, autosave.why);
  TellOfForeignObjects();
  // Of a design that is lost nobody knows what it named.
  if (m_hadCrash && !isAutosaveLost)
    RemoveStrayFiles(saved, m_hasAutosave ? autosave.record : saved);
  // The texts are what the design has by now, and the next session is to find what this one does.
  bool const isPending = m_hasAutosave && !autosave.record.pendingTexts.Empty();
  if (isPending || (isAutosaveLost && m_hasForeignObjects) || m_hasTakenUpFiles) {
    ProjectRecord record = MakeRecord();
    WriteAutosave(record, EncodeProject(record, ProjectFileKind::kAutosave));
  }
}

void Session::SettleInterruptedSave(long generation) {
  using Left = SaveProtocol::Left;
  Left const left = SaveProtocol(*m_project).Settle(generation);
  m_hadCrash = left == Left::kBack;
  if (left == Left::kBack)
    m_notices.push_back(m_project->GetName() +
                        L": the last save was interrupted and taken back; the work that it was to save is unsaved");
  else if (left == Left::kForward)
    m_notices.push_back(m_project->GetName() + L": the last save was interrupted at its end and is complete now");
}

void Session::RemoveStrayFiles(ProjectRecord const & saved, ProjectRecord const & read) {
  auto const strays = StrayFiles({&saved, &read});
  auto const removed =
      std::count_if(strays.begin(), strays.end(), [](LongFileName const & file) { return LFN_Delete(file); });
  if (!strays.empty())
    m_notices.push_back(
        m_project->GetResultsFolder().FilePath() +
        AString::Format(L": %d result %s that neither saved nor unsaved work names, as a crash left %s; "
                        L"%d removed",
                        static_cast<int>(strays.size()), AString(strays.size() == 1 ? L"file" : L"files"),
                        AString(strays.size() == 1 ? L"it" : L"them"), static_cast<int>(removed)));
}

void Session::TellOfLostFiles() {
  if (int const count = m_manager->CountLostResultFiles(); count > 0)
    m_notices.push_back(m_project->GetResultsFolder().FilePath() +
                        AString::Format(L": %d result %s missing and left out; put back a copy, or solve again", count,
                                        AString(count == 1 ? L"file is" : L"files are")));
}

// The private file of the library tells how the last session ended.
void Session::ReadWithWork(ProjectRecord const & record, bool isWholeTruth) {
  MakeDesign(record);
  if (!isWholeTruth)
    m_manager->KeepWhatTheDesignLacks();
  AString const path = m_manager->GetQsolPath();
  SavedLibrary(path).ForgetObsolete(m_generation);
  m_savedLength = SavedLibrary(path).Length(m_generation);
  if (StaleResults(path).AreThere())
    NoteSavedLibrary();
  switch (library::LibraryReader::StateOfPrivateFile(LongFileName(path))) {
  case PrivateFile::InUse:
    throw Error(ErrorKind::kLocked, path + L": another process writes the project's library; wait until it is done");
  case PrivateFile::LeftByCrash:
    TakeOverAfterCrash(record);
    return;
  case PrivateFile::OtherGeneration:
  case PrivateFile::Unreadable: {
    ReadLibrary(record);
    auto & library = m_manager->GetSolutionFileManager().GetLibraryForDirectAccess();
    if (library.AcquireForWriting() != CStreamioLibrary::kLibSuccess)
      RefuseStorage(library.LastError());
    if (!library.WasSetAside().empty())
      m_notices.push_back(path +
                          L"_priv: does not belong to the saved results, or its beginning is damaged; it was set "
                          L"aside as " +
                          library.WasSetAside());
    return;
  }
  case PrivateFile::None:
  case PrivateFile::ClosedInOrder:
    ReadLibrary(record);
  }
}

void Session::TakeOverAfterCrash(ProjectRecord const & record) {
  m_hadCrash = true;
  AString const path = m_manager->GetQsolPath();
  RefuseDamagedNames(path);
  std::size_t const nameless = CountNamelessBlocks(path);
  if (nameless > 0)
    CopyAside(LongFileName(path + L"_priv"),
              AString::Format(L"its end is torn off, and with it the %s of %lu %s",
                              AString(nameless == 1 ? L"name" : L"names"), static_cast<unsigned long>(nameless),
                              AString(nameless == 1 ? L"block" : L"blocks")) +
                  L", which can't be taken over");
  NoteSavedLibrary();
  StaleResults(path).Keep(SetupsOfDesign(record.module));
  LibraryLengths const before(path);
  auto const unsaved = UnsavedPoints(path);
  auto const stored = PointsStoredSince(path);
  m_manager->SetRecoverOnRead(true);
  try {
    ReadLibrary(record);
  } catch (Error const &) {
    RecoveryReport const report = m_manager->GetRecoveryReport();
    AString const cause = m_manager->GetSolutionFileManager().GetLibraryForDirectAccess().LastError();
    CloseManager(); // Closes the files.
    before.PutBack();
    if (m_savedLength == CommittedLengthOf(path))
      SavedLibrary(path).Forget();
    RefuseTakeover(path, report, cause);
  }
  m_recoveredPoints = CountThere(*m_manager, unsaved);
  AString notice = RecoveryNotice(m_project->GetName(), m_recoveredPoints, nameless == 0) +
                   TextOfDropped(m_manager->DroppedForGood());
  if (!m_manager->GetRecoveryReport().isCommitted)
    notice += L"; the library could not be written, so it is unsaved work";
  m_notices.push_back(notice);
  int const lost = TakeUpResultFiles(*m_manager, stored, m_hasTakenUpFiles);
  if (lost > 0)
    m_notices.push_back(m_project->GetName() +
                        AString::Format(L": %d %s of recovered points %s not there any more; solve these points "
                                        L"again with --again",
                                        lost, AString(lost == 1 ? L"result file" : L"result files"),
                                        AString(lost == 1 ? L"is" : L"are")));
}

// Before the library goes on from what was saved.
void Session::NoteSavedLibrary() {
  AString const path = m_manager->GetQsolPath();
  SavedLibrary(path).Note(m_generation, CommittedLengthOf(path));
  m_savedLength = SavedLibrary(path).Length(m_generation);
}

// What nobody deleted stays, though the design that is read knows nothing of it.
void Session::TellOfForeignObjects() {
  m_hasForeignObjects = !m_manager->GetForeignObjects().empty();
  for (AString const & name : m_manager->GetForeignObjects())
    m_notices.push_back(m_manager->GetQsolPath() + L": holds " + name +
                        L", which the project file does not know; it is kept as unsaved work, until you save or "
                        L"delete it");
}

// Without the map of names nobody can tell which block is whose; a takeover would find nothing to be unsaved.
void Session::RefuseDamagedNames(AString const & path) const {
  library::LibraryReader reader;
  io::CBlock names(SolutionFileManager::kRealToInternalBlkName);
  bool const isDamaged = reader.Open(LongFileName(path), true) == CStreamioLibrary::kLibSuccess &&
                         reader.Load(names) == CStreamioLibrary::kLibDamaged;
  if (!isDamaged)
    return;
  RecoveryReport report;
  report.outcome = RecoveryReport::Outcome::kFailed;
  report.failure = RecoveryReport::Failure::kNameMapDamaged;
  RefuseTakeover(path, report, reader.LastError());
}

void Session::RefuseTakeover(AString const & path, RecoveryReport const & report, AString const & cause) const {
  AString why = TextOf(report.failure);
  if (!cause.empty())
    why += (why.empty() ? AString() : AString(L": ")) + cause;
  AString const what = path + L"_priv: the work that a crash left can't be taken over" +
                       (why.empty() ? AString() : AString(L" (") + why + L")") + L"; it stays as it is: ";
  if (report.failure == RecoveryReport::Failure::kNotWritten)
    throw RecoveryFailed(ErrorKind::kStorage, what + L"make room or get permission, and open the project again");
  throw RecoveryFailed(ErrorKind::kProject, what +
                                                L"put back a copy of the results folder, or go on from the saved "
                                                L"state with 'solvedesk recover " +
                                                m_project->GetName() + L" --set-aside'");
}

void Session::SetAside(LongFileName const & file, AString const & why) {
  AString aside;
  bool const isMoved =
      KvroGetTempFileName(LongFileName(file.DirPath()), file.NameAndExtension() + L".set-aside-", AString(), aside) &&
      LFN_Rename(file, LongFileName(aside));
  if (!isMoved)
    throw Error(ErrorKind::kStorage, file.FilePath() + L": can't be set aside (" + LFN_LastError() +
                                         L"); get permission to write to the folder");
  m_notices.push_back(file.FilePath() + L": " + why + L"; it was set aside as " + aside);
}

void Session::MakeDesign(ProjectRecord const & record) {
  m_product = ProductRegistry::Instance().Find(record.productName);
  if (!m_product)
    throw Error(ErrorKind::kProject, m_project->GetFile().FilePath() + L": the project needs the product '" +
                                         record.productName +
                                         L"', which this program does not have; use one that has it");
  m_editor.reset(); // They know the design that goes.
  m_liveReports.reset();
  CloseManager();
  m_project->SetSourceFiles(record.sources);
  SourceBase base;
  // A project from before there was one: its next reload takes what the source says.
  if (!ReadSourceBase(record.sourceBase, base)) {
    base = SourceBase::Of({}, record.sources);
    base.date = AString();
  }
  m_project->SetSourceBase(base);
  m_project->SetConnections(ReadConnections(record.connections));
  ReadReports(record);
  m_editLog->Read(record.edits); // What can't be read there leaves the reasons unknown, no more.
  m_design = std::make_unique<Design>(*m_project, record.designName, record.designID, m_product->GetName());
  if (!m_design->Read(record.design))
    throw Error(ErrorKind::kProject, m_project->GetFile().FilePath() +
                                         L": the design's variables can't be read; put back a copy of the file");
  m_manager = m_product->MakeManager(m_design.get());
  m_manager->ResetNextUniqueID(record.ids);
  if (TextsChanges const changes = ReadTextsChanges(record.pendingTexts); !changes.empty())
    m_manager->SetNewTexts([changes](AString const & variation) {
      AString text = variation;
      for (TextsChange const & change : changes)
        text = change.Apply(text);
      return text;
    });
}

// A state is read twice where the first reading only checks it.
void Session::ReadReports(ProjectRecord const & record) {
  std::vector<AString> notices;
  m_reports->Read(record.reports, notices);
  for (AString const & notice : notices)
    if (AString const told = m_project->GetFile().FilePath() + L": " + notice;
        std::find(m_notices.begin(), m_notices.end(), told) == m_notices.end())
      m_notices.push_back(told);
}

void Session::ReadLibrary(ProjectRecord const & record) {
  AString const path = m_manager->GetQsolPath();
  bool const isThere = LFN_Exists(LongFileName(path));
  AString const tail = NoticeOfTail(path); // A writer may write over it from here on.
  m_manager->InitializeFromDesign(false);
  if (m_goesOnFrom)
    m_manager->SetSavedDesign(*m_goesOnFrom);
  io::ReadError const result = m_manager->ReadModule(record.module, false, ReadMethod::kAllFiles);
  if (result != io::kNoError)
    RefuseLibrary(m_manager->GetSolutionFileManager().GetLibraryForDirectAccess().LastError());
  ReadPorts(record.ports, *m_manager);
  CheckNumbersOfReports(record);
  MarkMisfits(*this);
  TellOfLostFiles();
  if (!tail.empty())
    m_notices.push_back(tail);
  if (!isThere)
    m_notices.push_back(path +
                        L": the library is missing, and with it all solved points; put back a copy of it before "
                        L"you save, or solve again (a project file that was renamed needs its results folder "
                        L"renamed likewise, to " +
                        m_project->GetName() + L".results)");
}

// A file that is damaged, of another save or of another project has nothing to say.  Nor has any beside work that is
// not saved: an edit may reach its numbers, and a solve may have brought others.
void Session::CheckNumbersOfReports(ProjectRecord const & record) {
  bool const isAnyUnsaved = m_hasAutosave || HasUnsavedResults();
  if (record.simValueCache.empty() || isAnyUnsaved || StampOfNumbers(*m_manager) != record.simValueCache)
    ForgetReadReports(*m_manager);
}

void Session::RefuseLibrary(AString const & what) const {
  throw Error(ErrorKind::kProject, m_manager->GetQsolPath() + L": the results can't be read" +
                                       (what.empty() ? AString() : AString(L" (") + what + L")") +
                                       L"; put back a copy of the results folder");
}

} // namespace desktop
