// What reports showed, in the project file:
//
//     SimValue(...), SolutionPointSets { ... }     as every extractor writes them
//     Catalogue {
//       Version = 17                               of the data that it is about
//       ...                                        see KnownCatalogue
//     }
#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "desktop/design/Design.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/product/quantity/QuantityExtractor.h"
#include "plotkit/pointset/SolutionPointSet.h"
#include "solutionmanager/extraction/ExtractorBlocks.h"
#include "solutionmanager/model/BaseSolution.h"

namespace desktop {
namespace {

wchar_t const * const kSweeps = L"Sweeps";
wchar_t const * const kPointSets = L"SolutionPointSets";
wchar_t const * const kCatalogue = L"Catalogue";
wchar_t const * const kVersion = L"Version";
// As point sets write them.
wchar_t const * const kID = L"ID";
wchar_t const * const kInstance = L"Instance";
wchar_t const * const kDesignVariation = L"DesignVariation";

} // namespace

bool QuantityExtractor::DesignFileWrite(io::CBlock & block) {
  auto const * const manager = dynamic_cast<ProductSolutionManager const *>(GetBaseSolutionMgr());
  if (manager && !manager->WritesReports())
    return true;
  io::CBlock written(block.Name());
  if (!BaseSimDataExtractor::DesignFileWrite(written))
    return false;
  for (auto const & item : written)
    if (!AString::MatchNoCase(item->Name(), kSweeps))
      block << item;
  if (GetSolutionPointSetsSize() == 0 || !m_catalogue || m_catalogueSize >= 0)
    return true;
  io::CBlock catalogue{AString(kCatalogue)};
  catalogue << io::named(kVersion, m_catalogueVersion);
  m_catalogue->Write(catalogue);
  block << catalogue;
  return true;
}

io::ReadError QuantityExtractor::DesignFileRead(io::CBlock const & block) {
  if (!GetBaseSolutionMgr()->AreOldReportStructuresSupported())
    return ReadWithoutPointSets(block);
  ReadCatalogue(block);
  io::ReadError const result = BaseSimDataExtractor::DesignFileRead(block);
  ReadInstances(block);
  return result;
}

// A project that was saved under the former report structures: under the reporter rewrite its reports are made anew.
io::ReadError QuantityExtractor::ReadWithoutPointSets(io::CBlock const & block) {
  io::CBlock rest(block.Name());
  for (auto const & item : block)
    if (!AString::MatchNoCase(item->Name(), kPointSets))
      rest << item;
  return BaseSimDataExtractor::DesignFileRead(rest);
}

void QuantityExtractor::ReadCatalogue(io::CBlock const & block) {
  io::CBlock const * const catalogue = block.FindBlock(kCatalogue);
  long version = id::invalidID;
  if (catalogue)
    *catalogue >> io::named(kVersion, version);
  if (version == id::invalidID || version != GetBaseSolution()->GetClosestVersionWithData())
    return;
  auto known = KnownCatalogue::Read(*catalogue, [this] {
    auto made = MakeCatalogueOfData();
    return made ? std::move(made) : MakeCatalogue(nullptr);
  });
  if (!known)
    return;
  m_catalogue = std::move(known);
  m_catalogueVersion = version;
  m_catalogueSize = -1;
}

// The IDs of instances beside the nominal one are those of a session.
void QuantityExtractor::ReadInstances(io::CBlock const & block) {
  auto * const design = dynamic_cast<Design *>(GetBaseSolutionMgr()->GetIDesign());
  io::CBlock const * const pointSets = extractorblocks::FindPointSets(block);
  if (!design || !pointSets)
    return;
  for (auto const & child : *pointSets) {
    if (!child->IsBlock())
      continue;
    auto const & content = static_cast<io::CBlock const &>(*child);
    long id = id::invalidID;
    long instance = id::invalidID;
    AString variation;
    content >> io::named(kID, id) >> io::named(kInstance, instance) >> io::named(kDesignVariation, variation);
    if (instance == id::invalidID || instance == design->NominalInstance().GetID())
      continue;
    for (auto pointSet = GetFirstSolutionPointSet(); pointSet != GetLastSolutionPointSet(); ++pointSet)
      if ((*pointSet)->GetID() == id)
        (*pointSet)->SetIDesignInstance(&design->InstanceFor(variation));
  }
}

} // namespace desktop
