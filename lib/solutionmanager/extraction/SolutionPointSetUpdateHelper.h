#pragma once

#include "solutionmanager/extraction/SingleISolutionUpdateInfo.h"

#include <memory>

class BaseSolutionManager;
class ISimDataExtractor;

/// One update of many point sets: all sets register what they need, then the data of each variation of each solution is
/// loaded, read by all sets that want it, and given up.  Lives on the stack for the one update.
class SolutionPointSetUpdateHelper {
public:
  explicit SolutionPointSetUpdateHelper(BaseSolutionManager * manager);

  /// Null means all sets that the manager lists.  False when it was stopped: by the user, by a set that refused, or by
  /// a solution that is gone.  Sets that were not reached stay as they were.
  bool Run(IProgressMonitor * progress, std::vector<ISolutionPointSet *> const * pointSets) const;

private:
  using PointSets = std::vector<ISolutionPointSet *>;
  using UpdateInfos = std::map<long, std::unique_ptr<SingleISolutionUpdateInfo>>;
  using PointSetInfo = SingleISolutionUpdateInfo::PointSetInfo;

  void Register(PointSets const * solnPointSetsToUpdate, UpdateInfos & solnUpdateInfo,
                IProgressMonitor * progress) const;
  bool Update(UpdateInfos const & infos, IProgressMonitor * progress) const;
  bool UpdateSolution(long solutionID, SingleISolutionUpdateInfo const & info,
                      std::vector<Variable *> const & variables, double share, IProgressMonitor * progress) const;
  bool UpdatePointSet(ISimDataExtractor & extractor, PointSetInfo const * ptSetInfo, VariableValues const & first,
                      VariableValues const & second, std::vector<Variable *> const & variables,
                      IProgressMonitor * progress) const;
  void Finish(PointSets const & pointSets, bool isComplete) const;
  std::vector<Variable *> DesignVariables() const;

  BaseSolutionManager * m_solnMgr;
};
