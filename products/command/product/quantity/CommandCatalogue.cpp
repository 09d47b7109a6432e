#include "products/command/product/quantity/CommandCatalogue.h"

#include "desktop/product/IQuantityProduct.h"
#include "products/command/product/quantity/UnitOfQuantity.h"

#include <algorithm>

namespace command {
namespace {

AString const & NumbersCategory() {
  static AString const name(L"Numbers");
  return name;
}

AString const & ColumnsCategory() {
  static AString const name(L"Columns");
  return name;
}

// Rectangular, stacked, table.
std::vector<rep::DisplayType> DisplayTypes() {
  return {static_cast<rep::DisplayType>(3), static_cast<rep::DisplayType>(1), static_cast<rep::DisplayType>(4)};
}

bool IsAxis(desktop::QuantityValues const & quantity, std::vector<desktop::QuantityValues> const & all) {
  return !quantity.isScalar && (quantity.over.empty() || std::any_of(all.begin(), all.end(), [&](auto const & other) {
                                  return AString::MatchNoCase(other.over, quantity.name);
                                }));
}

} // namespace

CommandCatalogue::CommandCatalogue(std::vector<desktop::QuantityValues> const & quantities) {
  desktop::QuantityReportType numbers;
  numbers.number = kNumbersReportType;
  numbers.name = NumbersCategory();
  numbers.displayTypes = DisplayTypes();
  m_reportTypes.push_back(numbers);
  for (desktop::QuantityValues const & quantity : quantities) {
    if (!IsAxis(quantity, quantities))
      continue;
    desktop::QuantityReportType type;
    type.number = static_cast<unsigned>(m_reportTypes.size()) + 1;
    type.name = AString(L"Columns over ") + quantity.name;
    type.axis = quantity.name;
    type.axisState = StateOf(quantity);
    type.axisValues = ValuesInSI(quantity);
    type.displayTypes = DisplayTypes();
    m_reportTypes.push_back(type);
  }
  for (desktop::QuantityValues const & quantity : quantities) {
    unsigned const type =
        quantity.isScalar ? kNumbersReportType : ReportTypeOver(quantity.over.empty() ? quantity.name : quantity.over);
    m_quantities.push_back(
        {quantity.name, {quantity.isScalar ? NumbersCategory() : ColumnsCategory(), StateOf(quantity), type}});
  }
}

unsigned CommandCatalogue::ReportTypeOver(AString const & axis) const {
  auto const type = std::find_if(m_reportTypes.begin(), m_reportTypes.end(),
                                 [&](auto const & there) { return AString::MatchNoCase(there.axis, axis); });
  return type == m_reportTypes.end() ? kNumbersReportType : type->number;
}

std::vector<AString> CommandCatalogue::GetCategories(unsigned reportType) const {
  bool const hasAny = std::any_of(m_quantities.begin(), m_quantities.end(),
                                  [&](Quantity const & quantity) { return quantity.info.reportType == reportType; });
  if (!hasAny)
    return {};
  return {reportType == kNumbersReportType ? NumbersCategory() : ColumnsCategory()};
}

std::vector<AString> CommandCatalogue::GetNames(AString const & category, unsigned reportType) const {
  std::vector<AString> names;
  for (Quantity const & quantity : m_quantities)
    if (quantity.info.reportType == reportType && AString::MatchNoCase(quantity.info.category, category))
      names.push_back(quantity.name);
  return names;
}

bool CommandCatalogue::Describe(AString const & text, desktop::QuantityInfo & info) const {
  auto const found = std::find_if(m_quantities.begin(), m_quantities.end(),
                                  [&](Quantity const & quantity) { return AString::MatchNoCase(quantity.name, text); });
  if (found != m_quantities.end())
    info = found->info;
  return found != m_quantities.end();
}

} // namespace command
