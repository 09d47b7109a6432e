// Ranged functions: the core catalogue and what a product adds to it.  Where lists are made the product comes first,
// and may end the call; where one function is asked about the core comes first.

#include "CoreInterfaces/solution/IProductSolutionMgrForPlot.h"
#include "solutionmanager/functions/RangedFunctionsGUIHelper.h"
#include "solutionmanager/model/BaseSolutionManager.h"

void BaseSolutionManager::GetRangedFunctionCategoryNames(std::vector<AString> & names, unsigned reportType,
                                                         rep::DisplayType displayType) const {
  IProductSolutionMgrForPlot const * const provider = GetIProductSolutionMgrForPlot();
  if (provider && provider->GetProductRangedFunctionCategoryNames(names, reportType, displayType) == 1)
    return;
  RangedFunctionsGUIHelper::GetInstance().GetCategoryNames(names, displayType);
}

void BaseSolutionManager::GetRangedFunctionNames(std::vector<AString> & names, AString const & category,
                                                 unsigned reportType, rep::DisplayType displayType) const {
  IProductSolutionMgrForPlot const * const provider = GetIProductSolutionMgrForPlot();
  if (provider && provider->GetProductRangedFunctionNames(names, category, reportType, displayType) == 1)
    return;
  RangedFunctionsGUIHelper::GetInstance().GetFunctionNames(names, category, displayType);
}

AString BaseSolutionManager::GetRangedFunctionDescription(AString const & function) const {
  AString description;
  if (RangedFunctionsGUIHelper::GetInstance().GetDescription(description, function))
    return description;
  IProductSolutionMgrForPlot const * const provider = GetIProductSolutionMgrForPlot();
  return provider ? provider->GetProductRangedFunctionDescription(function) : AString();
}

bool BaseSolutionManager::GetRangedFunctionDefaultParameters(PropList & parameters, AString const & function) const {
  if (RangedFunctionsGUIHelper::GetInstance().GetDefaultParameters(parameters, function))
    return true;
  IProductSolutionMgrForPlot const * const provider = GetIProductSolutionMgrForPlot();
  return provider && provider->GetProductRangedFunctionDefaultParameters(parameters, function);
}

bool BaseSolutionManager::ScaleRangedFunctionValueToGivenUnits(double & result, AString & units,
                                                               AString const & function, double value,
                                                               Units::FullUnitType xUnits,
                                                               Units::FullUnitType yUnits) const {
  RangedFunctionsGUIHelper const & core = RangedFunctionsGUIHelper::GetInstance();
  if (core.ScaleRangedFunctionValueToGivenUnits(result, units, function, value, xUnits, yUnits))
    return true;
  IProductSolutionMgrForPlot const * const provider = GetIProductSolutionMgrForPlot();
  return provider &&
         provider->ScaleProductRangedFunctionValueToGivenUnits(result, units, function, value, xUnits, yUnits);
}

void BaseSolutionManager::GetAllCoreRangedFunctions(std::vector<std::pair<AString, std::vector<AString>>> & functions,
                                                    rep::DisplayType displayType) const {
  RangedFunctionsGUIHelper::GetInstance().GetAllFunctions(functions, displayType);
}
