// How unsaved locations of numbers become the committed ones.  What decides about a move is the canonical name, not the
// committed text.

#include "solutionmanager/locations/CMirroredDoubleMapLocationData.h"
#include "solutionmanager/locations/IMirroredDataMapOwner.h"
#include "solutionmanager/locations/LocationFiles.h"

void CMirroredDoubleMapLocationData::CommitMirroredData() {
  LocationFiles const files = Files();
  ClearNonCurrentData();
  for (auto entry = m_committedData.begin(); entry != m_committedData.end();)
    entry = CommitLosses(entry);
  for (auto & entry : m_mirroredData)
    CommitEntry(entry, files);
  DropMergedIDs();
}

/// Removes what the working view lost, and gives the next committed entry.
CMirroredDoubleMapLocationData::View::iterator CMirroredDoubleMapLocationData::CommitLosses(View::iterator committed) {
  auto const working = m_mirroredData.find(MirroredKey(committed->first));
  if (working == m_mirroredData.end())
    return DeleteLocMapAndData(m_committedData, committed);
  LocMap & locations = committed->second;
  for (auto place = locations.begin(); place != locations.end();)
    place = working->second.contains(place->first) ? std::next(place)
                                                   : DeleteLocMapEntryAndData(committed->first, locations, place);
  return locations.empty() ? DeleteLocMapAndData(m_committedData, committed) : std::next(committed);
}

void CMirroredDoubleMapLocationData::CommitEntry(View::value_type & entry, LocationFiles const & files) {
  VariationIDIndex const committedKey = CommittedKey(entry.first);
  auto const committed = m_committedData.find(committedKey);
  for (auto & pair : entry.second)
    CommitPair(entry.first, committedKey, pair, committed == m_committedData.end() ? nullptr : &committed->second,
               files);
  if (committed == m_committedData.end())
    m_committedData.try_emplace(committedKey, entry.second);
}

void CMirroredDoubleMapLocationData::CommitPair(VariationIDIndex const & key, VariationIDIndex const & committedKey,
                                                LocMap::value_type & pair, LocMap * committed,
                                                LocationFiles const & files) {
  AString const variation = key.GetVariation();
  long const original = committedKey.GetVersionID();
  long const mirrored = key.GetVersionID();
  AString location = pair.second;
  Owner().OnCommitDoubleLocation(variation, original, mirrored, pair.first, FunctionKeyword(), location);
  AString const canonical = Owner().GetRelativeDoubleLocation(FunctionKeyword(), committedKey, IDOf(pair.first));
  bool const hasTwin = committed && committed->contains(pair.first);
  if (location != canonical) {
    Owner().OnMoveDoubleLocation(variation, original, mirrored, pair.first, FunctionKeyword());
    if (hasTwin) {
      // A location that can't be moved replaces nothing.
      if (!files.AreSame(location, canonical) && files.IsInside(location))
        files.Delete(canonical);
      // The owner hears of this one move twice.
      Owner().OnMoveDoubleLocation(variation, original, mirrored, pair.first, FunctionKeyword());
    }
    files.Move(location, canonical);
    pair.second = canonical;
  }
  if (committed && !hasTwin)
    committed->try_emplace(pair.first, canonical);
}

/// Identifiers of numbers that the tolerance has merged into one leave the file.
void CMirroredDoubleMapLocationData::DropMergedIDs() {
  std::erase_if(mIDDoubleMap, [this](auto const & pair) {
    auto const known = mDoubleIDMap.find(pair.second);
    return known != mDoubleIDMap.end() && known->second != pair.first;
  });
}
