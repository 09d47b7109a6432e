#pragma once

#include "CoreInterfaces/solution/ISolutionCmdInfo.h"
#include "basekit/command/KelvroCommandInfo.h"

#include <memory>

/// Information of a command with a part for the solution side.  Copies hold the same part; the last of them frees it.
class SolutionCmdInfo : public ISolutionCmdInfo, public KelvroCommandInfo {
public:
  SolutionCmdInfo() = default;
  SolutionCmdInfo(InfoType type, InfoSubType subType) : KelvroCommandInfo(type, subType) {}
  SolutionCmdInfo(SolutionCmdInfo const &) = default;
  SolutionCmdInfo & operator=(SolutionCmdInfo const &) = default;
  ~SolutionCmdInfo() override;

  KelvroCommandInfo * GetCommandInfoForSolutions() const override { return mInfoForSolutions; }
  /// Takes ownership.  There must be no earlier part: one that no copy holds is the caller's again.
  void SetCommandInfoForSolutions(KelvroCommandInfo * info);

private:
  KelvroCommandInfo * mInfoForSolutions = nullptr;
  /// Owns mInfoForSolutions together with the copies.
  std::shared_ptr<std::unique_ptr<KelvroCommandInfo>> m_shared;
};
