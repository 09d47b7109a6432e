#pragma once

/// The desktop's keeper of values that are shared by solutions.
class ISimValueManager {
public:
  virtual ~ISimValueManager() = default;
  /// Gives up the values of one solution: all of them, or only those that nothing refers to any more.
  virtual void ReleaseSimValues(long solutionID, bool all) = 0;
};
