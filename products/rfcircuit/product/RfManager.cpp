#include "products/rfcircuit/product/RfManager.h"

#include "products/rfcircuit/product/RfImportedSolution.h"
#include "products/rfcircuit/product/RfSetup.h"
#include "products/rfcircuit/product/SweepColumns.h"

namespace rfcircuit {

AString const RfManager::kProductName(L"rfcircuit");

BaseSimulationSetup * RfManager::CreateSimulationSetup(ISimulationSetup const * source) {
  return new RfSetup(this, source);
}

BaseSimulationSetup * RfManager::CreateSimulationSetup(AString const & name, AString const &) {
  return new RfSetup(this, name);
}

BaseSimulationSetup * RfManager::CreateSimulationSetup(long id, long version, AString const & typeName) {
  if (typeName == BaseSimulationSetup::kBaseSimSetupType)
    return CreateImportedSetup(id, version);
  return new RfSetup(this, id, version);
}

desktop::ImportedSolution * RfManager::CreateImportedSolution(BaseSimulationSetup const & setup, long id) {
  return new RfImportedSolution(setup, id);
}

void RfManager::SetupConvDefs() { AddSetupConvDef(SweepColumns::MakeDefinitions()); }

AString RfManager::GetDesignResultsFolderName() const { return GetDesignName() + L".rf"; }

} // namespace rfcircuit
