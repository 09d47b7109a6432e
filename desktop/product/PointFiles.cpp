#include "desktop/product/PointFiles.h"

#include "desktop/product/IResultStores.h"
#include "desktop/product/ProductSolutionManager.h"
#include "solutionmanager/locations/CMirroredDataMap.h"
#include "solutionmanager/locations/IMirroredDataMapOwner.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"

namespace desktop {

namespace {

using List = std::function<void(CMirroredDataMap const & store, PointFiles & files)>;

void Add(std::vector<AString> const & from, AString const & folder, std::vector<AString> & to) {
  for (AString const & name : from)
    to.push_back(folder + name);
}

// Stores tell paths from the root of their solution on; a solution whose root lies elsewhere has nothing to export.
PointFiles Collect(ProductSolutionManager const & manager, List const & list) {
  PointFiles all;
  AString const results = manager.GetResultFilesFolder(false);
  for (auto const & [id, setup] : manager.GetSetups())
    for (auto const & [solutionID, solution] : setup->GetSolutions()) {
      auto * const stores = dynamic_cast<IResultStores *>(solution);
      auto * const owner = dynamic_cast<IMirroredDataMapOwner *>(solution);
      AString const root = owner ? owner->GetRootDirectory(false) : AString();
      if (!stores || !root.StartsWith(results))
        continue;
      AString const folder = root.substr(results.size());
      PointFiles found;
      for (CMirroredDataMap const * const store : stores->GetResultStores())
        list(*store, found);
      Add(found.files, folder, all.files);
      Add(found.dirs, folder, all.dirs);
      for (auto const & [name, newName] : found.renamed)
        all.renamed[folder + name] = folder + newName;
    }
  return all;
}

} // namespace

PointFiles PointFiles::Saved(ProductSolutionManager const & manager, AString const & variation) {
  return Collect(manager, [&variation](CMirroredDataMap const & store, PointFiles & found) {
    store.GetFilesAndDirsToCopyForExportingVariation(found.files, found.dirs, variation);
  });
}

PointFiles PointFiles::Unsaved(ProductSolutionManager const & manager, AString const & variation) {
  return Collect(manager, [&variation](CMirroredDataMap const & store, PointFiles & found) {
    store.GetFilesAndDirsToCopyForExportingVariation(found.renamed, found.files, found.dirs, variation);
  });
}

} // namespace desktop
