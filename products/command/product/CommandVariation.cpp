#include "products/command/product/CommandVariation.h"

#include "products/command/product/QuantityBlock.h"

namespace command {

io::ReadError CommandVariation::ReadVariationDataBlock(io::CBlock const & block) {
  io::ReadError const result = BaseSolutionVariation::ReadVariationDataBlock(block);
  return ReadQuantities(block, m_quantities) ? result : io::kBadContent;
}

bool CommandVariation::WriteVariationDataBlock(io::CBlock & block) const {
  if (!HasSolutionData() || !BaseSolutionVariation::WriteVariationDataBlock(block))
    return false;
  WriteQuantities(m_quantities, block);
  return true;
}

bool CommandVariation::ClearInstanceMemoryData() {
  m_quantities.clear();
  return BaseSolutionVariation::ClearInstanceMemoryData();
}

} // namespace command
