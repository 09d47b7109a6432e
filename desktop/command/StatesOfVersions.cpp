#include "desktop/command/StatesOfVersions.h"

#include "basekit/io/CBlock.h"
#include "solutionmanager/address/SolutionVariationKey.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/model/BaseSolutionVariation.h"

namespace desktop {

namespace {

AString const kStates(L"States");

void RewriteStates(BaseSolution const & solution, long version) {
  BaseSolutionManager const & manager = *solution.GetSolutionMgr();
  AString const name = SolutionVariationKey(solution.GetBaseSimulationSetup().GetID(),
                                            SolutionVariationKey::kSolutionDefinitionKey, solution.GetID(), version)
                           .Pack();
  io::CBlock former(name);
  if (manager.LoadSingleBlock(former) != CStreamioLibrary::kLibSuccess)
    return;
  io::CBlock states(kStates);
  for (auto const & entry : solution.GetVariations())
    if (entry.second->GetVersionID() == version)
      BaseSolution::WriteSolutionVariation(states, entry, &manager);
  io::CBlock block(name);
  for (auto const & item : former) {
    if (item->Name() == kStates)
      block << states;
    else
      block << item;
  }
  manager.SaveSingleBlock(block);
}

void WritePresent(BaseSolution const & solution) {
  io::CBlock block(solution.GetBlockDefinitionName());
  if (solution.WriteDefinitionBlock(block))
    solution.GetSolutionMgr()->SaveSingleBlock(block);
}

} // namespace

void RewriteStates(BaseSolution const & solution, std::vector<long> const & versions) {
  for (long const version : versions) {
    if (version == solution.GetVersionID())
      WritePresent(solution);
    else
      RewriteStates(solution, version);
  }
}

} // namespace desktop
