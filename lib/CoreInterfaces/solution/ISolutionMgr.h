#pragma once

#include "CoreInterfaces/ReportForward.h"
#include "basekit/text/AString.h"

#include <map>
#include <set>
#include <vector>

class IDesign;
class IManagedFileService;
class IOutputVariableMgr;
class IProductSolutionMgrForReportSetupUI;
class ISimDataExtractor;
class ISimulationSetup;
class ISolution;
class ISolutionDefinition;
class ISolutionManagerForReports;
class ISolutionMgrForHubIntegration;
class ISolutionMgrForPlot;
class ISolutionMgrForReportSetupUI;
class ISolutionMgrForSweepwise;
class LongFileName;
class PortSettings;
class SolutionFileManager;
enum class RunStatusType : int;

/// All solved data of one design, as the desktop sees it.  Look-ups give null on a miss and report nothing; the
/// flags of look-ups are includeDeleted, includeImported, in that order.
class ISolutionMgr {
public:
  /// For each report type that an expression refers to, the contexts in which it does so.
  using ReportTypeMap = std::map<unsigned, std::vector<SimValueContext>>;

  virtual ~ISolutionMgr() = default;
  virtual int GetInterfaceID() const = 0;
  virtual void * GetInterface(int interfaceID) = 0;
  virtual void ReSyncSolutionFileName(bool forSaving) = 0;
  virtual int GetISimulationSetupList(std::vector<ISimulationSetup *> & list, bool includeDeleted,
                                      bool includeImported) const = 0;
  virtual int GetValidISolutionList(std::vector<ISolution *> & list, bool includeDeleted,
                                    bool includeImported) const = 0;
  virtual int GetImportedSolutionList(std::vector<ISolution *> & list) const = 0;
  /// The solution that fits the definition, solving it for the instance first where asked.
  virtual ISolution * GetISolution(AString const & setupName, ISolutionDefinition * definition,
                                   IDesignInstance * instance, RunStatusType & status, bool solve) = 0;
  virtual ISolution * GetISolution(AString const & name, bool includeDeleted, bool includeImported) const = 0;
  virtual ISolution * GetISolutionByID(long id, bool includeDeleted, bool includeImported) const = 0;
  virtual ISimulationSetup * GetISimulationSetup(AString const & name, bool includeDeleted,
                                                 bool includeImported) const = 0;
  virtual ISimulationSetup * GetISimulationSetupByID(long id, bool includeDeleted, bool includeImported) const = 0;
  virtual ISimulationSetup * FindEquivalentISimulationSetup(ISimulationSetup * setup) const = 0;
  virtual ISimulationSetup * CreateEquivalentISimulationSetup(ISimulationSetup const * source) = 0;
  virtual int Simulate(IDesignInstance * instance, ISimulationSetup * setup, ISolutionDefinition * definition) = 0;
  virtual ISolution * SimulateBlocking(IDesignInstance * instance, ISimulationSetup * setup,
                                       ISolutionDefinition * definition) = 0;
  /// True when the file holds setups.  The pointers appended are not valid after the call: only their number is.
  virtual bool LoadSetupsFromFile(LongFileName const & file, std::vector<ISimulationSetup *> & setups) = 0;
  virtual bool AddImportData(ISolution * solution, KelvroCommand * command) = 0;
  virtual IDesign * GetIDesign() const = 0;
  virtual bool HasSolutions() const = 0;
  virtual bool AllowEmptyReports() const = 0;
  virtual unsigned GetRptTypeIndex(unsigned reportType) const = 0;
  virtual bool GetValueInfoForExpression(AString const & expression, ISolution const * solution,
                                         Value & value) const = 0;
  virtual int GetOutputVariables(std::vector<OutputVariable *> & variables, ISimDataExtractor * extractor,
                                 SimValueContext const * context, OutputVariable * editVariable) const = 0;
  virtual OutputVariable * CreateOutputVariable(AString const & name, AString const & expression,
                                                KelvroCommand * command) = 0;
  virtual bool EditOutputVariable(OutputVariable * variable, AString const & expression, KelvroCommand * command) = 0;
  virtual bool DeleteOutputVariable(OutputVariable * variable, KelvroCommand * command) = 0;
  virtual OutputVariable * FindOutputVariable(AString const & name) const = 0;
  virtual bool IsOkToDeleteOutputVariable(AString const & name) const = 0;
  virtual bool IsValidOutputVariableName(AString const & name) const = 0;
  virtual bool IsValidOutputVariableExpression(AString const & expression, ISimDataExtractor * extractor,
                                               SimValueContext const * context) const = 0;
  virtual bool IsValidOutputVariable(AString const & name, ISimDataExtractor * extractor,
                                     SimValueContext const * context) const = 0;
  virtual int GetOutputVariableReportTypes(AString const & expression, ReportTypeMap & reportTypes) const = 0;
  virtual bool IsOKtoEditOutputVariable(AString const & name, AString const & expression) const = 0;
  virtual bool IsExpressionAffectedByMinorEdits(KelvroCommand const * command, AString const & expression) const = 0;
  virtual bool IsSimContextDataAffectedByMinorEdits(KelvroCommand const * command, SimValueContext const * context,
                                                    unsigned reportType) const = 0;
  virtual bool GetOutputVariableValue(Value & result, AString const & variable, AString const & solution,
                                      AString const & variation, AString const & context,
                                      IDesignInstance * instance) const = 0;

protected:
  virtual void SetSimValueContext(SimValueContext & context, AString const & text, ISimDataExtractor const * extractor,
                                  std::vector<unsigned> const & reportTypes) const = 0;

public:
  virtual int GetPortPostProcessingSettings(std::vector<PortSettings> & settings) const = 0;
  virtual SolutionFileManager & GetSolutionFileManager() = 0;
  virtual void NonUndoableInvalidateAll() = 0;
  virtual void CentralizedUpdateSolutionPointSets(IProgressMonitor * progress,
                                                  std::vector<ISolutionPointSet *> const * pointSets) = 0;
  /// A place kept for the desktop's own use.
  virtual bool ManagerHookA() { return false; }
  virtual void DoGarbageCollection(std::set<Trace *> const & tracesInUse) = 0;
  virtual bool IsSolutionPointSetDefinitionValid(ISolutionPointSet * pointSet) const = 0;
  virtual unsigned GetReportTypeOfSolutionPointSet(ISolutionPointSet const * pointSet) const = 0;
  /// A place kept for the desktop's own use.
  virtual void ManagerHookB() {}
  virtual OutputVariable * GetCannedOutputVariable(AString const & name) const = 0;
  virtual ISolutionMgrForReportSetupUI const * GetISolutionMgrForReportSetupUI() const = 0;
  virtual ISolutionMgrForReportSetupUI * GetISolutionMgrForReportSetupUIForEdit() = 0;
  virtual IProductSolutionMgrForReportSetupUI const * GetIProductSolutionMgrForReportSetupUI() const = 0;
  virtual IProductSolutionMgrForReportSetupUI * GetIProductSolutionMgrForReportSetupUIForEdit() = 0;
  virtual ISolutionManagerForReports const * GetISolutionManagerForReports() const = 0;
  virtual ISolutionManagerForReports * GetISolutionManagerForReportsForEdit() = 0;
  virtual ISolutionMgrForSweepwise const * GetISolutionMgrForSweepwise() const = 0;
  virtual ISolutionMgrForSweepwise * GetISolutionMgrForSweepwiseForEdit() = 0;
  virtual ISolutionMgrForPlot const * GetISolutionMgrForPlot() const = 0;
  virtual ISolutionMgrForHubIntegration const * GetISolutionMgrForHubIntegration() const = 0;
  virtual ISolutionMgrForHubIntegration * GetISolutionMgrForHubIntegrationForEdit() = 0;
  virtual void TranslateLegacyOutputVariablesIntoGivenOutputVariableMgr(IOutputVariableMgr * target) = 0;
  virtual IManagedFileService * GetIManagedFileService() const = 0;
  virtual bool ExportDesignPointResults(LongFileName const & folder, AString const & variation,
                                        bool assumeSavedStateOfDesktopProject) const = 0;
};
