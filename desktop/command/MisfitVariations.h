#pragma once

#include "basekit/text/AString.h"

#include <vector>

namespace desktop {

class Design;
class Session;

/// Names of one side that the other one lacks.
struct NameDifference {
  std::vector<AString> ofVariation; ///< that the design has no variable of
  std::vector<AString> ofDesign;    ///< that the variation tells no value for
  bool IsEmpty() const { return ofVariation.empty() && ofDesign.empty(); }
};
NameDifference DifferenceOfNames(Design const & design, AString const & variation);

/// A variation that names other variables than the design has belongs to no point of it, whatever its version: it is
/// marked as not valid, and one that fits again as valid.  To be called when the names of variables or the variations
/// may have changed; the mark lives in memory alone.
void MarkMisfits(Session & session);

} // namespace desktop
