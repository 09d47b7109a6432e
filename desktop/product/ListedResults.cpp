// What a solution keeps for a point, for whoever shows it.
#include "basekit/file/FileOperations.h"
#include "basekit/file/LongFileName.h"
#include "desktop/product/ResultLayout.h"
#include "desktop/product/ResultStoreOwner.h"
#include "solutionmanager/locations/CMirroredData.h"
#include "solutionmanager/locations/CMirroredDoubleMapLocationData.h"
#include "solutionmanager/locations/CMirroredLocationData.h"
#include "solutionmanager/model/BaseSolution.h"

#include <algorithm>

namespace desktop {

namespace {

// Of the committed view, by the identifier of their number; a store of one file each has one without.
std::map<std::optional<long>, AString> SavedPaths(CMirroredDataMap const & store, AString const & variation) {
  std::vector<AString> files;
  std::vector<AString> folders;
  store.GetFilesAndDirsToCopyForExportingVariation(files, folders, variation);
  std::map<std::optional<long>, AString> paths;
  for (AString const & path : files)
    if (auto const location = ResultLocation::Parse(path))
      paths.emplace(location->number, path);
  return paths;
}

std::map<std::optional<long>, AString> WorkingPaths(CMirroredDataMap const & store, AString const & variation) {
  std::map<AString, AString> renames;
  std::vector<AString> files;
  std::vector<AString> folders;
  store.GetFilesAndDirsToCopyForExportingVariation(renames, files, folders, variation);
  std::map<std::optional<long>, AString> paths;
  for (AString const & path : files)
    if (auto const location = ResultLocation::Parse(path))
      paths.emplace(location->number, path);
  return paths;
}

} // namespace

void ResultStoreOwner::ListFiles(AString const & keyword, Store & store, VariationIDIndex const & key,
                                 std::vector<StoredResult> & results) {
  AString const root = GetRootDirectory(false);
  auto const saved = SavedPaths(*store.map, key.GetVariation());
  auto const working = WorkingPaths(*store.map, key.GetVariation());
  std::map<std::optional<long>, StoredResult> files;
  for (auto const & [number, path] : working)
    if (LFN_Exists(LongFileName(root + path)))
      files[number].path = root + path;
  for (auto const & [number, path] : saved)
    if (LFN_Exists(LongFileName(root + path)))
      files[number].savedPath = root + path;
  for (auto & [number, file] : files) {
    file.store = keyword;
    double value = 0.0;
    if (number && store.numbered && store.numbered->GetDoubleValueByID(*number, value))
      file.number = value;
    results.push_back(std::move(file));
  }
}

std::vector<StoredResult> ResultStoreOwner::ListResults(AString const & variation, io::CBlock const * record) {
  std::vector<StoredResult> results;
  VariationIDIndex const key = KeyOf(variation, m_solution.GetVersionID());
  for (auto & [keyword, store] : m_byKeyword) {
    if (!store.values)
      ListFiles(keyword, store, key, results);
    else if (store.values->HaveData(key))
      results.push_back({.store = keyword, .value = store.values->GetData(key)});
  }
  for (ResultExtras::Item const & item : record ? ResultExtras::ItemsOf(*record) : std::vector<ResultExtras::Item>())
    if (!item.value && std::none_of(results.begin(), results.end(), [&item](StoredResult const & result) {
          return result.store == item.store && result.number == item.number;
        }))
      results.push_back({.store = item.store, .number = item.number});
  std::stable_sort(results.begin(), results.end(), [](StoredResult const & a, StoredResult const & b) {
    return a.store != b.store ? a.store.Compare(b.store) < 0 : a.number < b.number;
  });
  return results;
}

} // namespace desktop
