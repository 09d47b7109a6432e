#pragma once

#include "desktop/product/quantity/ISolvedQuantities.h"
#include "products/rfcircuit/product/quantity/SolvedNetwork.h"

namespace rfcircuit {

/// The quantities of one solved variation.  Its data must live.
class RfQuantities : public desktop::ISolvedQuantities {
public:
  RfQuantities(NetworkData const & data, PortConditions const & conditions, std::unique_ptr<NodeVoltageFiles> files)
      : m_network(data, conditions, std::move(files)) {}

  bool GetAxis(unsigned reportType, std::vector<double> & values) override;
  bool GetColumn(AString const & text, unsigned context, desktop::QuantityColumn & column) override;

private:
  SolvedNetwork m_network;
};

} // namespace rfcircuit
