#include "solutionmanager/locations/CMirroredDataMap.h"

#include "basekit/diag/Assert.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CBlockFuncPtr.h"
#include "basekit/io/CNamed_value_manip.h"
#include "solutionmanager/locations/IMirroredDataMapOwner.h"

#include <algorithm>

using io::named;

namespace {

AString const kVersionMap = L"Vmap";
AString const kVariationID = L"VID";
AString const kOriginalVersion = L"Ver";
AString const kOlderVariation = L"Variation";
AString const kOlderVersion = L"Version";

} // namespace

CMirroredDataMap::CMirroredDataMap(IMirroredDataMapOwner * owner, AString const & blockName,
                                   AString const & functionKeyword, AString const & dataKeyword)
    : m_owner(owner), m_blockName(blockName), m_functionKeyword(functionKeyword), m_dataKeyword(dataKeyword) {}

CMirroredDataMap::CMirroredDataMap(CMirroredDataMap const & other) = default;
CMirroredDataMap & CMirroredDataMap::operator=(CMirroredDataMap const & other) = default;
CMirroredDataMap::~CMirroredDataMap() = default;

bool CMirroredDataMap::Write(io::CBlock & parent) const {
  if (!HaveData())
    return true;
  io::CBlock_ptr<io::CBlock> const block(new io::CBlock(m_blockName));
  if (NeedWriteVmap())
    WriteVersions(*block);
  bool const isWritten = WriteData(*block);
  parent << block;
  return isWritten;
}

bool CMirroredDataMap::Read(io::CBlock const & parent, bool mustExist) {
  io::CBlock const * const block = parent.FindBlock(m_blockName);
  if (!block)
    return !mustExist;
  m_isReading = true;
  ReadVersions(*block);
  bool const isRead = ReadData(*block);
  m_isReading = false;
  m_reach = kFarthest;
  m_refused.clear();
  return isRead;
}

void CMirroredDataMap::WriteVersions(io::CBlock & block) const {
  io::CBlockFuncPtr const line(kVersionMap);
  for (auto const & [original, mirrored] : m_versionMap)
    *line << original << mirrored;
  block << line;
}

void CMirroredDataMap::ReadVersions(io::CBlock const & block) {
  auto const * const line =
      static_cast<io::CBlock_func const *>(block.FindItem(kVersionMap, io::CBlock_item::Kind::Func));
  if (!line)
    return;
  long original = 0;
  long mirrored = 0;
  for (auto place = line->begin();
       line->QueryUnamedValues(place, original) && line->QueryUnamedValues(place, mirrored);)
    TakeVersion(original, mirrored);
}

bool CMirroredDataMap::GetFilesAndDirsToCopyForExportingVariation(std::map<AString, AString> &, std::vector<AString> &,
                                                                  std::vector<AString> &, AString const &) const {
  return true;
}

bool CMirroredDataMap::GetFilesAndDirsToCopyForExportingVariation(std::vector<AString> &, std::vector<AString> &,
                                                                  AString const &) const {
  return true;
}

long CMirroredDataMap::GetMirroredVersion(long version) {
  long mirrored = id::invalidID;
  FindMirroredVersion(version, mirrored);
  return mirrored;
}

bool CMirroredDataMap::FindMirroredVersion(long version, long & mirrored) const {
  if (long const * const known = m_index.FindMirrored(version)) {
    mirrored = *known;
    return true;
  }
  mirrored = version;
  if (m_index.FindOriginal(version))
    return true;
  mirrored = id::invalidID;
  if (version >= id::invalidID && (m_refused.contains(version) || !FetchIDAbove(version, mirrored))) {
    m_refused.insert(version);
    return false;
  }
  EnterVersion(version, mirrored);
  return true;
}

bool CMirroredDataMap::FetchIDAbove(long version, long & fresh) const {
  long candidate = m_owner->GetNewID();
  if (candidate <= version) {
    // The pace of the counter tells whether it comes there at all.
    long const next = m_owner->GetNewID();
    unsigned long const pace =
        next > candidate ? static_cast<unsigned long>(next) - static_cast<unsigned long>(candidate) : 1;
    unsigned long const missing =
        next > version ? 0 : static_cast<unsigned long>(version) - static_cast<unsigned long>(next);
    bool const isWithinReach = missing / pace < static_cast<unsigned long>(m_reach);
    KVRO_ASSERT(isWithinReach);
    candidate = next;
    long calls = 0;
    for (; isWithinReach && candidate <= version && calls < 2 * m_reach; ++calls)
      candidate = m_owner->GetNewID();
    if (m_isReading)
      m_reach = std::max(m_reach - calls, 0L);
  }
  if (candidate <= version)
    return false;
  fresh = candidate;
  return true;
}

long CMirroredDataMap::GetOriginalVersion(long version) const {
  if (m_index.FindMirrored(version))
    return version;
  long const * const original = m_index.FindOriginal(version);
  return original ? *original : id::invalidID;
}

void CMirroredDataMap::EnterVersion(long original, long mirrored) const {
  if (m_versionMap.try_emplace(original, mirrored).second)
    m_index.Inserted(original, mirrored);
}

bool CMirroredDataMap::TakeVersion(long original, long mirrored) {
  if (m_index.FindMirrored(original))
    return true;
  // Below the invalid number all versions share it.
  bool const isOfItsOwn = !m_index.FindOriginal(mirrored) && !m_index.FindMirrored(mirrored) &&
                          (original == id::invalidID || !m_index.FindOriginal(original));
  bool const isTaken = mirrored > original && (mirrored == id::invalidID || isOfItsOwn);
  KVRO_ASSERT(isTaken);
  if (isTaken)
    EnterVersion(original, mirrored);
  return isTaken;
}

void CMirroredDataMap::ReadVariationAndVersion(io::CBlock_func const * line, AString & variation, long & version) {
  variation.clear();
  version = id::invalidID;
  long variationID = id::invalidID;
  *line >> named(kVariationID, variationID);
  if (variationID == id::invalidID) {
    *line >> named(kOlderVariation, variation) >> named(kOlderVersion, version);
    return;
  }
  variation = m_owner->GetVariationFromID(variationID);
  *line >> named(kOriginalVersion, version);
}

bool CMirroredDataMap::ReadAddress(io::CBlock_func const & line, AString & variation, long & version) {
  ReadVariationAndVersion(&line, variation, version);
  long variationID = id::invalidID;
  line >> named(kVariationID, variationID);
  return variationID == id::invalidID || IsKnownVariation(variation, variationID);
}

bool CMirroredDataMap::IsKnownVariation(AString const & variation, long variationID) const {
  // A design without variables has one variation, whose text is empty.
  bool const isKnown = !variation.empty() || m_owner->GetVariationID(variation) == variationID;
  KVRO_ASSERT(isKnown);
  return isKnown;
}

template <class Item> void CMirroredDataMap::WriteAddress(Item & item, VariationIDIndex const & entry) const {
  long const variationID = m_owner->GetVariationID(entry.GetVariation());
  long const original = GetOriginalVersion(entry.GetVersionID());
  item << named(kVariationID, variationID) << named(kOriginalVersion, original);
}

template void CMirroredDataMap::WriteAddress(io::CBlock & item, VariationIDIndex const & entry) const;
template void CMirroredDataMap::WriteAddress(io::CBlock_func & item, VariationIDIndex const & entry) const;

CMirroredDataMap::SingleWrite CMirroredDataMap::AskSingleWrite() const {
  SingleWrite single;
  m_owner->GetSingleVariationToWrite(single.isOnlyOne, single.variationID, single.variation);
  return single;
}

VariationIDIndex CMirroredDataMap::KeyOf(AString const & variation, long version) const {
  return VariationIDIndex(variation, version, m_owner->GetVariationID(variation));
}

VariationIDIndex CMirroredDataMap::MirroredKey(AString const & variation, long version) const {
  long mirrored = id::invalidID;
  return KeyOf(variation, FindMirroredVersion(version, mirrored) ? mirrored : kNowhere);
}

VariationIDIndex CMirroredDataMap::MirroredKey(VariationIDIndex const & key) const {
  return MirroredKey(key.GetVariation(), key.GetVersionID());
}

VariationIDIndex CMirroredDataMap::CommittedKey(VariationIDIndex const & workingEntry) const {
  return KeyOf(workingEntry.GetVariation(), GetOriginalVersion(workingEntry.GetVersionID()));
}

long CMirroredDataMap::CurrentVersion() const { return m_owner->GetCurrentVersion(m_functionKeyword); }

VariationIDIndex CMirroredDataMap::SingleKey(SingleWrite const & single) const {
  long mirrored = id::invalidID;
  bool const isFound = FindMirroredVersion(CurrentVersion(), mirrored);
  return VariationIDIndex(single.variation, isFound ? mirrored : kNowhere, single.variationID);
}
