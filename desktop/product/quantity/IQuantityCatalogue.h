#pragma once

#include "CoreInterfaces/ReportForward.h"
#include "basekit/text/AString.h"
#include "basekit/value/ValueState.h"

#include <vector>

namespace desktop {

/// Quantities that are told over the same axis, or that are single numbers.
struct QuantityReportType {
  unsigned number = 0; ///< of a product, above 0
  AString name;
  AString axis;      ///< what the samples run over, as people call it; empty for single numbers
  AString intrinsic; ///< the intrinsic variable that is the same, where there is one
  ValueState axisState;
  std::vector<double> axisValues; ///< of the variation that the catalogue was made from, in SI units
  std::vector<rep::DisplayType> displayTypes;
  /// What the contexts to choose from are called, by their numbers; none without a choice.
  std::vector<AString> contexts;
  AString contextLabel; ///< for people: what is chosen
};

/// What is known of a quantity without its numbers.
struct QuantityInfo {
  AString category;
  ValueState state;
  unsigned reportType = 0;
};

/// Which quantities a solution has, by the texts that expressions use.  Made from one solved variation, or from none;
/// it keeps nothing of that one's samples but the axes.
class IQuantityCatalogue {
public:
  virtual ~IQuantityCatalogue() = default;
  virtual std::vector<QuantityReportType> const & GetReportTypes() const = 0;
  virtual std::vector<AString> GetCategories(unsigned reportType) const = 0;
  virtual std::vector<AString> GetNames(AString const & category, unsigned reportType) const = 0;
  /// False for a text that is no quantity.  Without a solved variation it is one when it might be.
  virtual bool Describe(AString const & text, QuantityInfo & info) const = 0;
};

} // namespace desktop
