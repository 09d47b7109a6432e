#pragma once

#include "CoreInterfaces/solution/ISolutionMgr.h"

class ISimulationSetupForSweepwise;
class ISolutionForSweepwise;

/// A design's solved data as the parametric add-on sees it.
class ISolutionMgrForSweepwise {
public:
  virtual ~ISolutionMgrForSweepwise() = default;
  virtual IDesign * GetIDesign() const = 0;
  virtual ISimulationSetupForSweepwise * GetISimulationSetupForSweepwise(AString const & name, bool includeDeleted,
                                                                         bool includeImported) const = 0;
  virtual ISimulationSetupForSweepwise * GetISimulationSetupForSweepwiseByID(long id, bool includeDeleted,
                                                                             bool includeImported) const = 0;
  virtual int GetISimulationSetupForSweepwiseList(std::vector<ISimulationSetupForSweepwise *> & list,
                                                  bool includeDeleted, bool includeImported) const = 0;
  virtual ISolutionForSweepwise * GetISolutionForSweepwise(AString const & name, bool includeDeleted,
                                                           bool includeImported) const = 0;
  virtual ISolutionForSweepwise * GetISolutionForSweepwiseByID(long id, bool includeDeleted,
                                                               bool includeImported) const = 0;
  virtual int GetValidISolutionListForSweepwise(std::vector<ISolutionForSweepwise *> & list, bool includeDeleted,
                                                bool includeImported) const = 0;
  virtual int GetOutputVariableReportTypes(AString const & expression,
                                           ISolutionMgr::ReportTypeMap & reportTypes) const = 0;
  virtual int GetOutputVariables(std::vector<OutputVariable *> & variables, ISimDataExtractor * extractor,
                                 SimValueContext const * context, OutputVariable * editVariable) const = 0;
  virtual bool GetValueInfoForExpression(AString const & expression, long solutionID, Value & value) const = 0;
  virtual SolutionFileManager & GetSolutionFileManager() = 0;
  virtual bool IsExpressionAffectedByMinorEdits(KelvroCommand const * command, AString const & expression) const = 0;
  virtual bool IsSimContextDataAffectedByMinorEdits(KelvroCommand const * command, SimValueContext const * context,
                                                    unsigned reportType) const = 0;
  /// A place kept for the add-on's own use.
  virtual int SweepwiseManagerHook() { return 0; }
  virtual int GetReportTypeNames(std::vector<AString> & names) const = 0;
  virtual unsigned GetReportType(AString const & name) const = 0;
};
