#pragma once

#include <vector>

class ISolutionPointSet;

/// Brings solution point sets up to date where the desktop does this itself.
class IReportUpdateService {
public:
  /// Takes the data of the sets anew.  The flags are 0.
  virtual void UpdateSolutionPointSets(std::vector<ISolutionPointSet *> const & pointSets, int flags) = 0;

protected:
  ~IReportUpdateService() = default;
};
