#include "desktop/page/Composition.h"

#include <cmath>
#include <gtest/gtest.h>

namespace {

using namespace desktop::page;

std::vector<double> const & NumbersOf(Table::Column const & column) {
  return std::get<std::vector<double>>(column.cells);
}
std::vector<AString> const & TextsOf(Table::Column const & column) {
  return std::get<std::vector<AString>>(column.cells);
}

Convergence TwoRuns() {
  return {L"passes",
          L"change",
          {{L"C1=1pF", {1, 2, 3}, {0.1, 0.01, 0.001}, 0.01, true}, {L"C1=2pF", {1, 2}, {0.5, 0.2}, 0.01, false}}};
}

TEST(ConvergenceOnAPage, IsACurveForEachRunAndEachTargetOnce) {
  auto const items = Composed(TwoRuns());
  ASSERT_EQ(items.size(), 2u);
  auto const & plot = std::get<RectangularPlot>(items[0]);
  ASSERT_EQ(plot.series.size(), 2u);
  EXPECT_EQ(plot.series[1].variation, L"C1=2pF");
  EXPECT_EQ(plot.series[1].y, (std::vector<double>{0.5, 0.2}));
  ASSERT_EQ(plot.levels.size(), 1u);
  EXPECT_EQ(plot.levels[0].label, L"target 0.01");
  EXPECT_TRUE(plot.y.isLogarithmic);
}

TEST(ConvergenceOnAPage, HasAnEvenAxisWhereALogarithmicOneWouldHideAPass) {
  Convergence convergence = TwoRuns();
  convergence.runs[0].deltas[2] = 0.0;
  EXPECT_FALSE(std::get<RectangularPlot>(Composed(convergence)[0]).y.isLogarithmic);
}

TEST(ConvergenceOnAPage, TellsTheEndOfEachRunInATable) {
  auto const items = Composed(TwoRuns());
  auto const & table = std::get<Table>(items[1]);
  ASSERT_EQ(table.columns.size(), 5u);
  EXPECT_EQ(TextsOf(table.columns[1]), (std::vector<AString>{L"converged", L"not converged"}));
  EXPECT_EQ(NumbersOf(table.columns[2]), (std::vector<double>{3, 2}));
  EXPECT_EQ(NumbersOf(table.columns[3]), (std::vector<double>{0.001, 0.2}));
}

TEST(ConvergenceOnAPage, OfASolverThatDoesNotTellHasNoState) {
  auto const items = Composed(Convergence{L"passes", {}, {{{}, {1}, {0.5}, {}, {}}}});
  auto const & table = std::get<Table>(items[1]);
  ASSERT_EQ(table.columns.size(), 3u);
  EXPECT_TRUE(std::isnan(NumbersOf(table.columns[2])[0]));
}

TEST(ProfileOnAPage, HasAColumnOfBarsForEachMeasure) {
  Table const table = Composed(Profile{L"cost", {L"read", L"sweep"}, {{L"time", L"s", {1.0, 2.0}}}});
  ASSERT_EQ(table.columns.size(), 2u);
  EXPECT_EQ(TextsOf(table.columns[0])[1], L"sweep");
  EXPECT_TRUE(table.columns[1].hasBars);
  EXPECT_EQ(table.columns[1].unit, L"s");
}

TEST(NumbersOnAPage, WithAProblemHaveNoValueButTheReason) {
  Table const table = Composed(Numbers{L"n", {{L"max(y)", {}, 2.5, L"dB", {}}, {L"min(y)", {}, 9.0, {}, L"no data"}}});
  ASSERT_EQ(table.columns.size(), 4u);
  EXPECT_EQ(NumbersOf(table.columns[1])[0], 2.5);
  EXPECT_TRUE(std::isnan(NumbersOf(table.columns[1])[1]));
  EXPECT_EQ(TextsOf(table.columns[3])[1], L"no data");
}

} // namespace
