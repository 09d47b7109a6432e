#pragma once

#include "desktop/product/SetupsOfDesign.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/recovery/RecoveryReport.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <set>

class BaseSolution;
class SimValueContext;

namespace desktop {

class ImportedSolution;
class QuantityExtractor;
struct QuantityReportType;

/// Base of the solution managers of products in this desktop: reads and writes a design's module in the order that
/// keeps every solved point.  A product derives from it, makes its own setups and names its results folder.
///
/// Reading deletes nothing from the library.  Of a setup or solution that the design lacks its ID tells whether the
/// design deleted it, as IDs are given out once and in order: below the design's next free ID it did, and the blocks
/// wait for CarryOutDeletions; an object above was never known to this state of the design, and comes back.
class ProductSolutionManager : public BaseSolutionManager {
public:
  explicit ProductSolutionManager(IDesign * design) : BaseSolutionManager(design) {}
  /// Frees the imported setups.
  ~ProductSolutionManager() override;

  /// Tells the coming read that the private library file was left by a crash.
  void SetRecoverOnRead(bool recover) { m_recoverOnRead = recover; }
  /// Before InitializeFromDesign: the library is shown as it was committed, with a length as of when it had that, and
  /// nothing is ever written.
  void SetReadOnly(std::optional<std::uint64_t> length = {});
  /// For the coming read: the design is not the last one of its library, so nobody can tell what was deleted for good.
  void KeepWhatTheDesignLacks() { m_keepsAll = true; }
  /// For the coming read: the texts that variations of the library are to have.
  void SetNewTexts(std::function<AString(AString const & variation)> newText) { m_newText = std::move(newText); }
  /// For the coming read: the design goes on from this one, which was saved last.  It lives until the read is done.
  void SetSavedDesign(io::CBlock const & saved) { m_savedDesign = &saved; }
  /// How many result files the design that was read names that are not there; what they were is left out.
  int CountLostResultFiles() const { return m_lostResultFiles; }
  /// A reader's: the stores leave out what lies at one of the full paths; nothing on the disk changes.
  void LeaveOutResultFiles(std::vector<AString> const & paths);
  /// A save: the working views of the mirrored stores become the committed ones.  Files that go away go into the open
  /// backup area.
  void CommitResultStores();
  /// The mirrored stores show what was saved last, and files that are not saved are removed.
  void DiscardResultStores();
  /// Whether a mirrored store holds or held anything, so that a save concerns files.
  bool HaveResultFiles() const;
  /// Whether a mirrored store holds anything else than what was saved last.
  bool HaveUnsavedResultFiles() const;
  /// The stores hold what is saved now.
  void NoteResultStoresAsSaved();
  /// Whether what is being written is for keeping: extractors then tell what reports showed.  An autosave holds none of
  /// it.
  bool WritesReports() const { return m_writesReports; }
  /// Deletes the blocks of what the design that was read had deleted; for a save.  False when that can't be stored.
  bool CarryOutDeletions();
  /// Texts for people of the setups and solutions that the library alone knew when the design was read.
  std::vector<AString> const & GetForeignObjects() const { return m_foreignObjects; }
  /// What the takeover of the last read dropped and nothing brought back, as stale results are; names that the user
  /// took away before are not among it.
  std::vector<RecoveryReport::Dropped> DroppedForGood() const;
  /// The folder, with its '/', below which solutions keep result files; made when asked to.
  AString GetResultFilesFolder(bool create) const;

  /// The solution of an imported setup; null in a product that imports nothing.
  virtual ImportedSolution * CreateImportedSolution(BaseSimulationSetup const &, long) { return nullptr; }
  /// For imported setups, while they live: the manager frees those that it owns at its end.
  void OwnImported(BaseSimulationSetup & setup) { m_imported.insert(&setup); }
  void DisownImported(BaseSimulationSetup & setup) { m_imported.erase(&setup); }

  // ISolutionReporter: what the extractors of the solutions say, those that are QuantityExtractors.
  int GetReportTypeNames(std::vector<AString> & names) const override;
  /// By name without case; 0 for an unknown one.
  unsigned GetReportType(AString const & name) const override;
  int GetDisplayTypes(std::vector<rep::DisplayType> & types, unsigned reportType) const override;
  int GetISimDataExtractors(std::vector<ISimDataExtractor *> & extractors, unsigned reportType,
                            bool includeImported) const override;
  int GetIDesignDataExtractors(std::vector<IDesignDataExtractor *> & extractors, unsigned reportType) const override;
  /// Those of all solutions but imported ones, whose data is no variation's.
  void GetReportSolutionPointSetsToUpdate(std::vector<ISolutionPointSet *> & pointSets) const override;
  /// That of the set's context, where one is told; see ContextOf.
  unsigned GetReportTypeOfSolutionPointSet(ISolutionPointSet const * pointSet) const override;
  /// Curves of report types that run over different samples are evaluated apart: the context tells whose samples count.
  static SimValueContext ContextOf(unsigned reportType);
  /// Numbers that run over nothing go with quantities of any one report type.
  bool GetQuantityTypeInfo(ReportTypeMap & reportTypes, AString const & expression,
                           std::vector<OutputVariable *> * variables, SimValuesByReportType * simValues,
                           SolutionPointSet * pointSet) const override;

  /// An edit of an output variable reaches the expressions that lead to it.
  using BaseSolutionManager::IsExpressionAffectedByMinorEdits;
  bool IsExpressionAffectedByMinorEdits(KelvroCommand const * command, CParsedExpressionCache * cache) const override;

protected:
  /// Library to objects (or recovery), setups that only the design knows made, the design's names and versions applied,
  /// definition blocks read again, objects that the design deleted left out, variations that only the key list knows
  /// entered, then the design's own blocks and the mirrored stores.
  io::ReadError AllFilesRead(io::CBlock const & block, bool discardCache) override;
  /// The design's own blocks and the setups that they name; the library is not asked.
  io::ReadError DefinitionFileRead(io::CBlock const & block, bool discardCache) override;
  bool AllFilesWrite(io::CBlock & block) override;
  /// Under the reporter rewrite the library has no output variables: those of the project pass through as they are.
  io::ReadError DesignFileRead(io::CBlock const & block) override;
  bool DesignFileWrite(io::CBlock & block) override;
  bool DefinitionFileWrite(io::CBlock & block) override;
  /// Versions are told by setup and solution names, so the design's names come first.
  void SetRecoveredVersionIDs() override;
  /// The context of that name or number; an unknown one changes nothing.
  void SetSimValueContext(SimValueContext & context, AString const & text, ISimDataExtractor const * extractor,
                          std::vector<unsigned> const & reportTypes) const override;
  ValueState GetReportTypeForSimValues(ReportTypeMap & reportTypes, AString const & text,
                                       ISimDataExtractor const * extractor) const override;

  // The export of a design point: the files that the mirrored stores list, and all blocks but those of other points and
  // of what is gone.  A product that keeps anything elsewhere adds it.
  bool GetFilesAndDirsToCopyForExportingVariation(std::map<AString, AString> & renamed, std::vector<AString> & files,
                                                  std::vector<AString> & dirs,
                                                  AString const & variation) const override;
  bool GetFilesAndDirsToCopyForExportingVariation(std::vector<AString> & files, std::vector<AString> & dirs,
                                                  AString const & variation) const override;
  bool GetQSolBlocksForExportingVariation(io::CBlock & blocks) const override;
  bool GetQSolBlocksForExportingVariation(io::CBlock & blocks, std::vector<AString> & namesToDelete) const override;

  /// While a design is read: the type that its block gives to a setup, empty for an unknown one.  The library tells
  /// nobody's type, so CreateSimulationSetup(id, version, "") asks here.
  AString TypeOfSetupBeingRead(long id) const;
  /// What the design's block of an imported setup becomes, in a product that imports; a plain setup for an ID that the
  /// design gives to a setup to be solved.
  BaseSimulationSetup * CreateImportedSetup(long id, long version);

private:
  std::vector<QuantityExtractor *> GetQuantityExtractors(bool includeImported) const;
  QuantityReportType const * FindReportType(unsigned number) const;
  void ForgetCatalogues();
  bool WasTakenOver() const;
  void CreateMissingSetups();
  void ApplyNames();
  std::set<long> OwnersOfData() const;
  void LeaveOutWhatWasDeleted(long firstForeign);
  // What is left then of objects that the design lacks.
  std::vector<BaseSimulationSetup *> ForeignSetups() const;
  std::vector<BaseSolution *> ForeignSolutions() const;
  void GiveForeignObjectsTheirVersions();
  void NameForeignObjects();
  void ApplyNewTexts();
  void EnterVariationsOfLibrary();
  void SettleImportsOfLibrary(long firstForeign);
  void BringBackImport(long setupID);
  bool ReadResultStores(io::CBlock const & block);
  bool WriteWithResultStores(io::CBlock & block);

  bool m_recoverOnRead = false;
  bool m_isReadOnly = false;
  std::function<AString(AString const & variation)> m_newText;
  /// Setup and solution; an invalid solution stands for the whole setup.
  std::vector<std::pair<long, long>> m_deletions;
  std::vector<AString> m_foreignObjects;
  /// Blocks of imported data that the design which was read has no setup for.
  std::set<AString> m_strayImports;
  std::set<BaseSimulationSetup *> m_imported;
  bool m_keepsAll = false;
  std::vector<SetupOfDesign> m_setupsBeingRead;
  io::CBlock const * m_savedDesign = nullptr;
  /// Of the stores as they were saved last.
  std::size_t m_savedStores = 0;
  int m_lostResultFiles = 0;
  bool m_writesReports = false;
  std::shared_ptr<io::CBlock const>
      m_outputVariables; ///< of a design that was read under the reporter rewrite; may be null
};

} // namespace desktop
