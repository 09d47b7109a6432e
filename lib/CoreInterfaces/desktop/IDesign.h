#pragma once

#include "basekit/text/AString.h"

#include <vector>

class IDesignEditor;
class IDesignInstance;
class IProductInfo;
class IProject;
class IReportUpdateService;
class ISimValueManager;
class ISimulationService;
class IVariableServer;
class Variable;
class VariableNameSpace;
class VariableValues;

/// Yields the desktop's manager of sim values.
class ISimValueManagerHost {
public:
  virtual ~ISimValueManagerHost() = default;
  virtual ISimValueManager * GetISimValueManager() = 0;
};

/// A design of the desktop, as far as the solution manager needs it.  Owned by the desktop; outlives its manager.
class IDesign {
public:
  virtual ~IDesign() = default;
  virtual AString GetName() const = 0;
  /// id::invalidID when the design has none.
  virtual long GetDesignID() const = 0;
  virtual IProject * GetIProject() const = 0;
  virtual IProductInfo const * GetProductInfo() const = 0;
  /// Null when the design has none; non-null keeps the old report structures in use.
  virtual IReportUpdateService * GetReportUpdateService() const = 0;
  /// True when report updates don't go through the manager's Update.
  virtual bool IsV2Design() const = 0;
  virtual void GetDesignInstances(std::vector<IDesignInstance *> & instances) const = 0;
  /// The solved state of the design changed.
  virtual void NotifySolutionsChanged() = 0;
  /// Solved data of a solution was deleted.
  virtual void NotifySolutionDataDeleted(long solutionID) = 0;
  virtual ISimValueManagerHost * GetSimValueManagerHost() const = 0;
  virtual ISimulationService * GetSimulationService() const = 0;
  virtual IDesignEditor * GetDesignEditor() const = 0;

  /// The variables of the design's property list; entries may be null.
  virtual void GetPropertyVariables(std::vector<Variable *> & variables) const = 0;
  virtual void GetFurtherVariables(std::vector<Variable *> & variables) const = 0;
  virtual IVariableServer * GetVariableServer() const = 0;
  virtual IVariableServer * GetProjectVariableServer() const = 0;
  virtual void GetDefaultVariableValues(VariableValues & values) const = 0;
  virtual void SetupVariableNameSpace(VariableNameSpace & nameSpace, bool forPostProcessing) const = 0;
  virtual void SetupVNSForPostProcessing(VariableNameSpace & nameSpace) const = 0;
};
