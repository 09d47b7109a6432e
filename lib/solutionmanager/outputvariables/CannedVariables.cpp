#include "solutionmanager/outputvariables/CannedVariables.h"

#include "plotkit/outputvariable/OutputVariable.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"
#include "solutionmanager/model/BaseSolutionManager.h"

OutputVariable * CannedVariables::Create(BaseSolutionManager const & manager, AString const & name) {
  std::vector<BaseSimDataExtractor *> extractors;
  manager.GetAllAssociatedSimDataExtractors(extractors);
  for (BaseSimDataExtractor const * const extractor : extractors) {
    AString text;
    ValueState state(Units::kNoUnits, Units::kNoUnitType, 1, val::kNotAQuantity);
    if (!extractor->GetExpressionForCannedOutputVariable(name, text, state))
      continue;
    auto * const variable = new OutputVariable(name);
    variable->SetValueBaseText(text, state);
    return variable;
  }
  return nullptr;
}

OutputVariable * CannedVariables::Find(AString const & name) const {
  auto const at = m_variables.find(name);
  return at == m_variables.end() ? nullptr : at->second;
}

OutputVariable * CannedVariables::FindOrCreate(BaseSolutionManager const & manager, AString const & name) {
  if (OutputVariable * const known = Find(name))
    return known;
  OutputVariable * const variable = manager.CreateCannedOutputVariable(name);
  if (variable)
    m_variables.emplace(name, variable);
  return variable;
}

void CannedVariables::Collect() {
  std::erase_if(m_variables, [](auto const & entry) {
    bool const isUnused = entry.second->OKtoDelete();
    if (isUnused)
      delete entry.second;
    return isUnused;
  });
}
