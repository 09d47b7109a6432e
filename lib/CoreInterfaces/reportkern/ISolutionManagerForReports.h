#pragma once

#include "CoreInterfaces/ReportForward.h"
#include "basekit/text/AString.h"

#include <vector>

class IManagedFileService;
class ISimDataExtractorForReports;
class IVariableNameSpaceSetupper;
namespace io {
class CBlock;
}

/// A design's solved data as the report setup module sees it.
class ISolutionManagerForReports {
public:
  virtual ~ISolutionManagerForReports() = default;
  virtual ISimDataExtractorForReports * GetISimDataExtractorForReports(long solutionID) const = 0;
  virtual void GetAvailableSolutions(std::vector<long> & solutionIDs, unsigned reportType) const = 0;
  virtual IVariableNameSpaceSetupper const * GetIVariableNameSpaceSetupper(long solutionID) const = 0;
  virtual void GetNominalVariableValues(VariableValues & values, long designID, long instanceID,
                                        ReportTypeSolutionDefinition const & definition) const = 0;
  virtual long GetDesignIDAssociatedWithDesignInstance(long instanceID) const = 0;
  virtual void GetVariablesAffectedByCommand(std::vector<AString> & created, std::vector<AString> & deleted,
                                             std::vector<AString> & edited, IKelvroCommand const * command,
                                             long solutionID, ReportTypeSolutionDefinition const * definition,
                                             long instanceID) const = 0;
  virtual AString GetDesignName() const = 0;
  virtual IManagedFileService * GetIManagedFileService() const = 0;
  virtual bool WriteTraceInterpreterBlockForCopy(io::CBlock & block, ITraceCopyContext * context,
                                                 TraceDefParams const & definitions) const = 0;
  virtual bool ReadTraceInterpreterBlockForPaste(IKelvroCommand * command, ITracePasteContext * context,
                                                 io::CBlock const & block) = 0;
  /// Four places of the report setup module that stay at these defaults here.
  virtual int ReportsHookA() const;
  virtual int ReportsHookB() const { return 0; }
  virtual void ReportsHookC() const;
  virtual bool ReportsHookD() const { return false; }
};
