#include "apps/solvedesk/ProjectTree.h"

#include "desktop/product/ProductSolutionManager.h"
#include "desktop/project/Session.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionVariation.h"
#include "solutionmanager/store/SolutionFileManager.h"

#include <algorithm>
#include <list>

namespace solvedesk {

VariationStates::VariationStates(desktop::Session & session) : m_session(session) {
  std::list<AString> names;
  SolutionFileManager const & file = m_session.GetManager().GetSolutionFileManager();
  // A library that has no private file has nothing unsaved.
  if (file.GetLibraryForDirectAccess().PrivIndexKeyList(names) == CStreamioLibrary::kLibSuccess)
    m_unsavedBlocks.assign(names.begin(), names.end());
  std::sort(m_unsavedBlocks.begin(), m_unsavedBlocks.end(), AString::NoCaseLess());
}

bool VariationStates::IsCommitted(AString const & realName) const {
  bool found = false;
  AString const internalName = m_session.GetManager().GetSolutionFileManager().GetInternalBlockName(found, realName);
  return found &&
         !std::binary_search(m_unsavedBlocks.begin(), m_unsavedBlocks.end(), internalName, AString::NoCaseLess());
}

std::vector<VariationState> VariationStates::Of(BaseSolution const & solution) const {
  std::vector<VariationState> states;
  for (auto const & [index, variation] : solution.GetVariations()) {
    VariationState state;
    state.variation = variation->GetDesignVariationKey();
    state.isValid = variation->IsVariationValid();
    state.hasData = solution.HasSolutionData(state.variation, variation->GetVersionID());
    state.isSaved = state.hasData && IsCommitted(variation->GetSolutionVariationKey().Pack());
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
