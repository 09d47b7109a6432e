#pragma once

#include "desktop/product/IQuantityProduct.h"
#include "solutionmanager/model/BaseSolutionVariation.h"

namespace command {

/// The quantities of one run of the program.
class CommandVariation : public BaseSolutionVariation {
public:
  using BaseSolutionVariation::BaseSolutionVariation;

  /// kBadContent for a block that holds no quantities, or such that don't fit: the variation has none then.
  io::ReadError ReadVariationDataBlock(io::CBlock const & block) override;
  /// False when there is no data in memory that could be written.
  bool WriteVariationDataBlock(io::CBlock & block) const override;
  bool HasSolutionData() const override { return !m_quantities.empty(); }
  bool ClearInstanceMemoryData() override;

  std::vector<desktop::QuantityValues> const & GetQuantities() const { return m_quantities; }

private:
  std::vector<desktop::QuantityValues> m_quantities;
};

} // namespace command
