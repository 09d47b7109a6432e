#include "solutionmanager/transfer/BlocksToTakeOut.h"

#include "basekit/diag/Assert.h"
#include "basekit/diag/Debug.h"
#include "basekit/value/VariableValues.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionVariation.h"
#include "solutionmanager/store/SolutionFileManager.h"

void BlocksToTakeOut::Add(AString const & realName, wchar_t const * trace) {
  bool found = false;
  AString const internalName = m_files.GetInternalBlockName(found, realName);
  if (!found)
    return;
  KvroDebug(L"SolutionManager", 1, trace, internalName);
  m_names.insert(internalName);
}

// A convergence block belongs to the setup, so that its first solution speaks for all.
void BlocksToTakeOut::AddOtherVariations(std::map<long, BaseSimulationSetup *> const & setups,
                                         AString const & variation) {
  for (auto const & [id, setup] : setups) {
    bool isFirst = true;
    for (auto const & [solutionID, solution] : setup->GetSolutions()) {
      AddOthersOf(*setup, *solution, isFirst, variation);
      isFirst = false;
    }
  }
}

void BlocksToTakeOut::AddOthersOf(BaseSimulationSetup const & setup, BaseSolution const & solution,
                                  bool withConvergence, AString const & variation) {
  std::vector<BaseSolutionVariation *> variations;
  solution.GetAvailableVariations(variations, id::invalidID);
  for (BaseSolutionVariation const * const other : variations) {
    if (VariableValues::AreVariationKeysEqual(other->GetDesignVariationKey(), variation))
      continue;
    SolutionVariationKey const key = other->GetSolutionVariationKey();
    Add(key.Pack(), L"Found variation block %s to delete for export-design-point\n");
    if (withConvergence)
      Add(setup.GetConvBlockName(key.GetDesignVariationKey(), key.GetVersionIDKey()),
          L"Found convergence block %s to delete for export-design-point\n");
  }
}

void BlocksToTakeOut::AddNamedByProduct(std::vector<AString> const & realNames) {
  for (AString const & realName : realNames) {
    bool foundName = false;
    m_files.GetInternalBlockName(foundName, realName);
    KVRO_ASSERT(foundName);
    Add(realName, L"Products returned block %s to delete for export-design-point\n");
  }
}
