#include "products/rfcircuit/product/RfExtractor.h"

#include "plotkit/simvalue/PortSettings.h"
#include "products/rfcircuit/product/RfVariation.h"
#include "products/rfcircuit/product/quantity/CannedExpressions.h"
#include "products/rfcircuit/product/quantity/NodeVoltageFiles.h"
#include "products/rfcircuit/product/quantity/RfCatalogue.h"
#include "products/rfcircuit/product/quantity/RfQuantities.h"
#include "solutionmanager/model/BaseSolutionManager.h"

namespace rfcircuit {
namespace {

// Settings count while post-processing is on.
PortConditions ConditionsNow(BaseSolutionManager const & manager, NetworkData const & data) {
  std::vector<PortSettings> settings;
  manager.GetPortPostProcessingSettings(settings);
  PortConditions conditions = ConditionsOf(data.Ports(), settings);
  bool const isOn = manager.IsRenormalizing() || manager.IsDeembedding();
  return isOn ? conditions : PortConditions();
}

} // namespace

NetworkLayout const & RfExtractor::GetLayout() const {
  return static_cast<RfCatalogue const &>(GetMadeCatalogue()).Layout();
}

std::unique_ptr<desktop::IQuantityCatalogue> RfExtractor::MakeCatalogue(BaseSolutionVariation const * solved) const {
  if (!solved)
    return std::make_unique<RfCatalogue>(NetworkLayout(), std::vector<double>(), std::vector<double>());
  auto const * const variation = dynamic_cast<RfVariation const *>(solved);
  if (!variation || !variation->HasSolutionData())
    return nullptr;
  NodeVoltageFiles const voltages(*variation);
  NetworkLayout layout{true, variation->GetData().Ports(), voltages.Nodes()};
  return std::make_unique<RfCatalogue>(std::move(layout), variation->GetData().Frequencies(), voltages.Frequencies());
}

std::unique_ptr<desktop::ISolvedQuantities> RfExtractor::OpenQuantities(BaseSolutionVariation const & solved) const {
  auto const * const variation = dynamic_cast<RfVariation const *>(&solved);
  if (!variation || !variation->HasSolutionData())
    return nullptr;
  return std::make_unique<RfQuantities>(variation->GetData(),
                                        ConditionsNow(*GetBaseSolutionMgr(), variation->GetData()),
                                        std::make_unique<NodeVoltageFiles>(*variation));
}

bool RfExtractor::GetExpressionForCannedOutputVariable(AString const & name, AString & expression,
                                                       ValueState & state) const {
  return MightBeCanned(name) && FindCannedExpression(name, GetLayout(), expression, state);
}

} // namespace rfcircuit
