#include "apps/solvedesk/ProjectTree.h"

#include "basekit/text/CaseFolding.h"
#include "basekit/value/variation/VariationText.h"
#include "desktop/project/Session.h"
#include "solutionmanager/address/SolutionVariationKey.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionVariation.h"

#include <algorithm>
#include <map>

namespace solvedesk {
namespace {

void SortByPoint(std::vector<VariationState> & states) {
  std::map<AString, VariationText> texts;
  for (VariationState const & state : states)
    texts.try_emplace(state.variation, state.variation);
  std::stable_sort(states.begin(), states.end(), [&texts](VariationState const & a, VariationState const & b) {
    constexpr int kLess = 1;
    if (a.variation == b.variation)
      return a.version < b.version;
    int const order = VariationText::Compare(texts.at(a.variation), texts.at(b.variation));
    return order == 0 ? a.variation < b.variation : order == kLess;
  });
}

// Of each point one version tells how it stands: the valid one that has data, else the newest.
void MarkFormer(std::vector<VariationState> & states) {
  std::map<AString, VariationState *> standing;
  for (VariationState & state : states) {
    VariationState *& best = standing[state.variation];
    auto const rank = [](VariationState const & any) { return (any.hasData ? 2 : 0) + (any.isValid ? 1 : 0); };
    if (!best || rank(state) >= rank(*best))
      best = &state;
  }
  for (VariationState & state : states)
    state.isFormer = standing.at(state.variation) != &state;
  std::erase_if(states, [](VariationState const & state) { return state.isFormer && !state.hasData; });
}

} // namespace

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
    state.version = variation->GetVersionID();
    state.isValid = variation->IsVariationValid();
    state.hasData = solution.HasSolutionData(state.variation, variation->GetVersionID());
    state.isSaved = state.hasData && m_committed.count(variation->GetSolutionVariationKey().Pack()) > 0;
    state.object = variation;
    states.push_back(state);
  }
  SortByPoint(states);
  MarkFormer(states);
  return states;
}

SolutionCounts Count(std::vector<VariationState> const & variations) {
  SolutionCounts counts;
  for (VariationState const & state : variations) {
    counts.former += state.isFormer ? 1 : 0;
    if (state.isFormer)
      continue;
    counts.all += 1;
    counts.valid += state.isValid ? 1 : 0;
    counts.withData += state.hasData ? 1 : 0;
    counts.saved += state.isSaved ? 1 : 0;
  }
  return counts;
}

} // namespace solvedesk
