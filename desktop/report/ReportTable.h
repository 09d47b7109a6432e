#pragma once

#include "basekit/text/AString.h"
#include "basekit/value/units/Units.h"

#include <complex>
#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

class Trace;

namespace desktop {

/// The numbers of a report, row by row: a row for each sample, in the order of the variations.  A variation without
/// data is one row with nothing but its variables; a curve that is one number for a variation has it in all rows of it.
/// It looks at the traces, so it stands until these are updated.
class ReportTable {
public:
  struct Column {
    enum class Role { kVariable, kX, kY };
    Role role = Role::kY;
    AString title;                               ///< an expression, or the name of a variable
    Units::FullUnitType units = Units::kNoUnits; ///< numbers are in it
    bool isComplex = false;
  };

  /// Traces may be null: their columns are empty then.  All others run over the same points.  Without x there is no
  /// column of it, and one alone where it is one of the variables.  `units` counts, by y, where a trace tells none.
  ReportTable(std::vector<AString> const & over, AString const & x, std::vector<AString> const & y,
              std::vector<Trace const *> const & traces, std::vector<Units::FullUnitType> const & units = {});

  std::vector<Column> const & Columns() const { return m_columns; }
  std::size_t RowCount() const { return m_rows; }
  /// How many variations have no data.
  std::size_t GapCount() const;
  /// Name and value of the variables at the first variation that has no data; empty without such.
  std::vector<std::pair<AString, AString>> FirstGap() const;
  /// The rows of a variation; one that has no data has one row.
  struct Variation {
    std::size_t firstRow = 0;
    std::size_t rows = 1;
    bool isGap = false;
  };
  /// In the order of the rows.
  std::vector<Variation> Variations() const;
  /// The first so many columns are those of the variables.
  std::size_t VariableCount() const { return m_variables; }
  /// How many rows the variation of the most rows has.
  std::size_t LongestCurve() const;
  /// Nothing for a value that is missing.
  std::optional<std::complex<double>> At(std::size_t row, std::size_t column) const;
  /// Of a variable, as it is written; it may be no number.
  AString TextAt(std::size_t row, std::size_t column) const;

private:
  struct Span {
    std::size_t first = 0;
    std::size_t count = 0;
  };
  struct Part {
    std::size_t firstRow = 0;
    std::size_t rows = 1;
    bool isMissing = true;
    std::vector<AString> texts; ///< of the variables
    std::vector<std::optional<double>> numbers;
    std::vector<Span> spans; ///< by trace
    std::size_t longest = 0; ///< the trace whose abscissa counts
  };

  void AddColumn(Column::Role role, AString const & title, Trace const * trace, Units::FullUnitType units);
  void TakeParts(std::vector<AString> const & over, std::vector<Trace const *> const & traces);
  Part const & PartOf(std::size_t row) const;

  std::vector<Trace const *> m_traces;
  std::vector<Column> m_columns;
  std::vector<Part> m_parts;
  std::size_t m_variables = 0;
  std::size_t m_rows = 0;
};

} // namespace desktop
