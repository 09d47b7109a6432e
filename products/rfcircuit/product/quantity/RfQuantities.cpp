#include "products/rfcircuit/product/quantity/RfQuantities.h"

#include "desktop/product/quantity/QuantityColumn.h"
#include "products/rfcircuit/product/quantity/NetworkQuantityList.h"
#include "products/rfcircuit/product/quantity/NodeVoltageFiles.h"
#include "products/rfcircuit/product/quantity/QuantityName.h"

namespace rfcircuit {

bool RfQuantities::GetAxis(unsigned reportType, std::vector<double> & values) {
  values = reportType == kVoltageReportType ? m_network.Voltages().Frequencies() : m_network.View().Frequencies();
  return !values.empty();
}

bool RfQuantities::GetColumn(AString const & text, unsigned context, desktop::QuantityColumn & column) {
  QuantityName name;
  INetworkQuantity const * const quantity = FindNetworkQuantity(text, m_network.Layout(), name);
  m_network.ChooseContext(context);
  return quantity && quantity->Compute(m_network, name, column);
}

} // namespace rfcircuit
