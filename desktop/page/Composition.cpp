#include "desktop/page/Composition.h"

#include "basekit/text/NumberText.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace desktop::page {
namespace {

constexpr double kMissing = std::numeric_limits<double>::quiet_NaN();

bool HasText(std::vector<AString> const & texts) {
  return std::ranges::any_of(texts, [](AString const & text) { return !text.empty(); });
}

void AddTexts(Table & table, wchar_t const * title, std::vector<AString> texts) {
  if (HasText(texts))
    table.columns.push_back({title, {}, std::move(texts)});
}

AString NameOf(Convergence const & convergence) {
  return convergence.criterion.empty() ? AString(L"delta") : convergence.criterion;
}

// Targets that runs share are drawn once.
std::vector<Level> Targets(Convergence const & convergence) {
  std::vector<Level> levels;
  for (Convergence::Run const & run : convergence.runs)
    if (run.target && std::ranges::none_of(levels, [&run](Level const & level) { return level.y == *run.target; }))
      levels.push_back({*run.target, L"target " + AString(text::RealText(*run.target, 'g', -1))});
  return levels;
}

RectangularPlot PlotOf(Convergence const & convergence) {
  RectangularPlot plot;
  plot.title = convergence.title;
  plot.x.title = L"pass";
  plot.y.title = NameOf(convergence);
  plot.levels = Targets(convergence);
  for (Convergence::Run const & run : convergence.runs)
    plot.series.push_back({plot.y.title, run.variation, run.passes, run.deltas});
  auto const isPositive = [](double delta) { return !(delta <= 0.0); };
  plot.y.isLogarithmic = std::ranges::all_of(
      plot.series, [&](Series const & series) { return std::ranges::all_of(series.y, isPositive); });
  return plot;
}

Table TableOf(Convergence const & convergence) {
  std::vector<AString> variations, states;
  std::vector<double> passes, last, targets;
  for (Convergence::Run const & run : convergence.runs) {
    variations.push_back(run.variation);
    states.push_back(!run.isConverged ? L"" : *run.isConverged ? L"converged" : L"not converged");
    passes.push_back(static_cast<double>(run.passes.size()));
    last.push_back(run.deltas.empty() ? kMissing : run.deltas.back());
    targets.push_back(run.target.value_or(kMissing));
  }
  Table table{convergence.title, {}};
  AddTexts(table, L"variation", std::move(variations));
  AddTexts(table, L"state", std::move(states));
  table.columns.push_back({L"passes", {}, std::move(passes)});
  table.columns.push_back({L"last " + NameOf(convergence), {}, std::move(last)});
  table.columns.push_back({L"target", {}, std::move(targets)});
  return table;
}

} // namespace

std::vector<Item> Composed(Convergence const & convergence) { return {PlotOf(convergence), TableOf(convergence)}; }

Table Composed(Profile const & profile) {
  Table table{profile.title, {}};
  table.columns.push_back({profile.heading, {}, profile.tasks});
  for (Profile::Measure const & measure : profile.measures)
    table.columns.push_back({measure.title, measure.unit, measure.values, true});
  return table;
}

Table Composed(Numbers const & numbers) {
  std::vector<AString> names, variations, units, problems;
  std::vector<double> values;
  for (Numbers::Entry const & entry : numbers.entries) {
    names.push_back(entry.name);
    variations.push_back(entry.variation);
    values.push_back(entry.problem.empty() ? entry.value : kMissing);
    units.push_back(entry.unit);
    problems.push_back(entry.problem);
  }
  Table table{numbers.title, {}};
  table.columns.push_back({L"expression", {}, std::move(names)});
  AddTexts(table, L"variation", std::move(variations));
  table.columns.push_back({L"value", {}, std::move(values)});
  AddTexts(table, L"unit", std::move(units));
  AddTexts(table, L"no value, as", std::move(problems));
  return table;
}

} // namespace desktop::page
