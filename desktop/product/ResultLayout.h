#pragma once

#include "basekit/text/AString.h"

#include <optional>

namespace desktop {

/// How result files of a solution are called: "Touchstone/point17_v5.s2p", and one of several by number
/// "NodeVoltages/point17_v5_n101.csv".  The folder is the store's keyword; the numbers are the ID of the variation, a
/// version, and the identifier of the number.  Names don't hold the variation's text: they stay short and safe whatever
/// that is, and `solvedesk info --files` tells which is which.
struct ResultLocation {
  AString keyword;
  long variationID = -1;
  long version = -1;
  std::optional<long> number;
  AString extension; ///< with its dot

  AString Text() const;
  /// Nothing for a text that Text() never gives.
  static std::optional<ResultLocation> Parse(AString const & text);
};

} // namespace desktop
