#include "products/rfcircuit/product/RfVariation.h"

namespace rfcircuit {

io::ReadError RfVariation::ReadVariationDataBlock(io::CBlock const & block) {
  io::ReadError const result = BaseSolutionVariation::ReadVariationDataBlock(block);
  if (m_data.Read(block))
    return result;
  return io::kBadContent;
}

bool RfVariation::WriteVariationDataBlock(io::CBlock & block) const {
  if (!HasSolutionData() || !BaseSolutionVariation::WriteVariationDataBlock(block))
    return false;
  m_data.Write(block);
  return true;
}

bool RfVariation::ClearInstanceMemoryData() {
  m_data = NetworkData();
  return BaseSolutionVariation::ClearInstanceMemoryData();
}

} // namespace rfcircuit
