// After a crash the library is made to agree with the versions that the design remembers.

#include "basekit/io/CBlock.h"
#include "solutionmanager/address/PackedKeyText.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/recovery/RecoveryReport.h"

#include <optional>

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
      setup->m_VersionID = setupVersion->second;
    for (auto const & [solutionID, solution] : setup->GetSolutions()) {
      auto const version = m_RecoveredSolutionVersions.find({setup->GetName(), solution->GetSolutionName()});
      if (version != m_RecoveredSolutionVersions.end())
        solution->RecoverVersionConsistency(version->second);
    }
  }
}

namespace {

using Reason = RecoveryReport::Reason;

std::optional<Reason> ReasonUnlessEqual(long version, long current) {
  return version == current ? std::nullopt : std::optional(Reason::kOtherVersion);
}

// None for a block that belongs to an object which is there, at the version that this object has now.
std::optional<Reason> ReasonToDrop(SolutionVariationKey const & key, BaseSolutionManager::SetupMap const & setups) {
  auto const setup = setups.find(key.GetSimSetupKey());
  if (setup == setups.end())
    return key.GetSimSetupKey() == id::invalidID ? std::nullopt : std::optional(Reason::kSetupUnknown);
  if (key.GetSolutionKey() < 0)
    return ReasonUnlessEqual(key.GetVersionIDKey(), setup->second->GetVersionID());
  ISolution const * const solution = setup->second->GetISolutionByID(key.GetSolutionKey(), false);
  return solution ? ReasonUnlessEqual(key.GetVersionIDKey(), solution->GetVersionID())
                  : std::optional(Reason::kSolutionUnknown);
}

// What DeleteBlocks takes along when a block's own key is the pattern: that block alone, unless a part of the key is a
// wildcard.
std::list<AString> BlocksUnder(SolutionVariationKey const & key, AString const & name,
                               SolutionFileManager const & files) {
  bool const isPlain = key.GetSimSetupKey() != id::invalidID && key.GetSolutionKey() != id::invalidID &&
                       key.GetVersionIDKey() != id::invalidID && key.GetDesignVariationKey() != AString(L"NotSet");
  std::list<AString> names;
  if (isPlain)
    names.push_back(name);
  else
    files.GetSolutionKeyList(key, names);
  return names;
}

} // namespace

namespace {

struct Misfit {
  AString name;
  SolutionVariationKey key;
  Reason reason;
};

// The keys of most names stand unpacked beside them.
std::vector<Misfit> MisfitsOf(SolutionFileManager const & files, BaseSolutionManager::SetupMap const & setups) {
  std::vector<Misfit> misfits;
  for (auto const & [name, entry] : files.GetEntries()) {
    SolutionVariationKey key = entry.key;
    // A name that is no key stands for no version; as a pattern it would fit everything.
    bool const isKey = key.GetVersionIDKey() != id::invalidID || UnpackQuickly(name, key);
    if (auto const reason = isKey ? ReasonToDrop(key, setups) : std::nullopt)
      misfits.push_back({name, key, *reason});
  }
  return misfits;
}

} // namespace

void BaseSolutionManager::RecoverVersionConsistency(io::CBlock const & designBlock) {
  ApplyVersionIDs(designBlock);
  std::list<AString> names;
  if (m_SolutionFileManager.IndexKeyList(names, false) == CStreamioLibrary::kLibSuccess) {
    auto const misfits = MisfitsOf(m_SolutionFileManager, m_SimSetupMap);
    for (auto const & [name, key, reason] : misfits) {
      for (AString const & going : BlocksUnder(key, name, m_SolutionFileManager))
        m_RecoveryReport->dropped.push_back({going, reason});
      m_SolutionFileManager.DeleteBlocks(key);
    }
    if (!misfits.empty())
      m_SolutionFileManager.UpdateOriginal();
  }
  RecoverDerivedDataVersionConsistency();
}
