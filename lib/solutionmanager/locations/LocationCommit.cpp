// How unsaved locations of a store become the committed ones.

#include "solutionmanager/locations/CMirroredLocationData.h"
#include "solutionmanager/locations/IMirroredDataMapOwner.h"
#include "solutionmanager/locations/LocationFiles.h"
#include "solutionmanager/locations/MirroredViews.h"

bool CMirroredLocationData::NeedWriteVmap() const {
  if (AskSingleWrite().isOnlyOne)
    return false;
  for (auto const & [key, location] : m_mirroredData) {
    auto const twin = m_committedData.find(CommittedKey(key));
    if (twin == m_committedData.end() || twin->second != location)
      return true;
  }
  return false;
}

void CMirroredLocationData::CommitMirroredData() {
  LocationFiles const files = Files();
  ClearNonCurrentData();
  // What no working entry mirrors was discarded.
  mirrored::RemoveWhere(
      m_committedData, [this](VariationIDIndex const & key) { return !m_mirroredData.contains(MirroredKey(key)); },
      [this](View::iterator entry) { return DeleteMapEntryAndData(m_committedData, entry); });
  for (auto & entry : m_mirroredData)
    CommitEntry(entry, files);
}

void CMirroredLocationData::CommitEntry(View::value_type & entry, LocationFiles const & files) {
  VariationIDIndex const committedKey = CommittedKey(entry.first);
  AString const variation = entry.first.GetVariation();
  long const original = committedKey.GetVersionID();
  long const mirrored = entry.first.GetVersionID();
  AString & location = entry.second;
  Owner().OnCommitLocation(variation, original, mirrored, FunctionKeyword(), location);
  auto twin = m_committedData.find(committedKey);
  if (twin != m_committedData.end() && twin->second == location)
    return;
  Owner().OnMoveLocation(variation, original, mirrored, FunctionKeyword());
  if (twin == m_committedData.end()) {
    AString const target = Owner().GetRelativeLocation(FunctionKeyword(), committedKey);
    twin = m_committedData.try_emplace(committedKey, target).first;
  } else if (!files.AreSame(location, twin->second) && files.IsInside(location)) {
    // A location that can't be moved replaces nothing.
    files.Delete(twin->second);
  }
  files.Move(location, twin->second);
  location = twin->second;
}
