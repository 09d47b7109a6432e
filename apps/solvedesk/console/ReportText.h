#pragma once

#include <nlohmann/json_fwd.hpp>

#include <optional>
#include <string>
#include <vector>

namespace desktop {
class ReportTable;
struct ReportDefinition;
} // namespace desktop

namespace solvedesk {

/// What a complex number is told as, in two columns.
enum class ComplexForm { kReIm, kMagDeg };

/// A report's rows in the forms in which they are told: a column of complex numbers becomes two, which the header
/// tells.
class ReportText {
public:
  ReportText(desktop::ReportTable const & table, ComplexForm form);

  /// For people: seven significant digits; '-' where there is no value.
  std::string Table() const;
  /// Numbers that read back bit for bit; empty where there is no value.
  std::string Csv() const;
  /// "columns" and "rows" as JSON, null where there is no value.
  nlohmann::ordered_json Columns() const;
  std::size_t RowCount() const;
  nlohmann::ordered_json Row(std::size_t row) const;

private:
  enum class Part { kWhole, kRe, kIm, kMag, kDeg };
  struct Column {
    std::size_t source = 0;
    Part part = Part::kWhole;
    std::string title;
    std::string unit;
  };

  std::optional<double> Number(std::size_t row, Column const & column) const;
  std::string Cell(std::size_t row, Column const & column, int digits) const;
  static std::string Header(Column const & column);

  desktop::ReportTable const & m_table;
  std::vector<Column> m_columns;
};

/// A field of a CSV line, in quotes where it needs them.
std::string CsvField(std::string const & text);

nlohmann::ordered_json DefinitionAsJson(desktop::ReportDefinition const & report);

} // namespace solvedesk
