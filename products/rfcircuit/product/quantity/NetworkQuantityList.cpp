#include "products/rfcircuit/product/quantity/NetworkQuantityList.h"

#include "products/rfcircuit/product/quantity/NodeVoltageQuantity.h"
#include "products/rfcircuit/product/quantity/PortQuantities.h"
#include "products/rfcircuit/product/quantity/QuantityName.h"

namespace rfcircuit {
namespace {

template <class... Kinds> std::vector<std::unique_ptr<INetworkQuantity>> MakeList() {
  std::vector<std::unique_ptr<INetworkQuantity>> list;
  (list.push_back(std::make_unique<Kinds>()), ...);
  return list;
}

} // namespace

std::vector<std::unique_ptr<INetworkQuantity>> const & NetworkQuantities() {
  static auto const list = MakeList<SParameter, YParameter, ZParameter, StandingWaveRatio, GroupDelay, PortImpedance,
                                    FrequencyQuantity, NodeVoltageQuantity>();
  return list;
}

INetworkQuantity const * FindNetworkQuantity(AString const & text, NetworkLayout const & layout, QuantityName & name) {
  auto const parsed = ParseQuantityName(text);
  if (!parsed)
    return nullptr;
  name = *parsed;
  for (auto const & quantity : NetworkQuantities())
    if (AString::MatchNoCase(quantity->GetSymbol(), name.symbol) && quantity->Knows(layout, name))
      return quantity.get();
  return nullptr;
}

} // namespace rfcircuit
