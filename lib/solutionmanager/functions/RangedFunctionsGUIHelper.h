#pragma once

#include "CoreInterfaces/ReportForward.h"
#include "basekit/text/AString.h"
#include "viewkit/property/PropList.h"

#include <map>
#include <utility>
#include <vector>

/// The core catalogue of ranged functions, the same for every product: what a user interface shows of the functions
/// that the expression engine evaluates.  One shared instance, filled by its constructor and never changed afterwards.
/// Categories and functions stand in the order in which they are shown; all look-ups ignore case.  A name that isn't
/// there is an empty answer, never a report.
class RangedFunctionsGUIHelper {
public:
  using CategoryFunctions = std::pair<AString, std::vector<AString>>;

  static RangedFunctionsGUIHelper const & GetInstance();

  /// False when the catalogue doesn't hold the function; the result and the unit text are then as they were.
  virtual bool ScaleRangedFunctionValueToGivenUnits(double & result, AString & units, AString const & function,
                                                    double value, Units::FullUnitType xUnits,
                                                    Units::FullUnitType yUnits) const;

  /// These append what a display has use for.
  void GetCategoryNames(std::vector<AString> & names, rep::DisplayType displayType) const;
  void GetFunctionNames(std::vector<AString> & names, AString const & category, rep::DisplayType displayType) const;
  /// A category that is already there, by name without case, gets the names added.
  void GetAllFunctions(std::vector<CategoryFunctions> & functions, rep::DisplayType displayType) const;

  bool GetDescription(AString & description, AString const & function) const;
  bool GetDefaultParameters(PropList & parameters, AString const & function) const;

  RangedFunctionsGUIHelper(RangedFunctionsGUIHelper const &) = delete;
  RangedFunctionsGUIHelper & operator=(RangedFunctionsGUIHelper const &) = delete;

protected:
  /// How a result comes into the units of a trace; the unit text stays as it was where the result has none of them.
  using ScaleOperation = void (*)(double & result, AString & units, double value, Units::FullUnitType xUnits,
                                  Units::FullUnitType yUnits);

  RangedFunctionsGUIHelper();
  ~RangedFunctionsGUIHelper() = default;

  /// A function that is already there is reported, and left as it is.
  void AddFunction(AString const & funcName, AString const & description, AString const & category,
                   PropList const & defaultParameters, ScaleOperation scale);

private:
  struct Category {
    AString category;
    std::vector<AString> functions;
  };

  bool AssertFunctionNotPresent(AString const & funcName) const;
  bool AssertFunctionDefaultParametersNotPresent(AString const & funcName) const;
  Category const * FindCategory(AString const & category) const;

  std::vector<Category> m_categories;
  std::map<AString, AString, AString::NoCaseLess> m_functionDescriptions;
  std::map<AString, PropList, AString::NoCaseLess> m_defaultFunctionParameters;
  std::map<AString, ScaleOperation, AString::NoCaseLess> m_scaleFunctions;
};
