#pragma once

#include "products/rfcircuit/product/quantity/INetworkQuantity.h"
#include "products/rfcircuit/product/quantity/NetworkLayout.h"

namespace rfcircuit {

class NetworkView;

/// Base of the kinds that have a column over the sweep for each port, each pair of ports, or once.
class PortQuantity : public INetworkQuantity {
public:
  using Ports = std::vector<std::size_t>; ///< places, from zero

  unsigned GetReportType() const override;
  void ListNames(NetworkLayout const & layout, std::vector<AString> & names) const override;
  bool Knows(NetworkLayout const & layout, QuantityName const & name) const override;
  bool Compute(SolvedNetwork & network, QuantityName const & name, desktop::QuantityColumn & column) const override;
  bool IsReachedBy(PortChange const & change, NetworkLayout const & layout, QuantityName const & name) const override;

protected:
  virtual int CountPorts() const = 0;
  /// How a quantity of a port is written where the symbol is a function's name, and so takes no parentheses.
  virtual bool IsWrittenShort() const { return false; }
  virtual void Fill(NetworkView & view, Ports const & ports, desktop::QuantityColumn & column) const = 0;
  /// Whether a change matters to the quantity of the ports, whose names are given.
  virtual bool Matters(PortChange const & change, std::vector<AString> const & ports) const = 0;

private:
  std::optional<Ports> Resolve(NetworkLayout const & layout, QuantityName const & name) const;
};

} // namespace rfcircuit
