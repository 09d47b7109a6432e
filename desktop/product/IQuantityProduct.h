#pragma once

#include "basekit/text/AString.h"

#include <vector>

class BaseSolutionVariation;

namespace desktop {

/// A stored number, or a run of numbers, under its name.
struct QuantityValues {
  AString name;
  AString unit; ///< for people; may be empty
  AString over; ///< the run that this one runs over, number by number; empty without
  bool isScalar = false;
  std::vector<double> values; ///< one for a scalar
};

/// What a product adds whose results can be told as named numbers.  Reached by a cross-cast from IDesktopProduct.
class IQuantityProduct {
public:
  virtual ~IQuantityProduct() = default;
  /// All quantities of a variation that has its data in memory, in the product's order; none for one without.
  virtual std::vector<QuantityValues> GetQuantities(BaseSolutionVariation const & variation) const = 0;
};

} // namespace desktop
