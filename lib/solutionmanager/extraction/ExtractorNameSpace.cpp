// Which names the expressions of a solution's reports may use.

#include "CoreInterfaces/desktop/IDesign.h"
#include "CoreInterfaces/desktop/IDesignEditor.h"
#include "CoreInterfaces/desktop/IKitDesktop.h"
#include "CoreInterfaces/solution/ISimulationSetup.h"
#include "basekit/value/VariableNameSpace.h"
#include "plotkit/sweep/SweepBase.h"
#include "solutionmanager/extraction/BaseSimDataExtractor.h"
#include "solutionmanager/extraction/SweepList.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionManager.h"

Variable * BaseSimDataExtractor::ResolveVariable(AString const & name) const {
  IDesign const * const design = GetBaseSolutionMgr()->GetIDesign();
  IDesignEditor const * const editor = design ? design->GetDesignEditor() : nullptr;
  IVariableServer const * const server = editor ? editor->GetVariableServer() : nullptr;
  return server ? server->ResolveVariable(name) : nullptr;
}

void BaseSimDataExtractor::SetupVariableNameSpace(VariableNameSpace & nameSpace) const {
  if (!mBaseSolution || mBaseSolution->IsDeleted())
    return;
  nameSpace.ClearVariablesAndServers();
  nameSpace.SetVariableSearchFlags(VariableSearchFlags()
                                       .Set(VariableSearchFlag::SearchIntrinsicVariables)
                                       .Set(VariableSearchFlag::AppendToPreviousVNS));
  if (mBaseSolution->GetISimulationSetup()->IsImportedSolution(static_cast<int>(mBaseSolution->GetID()))) {
    AddAxesOfData(nameSpace);
    return;
  }
  IDesign const * const design = GetBaseSolutionMgr()->GetIDesign();
  if (!design)
    return;
  design->SetupVariableNameSpace(nameSpace, true);
  design->SetupVNSForPostProcessing(nameSpace);
}

void BaseSimDataExtractor::AddAxesOfData(VariableNameSpace & nameSpace) const {
  // An imported solution has no design variables, only the axes of its data.  A product may make its sweeps when it is
  // asked for them.
  std::vector<SweepBase *> sweeps;
  GetSweeps(sweeps, SweepList::kAllReportTypes, nullptr, rep::DisplayType{}, false);
  for (SweepBase const * const sweep : mSweeps)
    nameSpace.AddVariable(sweep->GetVariable(0));
}

void BaseSimDataExtractor::SetupVNSForPostProcessing(VariableNameSpace & nameSpace) const {
  SetupVariableNameSpace(nameSpace);
  IKitDesktop const * const desktop = GetIKitDesktop();
  IDesign const * const design = GetBaseSolutionMgr()->GetIDesign();
  if (desktop && design && desktop->UsesPostProcessingVariables())
    design->SetupVNSForPostProcessing(nameSpace);
}
