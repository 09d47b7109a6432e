#pragma once

#include "basekit/text/AString.h"

#include <vector>

namespace desktop {

struct QuantityColumn;

/// The quantities of one solved variation, as long as that has its data in memory.
class ISolvedQuantities {
public:
  virtual ~ISolvedQuantities() = default;
  /// The values of a report type's axis; false when the variation has none of it.
  virtual bool GetAxis(unsigned reportType, std::vector<double> & values) = 0;
  /// Contexts go by their numbers.  False when the variation has no such quantity.
  virtual bool GetColumn(AString const & text, unsigned context, QuantityColumn & column) = 0;
};

} // namespace desktop
