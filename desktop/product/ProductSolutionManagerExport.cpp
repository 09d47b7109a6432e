// What the export of a design point takes along, for all products that keep their results in blocks and mirrored
// stores.
#include "basekit/io/CBlock.h"
#include "desktop/product/PointBlocks.h"
#include "desktop/product/PointFiles.h"
#include "desktop/product/ProductSolutionManager.h"

namespace desktop {

namespace {

void Append(std::vector<AString> const & from, std::vector<AString> & to) {
  to.insert(to.end(), from.begin(), from.end());
}

} // namespace

bool ProductSolutionManager::GetFilesAndDirsToCopyForExportingVariation(std::map<AString, AString> & renamed,
                                                                        std::vector<AString> & files,
                                                                        std::vector<AString> & dirs,
                                                                        AString const & variation) const {
  PointFiles const point = PointFiles::Unsaved(*this, variation);
  renamed.insert(point.renamed.begin(), point.renamed.end());
  Append(point.files, files);
  Append(point.dirs, dirs);
  return true;
}

bool ProductSolutionManager::GetFilesAndDirsToCopyForExportingVariation(std::vector<AString> & files,
                                                                        std::vector<AString> & dirs,
                                                                        AString const & variation) const {
  PointFiles const point = PointFiles::Saved(*this, variation);
  Append(point.files, files);
  Append(point.dirs, dirs);
  return true;
}

bool ProductSolutionManager::GetQSolBlocksForExportingVariation(io::CBlock & blocks) const {
  return PointBlocks(*this).AddAll(blocks);
}

bool ProductSolutionManager::GetQSolBlocksForExportingVariation(io::CBlock & blocks,
                                                                std::vector<AString> & namesToDelete) const {
  PointBlocks const point(*this);
  Append(point.NamesOfOthers(), namesToDelete);
  return point.AddDefinitions(blocks);
}

} // namespace desktop
