#include "desktop/reportsetup/SolvedInstances.h"

#include "basekit/value/Variable.h"
#include "plotkit/simvalue/SolutionLoadDefinition.h"
#include "solutionmanager/extraction/SolutionInstanceManager.h"

namespace desktop {

SolvedInstances::SolvedInstances(SolutionInstanceManager const & manager, long designID, long solutionID,
                                 IProgressMonitor * progress) {
  SolutionLoadDefinition const definition(designID, solutionID, nullptr);
  std::vector<Variable *> variables;
  manager.GetMajorVariables(variables, &definition, nullptr);
  for (Variable const * const variable : variables)
    m_names.push_back(variable->GetName());
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
  VariableValues wanted;
  for (AString const & name : m_names)
    if (Value const * const value = values.Find(name))
      wanted.Set(name, *value);
  auto const found = m_instances.find(wanted);
  return found == m_instances.end() ? nullptr : found->second.get();
}

} // namespace desktop
