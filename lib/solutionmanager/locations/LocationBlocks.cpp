// The block of a store of locations.  A name in a line may carry a mirrored number while "Ver" holds the original:
// reading tells saved and unsaved results apart by the number in the name.

#include "basekit/diag/Assert.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CBlockFuncPtr.h"
#include "basekit/io/CNamed_value_manip.h"
#include "solutionmanager/locations/CMirroredLocationData.h"
#include "solutionmanager/locations/IMirroredDataMapOwner.h"
#include "solutionmanager/locations/LocationFiles.h"

using io::named;

bool CMirroredLocationData::WriteData(io::CBlock & block) const {
  if (!m_mirroredData.empty()) {
    if (SingleWrite const single = AskSingleWrite(); !single.isOnlyOne) {
      for (auto entry = m_mirroredData.begin(); entry != m_mirroredData.end(); ++entry)
        WriteMirroredData(block, entry);
    } else if (auto const entry = m_mirroredData.find(SingleKey(single)); entry != m_mirroredData.end()) {
      WriteMirroredData(block, entry);
    }
  }
  return !block.Error(false);
}

void CMirroredLocationData::WriteMirroredData(io::CBlock & block, View::const_iterator entry) const {
  long const original = GetOriginalVersion(entry->first.GetVersionID());
  AString location = entry->second;
  SingleWrite const single = AskSingleWrite();
  bool isSnapshot = single.isOnlyOne;
  bool keepsWorkingLocations = true;
  Owner().GetWriteMode(isSnapshot, keepsWorkingLocations);
  // The key is the owner's word, also when the write covers all variations and the owner named none.
  if (isSnapshot && !keepsWorkingLocations)
    location =
        GetRelativeLocationForCommittedState(entry, VariationIDIndex(single.variation, original, single.variationID));
  io::CBlockFuncPtr const line(FunctionKeyword());
  WriteAddress(*line, entry->first);
  *line << named(DataKeyword(), location);
  block << line;
}

bool CMirroredLocationData::ReadData(io::CBlock const & block) {
  bool const noVmap = !KnowsVersions();
  LocationFiles const files = Files();
  for (auto const & item : block)
    if (io::CBlock_ptr<io::CBlock_func> const line(item); line && line->Name() == FunctionKeyword())
      ReadLine(*line, files, noVmap);
  if (noVmap)
    MirrorCommittedData();
  // The error of this block alone counts; lines that can't be read were passed over.
  return !block.Error(false);
}

void CMirroredLocationData::ReadLine(io::CBlock_func const & line, LocationFiles const & files, bool noVmap) {
  AString variation;
  long version = id::invalidID;
  bool const isKnown = ReadAddress(line, variation, version);
  AString stored;
  line >> named(DataKeyword(), stored);
  VariationIDIndex parsed(AString(), id::invalidID, 0L);
  if (!isKnown || !files.IsInside(stored) || !ReadName(stored, parsed))
    return;
  if (!files.Exists(stored)) {
    ReadMovedLine(parsed, version, files);
    return;
  }
  if (parsed.GetVersionID() != version) {
    if (noVmap && !TakeVersion(version, parsed.GetVersionID()))
      return;
    m_mirroredData.try_emplace(parsed, stored);
    VariationIDIndex const key = KeyOf(variation, version);
    AString const canonical = Owner().GetRelativeLocation(FunctionKeyword(), key);
    if (files.Exists(canonical))
      m_committedData.try_emplace(key, canonical);
    return;
  }
  long mirrored = id::invalidID;
  if (!noVmap && !FindMirroredVersion(version, mirrored))
    return;
  m_committedData.try_emplace(parsed, stored);
  if (!noVmap)
    m_mirroredData.try_emplace(KeyOf(parsed.GetVariation(), mirrored), stored);
}

/// A name that the owner did not give is no location of this store, whatever stands there.
bool CMirroredLocationData::ReadName(AString const & stored, VariationIDIndex & parsed) const {
  Owner().ParseRelativeLocation(stored, FunctionKeyword(), parsed);
  bool const isParsed = parsed.GetVersionID() != id::invalidID && !IsNowhere(parsed);
  KVRO_ASSERT(isParsed);
  return isParsed;
}

void CMirroredLocationData::ReadMovedLine(VariationIDIndex const & parsed, long version, LocationFiles const & files) {
  VariationIDIndex const key = KeyOf(parsed.GetVariation(), version);
  AString const canonical = Owner().GetRelativeLocation(FunctionKeyword(), key);
  if (!files.Exists(canonical))
    return;
  m_committedData.try_emplace(key, canonical);
  m_mirroredData.try_emplace(parsed, canonical);
}

void CMirroredLocationData::MirrorCommittedData() {
  for (auto entry = m_committedData.begin(); entry != m_committedData.end();) {
    auto const & [key, location] = *entry;
    long mirrored = id::invalidID;
    if (!FindMirroredVersion(key.GetVersionID(), mirrored)) {
      entry = m_committedData.erase(entry);
      continue;
    }
    m_mirroredData.try_emplace(KeyOf(key.GetVariation(), mirrored), location);
    ++entry;
  }
}
