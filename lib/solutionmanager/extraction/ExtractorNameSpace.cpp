// Which names the expressions of a solution's reports may use.

#include "CoreInterfaces/desktop/IDesign.h"
#include "CoreInterfaces/desktop/IKitDesktop.h"
#include "CoreInterfaces/solution/ISimulationSetup.h"
#include "basekit/value/VariableNameSpace.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionManager.h"

Variable * BaseSimDataExtractor::ResolveVariable(AString const & name) const {
  IDesign const * const design = GetBaseSolutionMgr()->GetIDesign();
  IVariableServer const * const server = design ? design->GetVariableServer() : nullptr;
  return server ? server->ResolveVariable(name) : nullptr;
}

void BaseSimDataExtractor::SetupVariableNameSpace(VariableNameSpace & nameSpace) const {
  if (!mBaseSolution || mBaseSolution->IsDeleted())
    return;
  nameSpace.ClearVariablesAndServers();
  nameSpace.SetVariableSearchFlags(VariableSearchFlags()
                                       .Set(VariableSearchFlag::SearchIntrinsicVariables)
                                       .Set(VariableSearchFlag::AppendToPreviousVNS));
  // An imported solution has no design variables, only the axes of its data; there are no sweeps to name them.
  if (mBaseSolution->GetISimulationSetup()->IsImportedSolution(static_cast<int>(mBaseSolution->GetID())))
    return;
  IDesign const * const design = GetBaseSolutionMgr()->GetIDesign();
  if (!design)
    return;
  design->SetupVariableNameSpace(nameSpace, true);
  design->SetupVNSForPostProcessing(nameSpace);
}

void BaseSimDataExtractor::SetupVNSForPostProcessing(VariableNameSpace & nameSpace) const {
  SetupVariableNameSpace(nameSpace);
  IKitDesktop const * const desktop = GetIKitDesktop();
  IDesign const * const design = GetBaseSolutionMgr()->GetIDesign();
  if (desktop && design && desktop->UsesPostProcessingVariables())
    design->SetupVNSForPostProcessing(nameSpace);
}
