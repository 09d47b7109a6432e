#pragma once

#include "basekit/text/AString.h"

#include <optional>
#include <vector>

namespace rfcircuit {

/// The text of a quantity taken apart: "S(2,1)" is S with 2 and 1, "S21" and "VSWR1" have digits behind the symbol.
struct QuantityName {
  AString symbol;
  AString inside;                 ///< the whole text between the parentheses
  std::vector<AString> arguments; ///< its parts between commas, without blanks around them
  AString digits;                 ///< of the short form, which has no parentheses
};

/// Nothing for a text of neither form; a plain word is a symbol alone.
std::optional<QuantityName> ParseQuantityName(AString const & text);

} // namespace rfcircuit
