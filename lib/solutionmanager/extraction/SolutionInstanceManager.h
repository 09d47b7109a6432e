#pragma once

class BaseSolutionManager;

/// The view of derived data by solution identifier that the post-processing framework has of a manager.  One per
/// manager, which owns it.
class SolutionInstanceManager {
public:
  explicit SolutionInstanceManager(BaseSolutionManager * manager) : m_solutionManager(manager) {}
  BaseSolutionManager * GetSolutionManager() const { return m_solutionManager; }

private:
  BaseSolutionManager * m_solutionManager;
};
