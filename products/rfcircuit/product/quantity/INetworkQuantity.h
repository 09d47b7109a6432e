#pragma once

#include "basekit/text/AString.h"
#include "basekit/value/ValueState.h"

#include <set>
#include <vector>

namespace desktop {
struct QuantityColumn;
}

namespace rfcircuit {

class SolvedNetwork;
struct NetworkLayout;
struct QuantityName;

/// What an edit of port settings changed.
struct PortChange {
  std::set<AString, AString::NoCaseLess> impedances; ///< ports, by name
  std::set<AString, AString::NoCaseLess> planes;     ///< likewise, whose reference plane moved
  bool isRenormalizing = false; ///< any impedance is another one than was solved with, before or after
};

/// A kind of quantity, such as all S-parameters.  Stateless; NetworkQuantityList.cpp lists all kinds.
class INetworkQuantity {
public:
  virtual ~INetworkQuantity() = default;
  virtual AString GetSymbol() const = 0;
  virtual AString GetCategory() const = 0;
  virtual unsigned GetReportType() const = 0;
  virtual ValueState GetState() const = 0;
  /// The texts that expressions use.
  virtual void ListNames(NetworkLayout const & layout, std::vector<AString> & names) const = 0;
  /// Whether there is such a quantity; the name has the symbol.
  virtual bool Knows(NetworkLayout const & layout, QuantityName const & name) const = 0;
  /// False when the variation has it not; the name is one that Knows.
  virtual bool Compute(SolvedNetwork & network, QuantityName const & name, desktop::QuantityColumn & column) const = 0;
  virtual bool IsReachedBy(PortChange const & change, NetworkLayout const & layout,
                           QuantityName const & name) const = 0;
};

} // namespace rfcircuit
