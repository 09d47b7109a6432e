#pragma once

#include "CoreInterfaces/ReportForward.h"
#include "basekit/text/AString.h"

#include <map>
#include <vector>

class ISolutionPointSet;

/// Where a point set registers what it needs for an update.
class ISolutionPointSetUpdateRegistry {
public:
  virtual void RegisterPointSet(ISolutionPointSet * pointSet, VariableValues const & first,
                                VariableValues const & second, std::vector<unsigned> const & reportTypes) = 0;

protected:
  ~ISolutionPointSetUpdateRegistry() = default;
};

/// One sampled region of the solved data of a solution.
class ISolutionPointSet {
public:
  virtual void RegisterForUpdate(ISolutionPointSetUpdateRegistry * registry, IProgressMonitor * progress) = 0;
  virtual bool UpdateFromLoadedData(VariableValues const & first, VariableValues const & second,
                                    IProgressMonitor * progress) = 0;
  virtual long GetSolutionID() const = 0;
  /// Per report type the quantities to be loaded.
  virtual void GetLoadQuantities(std::map<unsigned, std::vector<AString>> & quantities) = 0;
  virtual ~ISolutionPointSet() = default;
};
