#include "tests/desktop/project/FilesProduct.h"

namespace support {

BaseSolutionVariation * FilesSolution::CreateSolutionVariation(AString const & variation, long version) {
  return EnterNewVariation(new FakeVariation(this, variation, version));
}

BaseSolution * FilesSetup::CreateSolution(long id, long version) {
  return BecomeDefaultIfFirst(new FilesSolution(*this, id, version));
}

BaseSolution * FilesSetup::CreateSolution(AString const & name) {
  auto * const solution = new FilesSolution(*this, -1, 0);
  solution->SetSolutionName(name);
  return BecomeDefaultIfFirst(solution);
}

BaseSimulationSetup * FilesManager::CreateSimulationSetup(long id, long version, AString const & typeName) {
  if (typeName == BaseSimulationSetup::kBaseSimSetupType)
    return CreateImportedSetup(id, version);
  return new FilesSetup(this, id, version);
}

BaseSimulationSetup * FilesManager::CreateSimulationSetup(AString const & name, AString const &) {
  return new FilesSetup(this, name);
}

BaseSimulationSetup * FilesManager::CreateSimulationSetup(ISimulationSetup const * source) {
  return new FilesSetup(this, source);
}

std::unique_ptr<desktop::ProductSolutionManager> FilesProduct::MakeManager(IDesign * design) const {
  return std::make_unique<FilesManager>(design);
}

} // namespace support
