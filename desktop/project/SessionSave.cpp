// Saving a project: all of it or nothing.
#include "basekit/file/FileOperations.h"
#include "basekit/io/BlockCodec.h"
#include "desktop/Error.h"
#include "desktop/command/EditLog.h"
#include "desktop/command/Editor.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/product/ResultStores.h"
#include "desktop/product/StoresAndData.h"
#include "desktop/project/ManagedFiles.h"
#include "desktop/project/NewFile.h"
#include "desktop/project/Project.h"
#include "desktop/project/ProjectFile.h"
#include "desktop/project/ProjectLock.h"
#include "desktop/project/SaveProtocol.h"
#include "desktop/project/SavedLibrary.h"
#include "desktop/project/Session.h"
#include "desktop/report/LiveReports.h"
#include "desktop/report/ShownNumbers.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionVariation.h"
#include "viewkit/backup/BackupArea.h"

namespace desktop {

namespace {

constexpr auto kSuccess = CStreamioLibrary::kLibSuccess;

std::string Bytes(io::CBlock const & block) {
  std::string bytes;
  static_cast<void>(io::EncodeBlock(block, io::Form::Text, io::kExactDigits, bytes)); // Too deep: compares as empty.
  return bytes;
}

// Saves a block unless the library holds it as it is.
bool SaveIfChanged(BaseSolutionManager const & manager, io::CBlock & block) {
  io::CBlock stored(block.Name());
  // A copy is compared: a block that somebody looked at is stored whole, edits and all.
  if (manager.LoadSingleBlock(stored) == kSuccess && Bytes(stored) == Bytes(io::CBlock(block)))
    return true;
  return manager.SaveSingleBlock(block) == kSuccess;
}

} // namespace

void Session::Save() {
  RefuseWhenReadOnly();
  GetLiveReports().KeepWhatReportsNeed();
  bool const movesFiles = m_manager->HaveResultFiles() || HaveUnsavedManagedFiles(*m_manager);
  // A save that is cut off leaves the working views to the autosave.
  if (movesFiles && m_generation > 0)
    Autosave();
  WriteChangedDefinitions();
  ForgetEditsOfNoData();
  SaveProtocol save(*m_project);
  auto const giveViewsBack = ResultStores(*m_manager).Remember();
  AString whatIsUncertain;
  try {
    if (movesFiles)
      save.Begin(m_generation);
    CommitLibrary();
    CommitFiles(save);
    InstallProjectFile(whatIsUncertain);
  } catch (...) {
    m_isSaveLeft = !save.TakeBack();
    giveViewsBack();
    throw;
  }
  m_manager->NoteResultStoresAsSaved();
  m_hasAutosave = false;
  m_hasForeignObjects = false;
  if (m_editor)
    m_editor->WasSaved();
  if (!whatIsUncertain.empty()) {
    m_isSaveLeft = movesFiles; // A loss of power may yet undo it.
    throw Error(ErrorKind::kStorage, whatIsUncertain);
  }
  m_isSaveLeft = !save.Finish();
  // One that stays is of an older generation: the next session drops it.
  if (LFN_Exists(m_project->GetAutosaveFile()))
    LFN_DeleteFile(m_project->GetAutosaveFile());
  SavedLibrary(m_manager->GetQsolPath()).Forget();
  m_savedLength.reset();
}

void Session::CommitLibrary() {
  // Attaches a library that is not there yet.
  auto & library = m_manager->GetSolutionFileManager().GetLibraryForDirectAccess();
  SavedLibrary const savedLibrary(m_manager->GetQsolPath());
  savedLibrary.Note(m_generation, library.CommittedLength());
  m_savedLength = savedLibrary.Length(m_generation);
  if (!m_manager->CarryOutDeletions())
    RefuseStorage(library.LastError());
  auto const committed = m_manager->GetSolutionFileManager().CommitAll(false);
  // Told once: what is damaged is left out, and the next save finds all else in its place.
  if (committed == CStreamioLibrary::kLibDamaged)
    throw Error(ErrorKind::kStorage, m_project->GetResultsFolder().FilePath() + L": unsaved results are damaged (" +
                                         library.LastError() +
                                         L"); save again to save all else, and solve anew what is lost");
  if (committed != kSuccess)
    RefuseStorage(library.LastError());
}

void Session::CommitFiles(SaveProtocol const & save) {
  BackupArea::BeginGroup();
  DropResultsWithoutData(*m_manager);
  m_manager->CommitResultStores();
  BackupArea::EndGroup(); // CheckWhole tells a failure.
  if (!CommitManagedFiles(*m_manager))
    RefuseStorage(LFN_LastError());
  save.CheckWhole();
}

// The step from the old state to the new one.  Not before the files have the names that it tells.
void Session::InstallProjectFile(AString & whatIsUncertain) {
  std::string const state = EncodeProject(MakeRecord(), ProjectFileKind::kAutosave);
  ProjectRecord record = MakeRecordToSave();
  record.generation = m_generation + 1;
  NewFile file(m_project->GetFile(), EncodeProject(record, ProjectFileKind::kProject));
  try {
    file.Install();
  } catch (Error const & error) {
    if (!file.IsInstalled())
      throw;
    whatIsUncertain = text::FromUtf8(error.what());
  }
  m_generation = record.generation;
  m_lastWritten = state;
}

// With the numbers that reports showed, in a file of their own.  What that lacks is computed again, so that no backup
// keeps it, and no failure of it is one of the save: the project file tells which file it goes with.
ProjectRecord Session::MakeRecordToSave() const {
  if (!KeepPresentNumbers(*m_manager)) {
    m_manager->DeleteSimValueCacheFile();
    return MakeRecord();
  }
  ProjectRecord record = MakeRecord(ReadMethod::kAllFiles);
  record.simValueCache = StampOfNumbers(*m_manager);
  return record;
}

void Session::SettleSave() {
  m_isSaveLeft = true;
  SaveProtocol(*m_project).Settle(m_generation);
  m_isSaveLeft = false;
}

// What the history of this session still refers to is told anew when it comes to that.
void Session::ForgetEditsOfNoData() {
  if (!m_editLog->HasDepartures())
    return;
  std::set<std::pair<VersionedObject, long>> kept;
  for (auto const & [setupID, setup] : m_manager->GetSetups())
    for (auto const & [solutionID, solution] : setup->GetSolutions())
      for (auto const & [index, variation] : solution->GetVariations()) {
        kept.insert({{setupID, solutionID}, variation->GetVersionID()});
        kept.insert({{setupID, -1}, variation->GetVersionID()});
      }
  m_editLog->Keep([&kept](VersionedObject object, long version) { return kept.count({object, version}) > 0; });
}

void Session::WriteChangedDefinitions() {
  auto const save = [this](io::CBlock & block) {
    if (!SaveIfChanged(*m_manager, block))
      RefuseStorage(m_manager->GetSolutionFileManager().GetLibraryForDirectAccess().LastError());
  };
  for (auto const & [id, setup] : m_manager->GetSetups()) {
    io::CBlock setupBlock(setup->GetBlockDefinitionName());
    setup->WriteDefinitionBlock(setupBlock);
    save(setupBlock);
    for (auto const & [solutionID, solution] : setup->GetSolutions()) {
      io::CBlock block(solution->GetBlockDefinitionName());
      solution->WriteDefinitionBlock(block);
      save(block);
    }
  }
  // Last: what stands above may have issued IDs.
  io::CBlock header(BaseSolutionManager::kHeaderBlockName);
  m_manager->WriteDefinitionBlock(header);
  save(header);
}

} // namespace desktop
