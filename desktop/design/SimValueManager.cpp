#include "desktop/design/SimValueManager.h"

#include <algorithm>

namespace desktop {

void SimValueManager::ReleaseSimValues(long solutionID, bool all) {
  auto const ofSolution = m_datasets.find(solutionID);
  if (ofSolution == m_datasets.end())
    return;
  std::erase_if(ofSolution->second, [all](Dataset const & dataset) { return all || dataset.value->OKtoDelete(); });
  if (ofSolution->second.empty())
    m_datasets.erase(ofSolution);
}

ValueBase * SimValueManager::GetDynamicDatasetValue(long solutionID, SimValueContext const & context,
                                                    ValueBase const * first, ValueBase const * second) {
  if (!first || !second)
    return nullptr;
  ValueState const state = DatasetValue::StateOf(first->GetValueState(), second->GetValueState());
  if (state.parameterType == val::kNotAQuantity)
    return nullptr;
  std::vector<Dataset> & datasets = m_datasets[solutionID];
  auto const known = std::find_if(datasets.begin(), datasets.end(), [&](Dataset const & dataset) {
    return dataset.context == context && dataset.value->GetFirst() == first && dataset.value->GetSecond() == second &&
           dataset.value->GetValueState() == state;
  });
  if (known != datasets.end())
    return known->value.get();
  datasets.push_back({context, std::make_unique<DatasetValue>(first, second, state)});
  return datasets.back().value.get();
}

ValueBase * SimValueManager::GetDynamicDatasetValueForValidation(ValueState const & first, ValueState const & second) {
  ValueState const state = DatasetValue::StateOf(first, second);
  if (state.parameterType == val::kNotAQuantity)
    return nullptr;
  auto const known = std::find_if(m_validationDatasets.begin(), m_validationDatasets.end(),
                                  [&](auto const & dataset) { return dataset->GetValueState() == state; });
  if (known != m_validationDatasets.end())
    return known->get();
  m_validationDatasets.push_back(std::make_unique<DatasetValue>(nullptr, nullptr, state));
  return m_validationDatasets.back().get();
}

std::size_t SimValueManager::GetDatasetCount(long solutionID) const {
  auto const ofSolution = m_datasets.find(solutionID);
  return ofSolution == m_datasets.end() ? 0 : ofSolution->second.size();
}

} // namespace desktop
