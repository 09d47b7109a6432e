#include "products/command/product/CommandManager.h"

#include "products/command/product/CommandSetup.h"

namespace command {

AString const CommandManager::kProductName(L"command");

BaseSimulationSetup * CommandManager::CreateSimulationSetup(ISimulationSetup const * source) {
  return new CommandSetup(this, source);
}

BaseSimulationSetup * CommandManager::CreateSimulationSetup(AString const & name, AString const &) {
  return new CommandSetup(this, name);
}

BaseSimulationSetup * CommandManager::CreateSimulationSetup(long id, long version, AString const & typeName) {
  if (typeName == BaseSimulationSetup::kBaseSimSetupType)
    return ProductSolutionManager::CreateSimulationSetup(id, version, typeName);
  return new CommandSetup(this, id, version);
}

AString CommandManager::GetDesignResultsFolderName() const { return GetDesignName() + L".run"; }

} // namespace command
