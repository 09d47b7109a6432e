#include "solutionmanager/functions/RangedFunctionsGUIHelper.h"

#include "basekit/diag/Assert.h"
#include "solutionmanager/functions/RangedFunctionCatalogue.h"
#include "solutionmanager/functions/RangedFunctionFilter.h"
#include "solutionmanager/functions/RangedFunctionScales.h"

#include <algorithm>

namespace {

template <class Rows>
auto FindNoCase(Rows & rows, AString const & name, AString std::remove_cvref_t<decltype(*rows.begin())>::*key) {
  return std::find_if(rows.begin(), rows.end(), [&](auto const & row) { return (row.*key).CompareNoCase(name) == 0; });
}

} // namespace

RangedFunctionsGUIHelper const & RangedFunctionsGUIHelper::GetInstance() {
  static RangedFunctionsGUIHelper const instance;
  return instance;
}

RangedFunctionsGUIHelper::RangedFunctionsGUIHelper() {
  for (ranged::CatalogueGroup const & group : ranged::CatalogueGroups()) {
    for (ranged::CatalogueRow const & row : group.rows)
      AddFunction(AString(row.name), AString(row.description), AString(group.category),
                  ranged::ParameterList(row.parameters), ranged::ScaleOperationOf(row.scale));
  }
}

bool RangedFunctionsGUIHelper::AssertFunctionNotPresent(AString const & funcName) const {
  bool const isPresent = m_functionDescriptions.contains(funcName);
  if (isPresent)
    KVRO_ASSERT(!ACHAR("Function already present"));
  return !isPresent;
}

bool RangedFunctionsGUIHelper::AssertFunctionDefaultParametersNotPresent(AString const & funcName) const {
  auto const defaultFunctionParametersIter = m_defaultFunctionParameters.find(funcName);
  KVRO_ASSERT(defaultFunctionParametersIter == m_defaultFunctionParameters.end());
  return defaultFunctionParametersIter == m_defaultFunctionParameters.end();
}

void RangedFunctionsGUIHelper::AddFunction(AString const & funcName, AString const & description,
                                           AString const & category, PropList const & defaultParameters,
                                           ScaleOperation scale) {
  KVRO_ASSERT(AssertFunctionNotPresent(funcName));
  KVRO_ASSERT(AssertFunctionDefaultParametersNotPresent(funcName));
  if (!m_functionDescriptions.try_emplace(funcName, description).second)
    return;
  m_defaultFunctionParameters.try_emplace(funcName, defaultParameters);
  m_scaleFunctions.try_emplace(funcName, scale);
  auto row = FindNoCase(m_categories, category, &Category::category);
  if (row == m_categories.end())
    row = m_categories.insert(row, Category{category, {}});
  row->functions.push_back(funcName);
}

RangedFunctionsGUIHelper::Category const * RangedFunctionsGUIHelper::FindCategory(AString const & category) const {
  auto const row = FindNoCase(m_categories, category, &Category::category);
  return row != m_categories.end() ? &*row : nullptr;
}

void RangedFunctionsGUIHelper::GetCategoryNames(std::vector<AString> & names, rep::DisplayType displayType) const {
  std::vector<CategoryFunctions> filled;
  GetAllFunctions(filled, displayType);
  for (CategoryFunctions const & category : filled)
    names.push_back(category.first);
}

void RangedFunctionsGUIHelper::GetFunctionNames(std::vector<AString> & names, AString const & category,
                                                rep::DisplayType displayType) const {
  Category const * const row = FindCategory(category);
  if (!row)
    return;
  std::copy_if(row->functions.begin(), row->functions.end(), std::back_inserter(names),
               [displayType](AString const & name) { return ranged::FunctionFits(name, displayType); });
}

void RangedFunctionsGUIHelper::GetAllFunctions(std::vector<CategoryFunctions> & functions,
                                               rep::DisplayType displayType) const {
  for (Category const & category : m_categories) {
    std::vector<AString> names;
    if (ranged::CategoryFits(category.category, displayType))
      GetFunctionNames(names, category.category, displayType);
    if (names.empty())
      continue;
    auto row = FindNoCase(functions, category.category, &CategoryFunctions::first);
    if (row == functions.end())
      row = functions.insert(row, {category.category, {}});
    row->second.insert(row->second.end(), names.begin(), names.end());
  }
}

bool RangedFunctionsGUIHelper::GetDescription(AString & description, AString const & function) const {
  auto const found = m_functionDescriptions.find(function);
  if (found == m_functionDescriptions.end())
    return false;
  description = found->second;
  return true;
}

bool RangedFunctionsGUIHelper::GetDefaultParameters(PropList & parameters, AString const & function) const {
  auto const found = m_defaultFunctionParameters.find(function);
  if (found == m_defaultFunctionParameters.end())
    return false;
  parameters = found->second;
  return true;
}

bool RangedFunctionsGUIHelper::ScaleRangedFunctionValueToGivenUnits(double & result, AString & units,
                                                                    AString const & function, double value,
                                                                    Units::FullUnitType xUnits,
                                                                    Units::FullUnitType yUnits) const {
  auto const found = m_scaleFunctions.find(function);
  if (found == m_scaleFunctions.end())
    return false;
  found->second(result, units, value, xUnits, yUnits);
  return true;
}
