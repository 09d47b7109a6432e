#pragma once

#include "CoreInterfaces/reportkern/ISolutionManagerForReports.h"
#include "CoreInterfaces/solution/ISolutionMgr.h"
#include "CoreInterfaces/solution/ISolutionMgrForHubIntegration.h"
#include "CoreInterfaces/solution/ISolutionMgrForPlot.h"
#include "CoreInterfaces/solution/ISolutionMgrForReportSetupUI.h"
#include "CoreInterfaces/solution/ISolutionMgrForSweepwise.h"
#include "CoreInterfaces/solution/ISolutionReporter.h"
#include "CoreInterfaces/solution/ITaskSetupManager.h"
#include "CoreInterfaces/solution/SolutionEnums.h"
#include "basekit/command/KelvroIDServer.h"
#include "basekit/diag/Assert.h"
#include "basekit/io/ReadError.h"
#include "basekit/value/ValueState.h"
#include "plotkit/simvalue/PortSettings.h"
#include "solutionmanager/store/SolutionFileManager.h"

#include <list>
#include <map>
#include <memory>
#include <set>
#include <utility>
#include <vector>

class BaseSimDataExtractor;
class BaseSimulationSetup;
class CManagedFilesMgr;
class ComplexValue;
class CParsedExpressionCache;
class CParsedExpressionCacheContainer;
struct ExportVariationContext;
class FloatValue;
class IProductSolutionMgrForPlot;
class ISimDataExtractor3;
class ISimValueManager;
class IValueParser;
class SetupConvDef;
class SetupDirectory;
class SolutionInstanceManager;
class VariationIdTable;
struct RecoveryReport;
namespace io {
class BlockJournal;
}
namespace undo {
template <class Map> class Graveyard;
}

/// All solved data of one design: the class that every product derives its solution manager from.
///
/// It owns the design's setups (and through them solutions and variations), the solution library, the table of
/// variation IDs, the managed files, the convergence definitions and the design's version ID.  The product overrides
/// what it is to simulate, which report types exist and where its results lie.  Life: construct for a design,
/// InitializeFromDesign, ReadModule, then edits and solves until the design closes; a manager built from a file has no
/// design and is only read.  All calls come on the desktop's main thread.  Look-ups give null on a miss; misuse is an
/// assertion report, and the call goes on with the stated default.
class BaseSolutionManager : public ISolutionMgr,
                            public ISolutionReporter,
                            public KelvroIDServer,
                            public ITaskSetupManager,
                            public ISolutionMgrForReportSetupUI,
                            public ISolutionManagerForReports,
                            public ISolutionMgrForSweepwise,
                            public ISolutionMgrForPlot,
                            public ISolutionMgrForHubIntegration {
public:
  using SetupMap = std::map<long, BaseSimulationSetup *>;
  using VariationIDMap = std::map<AString, long, AString::NoCaseLess>;
  using OutputVariableMap = std::map<AString, OutputVariable *, AString::NoCaseLess>;

  static AString const kHeaderBlockName;
  static AString const kContainerBlock;
  static AString const kSimSetupBlockName;
  static AString const kImportedSimSetupBlockName;
  static AString const kSimSetupTypeName;
  static AString const kSimSetupID;
  static AString const kSimSetupName;
  static AString const kOutputVariableBlockName;

  explicit BaseSolutionManager(IDesign * design);
  /// A manager without a design, for reading one library; a failure to read shows as an empty manager.
  explicit BaseSolutionManager(LongFileName const & file);
  BaseSolutionManager(BaseSolutionManager const &) = delete;
  BaseSolutionManager & operator=(BaseSolutionManager const &) = delete;

  // ISolutionMgr
  ~BaseSolutionManager() override;
  int GetInterfaceID() const override;
  void * GetInterface(int interfaceID) override;
  void ReSyncSolutionFileName(bool forSaving) override;
  int GetISimulationSetupList(std::vector<ISimulationSetup *> & list, bool includeDeleted,
                              bool includeImported) const override;
  int GetValidISolutionList(std::vector<ISolution *> & list, bool includeDeleted, bool includeImported) const override;
  int GetImportedSolutionList(std::vector<ISolution *> & list) const override;
  ISolution * GetISolution(AString const & setupName, ISolutionDefinition * definition, IDesignInstance * instance,
                           RunStatusType & status, bool solve) override;
  ISolution * GetISolution(AString const & name, bool includeDeleted, bool includeImported) const override;
  ISolution * GetISolutionByID(long id, bool includeDeleted, bool includeImported) const override;
  ISimulationSetup * GetISimulationSetup(AString const & name, bool includeDeleted,
                                         bool includeImported) const override;
  ISimulationSetup * GetISimulationSetupByID(long id, bool includeDeleted, bool includeImported) const override;
  ISimulationSetup * FindEquivalentISimulationSetup(ISimulationSetup * setup) const override;
  ISimulationSetup * CreateEquivalentISimulationSetup(ISimulationSetup const * source) override;
  int Simulate(IDesignInstance * instance, ISimulationSetup * setup, ISolutionDefinition * definition) override;
  ISolution * SimulateBlocking(IDesignInstance * instance, ISimulationSetup * setup,
                               ISolutionDefinition * definition) override;
  bool LoadSetupsFromFile(LongFileName const & file, std::vector<ISimulationSetup *> & setups) override;
  bool AddImportData(ISolution * solution, KelvroCommand * command) override;
  IDesign * GetIDesign() const override;
  bool HasSolutions() const override;
  bool AllowEmptyReports() const override;
  unsigned GetRptTypeIndex(unsigned reportType) const override;
  bool GetValueInfoForExpression(AString const & expression, ISolution const * solution, Value & value) const override;
  int GetOutputVariables(std::vector<OutputVariable *> & variables, ISimDataExtractor * extractor,
                         SimValueContext const * context, OutputVariable * editVariable) const override;
  OutputVariable * CreateOutputVariable(AString const & name, AString const & expression,
                                        KelvroCommand * command) override;
  bool EditOutputVariable(OutputVariable * variable, AString const & expression, KelvroCommand * command) override;
  bool DeleteOutputVariable(OutputVariable * variable, KelvroCommand * command) override;
  OutputVariable * FindOutputVariable(AString const & name) const override;
  bool IsOkToDeleteOutputVariable(AString const & name) const override;
  bool IsValidOutputVariableName(AString const & name) const override;
  bool IsValidOutputVariableExpression(AString const & expression, ISimDataExtractor * extractor,
                                       SimValueContext const * context) const override;
  bool IsValidOutputVariable(AString const & name, ISimDataExtractor * extractor,
                             SimValueContext const * context) const override;
  int GetOutputVariableReportTypes(AString const & expression, ReportTypeMap & reportTypes) const override;
  bool IsOKtoEditOutputVariable(AString const & name, AString const & expression) const override;
  bool IsExpressionAffectedByMinorEdits(KelvroCommand const * command, AString const & expression) const override;
  bool IsSimContextDataAffectedByMinorEdits(KelvroCommand const * command, SimValueContext const * context,
                                            unsigned reportType) const override;
  bool GetOutputVariableValue(Value & result, AString const & variable, AString const & solution,
                              AString const & variation, AString const & context,
                              IDesignInstance * instance) const override;

protected:
  void SetSimValueContext(SimValueContext & context, AString const & text, ISimDataExtractor const * extractor,
                          std::vector<unsigned> const & reportTypes) const override;

public:
  int GetPortPostProcessingSettings(std::vector<PortSettings> & settings) const override;
  SolutionFileManager & GetSolutionFileManager() override { return m_SolutionFileManager; }
  SolutionFileManager const & GetSolutionFileManager() const { return m_SolutionFileManager; }
  void NonUndoableInvalidateAll() override;
  void CentralizedUpdateSolutionPointSets(IProgressMonitor * progress,
                                          std::vector<ISolutionPointSet *> const * pointSets) override;
  void DoGarbageCollection(std::set<Trace *> const & tracesInUse) override;
  bool IsSolutionPointSetDefinitionValid(ISolutionPointSet * pointSet) const override;
  unsigned GetReportTypeOfSolutionPointSet(ISolutionPointSet const * pointSet) const override;
  OutputVariable * GetCannedOutputVariable(AString const & name) const override;
  ISolutionMgrForReportSetupUI const * GetISolutionMgrForReportSetupUI() const override;
  ISolutionMgrForReportSetupUI * GetISolutionMgrForReportSetupUIForEdit() override;
  IProductSolutionMgrForReportSetupUI const * GetIProductSolutionMgrForReportSetupUI() const override;
  IProductSolutionMgrForReportSetupUI * GetIProductSolutionMgrForReportSetupUIForEdit() override;
  ISolutionManagerForReports const * GetISolutionManagerForReports() const override;
  ISolutionManagerForReports * GetISolutionManagerForReportsForEdit() override;
  ISolutionMgrForSweepwise const * GetISolutionMgrForSweepwise() const override;
  ISolutionMgrForSweepwise * GetISolutionMgrForSweepwiseForEdit() override;
  ISolutionMgrForPlot const * GetISolutionMgrForPlot() const override;
  ISolutionMgrForHubIntegration const * GetISolutionMgrForHubIntegration() const override;
  ISolutionMgrForHubIntegration * GetISolutionMgrForHubIntegrationForEdit() override;
  void TranslateLegacyOutputVariablesIntoGivenOutputVariableMgr(IOutputVariableMgr * target) override;
  IManagedFileService * GetIManagedFileService() const override;
  bool ExportDesignPointResults(LongFileName const & folder, AString const & variation,
                                bool assumeSavedStateOfDesktopProject) const override;

  // Added here, in the order of their slots.
  virtual int GetOutputVariables(std::vector<OutputVariable *> & variables) const;
  virtual void SetState(long const & version, bool undo);
  virtual void GetState(long & version) const;

protected:
  /// Makes the product's own setup with an ID and a version, while reading.
  virtual BaseSimulationSetup * CreateSimulationSetup(long id, long version, AString const & typeName);

public:
  virtual BaseSimulationSetup * CreateSimulationSetup(ISimulationSetup const * source);
  virtual BaseSimulationSetup * CreateSimulationSetup(AString const & name, AString const & typeName);
  virtual io::ReadError DesignFileRead(io::CBlock const & block);
  virtual bool DesignFileWrite(io::CBlock & block);
  virtual void ReadDefinitionBlock(io::CBlock const & block);
  virtual void ReadDefinitionBlock();
  virtual bool WriteDefinitionBlock(io::CBlock & block) const;
  virtual bool WriteDefinitionBlock() const;
  virtual void AddSimulation(BaseSimulationSetup * setup, KelvroCommand * command);
  virtual void DeleteSimulationSetup(long id, KelvroCommand * command);
  virtual void Invalidate(KelvroCommand * command, int flags);
  virtual bool DoesOutputVariableExist(wchar_t const * name) const;
  virtual bool IsValidSimValue(AString const & text) const;
  virtual bool IsExpressionAffectedByMinorEdits(KelvroCommand const * command, CParsedExpressionCache * cache) const;
  virtual int GetValidISolutionListForSweepwise(std::vector<ISolution *> & list, bool includeDeleted,
                                                bool includeImported) const;
  virtual bool IsReportTypeAffectedByMinorEdits(KelvroCommand const * command, unsigned reportType) const;
  virtual CParsedExpressionCache * CreateParsedExpressionCache(AString const & expression) const;
  virtual void GetReportSolutionPointSetsToUpdate(std::vector<ISolutionPointSet *> & pointSets) const;
  virtual int GetAvailableTraces(std::list<Trace *> & traces) const;
  virtual void SimulationSetupWasRenamed(AString const & oldName, AString const & newName);
  virtual void SetPortPostProcessingSettings(std::vector<PortSettings> const & settings);
  virtual void SetDeembeddingLossLess(bool lossLess);
  virtual void SetPostProcessingIsOn(bool on);
  virtual int GetDeembeddingDistances(std::vector<FloatValue> & distances) const;
  virtual int GetRenormalizeImpedances(std::vector<ComplexValue> & impedances) const;
  virtual bool IsDeembedding() const;
  virtual bool IsDeembeddingLossLess() const;
  virtual bool IsRenormalizing() const;
  virtual bool ReloadSolutionDataOnUndo() const;
  virtual bool LoadCurrentDesignSolutionData();
  virtual void SynchronizeSweeps(KelvroCommand * command);
  virtual void SynchronizeTraces(KelvroCommand * command);
  virtual void SynchronizeTracesAndGetAffectedSPS(std::vector<ISolutionPointSet *> & affected, KelvroCommand * command);
  virtual void CreateParsedExpressionCacheOfTraces(Trace * trace, CParsedExpressionCacheContainer & container) const;
  virtual bool IsSolutionPointSetDefinitionValid(SolutionPointSet * pointSet,
                                                 std::map<Trace *, CParsedExpressionCacheContainer> * caches) const;
  virtual bool AllowImportDataInTraces() const;
  virtual void AddVariationID(AString const & variation, long id) const;
  /// The ID of a variation text; a text that no entry equals gets a new ID, which is stored in the library at once.
  virtual long GetVariationID(AString const & variation) const;
  virtual bool IsQsolLibraryInitialized() const;
  virtual IProductSolutionMgrForPlot const * GetIProductSolutionMgrForPlot() const;
  virtual ISimDataExtractor3 * GetISimDataExtractor3(long solutionID) const;

protected:
  virtual void GetVariablesAffectedByCommand(std::vector<AString> & created, std::vector<AString> & deleted,
                                             std::vector<AString> & edited, IKelvroCommand const * command,
                                             long solutionID, long instanceID) const;
  virtual ValueState GetReportTypeForSimValues(ReportTypeMap & reportTypes, AString const & text,
                                               ISimDataExtractor const * extractor) const;
  virtual void WriteVersionIDsToBlock(io::CBlock & block) const;
  virtual void ReadVersionIDsFromBlock(io::CBlock const & block);
  virtual void SetRecoveredVersionIDs();
  virtual void RecoverDerivedDataVersionConsistency();
  // What an export of one variation takes along.  The first of each pair serves the unsaved state, the second the saved
  // one.  Paths are relative to the design's results folder, and where the library's blocks are asked for the variation
  // is that of GetExportVariationContext: definition blocks that are written then are cut down to it.
  /// Files and folders as they are called now, and the names that copies take where those are others.
  virtual bool GetFilesAndDirsToCopyForExportingVariation(std::map<AString, AString> & renamed,
                                                          std::vector<AString> & files, std::vector<AString> & dirs,
                                                          AString const & variation) const;
  virtual bool GetFilesAndDirsToCopyForExportingVariation(std::vector<AString> & files, std::vector<AString> & dirs,
                                                          AString const & variation) const;
  virtual AString GetDesignResultsFolderName() const;
  /// All blocks that the exported library is to hold, as children under their real names.
  virtual bool GetQSolBlocksForExportingVariation(io::CBlock & blocks) const;
  /// Blocks to put into the copy of the library, in place of those of the same real names, and real names of blocks to
  /// take out of it.  Data and convergence blocks of other variations go without being named.
  virtual bool GetQSolBlocksForExportingVariation(io::CBlock & blocks, std::vector<AString> & namesToDelete) const;

public:
  virtual AString GetFileExt() const;
  /// Per report type the sim value texts that an expression refers to.
  using SimValuesByReportType = std::map<unsigned, std::vector<AString>>;
  virtual bool GetQuantityTypeInfo(ReportTypeMap & reportTypes, AString const & expression,
                                   std::vector<OutputVariable *> * variables, SimValuesByReportType * simValues,
                                   SolutionPointSet * pointSet) const;
  virtual bool GetReferencedVariables(AString const & expression, std::vector<AString> & names,
                                      SolutionPointSet * pointSet) const;

protected:
  // What the design file holds is the product's: these four report that they were not overridden.
  virtual bool DefinitionFileWrite(io::CBlock & block);
  virtual bool AllFilesWrite(io::CBlock & block);
  virtual io::ReadError DefinitionFileRead(io::CBlock const & block, bool discardCache);
  virtual io::ReadError AllFilesRead(io::CBlock const & block, bool discardCache);
  virtual void UpdateAllOutputVariableLegacyText();

private:
  virtual void SetupConvDefs();

public:
  virtual void GetValParserList(std::vector<IValueParser *> & parsers, SolutionPointSet * pointSet) const;
  virtual void GetImportedParserList(std::vector<IValueParser *> & parsers, SolutionPointSet * pointSet) const;

  // ISolutionReporter
  int GetReportTypeNames(std::vector<AString> & names) const override;
  unsigned GetReportType(AString const & name) const override;
  int GetDisplayTypes(std::vector<rep::DisplayType> & types, unsigned reportType) const override;
  int GetISimDataExtractors(std::vector<ISimDataExtractor *> & extractors, unsigned reportType,
                            bool includeImported) const override;
  int GetIDesignDataExtractors(std::vector<IDesignDataExtractor *> & extractors, unsigned reportType) const override;
  void ModifyReporterTabs(IReporter & reporter) const override;
  void Update(bool stampVersion, std::vector<SolutionPointSet *> * pointSets) override;
  void MarkItDirty() override;
  void GetAllTraceDescriptions(std::vector<AString> & descriptions) const override;

  // KelvroIDServer
  /// Takes the next ID and stores the counter in the library at once.
  long FetchNextUniqueID() override;
  long FetchNextUniqueIDNoWrite();

  // ITaskSetupManager
  int GetITaskSetupList(std::vector<ITaskSetup *> & list) const override;
  ITaskSetup * GetITaskSetupByID(long id) const override;

  // ISolutionMgrForReportSetupUI, ISolutionManagerForReports
  bool WriteTraceInterpreterBlockForCopy(io::CBlock & block, ITraceCopyContext * context,
                                         TraceDefParams const & definitions) const override;
  bool ReadTraceInterpreterBlockForPaste(IKelvroCommand * command, ITracePasteContext * context,
                                         io::CBlock const & block) override;
  AString GetDesignName() const override;
  AString GetProjectName() const override;
  void GetNominalVariableValues(VariableValues & values, long designID, long instanceID) const override;
  void GetNominalVariableValues(VariableValues & values, long designID, long instanceID,
                                ReportTypeSolutionDefinition const & definition) const override;
  IVariableNameSpaceSetupper const * GetIVariableNameSpaceSetupper(long solutionID) const override;
  bool DoesSolutionExist(long id) const override;
  ISimDataExtractorForReports * GetISimDataExtractorForReports(long solutionID) const override;
  void GetAvailableSolutions(std::vector<long> & solutionIDs, unsigned reportType) const override;
  long GetDesignIDAssociatedWithDesignInstance(long instanceID) const override;
  void GetVariablesAffectedByCommand(std::vector<AString> & created, std::vector<AString> & deleted,
                                     std::vector<AString> & edited, IKelvroCommand const * command, long solutionID,
                                     ReportTypeSolutionDefinition const * definition, long instanceID) const override;

  // ISolutionMgrForSweepwise
  ISimulationSetupForSweepwise * GetISimulationSetupForSweepwise(AString const & name, bool includeDeleted,
                                                                 bool includeImported) const override;
  ISimulationSetupForSweepwise * GetISimulationSetupForSweepwiseByID(long id, bool includeDeleted,
                                                                     bool includeImported) const override;
  int GetISimulationSetupForSweepwiseList(std::vector<ISimulationSetupForSweepwise *> & list, bool includeDeleted,
                                          bool includeImported) const override;
  ISolutionForSweepwise * GetISolutionForSweepwise(AString const & name, bool includeDeleted,
                                                   bool includeImported) const override;
  ISolutionForSweepwise * GetISolutionForSweepwiseByID(long id, bool includeDeleted,
                                                       bool includeImported) const override;
  int GetValidISolutionListForSweepwise(std::vector<ISolutionForSweepwise *> & list, bool includeDeleted,
                                        bool includeImported) const override;
  bool GetValueInfoForExpression(AString const & expression, long solutionID, Value & value) const override;

  // ISolutionMgrForPlot
  void GetRangedFunctionCategoryNames(std::vector<AString> & names, unsigned reportType,
                                      rep::DisplayType displayType) const override;
  void GetRangedFunctionNames(std::vector<AString> & names, AString const & category, unsigned reportType,
                              rep::DisplayType displayType) const override;
  AString GetRangedFunctionDescription(AString const & function) const override;
  bool GetRangedFunctionDefaultParameters(PropList & parameters, AString const & function) const override;
  bool ScaleRangedFunctionValueToGivenUnits(double & result, AString & units, AString const & function, double value,
                                            Units::FullUnitType xUnits, Units::FullUnitType yUnits) const override;
  /// The core catalogue alone; a category that is already there gets the names added, an empty one is left out.
  void GetAllCoreRangedFunctions(std::vector<std::pair<AString, std::vector<AString>>> & functions,
                                 rep::DisplayType displayType) const;

  // ISolutionMgrForHubIntegration
  bool RetrieveTransferData(AString const & provider, AString const & consumer, IDesignInstance * instance,
                            AString const & transferType, io::CBlock const & in, io::CBlock & out,
                            bool & flag) const override;
  bool OnRefreshTransferData(AString const & provider, AString const & consumer, IDesignInstance * instance,
                             AString const & transferType, io::CBlock const & in, io::CBlock & out,
                             bool & flag) override;
  bool OnAcquireTransferDataConnection(AString const & consumer, IDesignInstance * instance,
                                       AString const & transferType, io::CBlock const & in, io::CBlock & out,
                                       bool & flag) override;
  bool OnReleaseTransferDataConnection(AString const & consumer, IDesignInstance * instance,
                                       AString const & transferType, io::CBlock const & in, io::CBlock & out,
                                       bool & flag) override;
  bool OnRefreshTransferData2(AString const & provider, AString const & consumer, IDesignInstance * instance,
                              HubTransferConnectionIdentifier const & connection, io::CBlock const & in,
                              io::CBlock & out, bool & flag) override;
  bool OnAcquireTransferDataConnection2(AString const & consumer, IDesignInstance * instance,
                                        HubTransferConnectionIdentifier const & connection, io::CBlock const & in,
                                        io::CBlock & out, bool & flag) override;
  bool OnReleaseTransferDataConnection2(AString const & consumer, IDesignInstance * instance,
                                        HubTransferConnectionIdentifier const & connection, io::CBlock const & in,
                                        io::CBlock & out, bool & flag) override;

  // Lifecycle and paths
  void InitializeFromDesign(bool createDir);
  bool AreOldReportStructuresSupported() const;
  AString GetProjectResultsDir() const;
  void CreateProjectResultsDir();
  /// The path of the public library file; empty without a design.
  AString GetQsolPath() const;
  bool GetSimValueCacheFullFileName(AString & name) const;
  void DeleteSimValueCacheFile();
  void SetDestroyResultsOnDelete(bool destroy) { m_DestroyResultsOnDelete = destroy; }
  bool GetDestroyResultsOnDelete() const { return m_DestroyResultsOnDelete; }
  AString const & GetProductName() const { return m_ProductName; }
  AString const & GetCircuitName() const { return m_CircuitName; }
  long GetVersionID() const { return m_VersionID; }
  /// Setups and solutions know their manager as one that they don't change; taking IDs from it is the exception.
  BaseSolutionManager & ForEdit() const { return const_cast<BaseSolutionManager &>(*this); }

  // Persistence
  io::ReadError ReadModule(io::CBlock const & block, bool discardCache, ReadMethod method);
  bool WriteModule(io::CBlock & block, ReadMethod method) const;
  io::ReadError ReadAllDefinitionBlocks();
  /// Chooses between a plain open of the library and recovery, and makes the objects that the library knows.
  io::ReadError BuildUtilityCollections(io::CBlock const & designBlock, bool recover);
  io::ReadError BuildUtilityCollections();
  void WriteVersionIDsToQdsn(io::CBlock & design) const;
  void ReadVersionIDsFromQdsn(io::CBlock const & design);
  AString GetVariationFromID(long id) const;
  /// As GetVariationID of each text, but the table reaches the library once, not once for each new text: for whoever is
  /// about to ask for many.
  void IssueVariationIDs(std::vector<AString> const & variations);
  VariationIDMap const & GetVariationIDMap() const { return m_VariationIDMap; }
  /// GetVariationID of a text that has one; false, and nothing is issued, without.
  bool FindVariationID(AString const & variation, long & id) const;
  static void WriteVariationIDBlockFunc(io::CBlock & block, VariationIDMap::value_type const & entry);

  // Recovery
  bool CanRecoverSolutions() const;
  bool RecoverQsolFile(io::CBlock const & designBlock, AString const & path);
  bool RecoverQsolBlockNameMap(AString const & path, io::CBlock & block) const;
  void RecoverVersionConsistency(io::CBlock const & designBlock);
  /// Gives manager, setups and solutions the versions that the design's block remembers.
  void ApplyVersionIDs(io::CBlock const & designBlock);
  void RecoverUIDeletions(std::vector<long> const & keptSetups, std::vector<long> const & keptSolutions);
  bool IsRecovered() const;
  /// What the last recovery of this manager took over and dropped.
  RecoveryReport const & GetRecoveryReport() const { return *m_RecoveryReport; }

  // The solution library; see SolutionFileManager
  void SetBinaryMode(bool binary);
  bool IsBinaryModeFile() const;
  void SetPrecision(int digits);
  CStreamioLibrary::LibIOReturn RewriteSolutionFile(bool flag);
  bool HasDataBlock(SolutionVariationKey const & pattern) const;
  CStreamioLibrary::LibIOReturn LoadBlocks(SolutionVariationKey const & pattern, io::CBlock & block) const;
  CStreamioLibrary::LibIOReturn LoadSingleBlock(io::CBlock & block) const;
  CStreamioLibrary::LibIOReturn SaveBlocks(io::CBlock & block) const;
  CStreamioLibrary::LibIOReturn SaveSingleBlock(io::CBlock & block) const;
  CStreamioLibraryStats GetFileStats() const;
  /// Each text is a packed key and serves as a pattern; always true.
  bool DeleteOldBlocks(std::set<AString> const & packedKeys) const;
  /// Each text is the real name of one block; always true.
  bool DeleteOldBlocksFullKeys(std::set<AString> const & names) const;

  // Setups and solutions
  SetupMap const & GetSetups() const { return m_SimSetupMap; }
  SetupMap const & GetDeletedSetups() const { return m_DeletedSimSetupMap; }
  SetupMap const & GetImportedSetups() const { return m_ImportedSimSetupMap; }
  void GetAllAssociatedSimDataExtractors(std::vector<BaseSimDataExtractor *> & extractors) const;
  ISimValueManager * GetISimValueManager() const;
  SolutionInstanceManager * GetSolutionInstanceManager() const { return m_SolutionInstanceManager; }
  ExportVariationContext const * GetExportVariationContext() const { return m_ExportVariationContext; }
  void AddSetupConvDef(SetupConvDef const * definition);
  SetupConvDef const * GetConvDefsForSetup(AString const & setupType) const;

  // Managed files
  bool CreateManagedFile(AString & fileName, AString const & baseDir, AString const & extension);
  bool DeleteManagedFile(AString const & baseDir, AString const & fileName);
  LongFileName GetFullPathForManagedFile(AString const & baseDir, AString const & fileName);
  void CommitManagedData();

  // Output variables
  bool IsValidOutputVariableName(AString const & name, bool existingNameIsError) const;
  bool IsCyclic(AString const & name, AString const & expression) const;
  void UpdateOutputVariables(KelvroCommand * command);
  int GetOutputVariables(OutputVariableMap & variables) const;
  OutputVariable * CreateCannedOutputVariable(AString const & name) const;
  OutputVariable * FindCannedOutputVariable(AString const & name) const;
  void OnAddOutputVar(IKelvroCommand * command, AString const & name, OutputVariable * variable);

  // Traces
  void ConstructTraceExprCacheMap(SolutionPointSet * pointSet,
                                  std::map<Trace *, CParsedExpressionCacheContainer> & caches) const;
  /// 0xFFFFFFFF when no expression refers to any.
  unsigned GetFirstReportTypeFromExprCacheMap(std::map<Trace *, CParsedExpressionCacheContainer> & caches) const;

private:
  friend class ExportVariationContextObject;

  void BuildMembers();
  SetupDirectory Directory() const;

  // The export of one design point; see BaseSolutionManagerExport.cpp
  bool ExportQSolForDesignPoint(LongFileName const & folder, AString const & variation,
                                bool assumeSavedStateOfDesktopProject) const;
  bool ExportQSolForDesignPointInUnsavedState(LongFileName const & folder, AString const & variation) const;
  bool CopyQSolForExportDesignPoint(AString & copyPath, LongFileName const & folder) const;
  void ExportResultFilesAndDirsForDesignPoint(LongFileName const & folder, AString const & variation,
                                              bool assumeSavedStateOfDesktopProject) const;
  bool CallGetQSolBlocksForExportingVariation(io::CBlock & blocks, long variationID) const;
  bool CallGetQSolBlocksForExportingVariation(io::CBlock & blocks, std::vector<AString> & namesToDelete,
                                              long variationID) const;

  void TellJournal(VariationIDMap::const_iterator entry) const;
  template <class Visit> void ForEachActiveExtractor(Visit visit) const;
  void MakeObjectsOf(SolutionVariationKey const & key);
  void ReadVariationIDs(io::CBlock const & variations);
  bool WriteOutputVariables(io::CBlock & block) const;
  io::ReadError ReadOutputVariables(io::CBlock const & block);
  io::ReadError ReadSetupOfDesignFile(io::CBlock const & setupBlock, std::set<long> & alreadyRead);
  io::ReadError ReadImportedSetupOfDesignFile(io::CBlock const & setupBlock);
  bool WriteSetups(io::CBlock & block, SetupMap const & setups, AString const & blockName);
  bool DoDataExchangeSimValueCache(bool reading);
  void CollectCannedOutputVariables();
  void DeleteOutputVariables();

  long m_VersionID = 0;
  SolutionFileManager m_SolutionFileManager;
  bool m_DestroyResultsOnDelete = false;
  IDesign * m_Design;
  mutable VariationIDMap m_VariationIDMap;
  SetupMap m_SimSetupMap;
  SetupMap m_DeletedSimSetupMap;
  SetupMap m_ImportedSimSetupMap;        ///< the setups belong to the product
  SetupMap m_DeletedImportedSimSetupMap; ///< likewise
  AString m_ProductName;
  mutable AString m_CircuitName;
  OutputVariableMap m_OutputVariableMap;
  std::vector<PortSettings> m_PortSettings;
  bool m_PostProcessingIsOn = false;
  bool m_DeembeddingLossLess = true;
  long m_RecoveredVersionID = 0;
  std::map<AString, long> m_RecoveredSetupVersions;
  std::map<std::pair<AString, AString>, long> m_RecoveredSolutionVersions;
  std::map<AString, SetupConvDef const *> m_ConvDefMap;
  mutable OutputVariableMap mCannedOutputVariables;
  SolutionInstanceManager * m_SolutionInstanceManager = nullptr;
  CManagedFilesMgr * m_ManagedFilesMgr = nullptr;
  mutable ExportVariationContext const * m_ExportVariationContext = nullptr;

  /// Answers over m_VariationIDMap that a walk of the map would also give, without the walk.
  std::unique_ptr<VariationIdTable> m_VariationIdTable;
  /// Of m_VariationIDMap, so that a library can store the header by what was added to it.
  std::shared_ptr<io::BlockJournal> m_VariationIDJournal;
  /// Definitions that a later one of the same setup type replaced; convergence records may still point at them.
  std::vector<SetupConvDef const *> m_ReplacedConvDefs;
  /// Deleted setups whose place in the deleted map another one took.
  std::shared_ptr<undo::Graveyard<SetupMap>> m_DisplacedSetups;
  std::shared_ptr<undo::Graveyard<SetupMap>> m_DisplacedImportedSetups; ///< the setups belong to the product
  /// Never null; filled by recovery.
  std::unique_ptr<RecoveryReport> m_RecoveryReport;
  /// While a library is opened, which reads its header twice: the block as it was decoded, unless somebody wrote
  /// another one since, and whether its variations are in the table.
  mutable std::shared_ptr<io::CBlock> m_HeaderAtHand;
  bool m_HasVariationsOfHeader = false;
  bool m_IsOpening = false;
};

inline bool BaseSolutionManager::DefinitionFileWrite(io::CBlock &) {
  KVRO_ASSERT(0);
  return true;
}

inline bool BaseSolutionManager::AllFilesWrite(io::CBlock &) {
  KVRO_ASSERT(0);
  return true;
}

inline io::ReadError BaseSolutionManager::DefinitionFileRead(io::CBlock const &, bool) {
  KVRO_ASSERT(0);
  return io::kNoError;
}

inline io::ReadError BaseSolutionManager::AllFilesRead(io::CBlock const &, bool) {
  KVRO_ASSERT(0);
  return io::kNoError;
}
