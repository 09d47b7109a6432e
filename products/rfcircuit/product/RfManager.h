#pragma once

#include "desktop/product/ProductSolutionManager.h"

namespace rfcircuit {

/// The solved data of one circuit.  Results that are no blocks lie in the folder "<design>.rf".
class RfManager : public desktop::ProductSolutionManager {
public:
  static AString const kProductName;

  using ProductSolutionManager::ProductSolutionManager;

  BaseSimulationSetup * CreateSimulationSetup(ISimulationSetup const * source) override;
  BaseSimulationSetup * CreateSimulationSetup(AString const & name, AString const & typeName) override;

protected:
  /// Imported setups, which are plain ones, stay plain.
  BaseSimulationSetup * CreateSimulationSetup(long id, long version, AString const & typeName) override;
  AString GetDesignResultsFolderName() const override;

private:
  void SetupConvDefs() override;
};

} // namespace rfcircuit
