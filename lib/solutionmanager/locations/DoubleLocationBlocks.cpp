// The block of a store of locations of numbers: the identifiers of all numbers, then a block for each entry.

#include "basekit/diag/Assert.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CBlockFuncPtr.h"
#include "basekit/io/CNamed_value_manip.h"
#include "solutionmanager/locations/CMirroredDoubleMapLocationData.h"
#include "solutionmanager/locations/IMirroredDataMapOwner.h"
#include "solutionmanager/locations/LocationFiles.h"

#include <cmath>
#include <limits>

using io::named;

namespace {

AString const kIDs = L"IDDblMap";
AString const kEntry = L"DataMap";
AString const kID = L"DblID";
AString const kVariationID = L"VID";
AString const kOriginalVersion = L"Ver";

long Truncated(double value) {
  constexpr double kLimit = -static_cast<double>(std::numeric_limits<long>::min());
  if (value >= kLimit)
    return std::numeric_limits<long>::max();
  return value < -kLimit ? std::numeric_limits<long>::min() : static_cast<long>(value);
}

} // namespace

bool CMirroredDoubleMapLocationData::WriteData(io::CBlock & block) const {
  if (m_mirroredData.empty())
    return !block.Error(false);
  WriteIDs(block);
  if (SingleWrite const single = AskSingleWrite(); !single.isOnlyOne) {
    for (auto entry = m_mirroredData.begin(); entry != m_mirroredData.end(); ++entry)
      WriteMirroredData(block, entry);
  } else if (auto const entry = m_mirroredData.find(SingleKey(single)); entry != m_mirroredData.end()) {
    WriteMirroredData(block, entry);
  }
  return !block.Error(false);
}

void CMirroredDoubleMapLocationData::WriteIDs(io::CBlock & block) const {
  io::CBlockFuncPtr const line(kIDs);
  for (auto const & [id, value] : mIDDoubleMap)
    *line << id << value;
  block << line;
}

void CMirroredDoubleMapLocationData::WriteMirroredData(io::CBlock & block, View::const_iterator entry) const {
  if (entry->second.empty())
    return;
  SingleWrite const single = AskSingleWrite();
  bool isSnapshot = single.isOnlyOne;
  bool keepsWorkingLocations = false;
  Owner().GetWriteMode(isSnapshot, keepsWorkingLocations);
  VariationIDIndex const key(single.variation, GetOriginalVersion(entry->first.GetVersionID()), single.variationID);
  bool const tellsCommitted = isSnapshot && !keepsWorkingLocations;
  auto const committed = tellsCommitted ? m_committedData.find(key) : m_committedData.end();
  io::CBlock_ptr<io::CBlock> const map(new io::CBlock(kEntry));
  WriteAddress(*map, entry->first);
  for (auto place = entry->second.begin(); place != entry->second.end(); ++place) {
    long const id = IDOf(place->first);
    AString const location =
        tellsCommitted ? GetRelativeLocationForCommittedState(place, committed, key, id) : place->second;
    io::CBlockFuncPtr const line(FunctionKeyword());
    *line << named(kID, id) << named(DataKeyword(), location);
    *map << line;
  }
  block << map;
}

bool CMirroredDoubleMapLocationData::ReadData(io::CBlock const & block) {
  ReadIDs(block);
  LocationFiles const files = Files();
  for (auto const & item : block)
    if (io::CBlock_ptr<io::CBlock> const map(item); map)
      ReadEntry(*map, files);
  // The error of this block alone counts; entries and lines that can't be read were passed over.
  return !block.Error(false);
}

void CMirroredDoubleMapLocationData::ReadIDs(io::CBlock const & block) {
  auto const * const line = static_cast<io::CBlock_func const *>(block.FindItem(kIDs, io::CBlock_item::Kind::Func));
  if (!line)
    return;
  long id = id::invalidID;
  double value = 0.0;
  for (auto place = line->begin(); line->QueryUnamedValues(place, id) && line->QueryUnamedValues(place, value);) {
    KVRO_ASSERT(!std::isnan(value));
    if (std::isnan(value))
      continue;
    // Two numbers with one identifier would be saved to one file: the second gets a new one when it is solved.
    if (mIDDoubleMap.try_emplace(id, value).second)
      mDoubleIDMap.try_emplace(value, id);
  }
}

void CMirroredDoubleMapLocationData::ReadEntry(io::CBlock const & block, LocationFiles const & files) {
  long version = id::invalidID;
  long variationID = id::invalidID;
  block >> named(kOriginalVersion, version) >> named(kVariationID, variationID);
  long mirrored = id::invalidID;
  AString const variation = Owner().GetVariationFromID(variationID);
  if (!IsKnownVariation(variation, variationID) || !FindMirroredVersion(version, mirrored))
    return;
  LocMap locations;
  double latest = 0.0;
  for (auto const & item : block)
    if (io::CBlock_ptr<io::CBlock_func> const line(item); line)
      ReadLine(*line, version, files, locations, latest);
  VariationIDIndex const key = KeyOf(variation, version);
  m_mirroredData.try_emplace(KeyOf(variation, mirrored), locations);
  KeepCommitted(locations, key, latest, files);
  m_committedData.try_emplace(key, locations);
}

void CMirroredDoubleMapLocationData::ReadLine(io::CBlock_func const & line, long version, LocationFiles const & files,
                                              LocMap & locations, double & latest) {
  long id = id::invalidID;
  AString location;
  line >> named(kID, id) >> named(DataKeyword(), location);
  if (!files.IsInside(location))
    return;
  if (!files.Exists(location)) {
    VariationIDIndex parsed(AString(), id::invalidID, 0L);
    long parsedID = id::invalidID;
    Owner().ParseRelativeDoubleLocation(location, FunctionKeyword(), parsed, parsedID);
    if (parsed.GetVersionID() == id::invalidID)
      return;
    location = Owner().GetRelativeDoubleLocation(FunctionKeyword(), KeyOf(parsed.GetVariation(), version), id);
    if (!files.Exists(location))
      return;
  }
  auto const dblIter = mIDDoubleMap.find(id);
  KVRO_ASSERT(dblIter != mIDDoubleMap.end());
  // Without its number a location has no place.
  if (dblIter == mIDDoubleMap.end())
    return;
  // The number of this line, also when an equal one has a location already.
  latest = dblIter->second;
  locations.try_emplace(latest, location);
}

/// Leaves of the locations those that the committed view has, under the names that they have there.
void CMirroredDoubleMapLocationData::KeepCommitted(LocMap & locations, VariationIDIndex const & key, double latest,
                                                   LocationFiles const & files) const {
  for (auto place = locations.begin(); place != locations.end();) {
    VariationIDIndex parsed(AString(), id::invalidID, 0L);
    long id = id::invalidID;
    Owner().ParseRelativeDoubleLocation(place->second, FunctionKeyword(), parsed, id);
    if (parsed == key) {
      ++place;
      continue;
    }
    // Not the pair's identifier but the latest number, the same for all pairs: other files of the block are not found.
    AString const canonical = Owner().GetRelativeDoubleLocation(FunctionKeyword(), key, Truncated(latest));
    if (files.Exists(canonical)) {
      place->second = canonical;
      ++place;
    } else {
      place = locations.erase(place);
    }
  }
}
