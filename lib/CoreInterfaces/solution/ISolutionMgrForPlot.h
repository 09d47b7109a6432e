#pragma once

#include "CoreInterfaces/ReportForward.h"
#include "basekit/text/AString.h"

#include <vector>

class PropList;
namespace Units {
enum FullUnitType : int;
}

/// The ranged functions of a design as the plot system sees them.
class ISolutionMgrForPlot {
public:
  virtual void GetRangedFunctionCategoryNames(std::vector<AString> & names, unsigned reportType,
                                              rep::DisplayType displayType) const = 0;
  virtual void GetRangedFunctionNames(std::vector<AString> & names, AString const & category, unsigned reportType,
                                      rep::DisplayType displayType) const = 0;
  virtual AString GetRangedFunctionDescription(AString const & function) const = 0;
  virtual bool GetRangedFunctionDefaultParameters(PropList & parameters, AString const & function) const = 0;
  virtual bool ScaleRangedFunctionValueToGivenUnits(double & result, AString & units, AString const & function,
                                                    double value, Units::FullUnitType xUnits,
                                                    Units::FullUnitType yUnits) const = 0;

protected:
  ~ISolutionMgrForPlot() = default;
};
