#pragma once

#include "products/rfcircuit/product/NetworkData.h"

#include <optional>
#include <vector>

namespace rfcircuit {

/// What of a circuit quantities can be about: its ports, and the nodes whose voltages are stored.
struct NetworkLayout {
  /// False while nothing is solved: any port might be there then.
  bool isKnown = false;
  std::vector<NetworkPort> ports;
  std::vector<AString> nodes;

  /// The place of a port by number or, without case, by name; nothing for a port that there is not.
  std::optional<std::size_t> FindPort(AString const & text) const;
};

} // namespace rfcircuit
