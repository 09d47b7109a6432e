#include "desktop/command/VariationTexts.h"

#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/model/BaseSolutionVariation.h"

#include <algorithm>
#include <map>
#include <set>

namespace desktop {

namespace {

using VersionsOfText = std::map<AString, std::map<BaseSolution *, std::vector<long>>>;

// Deleted setups and solutions too: undo may bring them back.
void Gather(BaseSolutionManager::SetupMap const & setups, VersionsOfText & texts) {
  for (auto const & [setupID, setup] : setups)
    for (auto const * const solutions : {&setup->GetSolutions(), &setup->GetDeletedSolutions()})
      for (auto const & [solutionID, solution] : *solutions)
        for (auto const & [index, variation] : solution->GetVariations())
          texts[variation->GetDesignVariationKey()][solution].push_back(variation->GetVersionID());
}

} // namespace

VariationTexts::VariationTexts(BaseSolutionManager & manager,
                               std::function<AString(AString const & variation)> const & newText)
    : m_manager(manager) {
  VersionsOfText texts;
  Gather(manager.GetSetups(), texts);
  Gather(manager.GetDeletedSetups(), texts);
  std::set<AString> taken;
  for (auto const & [text, versions] : texts)
    taken.insert(text);
  for (auto const & [text, versions] : texts) {
    AString const other = newText(text);
    if (other == text || !taken.insert(other).second)
      continue;
    m_texts.push_back({text, other, {versions.begin(), versions.end()}});
  }
}

void VariationTexts::Exchange() {
  std::vector<AString> arriving;
  for (Text const & text : m_texts)
    arriving.push_back(text.other);
  m_manager.IssueVariationIDs(arriving);
  for (Text & text : m_texts) {
    m_manager.GetSolutionFileManager().VariationKeyChanged(text.present, text.other);
    for (auto const & [solution, versions] : text.versions) {
      // Its blocks bear the other name by now, so none of them goes.
      solution->DeleteSolutionVariation(text.present, nullptr);
      for (long const version : versions)
        solution->EnsureVariation(text.other, version);
    }
    std::swap(text.present, text.other);
  }
}

} // namespace desktop
