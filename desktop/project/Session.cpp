// An open project: changing and closing it.
#include "desktop/project/Session.h"

#include "basekit/file/FileOperations.h"
#include "basekit/io/BlockCodec.h"
#include "desktop/Error.h"
#include "desktop/command/EditLog.h"
#include "desktop/command/Editor.h"
#include "desktop/design/Design.h"
#include "desktop/product/IDesktopProduct.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/project/CommittedLibrary.h"
#include "desktop/project/ManagedFiles.h"
#include "desktop/project/NewFile.h"
#include "desktop/project/PortsOfProject.h"
#include "desktop/project/Project.h"
#include "desktop/project/ProjectFile.h"
#include "desktop/project/ProjectLock.h"
#include "desktop/report/LiveReports.h"
#include "desktop/report/ReportList.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"

namespace desktop {

namespace {

constexpr auto kSuccess = CStreamioLibrary::kLibSuccess;

} // namespace

Session::Session(Access access)
    : m_access(access), m_editLog(std::make_unique<EditLog>()), m_reports(std::make_unique<ReportList>()) {}

Session::~Session() {
  if (m_manager)
    LeaveManagedFiles(*m_manager);
}

void Session::CloseManager() {
  if (m_manager)
    LeaveManagedFiles(*m_manager);
  m_manager.reset();
}

std::set<AString> Session::GetCommittedBlocks() const {
  std::set<AString> names;
  for (auto const & [realName, internalName] : CommittedBlocks(m_manager->GetQsolPath(), m_savedLength))
    names.insert(names.end(), realName);
  return names;
}

std::set<AString> Session::GetPointsStoredSince() const {
  return IsReadOnly() ? std::set<AString>() : PointsStoredSince(m_manager->GetQsolPath(), m_savedLength);
}

void Session::CheckSourceUnchanged() const { CheckUnchanged(m_project->GetSourceFiles(), m_project->GetFolder()); }

bool Session::HasUnsavedChanges() const {
  return m_hasAutosave || (m_hasForeignObjects && !IsReadOnly()) || HasUnsavedResults();
}

bool Session::HasUnsavedResults() const {
  // To ask about a variation gives it an ID, which a reader never writes.
  if (IsReadOnly() || !m_manager)
    return false;
  auto const & library = m_manager->GetSolutionFileManager().GetLibraryForDirectAccess();
  return library.HasUnsavedChanges() || (m_savedLength && library.CommittedLength() > *m_savedLength) ||
         m_manager->HaveUnsavedResultFiles() || HaveUnsavedManagedFiles(*m_manager);
}

void Session::NoteAsWritten() { m_lastWritten = EncodeProject(MakeRecord(), ProjectFileKind::kAutosave); }

Editor & Session::GetEditor() {
  if (!m_editor)
    m_editor = std::make_unique<Editor>(*this);
  return *m_editor;
}

LiveReports & Session::GetLiveReports() {
  if (!m_liveReports)
    m_liveReports = std::make_unique<LiveReports>(*this);
  return *m_liveReports;
}

void Session::SetVariables(std::vector<std::pair<AString, AString>> const & assignments) {
  GetEditor().SetVariables(assignments);
}

ProjectRecord Session::MakeRecord() const { return MakeRecord(ReadMethod::kDefinitionOnly); }

ProjectRecord Session::MakeRecord(ReadMethod method) const {
  ProjectRecord record;
  record.productName = m_product->GetName();
  record.designName = m_design->GetName();
  record.designID = m_design->GetDesignID();
  record.sources = m_project->GetSourceFiles();
  m_design->Write(record.design);
  WriteSourceBase(m_project->GetSourceBase(), record.sourceBase);
  m_editLog->Write(record.edits);
  m_reports->Write(record.reports);
  WritePorts(*m_manager, record.ports);
  WriteConnections(m_project->GetConnections(), record.connections);
  if (!m_manager->WriteModule(record.module, method))
    throw Error(ErrorKind::kFailed,
                m_project->GetFile().FilePath() + L": the product could not write the design; nothing was saved");
  m_manager->WriteNextUniqueID(record.ids); // Last: what stands above may have issued IDs.
  return record;
}

void Session::Autosave() {
  RefuseWhenReadOnly();
  ProjectRecord record = MakeRecord();
  std::string const state = EncodeProject(record, ProjectFileKind::kAutosave);
  if (state == m_lastWritten)
    return;
  WriteMissingDefinitions();
  WriteAutosave(record, state);
}

bool Session::BeginAutosave(TextsChanges const & back) {
  RefuseWhenReadOnly();
  bool const isFirst = !m_hasAutosave;
  if (isFirst || !back.empty()) {
    ProjectRecord record = MakeRecord();
    WriteTextsChanges(back, record.pendingTexts);
    WriteAutosave(record, EncodeProject(record, ProjectFileKind::kAutosave));
  }
  return isFirst;
}

void Session::EndAutosave() {
  if (HasUnsavedResults())
    return;
  LFN_DeleteFile(m_project->GetAutosaveFile()); // One that stays holds what the project file holds.
  m_hasAutosave = false;
}

void Session::WriteAutosave(ProjectRecord & record, std::string const & state) {
  record.generation = m_generation;
  NewFile(m_project->GetAutosaveFile(), EncodeProject(record, ProjectFileKind::kAutosave)).Install();
  m_hasAutosave = true;
  m_lastWritten = state;
}

// An object that is new, or has a new version, is known to the library from then on.
void Session::WriteMissingDefinitions() {
  auto const & library = m_manager->GetSolutionFileManager();
  auto const isThere = [&library](AString const & name) {
    bool found = false;
    library.GetInternalBlockName(found, name);
    return found;
  };
  bool isStored = true;
  for (auto const & [id, setup] : m_manager->GetSetups()) {
    if (!isThere(setup->GetBlockDefinitionName()))
      isStored = setup->WriteDefinitionBlock() && isStored;
    for (auto const & [solutionID, solution] : setup->GetSolutions()) {
      io::CBlock block(solution->GetBlockDefinitionName());
      if (!isThere(block.Name()))
        isStored = solution->WriteDefinitionBlock(block) && library.SaveDefinition(block) == kSuccess && isStored;
    }
  }
  if (!isStored)
    RefuseStorage(library.GetLibraryForDirectAccess().LastError());
}

void Session::RefuseWhenReadOnly() {
  if (IsReadOnly())
    throw Error(ErrorKind::kUsage, m_project->GetFile().FilePath() +
                                       L": the project is open for reading only; open it for writing to change it");
  if (std::exchange(m_isSaveLeft, false))
    SettleSave();
}

void Session::RefuseStorage(AString const & what) const {
  throw Error(ErrorKind::kStorage, m_project->GetResultsFolder().FilePath() + L": results can't be stored (" + what +
                                       L"); make room or get permission, and try again");
}

} // namespace desktop
