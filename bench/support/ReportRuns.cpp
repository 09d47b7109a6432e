#include "bench/support/ReportRuns.h"

#include "bench/support/Measure.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <fmt/format.h>
#include <iostream>

namespace bench {

namespace {

std::string Padded(std::string const & text, int width) {
  return width < 0 ? fmt::format("{:<{}}", text, -width) : fmt::format("{:>{}}", text, width);
}

std::string CellOf(nlohmann::json const & value, ResultTable::Column const & column) {
  if (value.is_number_float())
    return Padded(fmt::format("{:.{}f}", value.get<double>(), column.precision), column.width);
  return Padded(value.is_string() ? value.get<std::string>() : value.dump(), column.width);
}

} // namespace

void RunWords::Declare(CLI::App & app) {
  app.add_option("--repeats", repeats, "runs of which the shortest counts")->check(CLI::PositiveNumber);
  app.add_option("--folder", folder, "where the data of the run goes");
  app.add_flag("--json", isJson, "one JSON object a line");
  app.add_flag("--smoke", isSmoke, "small sizes: shows that the program works");
}

double SecondsOf(std::function<void()> const & work) {
  double const before = ProcessorSeconds();
  work();
  return ProcessorSeconds() - before;
}

std::vector<double> ShortestInTurns(int repeats, std::vector<std::function<double()>> const & runs) {
  std::vector<double> shortest(runs.size(), HUGE_VAL);
  for (int i = 0; i < repeats; ++i)
    for (std::size_t run = 0; run < runs.size(); ++run)
      shortest[run] = std::min(shortest[run], runs[run]());
  return shortest;
}

ResultTable::ResultTable(std::vector<Column> columns, bool isJson) : m_columns(std::move(columns)), m_isJson(isJson) {
  for (std::size_t at = 0; at < m_columns.size() && !m_isJson; ++at)
    std::cout << (at == 0 ? "" : " ") << Padded(m_columns[at].title, m_columns[at].width);
  if (!m_isJson)
    std::cout << '\n';
}

void ResultTable::Add(nlohmann::json const & line) {
  if (m_isJson) {
    std::cout << line.dump() << std::endl;
    return;
  }
  for (std::size_t at = 0; at < m_columns.size(); ++at)
    std::cout << (at == 0 ? "" : " ") << CellOf(line.at(m_columns[at].key), m_columns[at]);
  std::cout << std::endl;
}

} // namespace bench
