#pragma once

#include <cstddef>
#include <string_view>

namespace rf {

/** A number as netlists write it: `2`, `-.5`, `1e3`, `4.7k`, `10MEGohm`.
    Suffixes t g meg k mil m u n p f, without case; letters after them are a unit and ignored (so 1F is one femto, and
    1A is one).  The suffix takes part in the conversion: 4.7p is the double nearest to 4.7e-12. */
struct EngineeringNumber {
  enum class Outcome { Number, Malformed, OutOfRange };

  Outcome outcome = Outcome::Malformed;
  double value = 0;
  std::size_t length = 0; ///< characters read, unit letters included

  /** Reads at the start of the text; a sign is part of the number only when asked for. */
  static EngineeringNumber Read(std::string_view text, bool withSign = false);
};

} // namespace rf
