// Which reports a change of port settings reaches.

#include "products/rfcircuit/product/PortEdit.h"
#include "products/rfcircuit/product/RfExtractor.h"
#include "products/rfcircuit/product/RfManager.h"
#include "products/rfcircuit/product/quantity/NetworkLayout.h"
#include "products/rfcircuit/product/quantity/NetworkQuantityList.h"
#include "products/rfcircuit/product/quantity/QuantityName.h"
#include "solutionmanager/outputvariables/CParsedExpressionCache.h"

#include <algorithm>

namespace rfcircuit {
namespace {

bool IsReached(AString const & text, PortChange const & change, NetworkLayout const & layout) {
  QuantityName name;
  INetworkQuantity const * const quantity = FindNetworkQuantity(text, layout, name);
  return quantity && quantity->IsReachedBy(change, layout, name);
}

} // namespace

bool RfManager::IsExpressionAffectedByMinorEdits(KelvroCommand const * command, CParsedExpressionCache * cache) const {
  if (ProductSolutionManager::IsExpressionAffectedByMinorEdits(command, cache))
    return true;
  PortEditInfo const * const edit = PortEditInfo::Of(command);
  if (!edit || !cache)
    return false;
  std::vector<AString> texts;
  cache->GetReferencedSimValues(texts, CParsedExpressionCache::kAllReportTypes);
  std::vector<ISimDataExtractor *> extractors;
  GetISimDataExtractors(extractors, kNetworkReportType, false);
  // Solutions may have other ports; one that is reached is enough.
  return std::any_of(extractors.begin(), extractors.end(), [&](ISimDataExtractor * extractor) {
    auto const * const own = dynamic_cast<RfExtractor const *>(extractor);
    return own && std::any_of(texts.begin(), texts.end(),
                              [&](AString const & text) { return IsReached(text, edit->change, own->GetLayout()); });
  });
}

bool RfManager::IsReportTypeAffectedByMinorEdits(KelvroCommand const * command, unsigned reportType) const {
  return PortEditInfo::Of(command) && reportType == kNetworkReportType;
}

bool RfManager::IsSimContextDataAffectedByMinorEdits(KelvroCommand const *, SimValueContext const *, unsigned) const {
  return false;
}

} // namespace rfcircuit
