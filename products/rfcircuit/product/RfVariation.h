#pragma once

#include "products/rfcircuit/product/NetworkData.h"
#include "solutionmanager/model/BaseSolutionVariation.h"

namespace rfcircuit {

/// The S-parameters of a circuit at one setting of its design variables.
class RfVariation : public BaseSolutionVariation {
public:
  using BaseSolutionVariation::BaseSolutionVariation;

  /// kBadContent for a block that holds no network data, or data that does not fit: the variation has none then.
  io::ReadError ReadVariationDataBlock(io::CBlock const & block) override;
  /// False when there is no data in memory that could be written.
  bool WriteVariationDataBlock(io::CBlock & block) const override;
  bool HasSolutionData() const override { return !m_data.IsEmpty(); }
  bool ClearInstanceMemoryData() override;

  NetworkData const & GetData() const { return m_data; }
  void SetData(NetworkData data) { m_data = std::move(data); }

private:
  NetworkData m_data;
};

} // namespace rfcircuit
