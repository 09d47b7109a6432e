#pragma once

#include "basekit/text/AString.h"
#include "desktop/command/TextsChange.h"
#include "desktop/project/UnsavedWork.h"

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

class LongFileName;
enum class ReadMethod : int;
struct RecoveryReport;

namespace io {
class CBlock;
}

namespace desktop {

class Design;
class Editor;
class EditLog;
class IDesktopProduct;
class LiveReports;
class ProductSolutionManager;
class Project;
class ProjectLock;
class ReportList;
class SaveProtocol;
enum class ProjectFileKind;
struct ProjectRecord;
struct SourceDescription;

/// A project that is open in this process: one design, its solution manager, and the rules of saving.
///
/// Files of project NAME:  NAME.sproject (the project file), NAME.sproject.auto (autosave of the design's block),
/// NAME.sproject.lock, NAME.sproject.saving (while a save moves files), and the folder NAME.results/ with the solution
/// library <design>.qsol, its private twin, and result files.
/// Every change is autosaved before the operation returns; Save makes it permanent; closing without Save keeps the
/// work for the next session, shown as unsaved.  All failures are desktop::Error.
class Session {
public:
  enum class Access {
    kWrite,   ///< one process at a time; another one gets ErrorKind::kLocked
    kReadOnly ///< the committed state and nothing else; writes nothing, also while another process writes
  };

  /// What becomes of the work that an earlier session left unsaved; for writing alone.
  enum class LeftWork {
    kGoOn,     ///< gone on with; what a crash left is taken over
    kSetAside, ///< autosave and private library go aside under other names: the saved state, nothing dropped
    kDiscard   ///< dropped
  };

  /// Makes a new project from a source; nothing is left behind when that fails.  An existing project is refused.
  static std::unique_ptr<Session> Create(AString const & projectPath, AString const & sourceFile,
                                         AString const & productName);
  /// A takeover that fails is a RecoveryFailed: the files stay as they were, and nothing is saved until the user says
  /// what becomes of the work.
  static std::unique_ptr<Session> Open(AString const & projectPath, Access access, LeftWork work = LeftWork::kGoOn);
  /// Closes without saving: what is unsaved stays in autosave and private library.
  ~Session();

  Project & GetProject() { return *m_project; }
  Design & GetDesign() { return *m_design; }
  ProductSolutionManager & GetManager() { return *m_manager; }
  ProductSolutionManager const & GetManager() const { return *m_manager; }
  IDesktopProduct const & GetProduct() const { return *m_product; }

  /// The door for all edits, with their history, which begins empty with each session.
  Editor & GetEditor();
  EditLog & GetEditLog() { return *m_editLog; }
  EditLog const & GetEditLog() const { return *m_editLog; }
  /// The definitions of the project's reports, which the editor changes.
  ReportList & GetReports() { return *m_reports; }
  ReportList const & GetReports() const { return *m_reports; }
  /// Those of them that were looked at in this session.
  LiveReports & GetLiveReports();
  /// Sets design variables; an unknown name or a value that is no number is refused before anything changes.
  void SetVariables(std::vector<std::pair<AString, AString>> const & assignments);
  /// Project file, library, mirrored stores and managed files become what they are now, all of them or none; the
  /// autosave goes.  What the design deleted before this session goes from the library with it.  After a failure the
  /// work is unsaved as before, the files of the stores under their working names, and another save may be tried.
  void Save();
  /// Goes back to what was saved last: autosave and private library are dropped, and the library is cut back to what
  /// it was then when a takeover brought it further.  Design and manager are made anew, so that nobody may hold on to
  /// the former ones.  When the saved state can't be read nothing is dropped; after a
  /// failure the session is read only.
  void Discard();
  /// What Discard, or opening with LeftWork::kDiscard, dropped.
  UnsavedWork const & GetDropped() const { return m_dropped; }
  bool HasUnsavedChanges() const;
  /// Writes and syncs the autosave; called after every change.  Nothing is written when the design is what it was at
  /// the last write.
  void Autosave();
  /// The same before anything unsaved reaches the library: written when there is none, too, and with what leads back
  /// to the present texts of variations when these are about to change.  Whether there was none.
  bool BeginAutosave(TextsChanges const & back = {});
  /// For a change that came to nothing: drops what BeginAutosave wrote, unless the library has unsaved data by now.
  void EndAutosave();
  /// Refused with ErrorKind::kSource when a file of the source is not what it was when the project read it.
  void CheckSourceUnchanged() const;
  bool IsReadOnly() const { return m_access == Access::kReadOnly; }
  /// Refused with ErrorKind::kUsage where nothing may be changed.
  void RefuseWhenReadOnly();
  /// What opening had to tell: a recovery, files set aside; after Create the notes of the source.  One line each, for
  /// people.
  std::vector<AString> const & GetNotices() const { return m_notices; }
  /// Up to where the library is what was saved last; empty when all of it is.
  std::optional<std::uint64_t> GetSavedLength() const { return m_savedLength; }
  /// The solved points that opening took over after a crash, stale ones too.
  int CountRecoveredPoints() const { return m_recoveredPoints; }
  /// The real names (packed keys) of all blocks of the library as it was saved last.
  std::set<AString> GetCommittedBlocks() const;
  /// The real names of the points whose blocks are newer than the last save, whether or not they were saved before.
  std::set<AString> GetPointsStoredSince() const;
  /// Whether the library holds nothing beside what was saved last, as far as is known without reading it once more.
  bool IsLibrarySaved() const { return !IsReadOnly() && !HasUnsavedResults(); }

private:
  explicit Session(Access access);

  // Making a project
  void ReadSource(AString const & sourceFile, SourceDescription & description);
  void MakeProject(AString const & designName, SourceDescription const & description);
  void RemoveWhatWasMade();

  // Opening one
  void OpenForReading();
  void OpenForWriting(LeftWork work);
  void ReadWithWork(ProjectRecord const & record, bool isWholeTruth);
  void TakeOverAfterCrash(ProjectRecord const & record);
  void NoteSavedLibrary();
  void TellOfForeignObjects();
  void SettleInterruptedSave(long generation);
  void RemoveStrayFiles(ProjectRecord const & saved, ProjectRecord const & read);
  void TellOfLostFiles();
  void LeaveOutFilesOfASave();
  void MakeDesign(ProjectRecord const & record);
  void ReadReports(ProjectRecord const & record);
  void ReadLibrary(ProjectRecord const & record);
  void CheckNumbersOfReports(ProjectRecord const & record);
  void SetAside(LongFileName const & file, AString const & why);
  void CopyAside(LongFileName const & file, AString const & why);
  void RefuseDamagedNames(AString const & path) const;
  [[noreturn]] void RefuseTakeover(AString const & path, RecoveryReport const & report, AString const & cause) const;
  void RefuseLibrary(AString const & what) const;

  // Going back to the saved state
  void CheckSavedState(ProjectRecord const & saved);
  void SetUnsavedAside(ProjectRecord const & saved);
  void SetFilesAside(ProjectRecord const & saved);
  void DropUnsaved(ProjectRecord const & saved);
  /// Result files that neither the manager nor one of the records names.
  std::vector<LongFileName> StrayFiles(std::initializer_list<ProjectRecord const *> known) const;
  bool IsLibraryAhead(AString const & path) const;
  void TakeLibraryBack(AString const & path);

  // Saving it
  void CommitLibrary();
  void CommitFiles(SaveProtocol const & save);
  void InstallProjectFile(AString & whatIsUncertain);
  void SettleSave();
  ProjectRecord MakeRecord() const;
  ProjectRecord MakeRecordToSave() const;
  ProjectRecord MakeRecord(ReadMethod method) const;
  void NoteAsWritten();
  void WriteAutosave(ProjectRecord & record, std::string const & state);
  bool HasUnsavedResults() const;
  void WriteChangedDefinitions();
  void WriteMissingDefinitions();
  void ForgetEditsOfNoData();
  void RefuseStorage(AString const & what) const;
  /// Managed files that are not saved stay for the next session.
  void CloseManager();

  Access m_access;
  std::unique_ptr<ProjectLock> m_lock;
  std::unique_ptr<Project> m_project;
  std::unique_ptr<Design> m_design;
  std::unique_ptr<ProductSolutionManager> m_manager;
  std::unique_ptr<EditLog> m_editLog;
  std::unique_ptr<ReportList> m_reports;
  /// These refer to what stands above.
  std::unique_ptr<LiveReports> m_liveReports;
  std::unique_ptr<Editor> m_editor;
  IDesktopProduct const * m_product = nullptr;
  std::vector<AString> m_notices;
  UnsavedWork m_dropped;
  long m_generation = 0;
  bool m_hasAutosave = false;
  /// A save that failed could not take its files back yet.
  bool m_isSaveLeft = false;
  /// Result files may lie about that nothing names.
  bool m_hadCrash = false;
  /// The library's length as it was saved last, once it may have grown since; see SavedLibrary.
  std::optional<std::uint64_t> m_savedLength;
  /// While an autosave is read: the design that it goes on from.
  io::CBlock const * m_goesOnFrom = nullptr;
  int m_recoveredPoints = 0;
  /// The design has setups or solutions that only the library knew of.
  bool m_hasForeignObjects = false;
  /// Stores have files that a session before left, which no design tells of yet.
  bool m_hasTakenUpFiles = false;
  /// The design as it was last written, for telling whether there is anything to write.
  std::string m_lastWritten;
};

} // namespace desktop
