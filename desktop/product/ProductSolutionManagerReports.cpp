// What reports ask of a product: its report types and the extractors that serve them.

#include "CoreInterfaces/solution/ISolution.h"
#include "basekit/command/KelvroCommand.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/product/quantity/QuantityExtractor.h"
#include "plotkit/outputvariable/COutputVarKvroCmdInfo.h"
#include "plotkit/pointset/SolutionPointSet.h"
#include "plotkit/simvalue/SimValueContext.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/outputvariables/CParsedExpressionCache.h"

#include <algorithm>

namespace desktop {

std::vector<QuantityExtractor *> ProductSolutionManager::GetQuantityExtractors(bool includeImported) const {
  std::vector<ISolution *> solutions;
  GetValidISolutionList(solutions, false, includeImported);
  std::vector<QuantityExtractor *> extractors;
  for (ISolution * const solution : solutions)
    if (auto * const extractor = dynamic_cast<QuantityExtractor *>(solution->GetISimDataExtractor()))
      extractors.push_back(extractor);
  return extractors;
}

void ProductSolutionManager::ForgetCatalogues() {
  for (QuantityExtractor * const extractor : GetQuantityExtractors(true))
    extractor->ForgetCatalogue();
}

QuantityReportType const * ProductSolutionManager::FindReportType(unsigned number) const {
  for (QuantityExtractor const * const extractor : GetQuantityExtractors(true))
    if (QuantityReportType const * const type = extractor->FindReportType(number))
      return type;
  return nullptr;
}

int ProductSolutionManager::GetReportTypeNames(std::vector<AString> & names) const {
  for (QuantityExtractor const * const extractor : GetQuantityExtractors(true))
    for (QuantityReportType const & type : extractor->GetCatalogue().GetReportTypes())
      if (std::find(names.begin(), names.end(), type.name) == names.end())
        names.push_back(type.name);
  return static_cast<int>(names.size());
}

unsigned ProductSolutionManager::GetReportType(AString const & name) const {
  for (QuantityExtractor const * const extractor : GetQuantityExtractors(true))
    for (QuantityReportType const & type : extractor->GetCatalogue().GetReportTypes())
      if (AString::MatchNoCase(type.name, name))
        return type.number;
  return 0;
}

int ProductSolutionManager::GetDisplayTypes(std::vector<rep::DisplayType> & types, unsigned reportType) const {
  if (QuantityReportType const * const type = FindReportType(reportType))
    types.insert(types.end(), type->displayTypes.begin(), type->displayTypes.end());
  return static_cast<int>(types.size());
}

int ProductSolutionManager::GetISimDataExtractors(std::vector<ISimDataExtractor *> & extractors, unsigned reportType,
                                                  bool includeImported) const {
  for (QuantityExtractor * const extractor : GetQuantityExtractors(includeImported))
    if (extractor->IsSupportedReportTypes({reportType}))
      extractors.push_back(extractor);
  return static_cast<int>(extractors.size());
}

int ProductSolutionManager::GetIDesignDataExtractors(std::vector<IDesignDataExtractor *> & extractors,
                                                     unsigned reportType) const {
  for (QuantityExtractor * const extractor : GetQuantityExtractors(true))
    if (extractor->IsSupportedReportTypes({reportType}))
      extractors.push_back(extractor);
  return static_cast<int>(extractors.size());
}

// An update of all solutions together ends at a set of imported data.
void ProductSolutionManager::GetReportSolutionPointSetsToUpdate(std::vector<ISolutionPointSet *> & pointSets) const {
  for (auto const & [id, setup] : GetSetups())
    for (auto const & [solutionID, solution] : setup->GetSolutions())
      if (BaseSimDataExtractor const * const extractor = solution->GetBaseSimDataExtractor();
          extractor && extractor->GetSolutionPointSetsSize() > 0)
        pointSets.insert(pointSets.end(), extractor->GetFirstSolutionPointSet(), extractor->GetLastSolutionPointSet());
}

SimValueContext ProductSolutionManager::ContextOf(unsigned reportType) {
  SimValueContext const usual;
  auto numbers = usual.GetNumbers();
  numbers.back() = reportType;
  return {usual.GetKind(),  usual.GetCalculationType(),
          usual.GetFirst(), usual.GetSecond(),
          numbers[0],       numbers[1],
          numbers[2],       numbers[3]};
}

unsigned ProductSolutionManager::GetReportTypeOfSolutionPointSet(ISolutionPointSet const * pointSet) const {
  auto const * const ofTraces = dynamic_cast<SolutionPointSet const *>(pointSet);
  double const told = ofTraces ? ofTraces->GetSimValueContext().GetNumbers().back() : 0.0;
  return told > 0.0 ? static_cast<unsigned>(told) : BaseSolutionManager::GetReportTypeOfSolutionPointSet(pointSet);
}

bool ProductSolutionManager::GetQuantityTypeInfo(ReportTypeMap & reportTypes, AString const & expression,
                                                 std::vector<OutputVariable *> * variables,
                                                 SimValuesByReportType * simValues, SolutionPointSet * pointSet) const {
  bool const isGood = BaseSolutionManager::GetQuantityTypeInfo(reportTypes, expression, variables, simValues, pointSet);
  if (reportTypes.size() != 2)
    return isGood;
  for (auto const & [number, contexts] : reportTypes) {
    QuantityReportType const * const type = FindReportType(number);
    if (!type || !type->axis.empty())
      continue;
    unsigned const single = number;
    unsigned const other =
        single == reportTypes.begin()->first ? reportTypes.rbegin()->first : reportTypes.begin()->first;
    if (simValues) {
      auto & texts = (*simValues)[other];
      texts.insert(texts.end(), (*simValues)[single].begin(), (*simValues)[single].end());
      simValues->erase(single);
    }
    auto & all = reportTypes[other];
    all.insert(all.end(), contexts.begin(), contexts.end());
    reportTypes.erase(single);
    break;
  }
  return isGood;
}

void ProductSolutionManager::SetSimValueContext(SimValueContext & context, AString const & text,
                                                ISimDataExtractor const * extractor,
                                                std::vector<unsigned> const & reportTypes) const {
  std::vector<SimValueContext> contexts;
  if (!extractor || reportTypes.empty() || !extractor->GetContexts(contexts, reportTypes.front()))
    return;
  for (SimValueContext const & there : contexts)
    if (AString::MatchNoCase(extractor->GetContextName(there), text) ||
        AString::Format(L"%ld", extractor->GetContextID(there)) == text)
      context = there;
}

ValueState ProductSolutionManager::GetReportTypeForSimValues(ReportTypeMap & reportTypes, AString const & text,
                                                             ISimDataExtractor const * extractor) const {
  auto const * const quantities = dynamic_cast<QuantityExtractor const *>(extractor);
  QuantityInfo info;
  if (!quantities || !quantities->GetCatalogue().Describe(text, info))
    return ValueState();
  reportTypes[info.reportType].emplace_back();
  return info.state;
}

bool ProductSolutionManager::IsExpressionAffectedByMinorEdits(KelvroCommand const * command,
                                                              CParsedExpressionCache * cache) const {
  auto const * const edit =
      command ? dynamic_cast<COutputVarKvroCmdInfo const *>(command->GetInfo(KelvroCommandInfo::kOutputVariables))
              : nullptr;
  if (!edit || !cache)
    return false;
  std::vector<OutputVariable *> variables;
  cache->GetReferencedOutputVars(variables);
  return std::any_of(variables.begin(), variables.end(),
                     [edit](OutputVariable const * variable) { return edit->IsEdited(variable); });
}

} // namespace desktop
