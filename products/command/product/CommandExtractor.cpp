#include "products/command/product/CommandExtractor.h"

#include "desktop/product/quantity/ISolvedQuantities.h"
#include "desktop/product/quantity/QuantityColumn.h"
#include "products/command/product/CommandVariation.h"
#include "products/command/product/quantity/CommandCatalogue.h"
#include "products/command/product/quantity/UnitOfQuantity.h"

namespace command {
namespace {

class CommandQuantities : public desktop::ISolvedQuantities {
public:
  explicit CommandQuantities(std::vector<desktop::QuantityValues> const & quantities)
      : m_quantities(quantities), m_catalogue(quantities) {}

  bool GetAxis(unsigned reportType, std::vector<double> & values) override {
    for (desktop::QuantityReportType const & type : m_catalogue.GetReportTypes())
      if (type.number == reportType)
        values = type.axisValues;
    return !values.empty();
  }

  bool GetColumn(AString const & text, unsigned, desktop::QuantityColumn & column) override {
    for (desktop::QuantityValues const & quantity : m_quantities) {
      if (!AString::MatchNoCase(quantity.name, text))
        continue;
      column.numbers = ValuesInSI(quantity);
      return true;
    }
    return false;
  }

private:
  std::vector<desktop::QuantityValues> const & m_quantities;
  CommandCatalogue m_catalogue;
};

} // namespace

std::unique_ptr<desktop::IQuantityCatalogue>
CommandExtractor::MakeCatalogue(BaseSolutionVariation const * solved) const {
  if (!solved)
    return std::make_unique<CommandCatalogue>(std::vector<desktop::QuantityValues>());
  auto const * const variation = dynamic_cast<CommandVariation const *>(solved);
  if (!variation || !variation->HasSolutionData())
    return nullptr;
  return std::make_unique<CommandCatalogue>(variation->GetQuantities());
}

std::unique_ptr<desktop::ISolvedQuantities>
CommandExtractor::OpenQuantities(BaseSolutionVariation const & solved) const {
  auto const * const variation = dynamic_cast<CommandVariation const *>(&solved);
  if (!variation || !variation->HasSolutionData())
    return nullptr;
  return std::make_unique<CommandQuantities>(variation->GetQuantities());
}

} // namespace command
