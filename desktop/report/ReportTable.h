#pragma once

#include "basekit/text/AString.h"
#include "basekit/value/units/Units.h"

#include <complex>
#include <cstddef>
#include <optional>
#include <span>
#include <vector>

class Trace;
class TraceComponent;
class ValueColumn;

namespace desktop {

/// The numbers of a report, row by row: a row for each sample, in the order of the variations.  A variation without
/// data is one row with nothing but its variables.  It looks at the traces, so it stands until these are updated.
class ReportTable {
public:
  struct Column {
    enum class Role { kVariable, kX, kY };
    Role role = Role::kY;
    AString title;                               ///< an expression, or the name of a variable
    Units::FullUnitType units = Units::kNoUnits; ///< numbers are in it
    bool isComplex = false;
  };

  /// Traces may be null: their columns are empty then.  All others run over the same points.
  ReportTable(std::vector<AString> const & over, AString const & x, std::vector<AString> const & y,
              std::vector<Trace const *> const & traces);

  std::vector<Column> const & Columns() const { return m_columns; }
  std::size_t RowCount() const { return m_rows; }
  /// How many variations have no data.
  std::size_t GapCount() const;
  /// Nothing for a value that is missing.
  std::optional<std::complex<double>> At(std::size_t row, std::size_t column) const;
  /// Of a variable whose value is no number.
  AString TextAt(std::size_t row, std::size_t column) const;
  /// The variation that the row belongs to, as the solution names it.
  AString const & VariationAt(std::size_t row) const;

private:
  struct Part {
    std::size_t firstRow = 0;
    std::size_t firstSample = 0;
    bool isMissing = false;
    AString variation;
    std::vector<AString> texts; ///< of the variables
    std::vector<std::optional<double>> numbers;
  };

  void TakeParts(std::vector<AString> const & over, Trace const & trace);
  void AddColumn(Column::Role role, AString const & title, TraceComponent const * component);
  Part const & PartOf(std::size_t row) const;

  std::vector<Column> m_columns;
  std::vector<ValueColumn const *> m_values; ///< by column; null for variables and for what has no trace
  std::vector<Part> m_parts;
  std::size_t m_variables = 0;
  std::size_t m_rows = 0;
};

} // namespace desktop
