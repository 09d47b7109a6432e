#pragma once

#include "desktop/product/ProductSolutionManager.h"

namespace command {

/// What one program solved.  Results that are no blocks would lie in the folder "<design>.run".
class CommandManager : public desktop::ProductSolutionManager {
public:
  static AString const kProductName;

  using ProductSolutionManager::ProductSolutionManager;

  BaseSimulationSetup * CreateSimulationSetup(ISimulationSetup const * source) override;
  BaseSimulationSetup * CreateSimulationSetup(AString const & name, AString const & typeName) override;

protected:
  /// Imported setups, which are plain ones, stay plain.
  BaseSimulationSetup * CreateSimulationSetup(long id, long version, AString const & typeName) override;
  AString GetDesignResultsFolderName() const override;
};

} // namespace command
