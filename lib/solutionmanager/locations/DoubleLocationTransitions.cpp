// What saving, discarding and clearing do to the locations of numbers.

#include "solutionmanager/locations/CMirroredDoubleMapLocationData.h"
#include "solutionmanager/locations/IMirroredDataMapOwner.h"
#include "solutionmanager/locations/LocationFiles.h"
#include "solutionmanager/locations/MirroredViews.h"

#include <algorithm>
#include <cmath>
#include <iterator>

bool CMirroredDoubleMapLocationData::NeedWriteVmap() const {
  if (AskSingleWrite().isOnlyOne)
    return false;
  for (auto const & [key, locations] : m_mirroredData) {
    auto const twin = m_committedData.find(CommittedKey(key));
    if (twin == m_committedData.end() || twin->second != locations)
      return true;
  }
  return false;
}

bool CMirroredDoubleMapLocationData::IsCommitted(View::const_iterator committed, double value,
                                                 AString const & location) const {
  if (committed == m_committedData.end())
    return false;
  auto const twin = committed->second.find(value);
  return twin != committed->second.end() && twin->second == location;
}

CMirroredDoubleMapLocationData::LocMap::iterator
CMirroredDoubleMapLocationData::DiscardPair(VariationIDIndex const & key, LocMap & locations, LocMap::iterator place,
                                            View::const_iterator committed) {
  return IsCommitted(committed, place->first, place->second) ? locations.erase(place)
                                                             : DeleteLocMapEntryAndData(key, locations, place);
}

bool CMirroredDoubleMapLocationData::DiscardMirroredData(VariationIDIndex const & key, double value) {
  auto const entry = m_mirroredData.find(MirroredKey(key));
  if (entry == m_mirroredData.end() || std::isnan(value))
    return false;
  auto const place = entry->second.find(value);
  if (place == entry->second.end())
    return false;
  DiscardPair(entry->first, entry->second, place, m_committedData.find(key));
  return true;
}

bool CMirroredDoubleMapLocationData::DiscardMirroredData(VariationIDIndex const & key) {
  auto const entry = m_mirroredData.find(MirroredKey(key));
  if (entry == m_mirroredData.end() || entry->second.empty())
    return false;
  auto const committed = m_committedData.find(key);
  if (committed == m_committedData.end()) {
    DeleteLocMapAndData(m_mirroredData, entry);
    return true;
  }
  LocMap & locations = entry->second;
  for (auto place = locations.begin(); place != locations.end();)
    place = DiscardPair(entry->first, locations, place, committed);
  return true;
}

CMirroredDoubleMapLocationData::View::iterator CMirroredDoubleMapLocationData::DiscardEntry(View::iterator entry) {
  auto const committed = m_committedData.find(CommittedKey(entry->first));
  LocMap & locations = entry->second;
  for (auto place = locations.begin(); place != locations.end();)
    place = DiscardPair(entry->first, locations, place, committed);
  return m_mirroredData.erase(entry);
}

bool CMirroredDoubleMapLocationData::DiscardMirroredData(AString const & variation) {
  bool held = false;
  for (auto entry = m_mirroredData.begin(); entry != m_mirroredData.end();) {
    bool const isMeant = !entry->second.empty() && entry->first.GetVariation() == variation;
    held = held || isMeant;
    entry = isMeant ? DiscardEntry(entry) : std::next(entry);
  }
  return held;
}

bool CMirroredDoubleMapLocationData::DiscardMirroredData() {
  bool const held = HaveData();
  for (auto entry = m_mirroredData.begin(); entry != m_mirroredData.end();)
    entry = DiscardEntry(entry);
  return held;
}

bool CMirroredDoubleMapLocationData::DiscardMirroredDataExcept(double value) {
  bool isAnyDeleted = false;
  for (auto & [key, locations] : m_mirroredData)
    for (auto place = locations.begin(); place != locations.end();) {
      bool const isKept = place->first == value;
      isAnyDeleted = isAnyDeleted || !isKept;
      place = isKept ? std::next(place) : DeleteLocMapEntryAndData(key, locations, place);
    }
  return isAnyDeleted;
}

void CMirroredDoubleMapLocationData::ReinitMirroredData() {
  DiscardMirroredData();
  for (auto const & [key, locations] : m_committedData)
    m_mirroredData.try_emplace(MirroredKey(key), locations);
}

void CMirroredDoubleMapLocationData::ClearAllData() {
  for (View * const view : {&m_committedData, &m_mirroredData})
    for (auto entry = view->begin(); entry != view->end();)
      entry = DeleteLocMapAndData(*view, entry);
  mDoubleIDMap.clear();
  mIDDoubleMap.clear();
}

void CMirroredDoubleMapLocationData::ClearVariationData(AString const & variation) {
  mirrored::RemoveWhere(m_committedData, mirrored::IsOf(variation),
                        [this](View::iterator entry) { return DeleteLocMapAndData(m_committedData, entry); });
  DiscardMirroredData(variation);
}

void CMirroredDoubleMapLocationData::ClearNonCurrentData() {
  long const current = CurrentVersion();
  long const mirrored = GetMirroredVersion(current);
  mirrored::RemoveWhere(
      m_committedData, [=](VariationIDIndex const & key) { return key.GetVersionID() != current; },
      [this](View::iterator entry) { return DeleteLocMapAndData(m_committedData, entry); });
  mirrored::RemoveWhere(
      m_mirroredData,
      [=](VariationIDIndex const & key) { return key.GetVersionID() != current && key.GetVersionID() != mirrored; },
      [this](View::iterator entry) { return DeleteLocMapAndData(m_mirroredData, entry); });
}

void CMirroredDoubleMapLocationData::ClearMapContents() {
  m_committedData.clear();
  m_mirroredData.clear();
  mDoubleIDMap.clear();
  mIDDoubleMap.clear();
}

void CMirroredDoubleMapLocationData::ClearData(AString const & variation, double value) {
  if (std::isnan(value))
    return;
  for (View * const view : {&m_committedData, &m_mirroredData})
    for (auto & [key, locations] : *view)
      if (key.GetVariation() == variation)
        if (auto const place = locations.find(value); place != locations.end())
          DeleteLocMapEntryAndData(key, locations, place);
}

void CMirroredDoubleMapLocationData::ClearData(std::set<double, Less> const & values) {
  // NaN equals nothing, but the order takes it for every number.
  std::set<double, Less> numbers;
  std::copy_if(values.begin(), values.end(), std::inserter(numbers, numbers.end()),
               [](double value) { return !std::isnan(value); });
  ClearDoubles(m_committedData, numbers);
  ClearDoubles(m_mirroredData, numbers);
}

void CMirroredDoubleMapLocationData::ClearDoubles(View & view, std::set<double, Less> const & values) {
  for (auto & [key, locations] : view)
    for (auto place = locations.begin(); place != locations.end();)
      place = values.contains(place->first) ? DeleteLocMapEntryAndData(key, locations, place) : std::next(place);
}
