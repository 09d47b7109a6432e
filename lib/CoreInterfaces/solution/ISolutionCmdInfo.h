#pragma once

class KelvroCommandInfo;

/// What a command tells the solution side, apart from what it tells other subsystems.
class ISolutionCmdInfo {
public:
  /// Null when the command tells nothing; the info stays this object's.
  virtual KelvroCommandInfo * GetCommandInfoForSolutions() const = 0;

protected:
  ~ISolutionCmdInfo() = default;
};
