#pragma once

#include "basekit/value/AutoVectorOfClonablePtrs.h"
#include "basekit/value/VariableValues.h"
#include "plotkit/simvalue/IContextedDerivedDataInstance.h"

#include <map>
#include <memory>
#include <vector>

class IProgressMonitor;
class SolutionInstanceManager;

namespace desktop {

/// The solved instances of one solution by the values of their variables, as the manager's view of derived data gives
/// them.
class SolvedInstances {
public:
  SolvedInstances(SolutionInstanceManager const & manager, long designID, long solutionID, IProgressMonitor * progress);
  bool empty() const { return m_instances.empty(); }
  /// Null when nothing is solved at these values.  Those of other variables than the major ones play no part; an
  /// instance that lacks one of these, as from before it was added, is none.
  IContextedDerivedDataInstance * Find(VariableValues const & values) const;

private:
  std::vector<AString> m_names; ///< of the major variables
  std::map<VariableValues, std::unique_ptr<IContextedDerivedDataInstance>, VariableValues::LessVariableValues>
      m_instances;
};

/// One of them in memory, for the span of its life.
class LoadedInstance {
public:
  LoadedInstance(IContextedDerivedDataInstance & instance, AutoVectorOfClonablePtrs<IExtendedLoadInfo> const & infos,
                 IProgressMonitor * progress)
      : m_instance(instance), m_isLoaded(instance.LoadInstance(infos, progress)) {}
  ~LoadedInstance() { m_instance.NotifyDoneUsingInstance(); }
  LoadedInstance(LoadedInstance const &) = delete;
  LoadedInstance & operator=(LoadedInstance const &) = delete;

  bool IsLoaded() const { return m_isLoaded; }

private:
  IContextedDerivedDataInstance & m_instance;
  bool m_isLoaded;
};

} // namespace desktop
