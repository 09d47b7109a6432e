#include "products/rfcircuit/product/quantity/RfCatalogue.h"

#include "basekit/value/Value.h"
#include "products/rfcircuit/product/quantity/NetworkQuantityList.h"
#include "products/rfcircuit/product/quantity/QuantityName.h"

namespace rfcircuit {
namespace {

desktop::QuantityReportType OverFrequency(unsigned number, AString const & name, std::vector<double> frequencies) {
  desktop::QuantityReportType type;
  type.number = number;
  type.name = name;
  type.axis = L"Freq";
  type.intrinsic = val::kIntrinsicFrequency;
  type.axisState = {Units::GetDefaultUnits(Units::kFrequency), Units::kFrequency, 1, val::kReal};
  type.axisValues = std::move(frequencies);
  // Rectangular, stacked, polar, Smith, table.
  for (int const display : {3, 1, 2, 5, 4})
    type.displayTypes.push_back(static_cast<rep::DisplayType>(display));
  return type;
}

} // namespace

RfCatalogue::RfCatalogue(NetworkLayout layout, std::vector<double> frequencies, std::vector<double> voltageFrequencies)
    : m_layout(std::move(layout)) {
  m_reportTypes.push_back(OverFrequency(kNetworkReportType, L"S Parameters", std::move(frequencies)));
  m_reportTypes.back().contexts = {L"Ports as set", L"Ports as solved"};
  m_reportTypes.back().contextLabel = L"Port impedances and planes";
  if (!m_layout.nodes.empty())
    m_reportTypes.push_back(OverFrequency(kVoltageReportType, L"Node Voltages", std::move(voltageFrequencies)));
}

std::vector<AString> RfCatalogue::GetCategories(unsigned reportType) const {
  std::vector<AString> categories;
  for (auto const & quantity : NetworkQuantities())
    if (quantity->GetReportType() == reportType)
      categories.push_back(quantity->GetCategory());
  return categories;
}

std::vector<AString> RfCatalogue::GetNames(AString const & category, unsigned reportType) const {
  std::vector<AString> names;
  for (auto const & quantity : NetworkQuantities())
    if (quantity->GetReportType() == reportType && AString::MatchNoCase(quantity->GetCategory(), category))
      quantity->ListNames(m_layout, names);
  return names;
}

bool RfCatalogue::Describe(AString const & text, desktop::QuantityInfo & info) const {
  QuantityName name;
  INetworkQuantity const * const quantity = FindNetworkQuantity(text, m_layout, name);
  if (quantity)
    info = {quantity->GetCategory(), quantity->GetState(), quantity->GetReportType()};
  return quantity != nullptr;
}

} // namespace rfcircuit
