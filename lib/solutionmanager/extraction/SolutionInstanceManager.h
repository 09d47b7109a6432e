#pragma once

class BaseSolutionManager;

/// The view of a manager's derived data that the post-processing framework takes, by solution.
class SolutionInstanceManager {
public:
  explicit SolutionInstanceManager(BaseSolutionManager * manager) : m_manager(manager) {}

  BaseSolutionManager * GetBaseSolutionManager() const { return m_manager; }

private:
  BaseSolutionManager * m_manager;
};
