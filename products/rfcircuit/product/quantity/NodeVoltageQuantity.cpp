#include "products/rfcircuit/product/quantity/NodeVoltageQuantity.h"

#include "desktop/product/quantity/QuantityColumn.h"
#include "products/rfcircuit/product/quantity/NetworkQuantityList.h"
#include "products/rfcircuit/product/quantity/NodeVoltageFiles.h"
#include "products/rfcircuit/product/quantity/QuantityName.h"
#include "products/rfcircuit/product/quantity/SolvedNetwork.h"

#include <algorithm>

namespace rfcircuit {
namespace {

struct NodeAndPort {
  AString node;
  std::size_t port = 0;
};

bool HasNode(NetworkLayout const & layout, AString const & node) {
  return std::any_of(layout.nodes.begin(), layout.nodes.end(),
                     [&](AString const & there) { return AString::MatchNoCase(there, node); });
}

// A node's name may hold commas, so that the whole text counts first.
std::optional<NodeAndPort> Resolve(NetworkLayout const & layout, QuantityName const & name) {
  if (HasNode(layout, name.inside))
    return NodeAndPort{name.inside, 0};
  std::size_t const comma = name.inside.rfind(L',');
  if (comma == AString::npos || name.arguments.empty())
    return std::nullopt;
  AString const node = AString(name.inside.View().substr(0, comma));
  auto const port = layout.FindPort(name.arguments.back());
  if (!HasNode(layout, node) || !port)
    return std::nullopt;
  return NodeAndPort{node, *port};
}

} // namespace

unsigned NodeVoltageQuantity::GetReportType() const { return kVoltageReportType; }

ValueState NodeVoltageQuantity::GetState() const {
  return {Units::GetDefaultUnits(Units::kVoltage), Units::kVoltage, 1, val::kComplex};
}

void NodeVoltageQuantity::ListNames(NetworkLayout const & layout, std::vector<AString> & names) const {
  for (AString const & node : layout.nodes)
    for (NetworkPort const & port : layout.ports)
      names.push_back(layout.ports.size() == 1 ? AString::Format(L"V(%s)", node)
                                               : AString::Format(L"V(%s,%d)", node, port.number));
}

bool NodeVoltageQuantity::Knows(NetworkLayout const & layout, QuantityName const & name) const {
  return name.digits.empty() && Resolve(layout, name).has_value();
}

bool NodeVoltageQuantity::Compute(SolvedNetwork & network, QuantityName const & name,
                                  desktop::QuantityColumn & column) const {
  auto const asked = Resolve(network.Layout(), name);
  if (!asked)
    return false;
  auto const voltages = network.Voltages().Voltages(asked->node, network.Layout().ports[asked->port].number);
  column.numbers = desktop::QuantityColumn::Complexes(voltages.begin(), voltages.end());
  return true;
}

} // namespace rfcircuit
