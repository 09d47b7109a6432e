#include "solutionmanager/convergence/CBaseConvergenceData.h"
#include "solutionmanager/model/BaseSolutionManager.h"

SetupConvDef const * FindConvDefsForSetup(BaseSolutionManager const * manager, AString const & setupName) {
  return manager ? manager->GetConvDefsForSetup(setupName) : nullptr;
}
