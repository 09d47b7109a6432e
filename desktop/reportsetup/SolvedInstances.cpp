#include "desktop/reportsetup/SolvedInstances.h"

#include "plotkit/simvalue/SolutionLoadDefinition.h"
#include "solutionmanager/extraction/SolutionInstanceManager.h"

namespace desktop {

SolvedInstances::SolvedInstances(SolutionInstanceManager const & manager, long designID, long solutionID,
                                 IProgressMonitor * progress) {
  SolutionLoadDefinition const definition(designID, solutionID, nullptr);
  std::vector<IContextedDerivedDataInstance *> instances;
  manager.GetAvailableInstances(instances, &definition, progress);
  for (IContextedDerivedDataInstance * const instance : instances) {
    std::unique_ptr<IContextedDerivedDataInstance> owned(instance);
    VariableValues values;
    instance->GetMajorVariableValues(values);
    m_instances.try_emplace(values, std::move(owned));
  }
}

IContextedDerivedDataInstance * SolvedInstances::Find(VariableValues const & values) const {
  if (m_instances.empty())
    return nullptr;
  VariableValues wanted;
  for (VariableValues::Entry const & entry : m_instances.begin()->first)
    if (Value const * const value = values.Find(entry.name))
      wanted.Set(entry.name, *value);
  auto const found = m_instances.find(wanted);
  return found == m_instances.end() ? nullptr : found->second.get();
}

} // namespace desktop
