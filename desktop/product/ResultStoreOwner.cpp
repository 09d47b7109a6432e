// What mirrored stores ask of their owner, and where their files lie.
#include "desktop/product/ResultStoreOwner.h"

#include "basekit/diag/Assert.h"
#include "basekit/file/FileOperations.h"
#include "basekit/file/LongFileName.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/product/ResultLayout.h"
#include "solutionmanager/locations/CMirroredData.h"
#include "solutionmanager/locations/CMirroredDoubleMapLocationData.h"
#include "solutionmanager/locations/CMirroredLocationData.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/transfer/ExportVariationContext.h"

namespace desktop {

ResultStoreOwner::ResultStoreOwner(BaseSolution & solution) : m_solution(solution) {}

ResultStoreOwner::~ResultStoreOwner() = default;

void ResultStoreOwner::AddStore(AString const & keyword, AString const & extension, CMirroredLocationData & store) {
  AddStore(keyword, {.map = &store, .files = &store, .extension = extension});
}

void ResultStoreOwner::AddStore(AString const & keyword, AString const & extension,
                                CMirroredDoubleMapLocationData & store) {
  AddStore(keyword, {.map = &store, .numbered = &store, .extension = extension});
}

void ResultStoreOwner::AddStore(AString const & keyword, CMirroredData<long> & store) {
  AddStore(keyword, {.map = &store, .values = &store});
}

void ResultStoreOwner::AddStore(AString const & keyword, Store store) {
  m_stores.push_back(store.map);
  bool const isNew = m_byKeyword.emplace(keyword, std::move(store)).second;
  KVRO_ASSERT(isNew);
}

ResultStoreOwner::Store * ResultStoreOwner::Find(AString const & keyword) {
  auto const found = m_byKeyword.find(keyword);
  return found == m_byKeyword.end() ? nullptr : &found->second;
}

long ResultStoreOwner::GetCurrentVersion(AString const &) { return m_solution.GetVersionID(); }

AString ResultStoreOwner::GetName() { return m_solution.GetGlobalSolutionName(); }

// Mere questions take mirrored numbers: not each of them is worth a write to the library.  The design's next free ID
// stands in the project file and its autosave.
long ResultStoreOwner::GetNewID() { return m_solution.GetSolutionMgr()->ForEdit().FetchNextUniqueIDNoWrite(); }

AString ResultStoreOwner::GetRootDirectory(bool create) {
  auto const * const manager = dynamic_cast<ProductSolutionManager const *>(m_solution.GetSolutionMgr());
  if (!manager)
    return AString();
  AString const folder =
      manager->GetResultFilesFolder(create) +
      AString::Format(L"setup%d_solution%d/", m_solution.GetBaseSimulationSetup().GetID(), m_solution.GetID());
  if (create)
    LFN_CreateDirectory(LongFileName(folder));
  return folder;
}

long ResultStoreOwner::GetVariationID(AString const & variation) {
  return m_solution.GetSolutionMgr()->GetVariationID(variation);
}

AString ResultStoreOwner::GetVariationFromID(long variationID) {
  return m_solution.GetSolutionMgr()->GetVariationFromID(variationID);
}

VariationIDIndex ResultStoreOwner::KeyOf(AString const & variation, long version) {
  return VariationIDIndex(variation, version, GetVariationID(variation));
}

void ResultStoreOwner::LearnExtension(AString const & keyword, long version, AString const & extension) {
  if (Store * const store = Find(keyword)) {
    store->extensions[version] = extension;
    store->extension = extension;
  }
}

// Files are read that nobody knows yet whether they are ours: what is known stays.
void ResultStoreOwner::NoteExtension(AString const & keyword, long version, AString const & extension) {
  Store * const store = Find(keyword);
  if (store && store->extensions.try_emplace(version, extension).second && store->extensions.size() == 1)
    store->extension = extension;
}

// That of the version under either number; for one that has no file yet, that of the last file that was seen.
AString ResultStoreOwner::ExtensionOf(AString const & keyword, long version) {
  Store * const store = Find(keyword);
  if (!store)
    return AString();
  if (auto const known = store->extensions.find(version); known != store->extensions.end())
    return known->second;
  long const original = store->map->GetOriginalVersion(version);
  if (original == id::invalidID)
    return store->extension;
  for (long const number : {original, store->map->GetMirroredVersion(original)})
    if (auto const known = store->extensions.find(number); known != store->extensions.end())
      return known->second;
  return store->extension;
}

AString ResultStoreOwner::Location(AString const & keyword, VariationIDIndex const & key, std::optional<long> number) {
  long const variationID =
      key.GetVariationID() == id::invalidID ? GetVariationID(key.GetVariation()) : key.GetVariationID();
  return ResultLocation{keyword, variationID, key.GetVersionID(), number, ExtensionOf(keyword, key.GetVersionID())}
      .Text();
}

AString ResultStoreOwner::GetRelativeLocation(AString const & functionKeyword, VariationIDIndex const & key) {
  return Location(functionKeyword, key, std::nullopt);
}

AString ResultStoreOwner::GetRelativeDoubleLocation(AString const & functionKeyword, VariationIDIndex const & key,
                                                    long doubleID) {
  return Location(functionKeyword, key, doubleID);
}

bool ResultStoreOwner::Parse(AString const & location, AString const & keyword, bool hasNumber, VariationIDIndex & key,
                             long & number) {
  auto const parsed = ResultLocation::Parse(location);
  if (!parsed || parsed->keyword != keyword || parsed->number.has_value() != hasNumber)
    return false;
  NoteExtension(keyword, parsed->version, parsed->extension);
  key = VariationIDIndex(GetVariationFromID(parsed->variationID), parsed->version, parsed->variationID);
  number = parsed->number.value_or(number);
  return true;
}

void ResultStoreOwner::ParseRelativeLocation(AString const & location, AString const & functionKeyword,
                                             VariationIDIndex & key) {
  long none = id::invalidID;
  Parse(location, functionKeyword, false, key, none);
}

void ResultStoreOwner::ParseRelativeDoubleLocation(AString const & location, AString const & functionKeyword,
                                                   VariationIDIndex & key, long & doubleID) {
  Parse(location, functionKeyword, true, key, doubleID);
}

// The one that is being exported.
void ResultStoreOwner::GetSingleVariationToWrite(bool & isOnlyOne, long & variationID, AString & variation) {
  ExportVariationContext const * const context = m_solution.GetSolutionMgr()->GetExportVariationContext();
  isOnlyOne = context != nullptr;
  variationID = context ? context->designVariationID : id::invalidID;
  variation = context ? context->designVariationKey : AString();
}

// Copies of unsaved files bear the names that a save would give to them.
void ResultStoreOwner::GetWriteMode(bool & isSnapshot, bool & keepsWorkingLocations) {
  isSnapshot = m_solution.GetSolutionMgr()->GetExportVariationContext() != nullptr;
  keepsWorkingLocations = !isSnapshot;
}

} // namespace desktop
