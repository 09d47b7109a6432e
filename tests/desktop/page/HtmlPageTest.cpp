#include "desktop/page/HtmlPage.h"

#include "desktop/page/Document.h"
#include "tests/desktop/page/PageReading.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace {

using namespace desktop::page;
using page_test::Between;
using page_test::CountOf;
using page_test::PageReading;

constexpr double kMissing = std::numeric_limits<double>::quiet_NaN();

Document With(Item item) { return {L"t", {}, {{L"s", {}, {std::move(item)}}}}; }

RectangularPlot PlotOf(std::vector<Series> series) { return {L"p", {}, {}, std::move(series), {}}; }

TEST(HtmlPage, HoldsEveryNumberBitForBit) {
  std::vector<double> const values{
      0.1, -0.0, 1.0 / 3.0, 5e-324, 1.7976931348623157e308, -1e-300, std::numeric_limits<double>::infinity()};
  PageReading const page(HtmlPage(With(PlotOf({{L"a", {}, {1, 2, 3, 4, 5, 6, 7}, values}}))));
  std::vector<double> const read = page.Column(page.Item(0, 0).at("series").at(0).at("y"));
  ASSERT_EQ(read.size(), values.size());
  for (std::size_t i = 0; i < values.size(); ++i)
    EXPECT_EQ(std::bit_cast<std::uint64_t>(read[i]), std::bit_cast<std::uint64_t>(values[i])) << i;
}

TEST(HtmlPage, AGapIsNoNumberAmongTheNumbers) {
  PageReading const page(HtmlPage(With(PlotOf({{L"a", {}, {1, 2, 3}, {4.0, kMissing, 6.0}}}))));
  std::vector<double> const read = page.Column(page.Item(0, 0).at("series").at(0).at("y"));
  ASSERT_EQ(read.size(), 3u);
  EXPECT_EQ(read[0], 4.0);
  EXPECT_TRUE(std::isnan(read[1]));
  EXPECT_EQ(read[2], 6.0);
}

TEST(HtmlPage, CurvesOverTheSamePointsShareThem) {
  std::vector<double> const x(1000, 1.5);
  std::vector<Series> series;
  for (int i = 0; i < 10; ++i)
    series.push_back({L"a", L"k", x, std::vector<double>(1000, i)});
  PageReading const page(HtmlPage(With(PlotOf(series))));
  EXPECT_EQ(page.ByteCount(), 11u * 1000u * 8u);
}

TEST(HtmlPage, ZerosOfUnequalSignsAreNotShared) {
  PageReading const page(HtmlPage(With(PlotOf({{L"a", {}, {0.0}, {-0.0}}}))));
  EXPECT_TRUE(std::signbit(page.Column(page.Item(0, 0).at("series").at(0).at("y"))[0]));
  EXPECT_FALSE(std::signbit(page.Column(page.Item(0, 0).at("series").at(0).at("x"))[0]));
}

TEST(HtmlPage, WhatGoesBeyondTheOtherVectorIsLeftOut) {
  PageReading const page(HtmlPage(With(PlotOf({{L"a", {}, {1, 2, 3}, {4, 5}}}))));
  EXPECT_EQ(page.Column(page.Item(0, 0).at("series").at(0).at("x")), (std::vector<double>{1, 2}));
}

TEST(HtmlPage, AComplexCurveWithoutParameterHasOneThatIsNoNumber) {
  PageReading const page(HtmlPage(With(SmithChart{L"c", 75.0, {}, {{L"S11", {}, {}, {{0.5, -0.25}}}}})));
  EXPECT_EQ(page.Item(0, 0).at("impedance"), 75.0);
  auto const & series = page.Item(0, 0).at("series").at(0);
  EXPECT_TRUE(std::isnan(page.Column(series.at("x")).at(0)));
  EXPECT_EQ(page.Column(series.at("re")), std::vector<double>{0.5});
  EXPECT_EQ(page.Column(series.at("im")), std::vector<double>{-0.25});
}

TEST(HtmlPage, HundredThousandPointsStayBelowTenMegabytes) {
  std::vector<Series> series;
  for (int c = 0; c < 100; ++c) {
    Series one{L"gain", AString::Format(L"k=%d", c), {}, {}};
    for (int i = 0; i < 1000; ++i) {
      one.x.push_back(c + i * 0.001);
      one.y.push_back(std::sin(c + i * 0.01));
    }
    series.push_back(one);
  }
  EXPECT_LT(HtmlPage(With(PlotOf(series))).size(), 10'000'000u);
}

TEST(HtmlPage, WithoutDataItIsNoBiggerThanAHundredKilobytes) { EXPECT_LT(HtmlPage(Document{}).size(), 100'000u); }

TEST(HtmlPage, NamesNeverBecomeMarkup) {
  AString const bad = L"</script><script>x()</script><img src=x>'\"&<!--";
  Document document = With(PlotOf({{bad, bad, {1}, {2}}}));
  document.title = document.subtitle = document.sections[0].title = bad;
  document.sections[0].items.push_back(Table{bad, {{bad, bad, std::vector<AString>{bad}}}});
  document.sections[0].items.push_back(Tree{bad, {{bad, bad, Tree::State::kStale, bad, bad, {}}}});
  std::string const page = HtmlPage(document);
  std::string const plain = HtmlPage(Document{});
  for (char const * const markup : {"<script", "</script", "<img", "<!--", "<title>", "</title>"})
    EXPECT_EQ(CountOf(page, markup), CountOf(plain, markup)) << markup;
  PageReading const reading(page);
  EXPECT_EQ(reading.Item(0, 0).at("series").at(0).at("name"), "</script><script>x()</script><img src=x>'\"&<!--");
}

TEST(HtmlPage, DataIsPlainAscii) {
  std::string const page =
      HtmlPage(With(Table{L"\u2028\u00e9", {{L"\U0001F600", {}, std::vector<AString>{L"\u2029"}}}}));
  std::string const data = Between(page, "id=\"page-data\">", "</script>");
  EXPECT_EQ(data.find_first_not_of("\n") == std::string::npos, false);
  for (char const letter : data)
    ASSERT_LT(static_cast<unsigned char>(letter), 0x80);
  EXPECT_EQ(PageReading(page).Item(0, 0).at("title"), "\u2028\u00e9");
}

TEST(HtmlPage, ThePolicyNamesTheScriptAndForbidsTheNetwork) {
  std::string const policy = Between(HtmlPage(Document{}), "Content-Security-Policy\" content=\"", "\"");
  EXPECT_EQ(policy.find("default-src 'none'"), 0u);
  EXPECT_NE(policy.find("script-src 'sha256-"), std::string::npos);
  EXPECT_EQ(policy.find("unsafe"), std::string::npos);
}

TEST(HtmlPage, RefersToNothingOutside) {
  std::string const page = HtmlPage(Document{});
  EXPECT_EQ(page.find(" src="), std::string::npos);
  EXPECT_EQ(page.find("@import"), std::string::npos);
  EXPECT_EQ(page.find("url("), std::string::npos);
  EXPECT_EQ(CountOf(page, "href="), 1u); // of the empty icon
  EXPECT_NE(page.find("href=\"data:,\""), std::string::npos);
}

TEST(HtmlPage, OnlyALiveOneReadsItselfAnew) {
  Document document = With(PlotOf({}));
  EXPECT_EQ(CountOf(Between(HtmlPage(document), "<body>", "<main"), "id=\"live\""), 0u);
  document.live = Live{2.5, L"<b>live</b>"};
  std::string const html = HtmlPage(document);
  EXPECT_EQ(Between(html, "id=\"live\" data-seconds=\"", "</p>"), "2.5\">&lt;b&gt;live&lt;/b&gt;");
  EXPECT_EQ(CountOf(html, "http-equiv=\"refresh\""), 0u) << "the script keeps what its reader looks at";
}

TEST(HtmlPage, ASmithChartWithoutAReferenceTellsNone) {
  PageReading const page(HtmlPage(With(SmithChart{L"s", {}, {}, {}})));
  EXPECT_FALSE(page.Item(0, 0).contains("impedance"));
}

TEST(HtmlPage, LevelsThatAreNoNumbersAreLeftOut) {
  RectangularPlot plot = PlotOf({});
  plot.levels = {{kMissing, L"none"}, {-3.0, L"limit"}};
  PageReading const page(HtmlPage(With(plot)));
  ASSERT_EQ(page.Item(0, 0).at("lines").size(), 1u);
  EXPECT_EQ(page.Item(0, 0).at("lines").at(0).at("y"), -3.0);
}

TEST(HtmlPage, ATreeTellsStateReasonAndRemedy) {
  Tree::Node const leaf{L"C1=1pF", {}, Tree::State::kStale, L"edited", L"solve again", {}};
  PageReading const page(HtmlPage(With(Tree{L"t", {{L"setup", L"2 points", Tree::State::kNone, {}, {}, {leaf}}}})));
  auto const & setup = page.Item(0, 0).at("nodes").at(0);
  EXPECT_FALSE(setup.contains("state"));
  auto const & point = setup.at("children").at(0);
  EXPECT_EQ(point.at("state"), "stale");
  EXPECT_EQ(point.at("reason"), "edited");
  EXPECT_EQ(point.at("remedy"), "solve again");
}

} // namespace
