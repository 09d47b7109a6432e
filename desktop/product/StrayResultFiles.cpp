#include "desktop/product/StrayResultFiles.h"

#include "basekit/file/FileOperations.h"
#include "basekit/file/IFileSystem.h"
#include "basekit/file/PlaceInFolder.h"
#include "basekit/io/CBlock.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/product/ResultStores.h"
#include "solutionmanager/locations/CMirroredDoubleMapLocationData.h"
#include "solutionmanager/locations/CMirroredLocationData.h"
#include "solutionmanager/locations/IMirroredDataMapOwner.h"

namespace desktop {

namespace {

AString WithoutSlash(AString const & path) {
  std::size_t size = path.size();
  while (size > 0 && path[size - 1] == L'/')
    --size;
  return path.substr(0, size);
}

bool IsLocationOf(CMirroredDataMap & store, AString const & location) {
  VariationIDIndex key(AString(), id::invalidID, 0L);
  long id = id::invalidID;
  AString told;
  if (dynamic_cast<CMirroredDoubleMapLocationData *>(&store)) {
    store.GetOwner().ParseRelativeDoubleLocation(location, store.GetFunctionKeyword(), key, id);
    if (key.GetVersionID() != id::invalidID)
      told = store.GetOwner().GetRelativeDoubleLocation(store.GetFunctionKeyword(), key, id);
  } else if (dynamic_cast<CMirroredLocationData *>(&store)) {
    store.GetOwner().ParseRelativeLocation(location, store.GetFunctionKeyword(), key);
    if (key.GetVersionID() != id::invalidID)
      told = store.GetOwner().GetRelativeLocation(store.GetFunctionKeyword(), key);
  }
  return told == location;
}

} // namespace

StrayResultFiles::StrayResultFiles(ProductSolutionManager const & manager, LongFileName const & results)
    : m_results(results), m_stores(ResultStores(manager).All()) {
  io::CBlock now;
  ResultStores(manager).Write(now);
  Spare(now);
}

void StrayResultFiles::Spare(io::CBlock const & design) { m_named.merge(ResultStores::LocationsIn(design)); }

std::vector<LongFileName> StrayResultFiles::Find() const {
  std::set<AString> roots;
  for (CMirroredDataMap * const store : m_stores)
    roots.insert(store->GetOwner().GetRootDirectory(false));
  std::vector<LongFileName> found;
  for (AString const & root : roots) {
    AString inside;
    bool const isOurs = WithoutSlash(root) == WithoutSlash(m_results.FilePath()) ||
                        (LFN_RelativeTo(m_results, root, inside) && LFN_IsPlaceInside(m_results, WithoutSlash(inside)));
    if (isOurs && LFN_IsDirectory(root))
      FindIn(root, AString(), found);
  }
  return found;
}

void StrayResultFiles::FindIn(AString const & root, AString const & folder, std::vector<LongFileName> & found) const {
  auto & system = file::FileSystem();
  std::vector<AString> names;
  static_cast<void>(system.List(root + folder, names)); // What can't be read stays.
  for (AString const & name : names) {
    AString const location = folder + name;
    file::FileInfo info;
    if (m_named.contains(location) || !system.Describe(root + location, info).Ok() || info.isLink)
      continue;
    if (IsOfStores(root, location))
      found.emplace_back(root + location);
    else if (info.kind == file::FileKind::Folder)
      FindIn(root, location + L"/", found);
  }
}

bool StrayResultFiles::IsOfStores(AString const & root, AString const & location) const {
  for (CMirroredDataMap * const store : m_stores)
    if (store->GetOwner().GetRootDirectory(false) == root &&
        (IsLocationOf(*store, location) || IsLocationOf(*store, location + L"/")))
      return true;
  return false;
}

} // namespace desktop
