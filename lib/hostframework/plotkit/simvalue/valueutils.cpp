#include "plotkit/simvalue/valueutils.h"

#include "CoreInterfaces/desktop/IDesign.h"
#include "CoreInterfaces/solution/ISolutionMgr.h"

IVariableServer * valueutils::GetProjectVariableServer(ISolutionMgr const * manager) {
  IDesign const * const design = manager ? manager->GetIDesign() : nullptr;
  return design ? design->GetProjectVariableServer() : nullptr;
}
