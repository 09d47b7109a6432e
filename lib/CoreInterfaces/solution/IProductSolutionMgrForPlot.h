#pragma once

#include "CoreInterfaces/ReportForward.h"
#include "basekit/text/AString.h"

#include <vector>

class PropList;
namespace Units {
enum FullUnitType : int;
}

/// A product's own ranged functions.  A first or second operation that returns 1 ends the call: the core catalogue
/// is then left out.
class IProductSolutionMgrForPlot {
public:
  virtual int GetProductRangedFunctionCategoryNames(std::vector<AString> & names, unsigned reportType,
                                                    rep::DisplayType displayType) const = 0;
  virtual int GetProductRangedFunctionNames(std::vector<AString> & names, AString const & category, unsigned reportType,
                                            rep::DisplayType displayType) const = 0;
  virtual AString GetProductRangedFunctionDescription(AString const & function) const = 0;
  virtual bool GetProductRangedFunctionDefaultParameters(PropList & parameters, AString const & function) const = 0;
  virtual bool ScaleProductRangedFunctionValueToGivenUnits(double & result, AString & units, AString const & function,
                                                           double value, Units::FullUnitType xUnits,
                                                           Units::FullUnitType yUnits) const = 0;
  virtual ~IProductSolutionMgrForPlot() = default;
};
