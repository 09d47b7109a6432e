#include "products/rfcircuit/product/RfImportedSolution.h"

#include "products/rfcircuit/product/RfExtractor.h"
#include "products/rfcircuit/product/RfManager.h"
#include "products/rfcircuit/product/RfVariation.h"

namespace rfcircuit {

RfImportedSolution::RfImportedSolution(BaseSimulationSetup const & setup, long id) : ImportedSolution(setup, id) {
  SetProductName(RfManager::kProductName);
  SetExtractor(new RfExtractor(&GetSolutionMgr()->ForEdit(), this));
}

BaseSolutionVariation * RfImportedSolution::CreateSolutionVariation(AString const & variation, long version) {
  return EnterNewVariation(new RfVariation(this, variation, version));
}

} // namespace rfcircuit
