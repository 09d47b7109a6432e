#pragma once

#include "desktop/product/quantity/IQuantityCatalogue.h"

namespace desktop {
struct QuantityValues;
}

namespace command {

constexpr unsigned kNumbersReportType = 1;

/// The quantities of one run: single numbers are report type 1, and each column that runs over nothing, or that others
/// run over, is the axis of one more, numbered from 2 on in the order in which they are stored.  A column that runs
/// over nothing is its own axis.
class CommandCatalogue : public desktop::IQuantityCatalogue {
public:
  explicit CommandCatalogue(std::vector<desktop::QuantityValues> const & quantities);

  std::vector<desktop::QuantityReportType> const & GetReportTypes() const override { return m_reportTypes; }
  /// "Numbers" and "Columns".
  std::vector<AString> GetCategories(unsigned reportType) const override;
  std::vector<AString> GetNames(AString const & category, unsigned reportType) const override;
  bool Describe(AString const & text, desktop::QuantityInfo & info) const override;

private:
  struct Quantity {
    AString name;
    desktop::QuantityInfo info;
  };

  unsigned ReportTypeOver(AString const & axis) const;

  std::vector<desktop::QuantityReportType> m_reportTypes;
  std::vector<Quantity> m_quantities;
};

} // namespace command
