#include "desktop/pageview/ReportItems.h"

#include "desktop/pageview/Reference.h"
#include "tests/desktop/report/ReportFixture.h"
#include "tests/support/FaultyFileSystem.h"

#include <cmath>
#include <functional>

using desktop::ReportDefinition;
using desktop::ReportDisplay;
namespace page = desktop::page;
namespace pageview = desktop::pageview;

class ReportOnAPage : public support::ReportTest {
protected:
  ReportOnAPage() {
    Solve(*m_session, L"C=1; L=2", {10, 20, 30});
    Solve(*m_session, L"C=2; L=2", {11, 21, 31});
    Solve(*m_session, L"C=1; L=4", {12, 22, 32});
  }

  std::vector<page::Item> Plots(ReportDefinition const & report, pageview::Look const & look = {}) {
    return pageview::ReportItems(*m_session, report, look).Plots();
  }
  static page::RectangularPlot const & Rectangular(page::Item const & item) {
    return std::get<page::RectangularPlot>(item);
  }
};

TEST_F(ReportOnAPage, ACurveStandsForEachExpressionAndVariation) {
  auto const plots = Plots(Report({L"V", L"2*V"}, {L"C"}));
  ASSERT_EQ(plots.size(), 1u);
  auto const & series = Rectangular(plots[0]).series;
  ASSERT_EQ(series.size(), 4u);
  EXPECT_EQ(series[1].name, L"V");
  EXPECT_EQ(series[1].variation, L"C=2");
  EXPECT_EQ(series[1].x, (std::vector<double>{1, 2, 3}));
  EXPECT_EQ(series[1].y, (std::vector<double>{11, 21, 31}));
  EXPECT_EQ(series[2].y, (std::vector<double>{20, 40, 60}));
}

TEST_F(ReportOnAPage, AVariableThatCurvesRunOverDoesNotNameThem) {
  ReportDefinition report = Report({L"max(V)"}, {L"L"});
  report.x = L"C";
  auto const plots = Plots(report);
  ASSERT_EQ(plots.size(), 1u);
  auto const & plot = Rectangular(plots[0]);
  EXPECT_EQ(plot.x.title, L"C");
  ASSERT_EQ(plot.series.size(), 2u);
  EXPECT_EQ(plot.series[0].variation, L"L=2");
  EXPECT_EQ(plot.series[0].x, (std::vector<double>{1, 2}));
  EXPECT_EQ(plot.series[0].y, (std::vector<double>{30, 31}));
  EXPECT_EQ(plot.series[1].x, (std::vector<double>{1})) << "C=2; L=4 is not solved";
}

TEST_F(ReportOnAPage, AnExpressionOfAVariableRunsLikeTheVariable) {
  ReportDefinition report = Report({L"max(V)"});
  report.x = L"10*C";
  auto const plots = Plots(report);
  ASSERT_EQ(plots.size(), 1u);
  ASSERT_EQ(Rectangular(plots[0]).series.size(), 1u);
  EXPECT_EQ(Rectangular(plots[0]).series[0].x, (std::vector<double>{10, 20}));
}

TEST_F(ReportOnAPage, ComplexNumbersAreDrawnInThePlaneAndRealOnesBesideThem) {
  auto const plots = Plots(Report({L"W", L"V"}));
  ASSERT_EQ(plots.size(), 2u);
  auto const & polar = std::get<page::PolarPlot>(plots[0]);
  EXPECT_EQ(polar.series.at(0).values.at(0), std::complex<double>(10, 20));
  EXPECT_EQ(polar.series.at(0).parameter, (std::vector<double>{1, 2, 3}));
  EXPECT_EQ(Rectangular(plots[1]).series.size(), 1u);
}

TEST_F(ReportOnAPage, ALookGoesBeforeTheDisplayOfTheDefinition) {
  ReportDefinition report = Report({L"W"});
  report.display = ReportDisplay::kSmith;
  auto plots = Plots(report);
  ASSERT_EQ(plots.size(), 1u);
  EXPECT_EQ(std::get<page::SmithChart>(plots[0]).impedance, std::nullopt) << "the product has no ports";
  plots = Plots(report, {ReportDisplay::kRectangular, true});
  ASSERT_EQ(plots.size(), 2u) << "magnitude has no unit, phase has degrees";
  EXPECT_DOUBLE_EQ(Rectangular(plots[0]).series.at(0).y.at(0), std::hypot(10, 20));
  EXPECT_EQ(Rectangular(plots[1]).y.unit, L"deg");
  EXPECT_TRUE(Plots(report, {ReportDisplay::kTable, false}).empty());
}

TEST_F(ReportOnAPage, ASingleNumberBesideCurvesIsToldAndNotDrawn) {
  ReportDefinition const report = Report({L"V", L"max(V)"}, {L"C"});
  auto const plots = Plots(report);
  ASSERT_EQ(plots.size(), 1u);
  EXPECT_EQ(Rectangular(plots[0]).series.size(), 2u);
  auto const numbers = pageview::ReportItems(*m_session, report, {}).Numbers();
  ASSERT_EQ(numbers.entries.size(), 2u);
  EXPECT_EQ(numbers.entries[1].name, L"max(V)");
  EXPECT_EQ(numbers.entries[1].variation, L"C=2");
  EXPECT_EQ(numbers.entries[1].value, 31);
}

TEST_F(ReportOnAPage, WhetherACurveIsASingleNumberIsFoundOutAtOneVariation) {
  for (wchar_t const * const variation : {L"C=3; L=2", L"C=4; L=2", L"C=5; L=2"})
    SolveLarge(variation, {12, 22, 32, 42});
  m_session->Save();
  ReportDefinition const report = Report({L"V", L"max(V)", L"min(V)"}, {L"C"});
  auto const operationsOf = [&](std::function<void()> const & work) {
    auto const files = ReopenCounted();
    int const before = files->Operations();
    work();
    return files->Operations() - before;
  };
  int const showing = operationsOf([&] { Show(report); });
  ASSERT_GE(showing, 3);
  std::size_t numbers = 0;
  int const drawing =
      operationsOf([&] { numbers = pageview::ReportItems(*m_session, report, {}).Numbers().entries.size(); });
  EXPECT_EQ(numbers, 2 * 5u);
  EXPECT_GT(drawing, showing) << "reads are seen";
  EXPECT_LT(drawing, 2 * showing) << "not all of them again";
}

TEST_F(ReportOnAPage, ASingleNumberIsFoundOutWhereTheReportStands) {
  ReportDefinition report = Report({L"V", L"max(V)"}, {L"L"});
  report.variation = L"C=1";
  auto const items = pageview::ReportItems(*m_session, report, {});
  ASSERT_EQ(items.Numbers().entries.size(), 2u);
  EXPECT_EQ(items.Numbers().entries[1].value, 32);
}

TEST_F(ReportOnAPage, ACurveThatHappensToBeFlatIsDrawnAllTheSame) {
  ReportDefinition const report = Report({L"V", L"0*V"});
  ASSERT_EQ(Plots(report).size(), 1u);
  EXPECT_EQ(Rectangular(Plots(report)[0]).series.size(), 2u);
  EXPECT_TRUE(pageview::ReportItems(*m_session, report, {}).Numbers().entries.empty());
}

TEST_F(ReportOnAPage, SamplesOfVariationsAreNotJoinedWhereTheAbscissaIsAVariable) {
  ReportDefinition report = Report({L"V"});
  report.x = L"C";
  auto const plots = Plots(report);
  ASSERT_EQ(plots.size(), 1u);
  ASSERT_EQ(Rectangular(plots[0]).series.size(), 2u);
  EXPECT_EQ(Rectangular(plots[0]).series[1].variation, L"C=2");
  EXPECT_EQ(Rectangular(plots[0]).series[1].x, (std::vector<double>{2, 2, 2}));
}

TEST_F(ReportOnAPage, AGapHasNoCurveAndOneRowOfTheTable) {
  ReportDefinition const report = Report({L"V"}, {L"C", L"L"});
  EXPECT_EQ(Rectangular(Plots(report).at(0)).series.size(), 3u);
  auto const table = pageview::ReportItems(*m_session, report, {}).Table();
  ASSERT_EQ(table.columns.size(), 4u);
  auto const & values = std::get<std::vector<double>>(table.columns[3].cells);
  ASSERT_EQ(values.size(), 10u);
  EXPECT_TRUE(std::isnan(values[9]));
}

TEST_F(ReportOnAPage, TablesHaveComplexNumbersInTwoColumns) {
  ReportDefinition const report = Report({L"W"});
  auto const table = pageview::ReportItems(*m_session, report, {}).Table();
  ASSERT_EQ(table.columns.size(), 3u);
  EXPECT_EQ(table.columns[1].title, L"re(W)");
  EXPECT_EQ(std::get<std::vector<double>>(table.columns[2].cells).at(0), 20);
}

TEST(PortOfReflection, IsThatOfAnSOfOnePortAlone) {
  EXPECT_EQ(pageview::PortOfReflection(L"S(1,1)"), AString(L"1"));
  EXPECT_EQ(pageview::PortOfReflection(L" s( In , in ) "), AString(L"In"));
  for (wchar_t const * const other : {L"S(2,1)", L"S(1,1)+S(2,2)", L"dB(S(1,1))", L"S(1)", L"S(,)", L"S(f(1),1)", L""})
    EXPECT_EQ(pageview::PortOfReflection(other), std::nullopt);
}
