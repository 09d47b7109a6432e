#pragma once

#include "plotkit/simvalue/IContextedDerivedDataInstance.h"

/// An instance of a solution as derived data of that solution: what it defines is told with the identifiers of design
/// and solution.  The instance is the extractor's.
class CentralizedUpdateSolutionInstance : public IContextedDerivedDataInstance {
public:
  CentralizedUpdateSolutionInstance(IContextedSolutionInstance * instance, long designID, long solutionID)
      : m_instance(instance), m_designID(designID), m_solutionID(solutionID) {}

  ~CentralizedUpdateSolutionInstance() override;
  long GetVersionID() const override;
  IDerivedDataDefinition * GetDerivedDataDefinition() override;
  void GetMajorVariableValues(VariableValues & values) const override;
  bool LoadInstance(AutoVectorOfClonablePtrs<IExtendedLoadInfo> const & infos, IProgressMonitor * progress) override;
  void NotifyDoneUsingInstance() override;
  void GetImmediateParentLoadDefinitions(AutoVectorOfClonablePtrs<IDerivedDataDefinition> & definitions,
                                         IProgressMonitor * progress) override;

private:
  IContextedSolutionInstance * m_instance;
  long m_designID;
  long m_solutionID;
};
