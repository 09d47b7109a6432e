#include "solutionmanager/extraction/CentralizedUpdateSolutionInstance.h"

#include "basekit/diag/IMemoryTimeProfiler.h"
#include "plotkit/simvalue/SolutionLoadDefinition.h"

CentralizedUpdateSolutionInstance::~CentralizedUpdateSolutionInstance() = default;

long CentralizedUpdateSolutionInstance::GetVersionID() const { return m_instance->GetVersionID(); }

IDerivedDataDefinition * CentralizedUpdateSolutionInstance::GetDerivedDataDefinition() {
  return new SolutionLoadDefinition(m_designID, m_solutionID, m_instance->GetDerivedDataDefinition());
}

void CentralizedUpdateSolutionInstance::GetMajorVariableValues(VariableValues & values) const {
  m_instance->GetMajorVariableValues(values);
}

bool CentralizedUpdateSolutionInstance::LoadInstance(AutoVectorOfClonablePtrs<IExtendedLoadInfo> const & infos,
                                                     IProgressMonitor * progress) {
  MemoryTimeProfilerScope const span("CentralizedUpdateSolutionInstance::LoadInstance");
  return m_instance->LoadInstance(infos, progress);
}

void CentralizedUpdateSolutionInstance::NotifyDoneUsingInstance() { m_instance->NotifyDoneUsingInstance(); }

void CentralizedUpdateSolutionInstance::GetImmediateParentLoadDefinitions(
    AutoVectorOfClonablePtrs<IDerivedDataDefinition> & definitions, IProgressMonitor * progress) {
  AutoVectorOfClonablePtrs<IDerivedDataDefinition> ofProduct;
  m_instance->GetImmediateParentLoadDefinitions(ofProduct, progress);
  for (std::size_t i = 0; i < ofProduct.size(); ++i)
    definitions.push_back(
        new SolutionLoadDefinition(m_designID, m_solutionID, ofProduct[i] ? ofProduct[i]->Clone() : nullptr));
}
