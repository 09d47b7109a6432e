#pragma once

#include "CoreInterfaces/ReportForward.h"
#include "basekit/text/AString.h"

#include <utility>
#include <vector>

class IVariableNameSpaceSetupper;
class PropList;
namespace io {
class CBlock;
}

/// A design's solved data as the dialog that sets up reports sees it.
class ISolutionMgrForReportSetupUI {
public:
  virtual ~ISolutionMgrForReportSetupUI() = default;
  virtual bool WriteTraceInterpreterBlockForCopy(io::CBlock & block, ITraceCopyContext * context,
                                                 TraceDefParams const & definitions) const = 0;
  virtual bool ReadTraceInterpreterBlockForPaste(IKelvroCommand * command, ITracePasteContext * context,
                                                 io::CBlock const & block) = 0;
  virtual AString GetDesignName() const = 0;
  virtual AString GetProjectName() const = 0;
  virtual void GetNominalVariableValues(VariableValues & values, long designID, long instanceID) const = 0;
  virtual IVariableNameSpaceSetupper const * GetIVariableNameSpaceSetupper(long solutionID) const = 0;
  virtual void GetRangedFunctionCategoryNames(std::vector<AString> & names, unsigned reportType,
                                              rep::DisplayType displayType) const = 0;
  virtual void GetRangedFunctionNames(std::vector<AString> & names, AString const & category, unsigned reportType,
                                      rep::DisplayType displayType) const = 0;
  virtual AString GetRangedFunctionDescription(AString const & function) const = 0;
  virtual bool GetRangedFunctionDefaultParameters(PropList & parameters, AString const & function) const = 0;
  virtual bool DoesSolutionExist(long id) const = 0;
};
