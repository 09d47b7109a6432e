#pragma once

#include "desktop/product/quantity/QuantityExtractor.h"

namespace command {

/// The report side's door to one result: the numbers and columns that the program left, under the names that the solver
/// file gives them.  They are known once something is solved.
class CommandExtractor : public desktop::QuantityExtractor {
public:
  using QuantityExtractor::QuantityExtractor;

protected:
  std::unique_ptr<desktop::IQuantityCatalogue> MakeCatalogue(BaseSolutionVariation const * solved) const override;
  std::unique_ptr<desktop::ISolvedQuantities> OpenQuantities(BaseSolutionVariation const & solved) const override;
};

} // namespace command
