// Model and library brought in line with what the interface held when it stopped.

#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/recovery/RecoveryFacts.h"

#include <algorithm>

namespace {

bool IsKept(long id, std::vector<long> const & kept) { return std::find(kept.begin(), kept.end(), id) != kept.end(); }

SolutionVariationKey AllBlocksOf(long setupID, long solutionID) {
  return SolutionVariationKey(setupID, L"NotSet", solutionID, id::invalidID);
}

using Reason = RecoveryReport::Reason;

void NoteGoing(RecoveryReport & report, SolutionFileManager const & files, SolutionVariationKey const & pattern,
               Reason reason) {
  std::list<AString> names;
  if (report.outcome == RecoveryReport::Outcome::kTakenOver)
    files.GetSolutionKeyList(pattern, names);
  for (AString const & name : names)
    report.dropped.push_back({name, reason});
}

} // namespace

void BaseSolutionManager::RecoverUIDeletions(std::vector<long> const & keptSetups,
                                             std::vector<long> const & keptSolutions) {
  bool anySetup = false;
  for (auto at = m_SimSetupMap.begin(); at != m_SimSetupMap.end();) {
    if (IsKept(at->first, keptSetups)) {
      ++at;
      continue;
    }
    NoteGoing(*m_RecoveryReport, m_SolutionFileManager, AllBlocksOf(at->first, id::invalidID), Reason::kSetupDeleted);
    at->second->RecoverUIDeletions(keptSolutions);
    m_SolutionFileManager.DeleteBlocks(AllBlocksOf(at->first, id::invalidID));
    delete at->second;
    at = m_SimSetupMap.erase(at);
    anySetup = true;
  }
  if (anySetup)
    WriteDefinitionBlock();
  bool anySolution = false;
  for (auto const & [id, setup] : m_SimSetupMap) {
    for (auto const & [solutionID, solution] : setup->GetSolutions())
      if (!IsKept(solutionID, keptSolutions))
        NoteGoing(*m_RecoveryReport, m_SolutionFileManager, AllBlocksOf(id, solutionID), Reason::kSolutionDeleted);
    anySolution = setup->RecoverUIDeletions(keptSolutions) || anySolution;
  }
  if (!anySetup && !anySolution)
    return;
  m_SolutionFileManager.UpdateOriginal();
  recovery::CountTakenOver(*m_RecoveryReport, m_SimSetupMap);
}

bool BaseSimulationSetup::RecoverUIDeletions(std::vector<long> const & keptSolutions) {
  bool any = false;
  for (auto at = m_BaseSolutionMap.begin(); at != m_BaseSolutionMap.end();) {
    if (IsKept(at->first, keptSolutions)) {
      ++at;
      continue;
    }
    m_SolutionMgr->ForEdit().GetSolutionFileManager().DeleteBlocks(AllBlocksOf(GetID(), at->first));
    at->second->DeleteSolutionDatabase();
    if (m_DefaultSolution == at->second)
      m_DefaultSolution = nullptr;
    if (!m_Shared.count(at->second))
      delete at->second;
    at = m_BaseSolutionMap.erase(at);
    any = true;
  }
  if (any)
    WriteDefinitionBlock();
  return any;
}
