#pragma once

#include "CoreInterfaces/ReportForward.h"

#include <vector>

class BaseSolutionManager;
class IContextedDerivedDataInstance;
class IDerivedDataDefinition;
class ISimDataExtractor2;

/// The view of derived data by solution identifier that the post-processing framework has of a manager.  One per
/// manager, which owns it.  Only solutions whose extractor is an ISimDataExtractor2 have such data.
class SolutionInstanceManager {
public:
  explicit SolutionInstanceManager(BaseSolutionManager * manager) : m_solutionManager(manager) {}
  BaseSolutionManager * GetSolutionManager() const { return m_solutionManager; }

  /// id::invalidID for a definition that is not of one of the manager's solutions.
  long GetVersionIDForPostprocessing(IDerivedDataDefinition const * definition) const;
  /// Appends; nothing for such a definition.
  void GetMajorVariables(std::vector<Variable *> & variables, IDerivedDataDefinition const * definition,
                         SimValueContext const * context) const;
  /// Appends new instances, which the caller owns.
  void GetAvailableInstances(std::vector<IContextedDerivedDataInstance *> & instances,
                             IDerivedDataDefinition const * definition, IProgressMonitor * progress) const;

private:
  ISimDataExtractor2 * GetISimDataExtractor2ForSolutionID(long solutionID) const;
  template <class Ask> void AskExtractor(IDerivedDataDefinition const * definition, Ask ask) const;

  BaseSolutionManager * m_solutionManager;
};
