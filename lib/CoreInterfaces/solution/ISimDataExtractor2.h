#pragma once

#include "CoreInterfaces/ReportForward.h"
#include "basekit/id/Id.h"

#include <vector>

class IContextedSolutionInstance;
class IDerivedDataDefinition;

/// An extractor whose data is loaded for all its point sets at once; its point sets and traces are never shared.
/// Definitions are the product's own.
class ISimDataExtractor2 {
public:
  virtual ~ISimDataExtractor2() = default;
  virtual long GetVersionIDForPostprocessing(IDerivedDataDefinition const *) const { return id::invalidID; }
  /// Appends the variables whose values tell one instance of the data from another.
  virtual void GetMajorVariables(std::vector<Variable *> &, IDerivedDataDefinition const *,
                                 SimValueContext const *) const {}
  /// Appends the instances that there are; the extractor owns them.
  virtual void GetAvailableInstances(std::vector<IContextedSolutionInstance *> &, IDerivedDataDefinition const *,
                                     IProgressMonitor *) const {}
};
