#pragma once

#include "desktop/report/ReportTable.h"

namespace desktop {

/// The numbers of a report of the reporter rewrite, row by row: its own copy of them, which outlives solved data.
struct SetupTable {
  struct Cell {
    std::optional<std::complex<double>> number; ///< nothing for a value that is missing
    AString text;                               ///< of a variable whose value is no number
  };
  std::vector<ReportTable::Column> columns; ///< the variables that run, x, and the y
  std::vector<std::vector<Cell>> rows;
  std::size_t gaps = 0;          ///< variations without data, a row each with their variables alone
  std::vector<AString> problems; ///< one line each; what they are about is missing
  bool isCancelled = false;      ///< variations behind the last row were not looked at
};

} // namespace desktop
