#pragma once

#include "desktop/product/quantity/IQuantityCatalogue.h"
#include "products/rfcircuit/product/quantity/NetworkLayout.h"

namespace rfcircuit {

/// The quantities of a circuit with certain ports and stored nodes.
class RfCatalogue : public desktop::IQuantityCatalogue {
public:
  RfCatalogue(NetworkLayout layout, std::vector<double> frequencies, std::vector<double> voltageFrequencies);

  NetworkLayout const & Layout() const { return m_layout; }

  std::vector<desktop::QuantityReportType> const & GetReportTypes() const override { return m_reportTypes; }
  std::vector<AString> GetCategories(unsigned reportType) const override;
  std::vector<AString> GetNames(AString const & category, unsigned reportType) const override;
  bool Describe(AString const & text, desktop::QuantityInfo & info) const override;

private:
  NetworkLayout m_layout;
  std::vector<desktop::QuantityReportType> m_reportTypes;
};

} // namespace rfcircuit
