#include "apps/solvedesk/console/ReportText.h"

#include "apps/solvedesk/console/Console.h"
#include "apps/solvedesk/console/TextTable.h"
#include "basekit/text/NumberText.h"
#include "desktop/report/ReportDefinition.h"
#include "desktop/report/ReportTable.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <numbers>

namespace solvedesk {
namespace {

using Json = nlohmann::ordered_json;
using Role = desktop::ReportTable::Column::Role;

constexpr int kDigitsForPeople = 7;
constexpr int kExactDigits = 17;

char const * RoleName(Role role) { return role == Role::kVariable ? "variable" : role == Role::kX ? "x" : "y"; }

} // namespace

ReportText::ReportText(desktop::ReportTable const & table, ComplexForm form) : m_table(table) {
  for (std::size_t i = 0; i < table.Columns().size(); ++i) {
    desktop::ReportTable::Column const & column = table.Columns()[i];
    std::string const title = Utf8(column.title);
    std::string const unit = column.units == Units::kNoUnits ? std::string() : Utf8(Units::GetSymbol(column.units));
    if (!column.isComplex) {
      m_columns.push_back({i, Part::kWhole, title, unit});
    } else if (form == ComplexForm::kReIm) {
      m_columns.push_back({i, Part::kRe, "re(" + title + ")", unit});
      m_columns.push_back({i, Part::kIm, "im(" + title + ")", unit});
    } else {
      m_columns.push_back({i, Part::kMag, "mag(" + title + ")", unit});
      m_columns.push_back({i, Part::kDeg, "phase(" + title + ")", "deg"});
    }
  }
}

std::optional<double> ReportText::Number(std::size_t row, Column const & column) const {
  auto const number = m_table.At(row, column.source);
  if (!number)
    return {};
  switch (column.part) {
  case Part::kIm:
    return number->imag();
  case Part::kMag:
    return std::abs(*number);
  case Part::kDeg:
    return std::arg(*number) * 180.0 / std::numbers::pi;
  default:
    return number->real();
  }
}

std::string ReportText::Cell(std::size_t row, Column const & column, int digits) const {
  if (auto const number = Number(row, column))
    return text::RealWithDigits(*number, digits);
  return Utf8(m_table.TextAt(row, column.source));
}

std::string ReportText::Header(Column const & column) {
  return column.title + (column.unit.empty() ? "" : " (" + column.unit + ")");
}

std::string ReportText::Table() const {
  TextTable table;
  std::vector<std::string> cells;
  for (Column const & column : m_columns)
    cells.push_back(Header(column));
  table.Add(cells);
  for (std::size_t row = 0; row < RowCount(); ++row) {
    for (std::size_t i = 0; i < m_columns.size(); ++i) {
      cells[i] = Cell(row, m_columns[i], kDigitsForPeople);
      cells[i] = cells[i].empty() ? "-" : cells[i];
    }
    table.Add(cells);
  }
  return table.Text("");
}

std::string ReportText::Csv() const {
  std::string text;
  for (Column const & column : m_columns)
    text += (text.empty() ? "" : ",") + CsvField(Header(column));
  text += "\n";
  for (std::size_t row = 0; row < RowCount(); ++row)
    for (std::size_t i = 0; i < m_columns.size(); ++i)
      text += CsvField(Cell(row, m_columns[i], kExactDigits)) + (i + 1 < m_columns.size() ? "," : "\n");
  return text;
}

Json ReportText::Columns() const {
  Json columns = Json::array();
  for (Column const & column : m_columns) {
    Json item{{"title", column.title}, {"role", RoleName(m_table.Columns()[column.source].role)}};
    if (!column.unit.empty())
      item["unit"] = column.unit;
    columns.push_back(item);
  }
  return columns;
}

std::size_t ReportText::RowCount() const { return m_table.RowCount(); }

Json ReportText::Row(std::size_t row) const {
  Json cells = Json::array();
  for (Column const & column : m_columns) {
    auto const number = Number(row, column);
    std::string const text = number ? std::string() : Cell(row, column, kExactDigits);
    if (number && std::isfinite(*number))
      cells.push_back(*number);
    else if (number && std::isinf(*number)) // no number of JSON
      cells.push_back(*number > 0.0 ? "inf" : "-inf");
    else if (number || text.empty())
      cells.push_back(nullptr);
    else
      cells.push_back(text);
  }
  return cells;
}

std::string CsvField(std::string const & text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos)
    return text;
  std::string quoted = "\"";
  for (char const c : text)
    quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
  return quoted + "\"";
}

Json DefinitionAsJson(desktop::ReportDefinition const & report) {
  auto const texts = [](std::vector<AString> const & list) {
    Json json = Json::array();
    for (AString const & text : list)
      json.push_back(Utf8(text));
    return json;
  };
  return {{"name", Utf8(report.name)},
          {"setup", Utf8(report.setup)},
          {"solution", Utf8(report.solution)},
          {"display", Utf8(WordOf(report.display))},
          {"x", Utf8(report.x)},
          {"y", texts(report.y)},
          {"over", texts(report.over)}};
}

} // namespace solvedesk
