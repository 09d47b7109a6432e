#include "desktop/report/ShownNumbers.h"

#include "basekit/file/IFileSystem.h"
#include "basekit/file/LongFileName.h"
#include "basekit/id/Id.h"
#include "basekit/io/Checksum.h"
#include "basekit/text/Utf8.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/product/quantity/QuantityExtractor.h"
#include "plotkit/pointset/SolutionPointSet.h"
#include "solutionmanager/address/SolutionVariationKey.h"
#include "solutionmanager/model/BaseSolution.h"

#include <fmt/format.h>
#include <functional>
#include <map>
#include <set>

namespace desktop {

namespace {

constexpr std::size_t kPiece = std::size_t(1) << 20;

std::vector<BaseSimDataExtractor *> ExtractorsOf(ProductSolutionManager const & manager) {
  std::vector<BaseSimDataExtractor *> extractors;
  manager.GetAllAssociatedSimDataExtractors(extractors);
  std::erase_if(extractors,
                [](BaseSimDataExtractor const * extractor) { return extractor->GetSolutionPointSetsSize() == 0; });
  return extractors;
}

void ForEachSet(ProductSolutionManager const & manager, std::function<void(SolutionPointSet &)> const & visit) {
  for (BaseSimDataExtractor * const extractor : ExtractorsOf(manager))
    for (auto set = extractor->GetFirstSolutionPointSetForEdit(); set != extractor->GetLastSolutionPointSetForEdit();
         ++set)
      visit(**set);
}

} // namespace

bool KeepPresentNumbers(ProductSolutionManager & manager) {
  bool isAnyKept = false;
  ForEachSet(manager, [&isAnyKept](SolutionPointSet & set) {
    set.GetSimValueCache().KeepVersion(set.GetSolutionVersionID());
    isAnyKept = isAnyKept || !set.GetSimValueCache().empty();
  });
  return isAnyKept;
}

void ForgetShownNumbers(ProductSolutionManager & manager, std::vector<SolutionVariationKey> const & points) {
  std::map<std::pair<long, long>, std::set<long>> solved; // By solution and version, the IDs of the variations.
  // Texts of one variation may differ; to ask this way makes no variation known.
  auto const idOf = [&manager](AString const & variation) {
    long id = id::invalidID;
    return manager.FindVariationID(variation, id) ? id : id::invalidID;
  };
  for (SolutionVariationKey const & point : points)
    solved[{point.GetSolutionKey(), point.GetVersionIDKey()}].insert(idOf(point.GetDesignVariationKey()));
  ForEachSet(manager, [&](SolutionPointSet & set) {
    for (auto const & [place, variations] : solved)
      if (place.first == set.GetSolutionID())
        set.GetSimValueCache().Forget(place.second,
                                      [&](AString const & variation) { return variations.contains(idOf(variation)); });
  });
}

void ForgetReadReports(ProductSolutionManager & manager) {
  for (BaseSimDataExtractor * const extractor : ExtractorsOf(manager)) {
    extractor->DoGarbageCollection({});
    if (auto * const quantities = dynamic_cast<QuantityExtractor *>(extractor))
      quantities->ForgetCatalogue();
  }
}

AString StampOfNumbers(ProductSolutionManager const & manager) {
  AString path;
  std::unique_ptr<file::IFile> opened;
  if (!manager.GetSimValueCacheFullFileName(path) ||
      !file::FileSystem().Open(LongFileName(path), file::OpenMode::Read, opened).Ok())
    return AString();
  std::string piece(kPiece, '\0');
  std::uint64_t length = 0;
  std::uint32_t checksum = 0;
  for (std::size_t got = kPiece; got == kPiece; length += got) {
    if (!opened->Read(length, piece, got).Ok())
      return AString();
    checksum = io::Checksum(std::string_view(piece).substr(0, got), checksum);
  }
  return text::FromUtf8(fmt::format("{}-{:08x}", length, checksum));
}

} // namespace desktop
