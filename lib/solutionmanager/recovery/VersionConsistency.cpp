// After a crash the library is made to agree with the versions that the design remembers.

#include "basekit/io/CBlock.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionManager.h"

void BaseSolutionManager::SetRecoveredVersionIDs() {
  if (m_RecoveredVersionID != id::invalidID)
    m_VersionID = m_RecoveredVersionID;
}

void BaseSolutionManager::RecoverDerivedDataVersionConsistency() {}

void BaseSolutionManager::ApplyVersionIDs(io::CBlock const & designBlock) {
  ReadVersionIDsFromQdsn(designBlock);
  SetRecoveredVersionIDs();
  for (auto const & [id, setup] : m_SimSetupMap) {
    auto const setupVersion = m_RecoveredSetupVersions.find(setup->GetName());
    if (setupVersion != m_RecoveredSetupVersions.end())
      setup->SetState(setupVersion->second, false);
    for (auto const & [solutionID, solution] : setup->GetSolutions()) {
      auto const version = m_RecoveredSolutionVersions.find({setup->GetName(), solution->GetSolutionName()});
      if (version != m_RecoveredSolutionVersions.end())
        solution->RecoverVersionConsistency(version->second);
    }
  }
}

namespace {

// Whether a block belongs to an object that is there, at the version that this object has now.
bool FitsTheModel(SolutionVariationKey const & key, BaseSolutionManager::SetupMap const & setups) {
  auto const setup = setups.find(key.GetSimSetupKey());
  if (setup == setups.end())
    return key.GetSimSetupKey() == id::invalidID;
  if (key.GetSolutionKey() < 0)
    return key.GetVersionIDKey() == setup->second->GetVersionID();
  ISolution const * const solution = setup->second->GetISolutionByID(key.GetSolutionKey(), false);
  return solution && key.GetVersionIDKey() == solution->GetVersionID();
}

} // namespace

void BaseSolutionManager::RecoverVersionConsistency(io::CBlock const & designBlock) {
  ApplyVersionIDs(designBlock);
  std::list<AString> names;
  if (m_SolutionFileManager.IndexKeyList(names, false) == CStreamioLibrary::kLibSuccess) {
    bool anyDeleted = false;
    for (AString const & name : names) {
      SolutionVariationKey key;
      // A name that is no key stands for no version; as a pattern it would fit everything.
      if (!key.Unpack(name) || FitsTheModel(key, m_SimSetupMap))
        continue;
      m_SolutionFileManager.DeleteBlocks(key);
      anyDeleted = true;
    }
    if (anyDeleted)
      m_SolutionFileManager.UpdateOriginal();
  }
  RecoverDerivedDataVersionConsistency();
}
