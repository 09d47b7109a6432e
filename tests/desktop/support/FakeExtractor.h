#pragma once

#include "desktop/product/quantity/QuantityExtractor.h"

namespace support {

/// The numbers of a FakeVariation as quantities: V over Freq, which counts them from 1 Hz, the complex W = V (1 + 2j),
/// and their Total, a single number.
class FakeExtractor : public desktop::QuantityExtractor {
public:
  using QuantityExtractor::QuantityExtractor;

  static constexpr unsigned kOverFrequency = 1;
  static constexpr unsigned kNumbers = 2;

protected:
  std::unique_ptr<desktop::IQuantityCatalogue> MakeCatalogue(BaseSolutionVariation const * solved) const override;
  std::unique_ptr<desktop::ISolvedQuantities> OpenQuantities(BaseSolutionVariation const & solved) const override;
};

} // namespace support
