#include "products/command/product/CommandSolution.h"

#include "products/command/product/CommandExtractor.h"
#include "products/command/product/CommandManager.h"
#include "products/command/product/CommandVariation.h"

namespace command {

AString const CommandSolution::kName(L"Result");

CommandSolution::CommandSolution(BaseSimulationSetup const & setup, long id, long version)
    : BaseSolution(setup, id, version) {
  SetProductName(CommandManager::kProductName);
  SetSolutionName(kName);
  SetExtractor(new CommandExtractor(&GetSolutionMgr()->ForEdit(), this));
}

BaseSolutionVariation * CommandSolution::CreateSolutionVariation(AString const & variation, long version) {
  return EnterNewVariation(new CommandVariation(this, variation, version));
}

} // namespace command
