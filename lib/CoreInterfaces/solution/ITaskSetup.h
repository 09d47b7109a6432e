#pragma once

#include "CoreInterfaces/IInterfaceQueriable.h"

#include <vector>

class IDesignInstance;
class SimulationTask;

/// A setup as the desktop's task service sees it.
class ITaskSetup : public IInterfaceQueriable {
public:
  virtual long GetUniqueID() const = 0;
  /// Both return a SolveRequestCode.
  virtual int StartSingleSimulation(IDesignInstance * instance, SimulationTask const * task) const = 0;
  virtual int StartSingleSimulation(IDesignInstance * instance, long a, long b,
                                    std::vector<long> const * solutionIDs) const = 0;
};
