#include "desktop/page/Svg.h"

#include "desktop/page/CurveLook.h"
#include "desktop/page/Document.h"
#include "desktop/page/SvgPen.h"
#include "tests/desktop/page/PageReading.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <set>

namespace {

using namespace desktop::page;
using page_test::CountOf;

constexpr double kMissing = std::numeric_limits<double>::quiet_NaN();

std::string PathOf(std::vector<std::pair<double, double>> const & points) {
  SvgPen pen;
  for (auto const & [x, y] : points)
    pen.To(x, y);
  return pen.Path();
}

bool HasNumbersAlone(std::string const & svg) {
  return CountOf(svg, "nan") == CountOf(svg, "dominant") && svg.find("inf") == std::string::npos;
}

TEST(SvgPen, JoinsSamplesByStraightLines) {
  EXPECT_EQ(PathOf({{0, 1}, {10, 2}, {20, 3}}), "M0.00 1.00L10.00 2.00L20.00 3.00");
}

TEST(SvgPen, LeavesAGapWhereAValueIsMissing) {
  EXPECT_EQ(PathOf({{0, 1}, {10, 2}, {20, kMissing}, {30, 3}, {40, 4}}), "M0.00 1.00L10.00 2.00M30.00 3.00L40.00 4.00");
}

TEST(SvgPen, ASampleBetweenGapsIsADot) {
  EXPECT_EQ(PathOf({{0, kMissing}, {10, 2}, {20, kMissing}}), "M10.00 2.00m-2 0a2 2 0 1 0 4 0a2 2 0 1 0 -4 0");
}

TEST(SvgPen, KeepsLeastAndMostOfManySamplesInAColumn) {
  std::vector<std::pair<double, double>> points;
  for (int i = 0; i < 10000; ++i)
    points.emplace_back(i / 1000.0, i == 4321 ? 77.0 : i == 8765 ? -5.0 : 10.0);
  std::string const path = PathOf(points);
  EXPECT_LT(path.size(), 2000u);
  EXPECT_NE(path.find(" 77.00"), std::string::npos);
  EXPECT_NE(path.find(" -5.00"), std::string::npos);
}

TEST(SvgPen, WhatLiesFarOutsideIsHeldAtADistance) {
  EXPECT_EQ(PathOf({{1e300, -1e300}, {0, 0}}), "M1000000.00 -1000000.00L0.00 0.00");
}

TEST(Svg, ARectangularPlotHasTitlesUnitsAndAnEntryForEachCurve) {
  std::string const svg = Svg(RectangularPlot{L"Gain",
                                              {L"F", L"Hz"},
                                              {L"gain", L"dB"},
                                              {{L"a", L"C=1", {1e9, 2e9}, {1, 2}}, {L"a", L"C=2", {1e9, 2e9}, {3, 4}}},
                                              {}});
  for (char const * const text : {">Gain<", ">F [GHz]<", ">gain [dB]<", ">a, C=1<", ">a, C=2<", ">1.5<"})
    EXPECT_NE(svg.find(text), std::string::npos) << text;
}

TEST(Svg, ALevelIsDrawnAcross) {
  std::string const svg = Svg(RectangularPlot{L"", {}, {}, {{L"a", {}, {0, 1}, {0, 1}}}, {{0.5, L"limit"}}});
  EXPECT_NE(svg.find("limit"), std::string::npos);
}

TEST(Svg, NamesNeverBecomeMarkup) {
  AString const bad = L"<b>&\"'\x01";
  std::string const svg = Svg(RectangularPlot{bad, {bad, bad}, {bad, bad}, {{bad, bad, {0, 1}, {0, 1}}}, {{0.5, bad}}});
  EXPECT_EQ(svg.find("<b>"), std::string::npos);
  EXPECT_EQ(svg.find('\x01'), std::string::npos);
  EXPECT_NE(svg.find("&lt;b&gt;&amp;&quot;&#39;\uFFFD"), std::string::npos);
}

TEST(Svg, WithoutDataIsStillAPicture) {
  for (std::string const & svg : {Svg(RectangularPlot{}), Svg(PolarPlot{}), Svg(SmithChart{})}) {
    EXPECT_EQ(CountOf(svg, "<svg"), 1u);
    EXPECT_TRUE(HasNumbersAlone(svg)) << svg;
  }
}

TEST(Svg, OfValuesAtTheEndsOfWhatNumbersHoldHasNumbersAlone) {
  Series const wild{L"a", {}, {0, 1, 2, 3}, {1.7e308, -1.7e308, std::numeric_limits<double>::infinity(), 0}};
  for (bool const isLogarithmic : {false, true}) {
    std::string const svg = Svg(RectangularPlot{L"", {}, {L"", L"", isLogarithmic}, {wild}, {}});
    EXPECT_TRUE(HasNumbersAlone(svg)) << svg;
  }
}

TEST(Svg, AHundredCurvesHaveALegendThatTellsHowManyAreLeftOut) {
  RectangularPlot plot;
  for (int i = 0; i < 100; ++i)
    plot.series.push_back({L"a", AString::Format(L"k=%d", i), {0, 1}, {0, double(i)}});
  EXPECT_NE(Svg(plot).find("and 76 more"), std::string::npos);
}

TEST(Svg, HundredThousandPointsBecomeASmallPicture) {
  Series series{L"a", {}, {}, {}};
  for (int i = 0; i < 100000; ++i) {
    series.x.push_back(i);
    series.y.push_back(std::sin(i * 0.7));
  }
  EXPECT_LT(Svg(RectangularPlot{L"", {}, {}, {series}, {}}).size(), 100'000u);
}

TEST(Svg, ASmithChartOfAnActiveCircuitShowsAllOfIt) {
  std::string const svg = Svg(SmithChart{L"", 50.0, {}, {{L"S11", {}, {}, {{2.0, 0.0}, {0.0, 0.0}}}}});
  EXPECT_NE(svg.find("M255.00 -0.00L0.00 -0.00"), std::string::npos) << svg;
  EXPECT_NE(svg.find("r=\"127.5\" class=\"outer\""), std::string::npos);
}

TEST(Svg, ThePolarRadiusIsToldInItsUnitWithAPrefix) {
  std::string const svg = Svg(PolarPlot{L"", L"V", {}, {{L"v", {}, {}, {{0.003, 0.001}, {0.001, -0.002}}}}});
  EXPECT_NE(svg.find("[mV]"), std::string::npos);
  EXPECT_NE(svg.find(">3<"), std::string::npos);
}

TEST(CurveLook, AVariationLooksAlikeInAllFamiliesButForItsDashes) {
  auto const looks = LooksOf({{L"a", L"1"}, {L"a", L"2"}, {L"b", L"1"}, {L"b", L"2"}});
  EXPECT_EQ(looks[0].colour, looks[2].colour);
  EXPECT_EQ(looks[0].marker, looks[2].marker);
  EXPECT_NE(looks[0].dashes, looks[2].dashes);
  EXPECT_NE(looks[0].colour, looks[1].colour);
  EXPECT_NE(looks[0].marker, looks[1].marker);
}

TEST(CurveLook, FewCurvesDifferWithoutColour) {
  std::vector<std::pair<AString, AString>> curves;
  for (int i = 0; i < 12; ++i)
    curves.emplace_back(AString::Format(L"f%d", i), AString());
  std::set<std::pair<std::string, int>> seen;
  for (CurveLook const & look : LooksOf(curves))
    seen.emplace(look.dashes, look.marker);
  EXPECT_EQ(seen.size(), curves.size());
}

TEST(CurveLook, ASingleCurveIsAPlainLine) {
  auto const looks = LooksOf({{L"a", L""}});
  EXPECT_EQ(looks[0].dashes, "");
  EXPECT_EQ(looks[0].marker, -1);
}

} // namespace
