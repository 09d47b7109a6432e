#include "apps/solvedesk/results/ValueTable.h"

#include "apps/solvedesk/console/Console.h"
#include "apps/solvedesk/console/ReportText.h"
#include "basekit/text/NumberText.h"
#include "basekit/text/Utf8.h"

#include <fmt/format.h>

#include <algorithm>

namespace solvedesk {
namespace {

using desktop::QuantityValues;

std::string TitleOf(QuantityValues const & quantity) {
  return Utf8(quantity.name) + (quantity.unit.empty() ? "" : " (" + Utf8(quantity.unit) + ")");
}

std::size_t LongestColumn(std::vector<QuantityValues const *> const & columns) {
  std::size_t rows = 0;
  for (QuantityValues const * column : columns)
    rows = std::max(rows, column->values.size());
  return rows;
}

std::string NumberAt(QuantityValues const & quantity, std::size_t row) {
  if (quantity.isScalar)
    row = 0;
  return row < quantity.values.size() ? text::ShortestReal(quantity.values[row]) : std::string();
}

// Whoever reads by names would take one column for the other.
bool IsOtherColumn(PointValues const & point, AString const & name) {
  return AString::MatchNoCase(name, L"setup") ||
         std::any_of(point.variables.begin(), point.variables.end(), [&name](auto const & variable) {
           return AString::MatchNoCase(text::FromUtf8(variable.first), name);
         });
}

std::string TableOf(std::vector<QuantityValues const *> const & columns) {
  std::string table;
  std::vector<std::size_t> widths;
  std::size_t const rows = LongestColumn(columns);
  for (QuantityValues const * column : columns) {
    std::size_t width = TitleOf(*column).size();
    for (std::size_t row = 0; row < column->values.size(); ++row)
      width = std::max(width, NumberAt(*column, row).size());
    widths.push_back(width);
  }
  for (std::size_t line = 0; line <= rows; ++line) {
    table += " ";
    for (std::size_t i = 0; i < columns.size(); ++i)
      table += fmt::format(" {:>{}}", line == 0 ? TitleOf(*columns[i]) : NumberAt(*columns[i], line - 1), widths[i]);
    table += "\n";
  }
  return table;
}

} // namespace

std::string ValuesAsText(PointValues const & point) {
  std::string text =
      point.setup + " : " + point.solution + (point.variation.empty() ? "" : " at " + Utf8(point.variation)) + "\n";
  std::vector<QuantityValues const *> columns;
  for (QuantityValues const & quantity : point.quantities)
    if (quantity.isScalar)
      text += fmt::format("  {} = {}{}\n", Utf8(quantity.name), NumberAt(quantity, 0),
                          quantity.unit.empty() ? "" : " " + Utf8(quantity.unit));
    else
      columns.push_back(&quantity);
  return text + (columns.empty() ? std::string() : TableOf(columns));
}

nlohmann::ordered_json ValuesAsJson(PointValues const & point) {
  nlohmann::ordered_json json{{"setup", point.setup},
                              {"solution", point.solution},
                              {"variation", Utf8(point.variation)},
                              {"quantities", nlohmann::ordered_json::array()}};
  for (QuantityValues const & quantity : point.quantities) {
    nlohmann::ordered_json item{{"name", Utf8(quantity.name)}};
    if (!quantity.unit.empty())
      item["unit"] = Utf8(quantity.unit);
    if (!quantity.over.empty())
      item["over"] = Utf8(quantity.over);
    if (quantity.isScalar)
      item["value"] = quantity.values.front();
    else
      item["values"] = quantity.values;
    json["quantities"].push_back(std::move(item));
  }
  return json;
}

std::string CsvHeader(PointValues const & point) {
  std::string header = "setup";
  for (auto const & [name, value] : point.variables)
    header += "," + CsvField(name);
  for (QuantityValues const & quantity : point.quantities)
    header += "," + CsvField(Utf8(quantity.name) + (IsOtherColumn(point, quantity.name) ? " (quantity)" : ""));
  return header + "\n";
}

std::string ValuesAsCsv(PointValues const & point) {
  std::string front = CsvField(point.setup);
  for (auto const & [name, value] : point.variables)
    front += "," + CsvField(value);
  std::size_t rows = 1;
  for (QuantityValues const & quantity : point.quantities)
    rows = std::max(rows, quantity.values.size());
  std::string text;
  for (std::size_t row = 0; row < rows; ++row) {
    text += front;
    for (QuantityValues const & quantity : point.quantities)
      text += "," + NumberAt(quantity, row);
    text += "\n";
  }
  return text;
}

} // namespace solvedesk
