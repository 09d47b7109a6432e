#pragma once

#include "basekit/text/AString.h"

#include <vector>

class ISolutionForSweepwise;

/// A setup as the parametric add-on sees it.
class ISimulationSetupForSweepwise {
public:
  virtual ~ISimulationSetupForSweepwise() = default;
  virtual long GetID() const = 0;
  virtual bool IsExclusiveSwiseSetup() const = 0;
  virtual int GetISolutionListForSweepwise(std::vector<ISolutionForSweepwise *> & list) const = 0;
  virtual AString GetName() const = 0;
  virtual long GetVersionID() const = 0;
};
