#pragma once

#include "basekit/text/AString.h"

#include <optional>
#include <vector>

class KelvroCommand;

namespace desktop {

class ProductSolutionManager;

/// What a product adds that tells results with other port impedances than they were solved with, without a new solve.
/// Reached by a cross-cast from IDesktopProduct.
class IPortProduct {
public:
  struct Port {
    AString name;
    double solved = 0.0;         ///< the impedance that its data was solved with, in ohm
    std::optional<double> shown; ///< another one that results are told with
  };

  virtual ~IPortProduct() = default;
  /// Of what is solved; none while nothing is.
  virtual std::vector<Port> GetPorts(ProductSolutionManager const & manager) const = 0;
  /// Gives all ports what they are shown with; the command takes it back.
  virtual void ShowPorts(ProductSolutionManager & manager, std::vector<Port> const & ports,
                         KelvroCommand & command) const = 0;
};

} // namespace desktop
