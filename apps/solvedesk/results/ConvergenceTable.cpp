#include "apps/solvedesk/results/ConvergenceTable.h"

#include "apps/solvedesk/console/Console.h"
#include "apps/solvedesk/console/TextTable.h"
#include "basekit/io/CBlock.h"
#include "basekit/text/NumberText.h"
#include "solutionmanager/convergence/ConvDef.h"
#include "solutionmanager/convergence/ConvergenceData.h"
#include "solutionmanager/convergence/SetupConvDef.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cwchar>
#include <limits>
#include <set>

namespace solvedesk {
namespace {

using Json = nlohmann::ordered_json;
using Columns = std::vector<std::pair<AString, bool>>;

wchar_t const * const kNone = L"N/A";

Columns ColumnsOf(ConvergenceData const & record, int index) {
  Columns columns;
  record.GetTableColumns(columns, index);
  return columns;
}

// Saturates as the reader of the record does.
int IndexOfSet(AString const & name) {
  constexpr long kLeast = std::numeric_limits<int>::min();
  constexpr long kMost = std::numeric_limits<int>::max();
  return static_cast<int>(std::clamp(std::wcstol(name.c_str(), nullptr, 10), kLeast, kMost));
}

// JSON knows neither infinities nor what is no number: those keep their texts.
Json NumberJson(double number, AString const & text) {
  constexpr double kMostExact = 9007199254740992.0;
  if (!std::isfinite(number))
    return Json(Utf8(text));
  bool const isWhole = std::trunc(number) == number && std::abs(number) < kMostExact;
  return isWhole ? Json(static_cast<long long>(number)) : Json(number);
}

Json TextOrNull(AString const & text) { return text.Compare(kNone) == 0 ? Json() : Json(Utf8(text)); }

// A product tells its targets as texts.
Json NumberOrText(AString const & text) {
  double number = 0;
  return text::ParseReal(text.View(), number) ? NumberJson(number, text) : TextOrNull(text);
}

Json ValueJson(ConvergenceData const & record, AString const & column, int pass, int index) {
  AString const text = record.GetPassData(column, pass, index);
  double number = 0;
  bool const isNumber = record.GetPassData(column, pass, number, index);
  if (text.Compare(kNone) == 0)
    return Json();
  return isNumber ? NumberJson(number, text) : Json(Utf8(text));
}

} // namespace

std::vector<int> ConvergenceSets(io::CBlock const & block) {
  std::set<int> sets;
  for (auto const & child : block)
    if (child->IsBlock())
      sets.insert(child->Name().IsNumber(10) ? IndexOfSet(child->Name()) : ConvergenceData::kSingleSet);
  if (sets.empty())
    sets.insert(ConvergenceData::kSingleSet);
  return {sets.begin(), sets.end()};
}

int PassCount(ConvergenceData const & record, int index) {
  std::size_t passes = 0;
  if (CBaseConvergenceData const * const set = record.GetBaseConvergenceData(index); set && set->GetDefinition())
    for (auto at = record.begin(index); at != record.end(index); ++at)
      passes = std::max(passes, static_cast<std::size_t>(at->second.size()));
  return static_cast<int>(passes);
}

std::string ConvergenceSummary(ConvergenceData const & record, int index) {
  std::string text = !record.SupportsIsConverged(index) ? ""
                     : record.GetIsConverged(index)     ? "converged, "
                                                        : "not converged, ";
  int const passes = PassCount(record, index);
  text += fmt::format("{} pass{}", passes, passes == 1 ? "" : "es");
  AString const target = record.GetTargetCriterion(index);
  AString const label = record.GetCriterionLabel(index);
  if (target.Compare(kNone) != 0)
    text += ", target " + Utf8(target) + (label.Compare(kNone) == 0 ? "" : " (" + Utf8(label) + ")");
  AString const most = record.GetMaximumIter(index);
  if (most.Compare(kNone) != 0 && !most.empty())
    text += ", at most " + Utf8(most);
  return text;
}

std::string CriterionText(ConvergenceData const & record, int index) {
  AString const label = record.GetCriterionLabel(index);
  AString const now = record.GetCurrentCriterion(index);
  AString const target = record.GetTargetCriterion(index);
  for (AString const & text : {label, now, target})
    if (text.empty() || text.Compare(kNone) == 0)
      return std::string();
  return Utf8(label) + " " + Utf8(now) + " of " + Utf8(target);
}

std::string ConvergenceTable(ConvergenceData const & record, int index) {
  Columns const columns = ColumnsOf(record, index);
  TextTable table;
  // A product that counts its passes itself has a column for that.
  bool const isCounted = std::any_of(columns.begin(), columns.end(),
                                     [](auto const & column) { return AString::MatchNoCase(column.first, L"Pass"); });
  std::vector<std::string> const noNumber;
  std::vector<std::string> row = isCounted ? noNumber : std::vector<std::string>{"pass"};
  for (auto const & [name, canPlot] : columns)
    row.push_back(Utf8(name));
  table.Add(row);
  for (int pass = 1; pass <= PassCount(record, index); ++pass) {
    row = isCounted ? noNumber : std::vector<std::string>{std::to_string(pass)};
    for (auto const & [name, canPlot] : columns)
      row.push_back(Utf8(record.GetPassData(name, pass, index)));
    table.Add(row);
  }
  return table.Text("    ");
}

Json PassJson(ConvergenceData const & record, int index, int pass) {
  Json values = Json::object();
  for (auto const & [name, canPlot] : ColumnsOf(record, index))
    values[Utf8(name)] = ValueJson(record, name, pass, index);
  return values;
}

std::string PassText(ConvergenceData const & record, int index, int pass) {
  std::string text;
  for (auto const & [name, canPlot] : ColumnsOf(record, index))
    text += (text.empty() ? "" : ", ") + Utf8(name) + " " + Utf8(record.GetPassData(name, pass, index));
  return text;
}

Json ConvergenceJson(ConvergenceData const & record, int index) {
  Json json{{"index", index},
            {"kind", Utf8(record.GetSetupConvDefName(index))},
            {"converged", record.SupportsIsConverged(index) ? Json(record.GetIsConverged(index)) : Json()},
            {"target", NumberOrText(record.GetTargetCriterion(index))},
            {"criterion", TextOrNull(record.GetCriterionLabel(index))},
            {"max_passes", NumberOrText(record.GetMaximumIter(index))},
            {"min_passes", NumberOrText(record.GetMinimumIter(index))},
            {"target_consecutive_passes", NumberOrText(record.GetTargetConsecPasses(index))},
            {"consecutive_passes", NumberOrText(record.GetCurrentConsecPasses(index))},
            {"columns", Json::array()},
            {"passes", Json::array()}};
  for (auto const & [name, canPlot] : ColumnsOf(record, index))
    json["columns"].push_back({{"name", Utf8(name)}, {"plottable", canPlot}});
  for (int pass = 1; pass <= PassCount(record, index); ++pass)
    json["passes"].push_back(PassJson(record, index, pass));
  return json;
}

} // namespace solvedesk
