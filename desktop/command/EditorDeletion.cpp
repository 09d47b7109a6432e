// Deletion of solved data.
#include "basekit/value/VariableValues.h"
#include "desktop/Error.h"
#include "desktop/command/Edit.h"
#include "desktop/command/VariationDeletion.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/project/Session.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionVariation.h"

#include <set>

namespace desktop {

namespace {

// The same point may be written in several ways.
std::set<AString> TextsOf(BaseSolution const & solution, AString const & variation) {
  std::set<AString> texts;
  for (auto const & [index, entry] : solution.GetVariations())
    if (VariableValues::AreVariationKeysEqual(entry->GetDesignVariationKey(), variation))
      texts.insert(entry->GetDesignVariationKey());
  return texts;
}

} // namespace

void Editor::DeleteSolution(AString const & name) {
  BaseSolution const & solution = FindSolution(name);
  auto const setup = m_session.GetManager().GetSetups().find(solution.GetBaseSimulationSetup().GetID());
  AString const fullName = solution.GetGlobalSolutionName();
  Run(AString(L"delete --solution '") + fullName + L"'", [&](Edit & edit) {
    edit.Tell(AString(L"solution ") + fullName,
              AString::Format(solution.size() == 1 ? L"%d variation" : L"%d variations", solution.size()), L"deleted");
    setup->second->DeleteSolution(solution.GetID(), edit.command.get());
  });
}

int Editor::DeleteVariation(AString const & variation, AString const & setupName) {
  std::vector<std::pair<BaseSolution *, AString>> doomed;
  BaseSimulationSetup const * const only = setupName.empty() ? nullptr : &FindSetup(setupName);
  for (auto const & [id, setup] : m_session.GetManager().GetSetups()) {
    if (only && setup != only)
      continue;
    for (auto const & [solutionID, solution] : setup->GetSolutions())
      for (AString const & text : TextsOf(*solution, variation))
        doomed.emplace_back(solution, text);
  }
  if (doomed.empty())
    throw Error(ErrorKind::kUsage,
                AString(L"'") + variation + L"': nothing is solved at this variation; `info` lists what is");
  int blocks = 0;
  Run(AString(L"delete --variation '") + variation + L"'", [&](Edit & edit) {
    edit.changesResults = true;
    for (auto const & [solution, text] : doomed) {
      auto * const deletion = new VariationDeletion(*solution, text, m_failure);
      edit.command->AddDeltaState(deletion);
      blocks += deletion->CountBlocks();
      edit.Tell(AString(L"variation ") + text + L" of " + solution->GetGlobalSolutionName(), L"solved", L"deleted");
    }
  });
  return blocks;
}

} // namespace desktop
