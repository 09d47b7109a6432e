#pragma once

#include "products/rfcircuit/product/quantity/INetworkQuantity.h"

namespace rfcircuit {

/// "V(node)", or "V(node,port)": the voltage of a node, with one volt behind the impedance of the first port, or of
/// that one, over the frequencies for which voltages are stored.
class NodeVoltageQuantity : public INetworkQuantity {
public:
  AString GetSymbol() const override { return L"V"; }
  AString GetCategory() const override { return L"Node Voltage"; }
  unsigned GetReportType() const override;
  ValueState GetState() const override;
  void ListNames(NetworkLayout const & layout, std::vector<AString> & names) const override;
  bool Knows(NetworkLayout const & layout, QuantityName const & name) const override;
  bool Compute(SolvedNetwork & network, QuantityName const & name, desktop::QuantityColumn & column) const override;
  /// Ports are driven as they were solved, whatever their settings.
  bool IsReachedBy(PortChange const &, NetworkLayout const &, QuantityName const &) const override { return false; }
};

} // namespace rfcircuit
