// The variations of a solution: which there are, which have data, which are valid.

#include "CoreInterfaces/desktop/IDesign.h"
#include "CoreInterfaces/desktop/IDesignInstance.h"
#include "CoreInterfaces/solution/ISweepwiseSetup.h"
#include "basekit/diag/Assert.h"
#include "basekit/io/CBlock.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/model/BaseSolutionVariation.h"
#include "solutionmanager/model/StatesJournal.h"
#include "solutionmanager/model/VariationRuns.h"
#include "solutionmanager/undo/Graveyard.h"

#include <algorithm>
#include <set>

VariationIDIndex BaseSolution::IndexOf(AString const & variation, long version) const {
  return VariationIDIndex(variation, version, GetSolutionMgr());
}

SolutionVariationKey BaseSolution::KeyOf(AString const & variation, long version) const {
  return SolutionVariationKey(m_Setup->GetID(), variation, GetID(), version);
}

namespace {

template <class HasData>
bool AnyVersionHasData(VariationRuns const & runs, VariationIDIndex const & current, HasData hasData) {
  VariationRuns::Descent descent(runs, current);
  // The count-down goes over versions, not over entries: an entry above the current version is never met.
  for (long version = current.GetVersionID(); version >= 0; --version) {
    BaseSolutionVariation const * const entry = descent.EntryOf(version);
    if (entry && hasData(*entry))
      return true;
    // Versions without an entry hold nothing: on with the next lower one that has one, and none is an end.
    version = std::min(version, descent.NextVersion() + 1);
  }
  return false;
}

} // namespace

bool BaseSolution::HasSolutionData(IDesignInstance const * instance, long version) const {
  if (instance)
    return HasSolutionData(instance->GetVariationKey(), version);
  if (version != id::invalidID && !m_Runs->HasVersion(version))
    return false;
  for (auto const & [index, variation] : m_VariationMap)
    if ((version == id::invalidID || index.GetVersionID() == version) &&
        (variation->HasSolutionData() || GetSolutionMgr()->HasDataBlock(variation->GetSolutionVariationKey())))
      return true;
  return false;
}

bool BaseSolution::HasSolutionData(AString const & variation, long version) const {
  auto const hasData = [this](BaseSolutionVariation const & entry) {
    return entry.HasSolutionData() || GetSolutionMgr()->HasDataBlock(entry.GetSolutionVariationKey());
  };
  if (version == id::invalidID)
    return AnyVersionHasData(*m_Runs, IndexOf(variation, m_VersionID), hasData);
  BaseSolutionVariation const * const entry = m_Runs->Find(IndexOf(variation, version));
  return entry && hasData(*entry);
}

bool BaseSolution::HasLoadedSolutionData(AString const & variation, long version) const {
  auto const hasData = [](BaseSolutionVariation const & entry) { return entry.HasSolutionData(); };
  if (version == id::invalidID)
    return AnyVersionHasData(*m_Runs, IndexOf(variation, m_VersionID), hasData);
  BaseSolutionVariation const * const entry = m_Runs->Find(IndexOf(variation, version));
  return entry && hasData(*entry);
}

bool BaseSolution::HasValidSolutionData(IDesignInstance const * instance, long version) const {
  if (!IsValid() || m_VariationMap.empty())
    return false;
  return instance ? HasValidSolutionData(instance->GetVariationKey(), version) : HasValidVariation(version);
}

bool BaseSolution::HasValidSolutionData(AString const & variation, long version) const {
  if (!IsValid() || !HasSolutionData(variation, version))
    return false;
  BaseSolutionVariation const * const entry =
      m_Runs->Find(IndexOf(variation, version == id::invalidID ? m_VersionID : version));
  return entry && entry->IsVariationValid();
}

namespace {

// Entries with other IDs have other texts, so that most need not be read.
bool IsSameText(VariationIDIndex const & a, VariationIDIndex const & b) {
  bool const haveIDs = a.GetVariationID() != id::invalidID && b.GetVariationID() != id::invalidID;
  return (!haveIDs || a.GetVariationID() == b.GetVariationID()) && a.GetVariation() == b.GetVariation();
}

// Calls visit(index, entry of the version or null) for each run of equal texts in map order until it returns
// false.  The first text is compared with the given one, and skipped when equal.
template <class Visit>
void ForEachText(BaseSolution::VariationMap const & map, VariationRuns const & runs, long version,
                 AString const & skipped, Visit visit) {
  auto previous = map.end();
  for (auto at = map.begin(); at != map.end(); ++at) {
    if (previous == map.end() ? at->first.GetVariation() == skipped : IsSameText(at->first, previous->first))
      continue;
    previous = at;
    BaseSolutionVariation * const entry =
        at->first.GetVersionID() == version ? at->second : runs.FindBeside(at, version);
    if (!visit(at->first, entry))
      return;
  }
}

// A variation that bears this very text is skipped when it comes first; settled behaviour of the list operations.
AString const & TemporaryText() {
  static AString const text(L"TEMP");
  return text;
}

// No variation text holds this character, so the first entry is never taken for a repetition.
AString const & NoText() {
  static AString const text(std::wstring_view(L"\0", 1));
  return text;
}

} // namespace

bool BaseSolution::HasValidVariation(long version) const {
  if (!IsValid())
    return false;
  long const wanted = version == id::invalidID ? m_VersionID : version;
  bool found = false;
  if (m_Runs->HasVersion(wanted))
    ForEachText(m_VariationMap, *m_Runs, wanted, NoText(),
                [&found](VariationIDIndex const &, BaseSolutionVariation const * entry) {
                  found = entry && entry->IsVariationValid() && entry->HasSolutionData();
                  return !found;
                });
  return found;
}

bool BaseSolution::AreAllVariationsValid() const {
  if (!IsValid())
    return false;
  bool all = true;
  ForEachText(m_VariationMap, *m_Runs, m_VersionID, NoText(),
              [&all](VariationIDIndex const &, BaseSolutionVariation const * entry) { return all = entry != nullptr; });
  return all;
}

bool BaseSolution::NeedsToSimulate(AString const & variation, long version) const {
  return !HasValidSolutionData(variation, version);
}

bool BaseSolution::IsDataComplete(AString const & variation, bool, IProdSwiseSetupData const *, long version) const {
  return HasValidSolutionData(variation, version);
}

bool BaseSolution::IsDataComplete(ISweepwiseSetup const * setup, AString const & variation, long version) const {
  return IsDataComplete(variation, true, setup ? setup->GetIProdSwiseSetupData() : nullptr, version);
}

BaseSolutionVariation * BaseSolution::GetVariationData(VariationIDIndex const & index, bool createIfMissing) {
  AString const text = index.GetVariation();
  long const version = index.GetVersionID();
  SolutionVariationKey const key = KeyOf(text, version);
  bool const hasBlock = GetSolutionMgr()->HasDataBlock(key);
  BaseSolutionVariation * variation = m_Runs->Find(index);
  if (!variation) {
    if (!createIfMissing && !hasBlock)
      return nullptr;
    variation = CreateSolutionVariation(text, version);
  }
  if (variation && hasBlock && !HasLoadedSolutionData(text, version)) {
    io::CBlock block(key.Pack());
    if (GetSolutionMgr()->LoadSingleBlock(block) == CStreamioLibrary::kLibSuccess)
      variation->ReadVariationDataBlock(block);
  }
  return variation;
}

BaseSolutionVariation * BaseSolution::EnsureVariation(AString const & variation, long version) {
  BaseSolutionVariation * const present = m_Runs->Find(IndexOf(variation, version));
  return present ? present : CreateSolutionVariation(variation, version);
}

BaseSolutionVariation * BaseSolution::GetBestVariation(AString const & variation, bool includeDeleted) const {
  VariationIDIndex const index = IndexOf(variation, m_VersionID);
  if (BaseSolutionVariation * const exact = m_Runs->Find(index))
    return exact;
  // A miss in the deleted map is not seen as one, so that the scans below are never reached; the entry at the end of
  // that map is null.
  if (includeDeleted) {
    auto const deleted = m_DeletedVariationMap.find(index);
    return deleted == m_DeletedVariationMap.end() ? nullptr : deleted->second;
  }
  return m_Runs->FirstWithText(variation);
}

BaseSolutionVariation * BaseSolution::GetBaseSolutionVariation(AString const & variation, long version) const {
  return version == id::invalidID ? GetBestVariation(variation, false) : m_Runs->Find(IndexOf(variation, version));
}

BaseSolutionVariation * BaseSolution::GetBaseSolutionVariation(SolutionVariationKey const & key) const {
  return GetBaseSolutionVariation(key.GetDesignVariationKey(), key.GetVersionIDKey());
}

long BaseSolution::GetClosestVersionWithData() const {
  return m_Runs->HasVersion(m_VersionID) ? m_VersionID : m_Runs->HighestVersion();
}

// Takes (index, entry) for each variation that has an entry of the version.
template <class Take> void BaseSolution::ForEachAvailable(long version, Take take) const {
  long const wanted = version == id::invalidID ? GetClosestVersionWithData() : version;
  if (m_Runs->HasVersion(wanted))
    ForEachText(m_VariationMap, *m_Runs, wanted, TemporaryText(),
                [&take](VariationIDIndex const & index, BaseSolutionVariation * entry) {
                  if (entry)
                    take(index, entry);
                  return true;
                });
}

void BaseSolution::GetAvailableVariations(std::list<AString> & variations, long version) const {
  if (!m_VariationMap.empty())
    ForEachAvailable(version, [&](VariationIDIndex const & index, BaseSolutionVariation *) {
      variations.push_back(index.GetVariation());
    });
}

void BaseSolution::GetAvailableVariations(std::vector<BaseSolutionVariation *> & variations, long version) const {
  if (!m_VariationMap.empty())
    ForEachAvailable(version,
                     [&](VariationIDIndex const &, BaseSolutionVariation * entry) { variations.push_back(entry); });
}

void BaseSolution::ListCurrentVariations(std::list<AString> & valid, std::list<AString> & invalid) const {
  for (auto const & [index, variation] : m_VariationMap)
    (variation->IsVariationValid() ? valid : invalid).push_back(variation->GetSolutionVariationKey().Pack());
  for (auto const & [index, variation] : m_DeletedVariationMap)
    invalid.push_back(variation->GetSolutionVariationKey().Pack());
}

std::pair<BaseSolution::VariationMap::iterator, bool> BaseSolution::Enter(BaseSolutionVariation * variation) {
  std::size_t const before = m_VariationMap.size();
  // Variations mostly come in the order of their IDs.
  auto const at = m_VariationMap.emplace_hint(
      m_VariationMap.end(), IndexOf(variation->GetDesignVariationKey(), variation->GetVersionID()), variation);
  if (m_VariationMap.size() == before)
    return {at, false};
  m_Runs->Entered(at);
  if (m_StatesJournal)
    m_StatesJournal->Inserted(*at);
  return {at, true};
}

BaseSolutionVariation * BaseSolution::EnterNewVariation(BaseSolutionVariation * variation) {
  auto const [at, entered] = Enter(variation);
  if (!entered)
    delete variation;
  return at->second;
}

BaseSolutionVariation * BaseSolution::CreateSolutionVariation(AString const & variation, long version) {
  return EnterNewVariation(new BaseSolutionVariation(this, variation, version));
}

void BaseSolution::AddSolutionVariation(BaseSolutionVariation * variation) {
  KVRO_ASSERT(variation);
  // On a taken index the caller keeps the object.
  if (variation)
    Enter(variation);
}

// To the deleted variations, without its data.
BaseSolution::VariationMap::iterator BaseSolution::SetAside(VariationMap::const_iterator at) {
  // One that a former deletion left under the index stays alive: somebody may hold it.
  if (!m_DisplacedVariations)
    m_DisplacedVariations = undo::GraveyardOf(&m_DeletedVariationMap);
  m_DisplacedVariations->Enter(m_DeletedVariationMap, at->first, at->second);
  at->second->ClearInstanceMemoryData();
  if (m_StatesJournal)
    m_StatesJournal->Removed(*at);
  m_Runs->Leaves(at);
  return m_VariationMap.erase(at);
}

void BaseSolution::RenameVariations(std::map<AString, AString> const & texts) {
  std::vector<std::pair<AString, long>> arriving;
  for (auto at = m_VariationMap.begin(); at != m_VariationMap.end();) {
    auto const text = texts.find(at->first.GetVariation());
    if (text == texts.end()) {
      ++at;
      continue;
    }
    arriving.emplace_back(text->second, at->first.GetVersionID());
    at = SetAside(at);
  }
  for (auto const & [text, version] : arriving)
    EnsureVariation(text, version);
}

void BaseSolution::DeleteSolutionVariation(AString const & variation, KelvroCommand *) {
  std::set<AString> packedKeys;
  for (auto const at : m_Runs->WithText(variation)) {
    BaseSolutionVariation * const entry = at->second;
    packedKeys.insert(entry->GetSolutionVariationKey().Pack());
    SetAside(at);
  }
  GetSolutionMgr()->DeleteOldBlocks(packedKeys);
  io::CBlock block(GetBlockDefinitionName());
  WriteDefinitionBlock(block);
  GetSolutionMgr()->SaveSingleBlock(block);
  IDesign * const design = GetSolutionMgr()->GetIDesign();
  KVRO_ASSERT(design);
  if (design)
    design->NotifySolutionDataDeleted(GetID());
  UpdatePostProcessingItems(false);
}
