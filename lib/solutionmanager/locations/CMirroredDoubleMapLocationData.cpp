#include "solutionmanager/locations/CMirroredDoubleMapLocationData.h"

#include "basekit/diag/Assert.h"
#include "basekit/file/PlaceInFolder.h"
#include "solutionmanager/locations/ExportListing.h"
#include "solutionmanager/locations/IMirroredDataMapOwner.h"
#include "solutionmanager/locations/LocationFiles.h"
#include "solutionmanager/locations/MirroredViews.h"

#include <cmath>

namespace {

// clang-format off
constexpr ExportListing::Words kWords{
    L"Nothing in CMirroredDoubleMapLocationData::GetFilesAndDirsToCopyForExportingVariation for exporting variation %s\n",
    L"Returning file %s in CMirroredDoubleMapLocationData::GetFilesAndDirsToCopyForExportingVariation for exporting variation %s\n",
    L"Returning dir %s in CMirroredDoubleMapLocationData::GetFilesAndDirsToCopyForExportingVariation for exporting variation %s\n",
};
// clang-format on

// NaN equals nothing, so it is never found; the maps' order alone would take it for any of their numbers.
template <class Map> auto Find(Map & map, double value) { return std::isnan(value) ? map.end() : map.find(value); }

bool Refuse(double value) {
  KVRO_ASSERT(!std::isnan(value));
  return std::isnan(value);
}

} // namespace

CMirroredDoubleMapLocationData::CMirroredDoubleMapLocationData(IMirroredDataMapOwner * owner, AString const & blockName,
                                                               AString const & functionKeyword,
                                                               AString const & dataKeyword, bool isFile)
    : CMirroredDataMap(owner, blockName, functionKeyword, dataKeyword), m_isFile(isFile) {}

CMirroredDoubleMapLocationData::CMirroredDoubleMapLocationData(CMirroredDoubleMapLocationData const & other) = default;
CMirroredDoubleMapLocationData &
CMirroredDoubleMapLocationData::operator=(CMirroredDoubleMapLocationData const & other) = default;
CMirroredDoubleMapLocationData::~CMirroredDoubleMapLocationData() = default;

LocationFiles CMirroredDoubleMapLocationData::Files() const {
  return LocationFiles(Owner().GetRootDirectory(false), m_isFile);
}

CMirroredDoubleMapLocationData::LocMap const *
CMirroredDoubleMapLocationData::FindLocations(VariationIDIndex const & key) const {
  auto const found = m_mirroredData.find(MirroredKey(key));
  return found == m_mirroredData.end() ? nullptr : &found->second;
}

bool CMirroredDoubleMapLocationData::HaveData(long version) const {
  for (auto const & [key, locations] : m_mirroredData)
    if (!locations.empty() && GetOriginalVersion(key.GetVersionID()) == version)
      return true;
  return false;
}

bool CMirroredDoubleMapLocationData::HaveData(VariationIDIndex const & key) const {
  LocMap const * const locations = FindLocations(key);
  return locations && !locations->empty();
}

bool CMirroredDoubleMapLocationData::HaveData() const {
  for (auto const & entry : m_mirroredData)
    if (!entry.second.empty())
      return true;
  return false;
}

bool CMirroredDoubleMapLocationData::HaveData(VariationIDIndex const & key, double value) const {
  LocMap const * const locations = FindLocations(key);
  return locations && Find(*locations, value) != locations->end();
}

void CMirroredDoubleMapLocationData::ListVariations(std::map<AString, int> & variations) const {
  mirrored::CountVariations(m_mirroredData, variations);
}

void CMirroredDoubleMapLocationData::ListValidKeys(std::vector<VariationIDIndex> & keys) const {
  keys.clear();
  for (auto const & entry : m_mirroredData)
    keys.push_back(CommittedKey(entry.first));
}

void CMirroredDoubleMapLocationData::ListValidDoubles(VariationIDIndex const & key,
                                                      std::vector<double> & values) const {
  values.clear();
  if (LocMap const * const locations = FindLocations(key))
    for (auto const & pair : *locations)
      values.push_back(pair.first);
}

void CMirroredDoubleMapLocationData::GetValidDoubles(VariationIDIndex const & key, std::vector<double> & values) {
  std::vector<double> found;
  ListValidDoubles(key, found);
  values.insert(values.end(), found.begin(), found.end());
}

bool CMirroredDoubleMapLocationData::GetDoubleValueByID(long id, double & value) const {
  auto const found = mIDDoubleMap.find(id);
  if (found == mIDDoubleMap.end())
    return false;
  value = found->second;
  return true;
}

long CMirroredDoubleMapLocationData::IDOf(double value) const {
  auto const found = Find(mDoubleIDMap, value);
  return found == mDoubleIDMap.end() ? id::invalidID : found->second;
}

long CMirroredDoubleMapLocationData::EnsureID(double value) {
  auto const found = Find(mDoubleIDMap, value);
  return found != mDoubleIDMap.end() ? found->second
                                     : mDoubleIDMap.try_emplace(value, Owner().GetNewID()).first->second;
}

AString CMirroredDoubleMapLocationData::GetRelativePath(VariationIDIndex const & key, double value, bool forWrite,
                                                        bool createDir) {
  VariationIDIndex const mirroredKey = MirroredKey(key);
  if (!forWrite) {
    auto const entry = m_mirroredData.find(mirroredKey);
    if (entry == m_mirroredData.end())
      return AString();
    auto const found = Find(entry->second, value);
    return found == entry->second.end() ? AString() : found->second;
  }
  if (Refuse(value) || IsNowhere(mirroredKey))
    return AString();
  bool const isNew = Find(mDoubleIDMap, value) == mDoubleIDMap.end();
  long const id = EnsureID(value);
  if (isNew)
    mIDDoubleMap.try_emplace(id, value);
  AString const location = Owner().GetRelativeDoubleLocation(FunctionKeyword(), mirroredKey, id);
  if (createDir && !m_isFile)
    LocationFiles(Owner().GetRootDirectory(createDir), m_isFile).CreateDirectory(location);
  return location;
}

AString CMirroredDoubleMapLocationData::GetRelativePath(VariationIDIndex const & key, long id) {
  double value = 0.0;
  return GetDoubleValueByID(id, value) ? GetRelativePath(key, value, false, false) : AString();
}

AString CMirroredDoubleMapLocationData::GetFullPath(VariationIDIndex const & key, double value, bool forWrite,
                                                    bool createDir) {
  AString const root = Owner().GetRootDirectory(createDir);
  return root + GetRelativePath(key, value, forWrite, createDir);
}

void CMirroredDoubleMapLocationData::SetData(VariationIDIndex const & key, double value) {
  if (Refuse(value))
    return;
  VariationIDIndex const mirroredKey = MirroredKey(key);
  if (IsNowhere(mirroredKey))
    return;
  long const id = EnsureID(value);
  AString const path = Owner().GetRelativeDoubleLocation(FunctionKeyword(), mirroredKey, id);
  LocMap & locations = m_mirroredData[mirroredKey];
  auto const place = locations.try_emplace(value, path).first;
  if (place->second != path) {
    // The key as it was given: the file of a committed twin stays.
    if (IsCommitted(m_committedData.find(key), value, place->second)) {
      place->second = path;
    } else {
      DeleteLocMapEntryAndData(mirroredKey, locations, place);
      locations.try_emplace(value, path);
    }
  }
  mIDDoubleMap.try_emplace(id, value);
}

void CMirroredDoubleMapLocationData::SetData(VariationIDIndex const & key, double value, AString const & path) {
  if (Refuse(value))
    return;
  if (!LFN_IsTextOfPlaceInside(path)) {
    KVRO_ASSERT(!"A location leads out of the results folder");
    return;
  }
  VariationIDIndex const mirroredKey = MirroredKey(key);
  if (IsNowhere(mirroredKey))
    return;
  VariationIDIndex parsed(AString(), id::invalidID, 0L);
  long id = id::invalidID;
  Owner().ParseRelativeDoubleLocation(path, FunctionKeyword(), parsed, id);
  if (!mDoubleIDMap.contains(value)) {
    id = FreeID(id, value);
    mDoubleIDMap.try_emplace(value, id);
  }
  if (auto const entry = m_mirroredData.find(mirroredKey); entry == m_mirroredData.end()) {
    m_mirroredData.try_emplace(mirroredKey, LocMap{{value, path}});
    m_committedData.try_emplace(key, LocMap{{value, path}});
  } else if (entry->second.try_emplace(value, path).second) {
    // Nobody looks whether the committed view has the key; one that is missing is made.
    m_committedData[key].try_emplace(value, path);
  }
  mIDDoubleMap.try_emplace(id, value);
}

long CMirroredDoubleMapLocationData::FreeID(long id, double value) {
  auto const known = mIDDoubleMap.find(id);
  // Two numbers with one identifier would be saved to one file.
  bool const isTaken = known != mIDDoubleMap.end() && (Less()(known->second, value) || Less()(value, known->second));
  return isTaken ? Owner().GetNewID() : id;
}

CMirroredDoubleMapLocationData::LocMap::iterator
CMirroredDoubleMapLocationData::DeleteLocMapEntryAndData(VariationIDIndex const & key, LocMap & locations,
                                                         LocMap::iterator place) {
  Owner().OnDeleteDoubleLocation(key.GetVariation(), GetOriginalVersion(key.GetVersionID()), key.GetVersionID(),
                                 place->first, FunctionKeyword());
  Files().Delete(place->second);
  return locations.erase(place);
}

CMirroredDoubleMapLocationData::View::iterator
CMirroredDoubleMapLocationData::DeleteLocMapAndData(View & view, View::iterator entry) {
  for (auto place = entry->second.begin(); place != entry->second.end();)
    place = DeleteLocMapEntryAndData(entry->first, entry->second, place);
  return view.erase(entry);
}

AString CMirroredDoubleMapLocationData::GetRelativeLocationForCommittedState(LocMap::const_iterator place,
                                                                             View::const_iterator committed,
                                                                             VariationIDIndex const & key,
                                                                             long id) const {
  if (committed != m_committedData.end())
    if (auto const found = committed->second.find(place->first); found != committed->second.end())
      return found->second;
  return Owner().GetRelativeDoubleLocation(FunctionKeyword(), key, id);
}

bool CMirroredDoubleMapLocationData::GetFilesAndDirsToCopyForExportingVariation(std::vector<AString> & files,
                                                                                std::vector<AString> & dirs,
                                                                                AString const & variation) const {
  ExportListing const listing(kWords, m_isFile, files, dirs, variation);
  auto const found = m_committedData.find(KeyOf(variation, CurrentVersion()));
  if (found == m_committedData.end()) {
    listing.NothingFound();
    return true;
  }
  for (auto const & pair : found->second)
    listing.Add(pair.second);
  return true;
}

bool CMirroredDoubleMapLocationData::GetFilesAndDirsToCopyForExportingVariation(std::map<AString, AString> & renames,
                                                                                std::vector<AString> & files,
                                                                                std::vector<AString> & dirs,
                                                                                AString const & variation) const {
  ExportListing const listing(kWords, m_isFile, files, dirs, variation);
  long const version = CurrentVersion();
  auto const found = m_mirroredData.find(MirroredKey(variation, version));
  if (found == m_mirroredData.end()) {
    listing.NothingFound();
    return true;
  }
  VariationIDIndex const key = KeyOf(variation, version);
  auto const committed = m_committedData.find(key);
  for (auto place = found->second.begin(); place != found->second.end(); ++place) {
    if (auto const known = Find(mDoubleIDMap, place->first); known == mDoubleIDMap.end()) {
      KVRO_ASSERT(0);
    } else {
      AString const commit = GetRelativeLocationForCommittedState(place, committed, key, known->second);
      if (commit.Compare(place->second) != 0)
        renames[place->second] = commit;
    }
    listing.Add(place->second);
  }
  return true;
}
