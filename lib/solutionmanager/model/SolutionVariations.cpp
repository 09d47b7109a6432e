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

#include <set>

VariationIDIndex BaseSolution::IndexOf(AString const & variation, long version) const {
  return VariationIDIndex(variation, version, GetSolutionMgr());
}

SolutionVariationKey BaseSolution::KeyOf(AString const & variation, long version) const {
  return SolutionVariationKey(m_Setup->GetID(), variation, GetID(), version);
}

namespace {

BaseSolutionVariation * Find(BaseSolution::VariationMap const & map, VariationIDIndex const & index) {
  auto const at = map.find(index);
  return at == map.end() ? nullptr : at->second;
}

// The entries of one variation text stand together, oldest version first; a caller that counts versions down steps
// through this run once instead of looking each version up.
struct VersionRun {
  VersionRun(BaseSolution::VariationMap const & map, VariationIDIndex const & highest)
      : begin(map.begin()), at(map.upper_bound(highest)), variationID(highest.GetVariationID()) {}

  // The entry of exactly this version; versions must be asked in descending order.
  BaseSolutionVariation * EntryOf(long version) {
    while (at != begin) {
      auto const before = std::prev(at);
      if (before->first.GetVariationID() != variationID || before->first.GetVersionID() < version)
        return nullptr;
      at = before;
      if (at->first.GetVersionID() == version)
        return at->second;
    }
    return nullptr;
  }

  BaseSolution::VariationMap::const_iterator begin;
  BaseSolution::VariationMap::const_iterator at;
  long variationID;
};

template <class HasData>
bool AnyVersionHasData(BaseSolution::VariationMap const & map, VariationIDIndex const & current, HasData hasData) {
  VersionRun run(map, current);
  // The count-down goes over versions, not over entries: an entry above the current version is never met.
  for (long version = current.GetVersionID(); version >= 0; --version) {
    BaseSolutionVariation const * const entry = run.EntryOf(version);
    if (entry && hasData(*entry))
      return true;
    if (run.at == run.begin || std::prev(run.at)->first.GetVariationID() != run.variationID)
      return false;
    // Versions without an entry hold nothing: go on with the next lower one that has one.
    version = std::min(version, std::prev(run.at)->first.GetVersionID() + 1);
  }
  return false;
}

} // namespace

bool BaseSolution::HasSolutionData(IDesignInstance const * instance, long version) const {
  if (instance)
    return HasSolutionData(instance->GetVariationKey(), version);
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
    return AnyVersionHasData(m_VariationMap, IndexOf(variation, m_VersionID), hasData);
  BaseSolutionVariation const * const entry = Find(m_VariationMap, IndexOf(variation, version));
  return entry && hasData(*entry);
}

bool BaseSolution::HasLoadedSolutionData(AString const & variation, long version) const {
  auto const hasData = [](BaseSolutionVariation const & entry) { return entry.HasSolutionData(); };
  if (version == id::invalidID)
    return AnyVersionHasData(m_VariationMap, IndexOf(variation, m_VersionID), hasData);
  BaseSolutionVariation const * const entry = Find(m_VariationMap, IndexOf(variation, version));
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
      Find(m_VariationMap, IndexOf(variation, version == id::invalidID ? m_VersionID : version));
  return entry && entry->IsVariationValid();
}

namespace {

// Calls visit(text, entry of the version or null) for each run of equal texts in map order until it returns
// false.  The first text is compared with the given one, and skipped when equal.
template <class Visit>
void ForEachText(BaseSolution::VariationMap const & map, long version, AString previous, Visit visit) {
  for (auto at = map.begin(); at != map.end(); ++at) {
    AString const text = at->first.GetVariation();
    if (text == previous)
      continue;
    previous = text;
    BaseSolutionVariation * const entry = at->first.GetVersionID() == version
                                              ? at->second
                                              : Find(map, VariationIDIndex(text, version, at->first.GetVariationID()));
    if (!visit(text, entry))
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
  bool found = false;
  ForEachText(m_VariationMap, version == id::invalidID ? m_VersionID : version, NoText(),
              [&found](AString const &, BaseSolutionVariation const * entry) {
                found = entry && entry->IsVariationValid() && entry->HasSolutionData();
                return !found;
              });
  return found;
}

bool BaseSolution::AreAllVariationsValid() const {
  if (!IsValid())
    return false;
  bool all = true;
  ForEachText(m_VariationMap, m_VersionID, NoText(),
              [&all](AString const &, BaseSolutionVariation const * entry) { return all = entry != nullptr; });
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
  BaseSolutionVariation * variation = Find(m_VariationMap, index);
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
  BaseSolutionVariation * const present = Find(m_VariationMap, IndexOf(variation, version));
  return present ? present : CreateSolutionVariation(variation, version);
}

BaseSolutionVariation * BaseSolution::GetBestVariation(AString const & variation, bool includeDeleted) const {
  VariationIDIndex const index = IndexOf(variation, m_VersionID);
  if (BaseSolutionVariation * const exact = Find(m_VariationMap, index))
    return exact;
  // A miss in the deleted map is not seen as one, so that the scans below are never reached; the entry at the end of
  // that map is null.
  if (includeDeleted)
    return Find(m_DeletedVariationMap, index);
  for (auto const & [key, entry] : m_VariationMap)
    if (key.GetVariation().Compare(variation) == 0)
      return entry;
  return nullptr;
}

BaseSolutionVariation * BaseSolution::GetBaseSolutionVariation(AString const & variation, long version) const {
  return version == id::invalidID ? GetBestVariation(variation, false)
                                  : Find(m_VariationMap, IndexOf(variation, version));
}

BaseSolutionVariation * BaseSolution::GetBaseSolutionVariation(SolutionVariationKey const & key) const {
  return GetBaseSolutionVariation(key.GetDesignVariationKey(), key.GetVersionIDKey());
}

long BaseSolution::GetClosestVersionWithData() const {
  long highest = id::invalidID;
  for (auto const & [index, variation] : m_VariationMap) {
    if (index.GetVersionID() == m_VersionID)
      return m_VersionID;
    highest = highest == id::invalidID ? index.GetVersionID() : std::max(highest, index.GetVersionID());
  }
  return highest;
}

void BaseSolution::GetAvailableVariations(std::list<AString> & variations, long version) const {
  if (m_VariationMap.empty())
    return;
  ForEachText(m_VariationMap, version == id::invalidID ? GetClosestVersionWithData() : version, TemporaryText(),
              [&variations](AString const & text, BaseSolutionVariation * entry) {
                if (entry)
                  variations.push_back(text);
                return true;
              });
}

void BaseSolution::GetAvailableVariations(std::vector<BaseSolutionVariation *> & variations, long version) const {
  if (m_VariationMap.empty())
    return;
  ForEachText(m_VariationMap, version == id::invalidID ? GetClosestVersionWithData() : version, TemporaryText(),
              [&variations](AString const &, BaseSolutionVariation * entry) {
                if (entry)
                  variations.push_back(entry);
                return true;
              });
}

void BaseSolution::ListCurrentVariations(std::list<AString> & valid, std::list<AString> & invalid) const {
  for (auto const & [index, variation] : m_VariationMap)
    (variation->IsVariationValid() ? valid : invalid).push_back(variation->GetSolutionVariationKey().Pack());
  for (auto const & [index, variation] : m_DeletedVariationMap)
    invalid.push_back(variation->GetSolutionVariationKey().Pack());
}

std::pair<BaseSolution::VariationMap::iterator, bool> BaseSolution::Enter(BaseSolutionVariation * variation) {
  auto const entered =
      m_VariationMap.emplace(IndexOf(variation->GetDesignVariationKey(), variation->GetVersionID()), variation);
  if (entered.second && m_StatesJournal)
    m_StatesJournal->Inserted(*entered.first);
  return entered;
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
BaseSolution::VariationMap::iterator BaseSolution::SetAside(VariationMap::iterator at) {
  BaseSolutionVariation * const entry = at->second;
  // An object that a former deletion left under this index can't come back any more.
  auto const [place, isNew] = m_DeletedVariationMap.emplace(at->first, entry);
  if (!isNew) {
    delete place->second;
    place->second = entry;
  }
  entry->ClearInstanceMemoryData();
  if (m_StatesJournal)
    m_StatesJournal->Removed(*at);
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
  for (auto at = m_VariationMap.begin(); at != m_VariationMap.end();) {
    if (at->first.GetVariation().Compare(variation) != 0) {
      ++at;
      continue;
    }
    BaseSolutionVariation * const entry = at->second;
    packedKeys.insert(entry->GetSolutionVariationKey().Pack());
    at = SetAside(at);
  }
  GetSolutionMgr()->DeleteOldBlocks(packedKeys);
  io::CBlock block(GetBlockDefinitionName());
  if (WriteDefinitionBlock(block))
    GetSolutionMgr()->SaveSingleBlock(block);
  IDesign * const design = GetSolutionMgr()->GetIDesign();
  KVRO_ASSERT(design);
  if (design)
    design->NotifySolutionDataDeleted(GetID());
  UpdatePostProcessingItems(false);
}
