#include "solutionmanager/locations/CMirroredLocationData.h"

#include "basekit/diag/Assert.h"
#include "basekit/file/PlaceInFolder.h"
#include "solutionmanager/locations/ExportListing.h"
#include "solutionmanager/locations/IMirroredDataMapOwner.h"
#include "solutionmanager/locations/LocationFiles.h"
#include "solutionmanager/locations/MirroredViews.h"

namespace {

// clang-format off
constexpr ExportListing::Words kWords{
    L"Nothing in CMirroredLocationData::GetFilesAndDirsToCopyForExportingVariation for exporting variation %s\n",
    L"Returning file %s in CMirroredLocationData::GetFilesAndDirsToCopyForExportingVariation for exporting variation %s\n",
    L"Returning dir %s in CMirroredLocationData::GetFilesAndDirsToCopyForExportingVariation for exporting variation %s\n",
};
// clang-format on

} // namespace

CMirroredLocationData::CMirroredLocationData(IMirroredDataMapOwner * owner, AString const & blockName,
                                             AString const & functionKeyword, AString const & dataKeyword, bool isFile)
    : CMirroredDataMap(owner, blockName, functionKeyword, dataKeyword), m_isFile(isFile) {}

CMirroredLocationData::CMirroredLocationData(CMirroredLocationData const & other) = default;
CMirroredLocationData & CMirroredLocationData::operator=(CMirroredLocationData const & other) = default;
CMirroredLocationData::~CMirroredLocationData() = default;

LocationFiles CMirroredLocationData::Files() const { return LocationFiles(Owner().GetRootDirectory(false), m_isFile); }

bool CMirroredLocationData::HaveData(long version) const {
  return mirrored::HasOriginalVersion(*this, m_mirroredData, version);
}

bool CMirroredLocationData::HaveData(VariationIDIndex const & key) const {
  return m_mirroredData.contains(MirroredKey(key));
}

bool CMirroredLocationData::HaveData() const { return !m_mirroredData.empty(); }

void CMirroredLocationData::ListVariations(std::map<AString, int> & variations) const {
  mirrored::CountVariations(m_mirroredData, variations);
}

void CMirroredLocationData::ListValidKeys(std::vector<VariationIDIndex> & keys) const {
  keys.clear();
  for (auto const & entry : m_mirroredData)
    keys.push_back(CommittedKey(entry.first));
}

AString CMirroredLocationData::GetRelativePath(VariationIDIndex const & key, bool forWrite, bool createDir) {
  VariationIDIndex const mirroredKey = MirroredKey(key);
  if (!forWrite) {
    auto const found = m_mirroredData.find(mirroredKey);
    return found == m_mirroredData.end() ? AString() : found->second;
  }
  if (IsNowhere(mirroredKey))
    return AString();
  AString const location = Owner().GetRelativeLocation(FunctionKeyword(), mirroredKey);
  if (createDir && !m_isFile)
    LocationFiles(Owner().GetRootDirectory(true), m_isFile).CreateDirectory(location);
  return location;
}

AString CMirroredLocationData::GetFullPath(VariationIDIndex const & key, bool forWrite, bool createDir) const {
  AString const root = Owner().GetRootDirectory(createDir);
  // Overrides may keep what they find out; the store's own answer grows nothing but the version map.
  return root + const_cast<CMirroredLocationData *>(this)->GetRelativePath(key, forWrite, createDir);
}

void CMirroredLocationData::SetData(VariationIDIndex const & key) {
  VariationIDIndex const mirroredKey = MirroredKey(key);
  if (!IsNowhere(mirroredKey))
    m_mirroredData.insert_or_assign(mirroredKey, Owner().GetRelativeLocation(FunctionKeyword(), mirroredKey));
}

void CMirroredLocationData::SetData(VariationIDIndex const & key, AString const & location) {
  if (!LFN_IsTextOfPlaceInside(location)) {
    KVRO_ASSERT(!"A location leads out of the results folder");
    return;
  }
  VariationIDIndex const mirroredKey = MirroredKey(key);
  if (IsNowhere(mirroredKey))
    return;
  m_mirroredData.insert_or_assign(mirroredKey, location);
  VariationIDIndex parsed(AString(), id::invalidID, 0L);
  Owner().ParseRelativeLocation(location, FunctionKeyword(), parsed);
  if (parsed.GetVersionID() == GetOriginalVersion(mirroredKey.GetVersionID()))
    m_committedData.try_emplace(parsed, location);
}

CMirroredLocationData::View::iterator CMirroredLocationData::DeleteMapEntryAndData(View & view, View::iterator entry) {
  VariationIDIndex const & key = entry->first;
  Owner().OnDeleteLocation(key.GetVariation(), GetOriginalVersion(key.GetVersionID()), key.GetVersionID(),
                           FunctionKeyword());
  Files().Delete(entry->second);
  return view.erase(entry);
}

CMirroredLocationData::View::iterator
CMirroredLocationData::DiscardEntry(View::iterator entry, VariationIDIndex const & committed, bool & isDeleted) {
  auto const twin = m_committedData.find(committed);
  isDeleted = twin == m_committedData.end() || twin->second != entry->second;
  return isDeleted ? DeleteMapEntryAndData(m_mirroredData, entry) : m_mirroredData.erase(entry);
}

bool CMirroredLocationData::DiscardMirroredData(VariationIDIndex const & key) {
  auto const entry = m_mirroredData.find(MirroredKey(key));
  if (entry == m_mirroredData.end())
    return false;
  bool isDeleted = false;
  // The key as it was given: under a mirrored version the committed twin is not found.
  DiscardEntry(entry, key, isDeleted);
  return isDeleted;
}

bool CMirroredLocationData::DiscardMirroredData(AString const & variation) {
  bool isAnyDeleted = false;
  mirrored::RemoveWhere(m_mirroredData, mirrored::IsOf(variation), [&](View::iterator entry) {
    bool isDeleted = false;
    auto const next = DiscardEntry(entry, CommittedKey(entry->first), isDeleted);
    isAnyDeleted = isAnyDeleted || isDeleted;
    return next;
  });
  return isAnyDeleted;
}

bool CMirroredLocationData::DiscardMirroredData() {
  bool const held = !m_mirroredData.empty();
  for (auto entry = m_mirroredData.begin(); entry != m_mirroredData.end();) {
    bool isDeleted = false;
    entry = DiscardEntry(entry, CommittedKey(entry->first), isDeleted);
  }
  return held;
}

void CMirroredLocationData::ReinitMirroredData() {
  DiscardMirroredData();
  for (auto const & [key, location] : m_committedData)
    m_mirroredData.try_emplace(MirroredKey(key), location);
}

void CMirroredLocationData::ClearAllData() {
  LocationFiles const files = Files();
  for (auto const & [key, location] : m_committedData) {
    Owner().OnDeleteLocation(key.GetVariation(), key.GetVersionID(), key.GetVersionID(), FunctionKeyword());
    files.DeleteOutright(location);
  }
  for (auto const & [key, location] : m_mirroredData) {
    Owner().OnDeleteLocation(key.GetVariation(), GetOriginalVersion(key.GetVersionID()), key.GetVersionID(),
                             FunctionKeyword());
    files.DeleteOutright(location);
  }
  m_committedData.clear();
  m_mirroredData.clear();
}

void CMirroredLocationData::ClearVariationData(AString const & variation) {
  mirrored::RemoveWhere(m_committedData, mirrored::IsOf(variation),
                        [this](View::iterator entry) { return DeleteMapEntryAndData(m_committedData, entry); });
  DiscardMirroredData(variation);
}

void CMirroredLocationData::ClearNonCurrentData() {
  long const current = CurrentVersion();
  long const mirrored = GetMirroredVersion(current);
  mirrored::RemoveWhere(
      m_committedData, [=](VariationIDIndex const & key) { return key.GetVersionID() != current; },
      [this](View::iterator entry) { return DeleteMapEntryAndData(m_committedData, entry); });
  mirrored::RemoveWhere(
      m_mirroredData,
      [=](VariationIDIndex const & key) { return key.GetVersionID() != current && key.GetVersionID() != mirrored; },
      [this](View::iterator entry) { return DeleteMapEntryAndData(m_mirroredData, entry); });
}

void CMirroredLocationData::ClearMapContents() {
  m_committedData.clear();
  m_mirroredData.clear();
}

AString CMirroredLocationData::GetRelativeLocationForCommittedState(View::const_iterator,
                                                                    VariationIDIndex const & key) const {
  auto const found = m_committedData.find(key);
  return found == m_committedData.end() ? Owner().GetRelativeLocation(FunctionKeyword(), key) : found->second;
}

bool CMirroredLocationData::GetFilesAndDirsToCopyForExportingVariation(std::vector<AString> & files,
                                                                       std::vector<AString> & dirs,
                                                                       AString const & variation) const {
  ExportListing const listing(kWords, m_isFile, files, dirs, variation);
  auto const found = m_committedData.find(KeyOf(variation, CurrentVersion()));
  if (found == m_committedData.end())
    listing.NothingFound();
  else
    listing.Add(found->second);
  return true;
}

bool CMirroredLocationData::GetFilesAndDirsToCopyForExportingVariation(std::map<AString, AString> & renames,
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
  AString const commit = GetRelativeLocationForCommittedState(found, KeyOf(variation, version));
  if (commit.Compare(found->second) != 0)
    renames[found->second] = commit;
  listing.Add(found->second);
  return true;
}
