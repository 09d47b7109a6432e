#pragma once

#include "basekit/value/AutoVectorOfClonablePtrs.h"
#include "plotkit/simvalue/IDerivedDataDefinition.h"

class IProgressMonitor;
class VariableValues;

/// Derived data at one setting of the major variables, as the post-processing framework sees it.
class IContextedDerivedDataInstance {
public:
  virtual ~IContextedDerivedDataInstance() = default;
  virtual long GetVersionID() const = 0;
  /// The caller owns it; null when there is none.
  virtual IDerivedDataDefinition * GetDerivedDataDefinition() = 0;
  virtual void GetMajorVariableValues(VariableValues & values) const = 0;
  virtual bool LoadInstance(AutoVectorOfClonablePtrs<IExtendedLoadInfo> const & infos, IProgressMonitor * progress) = 0;
  virtual void NotifyDoneUsingInstance() = 0;
  /// Appends what must be loaded before this.
  virtual void GetImmediateParentLoadDefinitions(AutoVectorOfClonablePtrs<IDerivedDataDefinition> & definitions,
                                                 IProgressMonitor * progress) = 0;
};

/// The same of one solution, in the product's own definitions.  The product owns its instances.
class IContextedSolutionInstance {
public:
  virtual ~IContextedSolutionInstance() = default;
  virtual long GetVersionID() const = 0;
  /// The caller owns it; null when there is none.
  virtual IDerivedDataDefinition * GetDerivedDataDefinition() = 0;
  virtual void GetMajorVariableValues(VariableValues & values) const = 0;
  virtual bool LoadInstance(AutoVectorOfClonablePtrs<IExtendedLoadInfo> const & infos, IProgressMonitor * progress) = 0;
  virtual void NotifyDoneUsingInstance() = 0;
  virtual void GetImmediateParentLoadDefinitions(AutoVectorOfClonablePtrs<IDerivedDataDefinition> & definitions,
                                                 IProgressMonitor * progress) = 0;
};
