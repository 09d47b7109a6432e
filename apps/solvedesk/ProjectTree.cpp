#include "apps/solvedesk/ProjectTree.h"

#include "basekit/text/CaseFolding.h"
#include "desktop/project/Session.h"
#include "solutionmanager/address/SolutionVariationKey.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionVariation.h"

namespace solvedesk {

std::size_t VariationStates::HashOfName::operator()(AString const & name) const {
  return static_cast<std::size_t>(text::HashNoCase(name.View()));
}

VariationStates::VariationStates(desktop::Session const & session) {
  auto const names = session.GetCommittedBlocks();
  m_committed.insert(names.begin(), names.end());
}

std::vector<VariationState> VariationStates::Of(BaseSolution const & solution) const {
  std::vector<VariationState> states;
  for (auto const & [index, variation] : solution.GetVariations()) {
    VariationState state;
    state.variation = variation->GetDesignVariationKey();
    state.isValid = variation->IsVariationValid();
    state.hasData = solution.HasSolutionData(state.variation, variation->GetVersionID());
    state.isSaved = state.hasData && m_committed.count(variation->GetSolutionVariationKey().Pack()) > 0;
    state.object = variation;
    states.push_back(state);
  }
  return states;
}

SolutionCounts Count(std::vector<VariationState> const & variations) {
  SolutionCounts counts;
  for (VariationState const & state : variations) {
    counts.all += 1;
    counts.valid += state.isValid ? 1 : 0;
    counts.withData += state.hasData ? 1 : 0;
    counts.saved += state.isSaved ? 1 : 0;
  }
  return counts;
}

} // namespace solvedesk
