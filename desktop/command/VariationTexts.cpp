#include "desktop/command/VariationTexts.h"

#include "desktop/command/StatesOfVersions.h"
#include "desktop/product/IResultReceiver.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/model/BaseSolutionVariation.h"

#include <map>
#include <utility>
#include <vector>

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

void RewriteChangedStates(VersionsOfText const & texts, std::map<AString, AString> const & renamed) {
  std::map<BaseSolution *, std::set<long>> changed;
  for (auto const & [text, other] : renamed)
    for (auto const & [solution, versions] : texts.at(text))
      changed[solution].insert(versions.begin(), versions.end());
  for (auto const & [solution, versions] : changed)
    RewriteStates(*solution, {versions.begin(), versions.end()});
}

} // namespace

VariationTexts::VariationTexts(BaseSolutionManager & manager, TextsChange const & change)
    : m_manager(manager), m_next(change) {}

void VariationTexts::Exchange() {
  VersionsOfText texts;
  Gather(m_manager.GetSetups(), texts);
  Gather(m_manager.GetDeletedSetups(), texts);
  std::map<AString, AString> renamed;
  std::set<AString> untouched;
  std::set<AString> taken;
  for (auto const & [text, versions] : texts)
    taken.insert(text);
  for (auto const & [text, versions] : texts) {
    AString const other = m_untouched.count(text) ? text : m_next.Apply(text);
    if (!taken.insert(other).second)
      untouched.insert(text);
    else
      renamed.emplace(text, other);
  }
  std::vector<AString> arriving;
  for (auto const & [text, other] : renamed)
    arriving.push_back(other);
  m_manager.IssueVariationIDs(arriving);
  std::set<BaseSolution *> solutions;
  for (auto const & [text, other] : renamed) {
    m_manager.GetSolutionFileManager().VariationKeyChanged(text, other);
    for (auto const & [solution, versions] : texts.at(text))
      solutions.insert(solution);
  }
  for (BaseSolution * const solution : solutions)
    solution->RenameVariations(renamed);
  for (BaseSolution * const solution : solutions)
    if (auto * const receiver = dynamic_cast<IResultReceiver *>(solution))
      receiver->TextsChanged(renamed);
  RewriteChangedStates(texts, renamed);
  m_untouched = std::move(untouched);
  m_next = m_next.Inverse();
}

} // namespace desktop
