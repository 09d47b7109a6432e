#include "products/rfcircuit/product/quantity/PortQuantity.h"

#include "products/rfcircuit/product/quantity/NetworkQuantityList.h"
#include "products/rfcircuit/product/quantity/QuantityName.h"
#include "products/rfcircuit/product/quantity/SolvedNetwork.h"

namespace rfcircuit {
namespace {

// The digits of a short form as arguments: those of two ports have one each.
std::vector<AString> Arguments(QuantityName const & name, int count) {
  if (name.digits.empty())
    return name.arguments;
  if (count != 2)
    return {name.digits};
  std::vector<AString> arguments;
  for (wchar_t const digit : name.digits)
    arguments.emplace_back(&digit, 1);
  return arguments;
}

} // namespace

unsigned PortQuantity::GetReportType() const { return kNetworkReportType; }

std::optional<PortQuantity::Ports> PortQuantity::Resolve(NetworkLayout const & layout,
                                                         QuantityName const & name) const {
  std::vector<AString> const arguments = Arguments(name, CountPorts());
  if (arguments.size() != static_cast<std::size_t>(CountPorts()))
    return std::nullopt;
  Ports ports;
  for (AString const & argument : arguments) {
    auto const port = layout.FindPort(argument);
    if (!port)
      return std::nullopt;
    ports.push_back(*port);
  }
  return ports;
}

void PortQuantity::ListNames(NetworkLayout const & layout, std::vector<AString> & names) const {
  if (CountPorts() == 0)
    names.push_back(GetSymbol());
  else
    for (NetworkPort const & first : layout.ports) {
      if (CountPorts() == 1)
        names.push_back(AString::Format(IsWrittenShort() ? L"%s%d" : L"%s(%d)", GetSymbol(), first.number));
      else
        for (NetworkPort const & second : layout.ports)
          names.push_back(AString::Format(L"%s(%d,%d)", GetSymbol(), first.number, second.number));
    }
}

bool PortQuantity::Knows(NetworkLayout const & layout, QuantityName const & name) const {
  return Resolve(layout, name).has_value();
}

bool PortQuantity::Compute(SolvedNetwork & network, QuantityName const & name, desktop::QuantityColumn & column) const {
  auto const ports = Resolve(network.Layout(), name);
  if (ports)
    Fill(network.View(), *ports, column);
  return ports.has_value();
}

bool PortQuantity::IsReachedBy(PortChange const & change, NetworkLayout const & layout,
                               QuantityName const & name) const {
  auto const ports = Resolve(layout, name);
  std::vector<AString> names;
  if (ports && layout.isKnown)
    for (std::size_t const port : *ports)
      names.push_back(layout.ports[port].name);
  return ports && Matters(change, names);
}

} // namespace rfcircuit
