#pragma once

#include "basekit/text/AString.h"

#include <vector>

class IDesignInstance;
class SolutionVariationKey;

/// Solves design instances; the data comes back as blocks of the solution library under the keys submitted.
class ISimulationService {
public:
  virtual ~ISimulationService() = default;
  /// 1 when one of those solutions is being solved for the instance.
  virtual int IsSolutionSolving(IDesignInstance * instance, long setupID, std::vector<long> const & solutionIDs) = 0;
  /// 1 when the setup is being solved for the instance.
  virtual int IsSetupSolving(IDesignInstance * instance, long setupID) = 0;
  /// Takes a solve of those keys, or refuses it with false.  The last two numbers come from the task and are not
  /// read by the solution manager; parentID is id::invalidID for a solve that no other one started.
  virtual bool SubmitSolve(IDesignInstance * instance, std::vector<SolutionVariationKey> const & keys,
                           void const * options, void const * listener, long const * parentID, int priority,
                           int machineCount, AString const & machineList, long a, long b) = 0;
};
