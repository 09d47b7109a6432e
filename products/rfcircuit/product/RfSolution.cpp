#include "products/rfcircuit/product/RfSolution.h"

#include "basekit/id/Id.h"
#include "products/rfcircuit/product/RfExtractor.h"
#include "products/rfcircuit/product/RfManager.h"
#include "products/rfcircuit/product/RfVariation.h"
#include "products/rfcircuit/product/SweepSettings.h"
#include "solutionmanager/definition/FrequencySolutionDefinition.h"

namespace rfcircuit {

AString const RfSolution::kName(L"Sweep");
AString const RfSolution::kTouchstone(L"Touchstone");
AString const RfSolution::kNodeVoltages(L"NodeVoltages");
AString const RfSolution::kRenormalized(L"Renormalized");
AString const RfSolution::kPasses(L"Passes");

RfSolution::RfSolution(BaseSimulationSetup const & setup, long id, long version)
    : BaseSolution(setup, id, version), ResultStoreOwner(static_cast<BaseSolution &>(*this)) {
  AddStore(kTouchstone, L".snp", m_touchstone);
  AddStore(kNodeVoltages, L".csv", m_nodeVoltages);
  AddStore(kRenormalized, m_renormalized);
  AddStore(kPasses, m_passes);
  SetProductName(RfManager::kProductName);
  SetSolutionName(kName);
  SetExtractor(new RfExtractor(&GetSolutionMgr()->ForEdit(), this));
}

void RfSolution::SetSweep(rf::FrequencySweep const & sweep) {
  if (FrequencySolutionDefinition * const definition = GetFrequencySolutionDefinition(id::invalidID))
    DescribeSweep(sweep, *definition);
}

BaseSolutionVariation * RfSolution::CreateSolutionVariation(AString const & variation, long version) {
  return EnterNewVariation(new RfVariation(this, variation, version));
}

} // namespace rfcircuit
