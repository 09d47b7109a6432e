#include "desktop/report/ComparisonDocument.h"

#include "desktop/page/Document.h"
#include "desktop/product/IComparisonProduct.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>

namespace {

desktop::Comparison Example() {
  desktop::Comparison comparison;
  comparison.axis = L"Freq";
  comparison.unit = L"Hz";
  comparison.places = {1e9, 2e9};
  comparison.method = {L"nothing is interpolated"};
  comparison.parameters.push_back({L"S(2,1)", {1.0, {0.0, 0.1}}, {0.5, {0.0, 0.1}}, 0.5, 0, 0.25});
  return comparison;
}

template <class Item> Item const & ItemOf(desktop::page::Document const & document, std::size_t number) {
  return std::get<Item>(document.sections.at(0).items.at(number));
}

} // namespace

TEST(ComparisonDocument, TellsWhatWasComparedAndHow) {
  auto const document = desktop::ComparisonDocument(Example(), L"Solved", L"Measured");
  EXPECT_EQ(document.title, L"Solved minus Measured");
  EXPECT_EQ(document.sections.at(0).text, L"nothing is interpolated.");
}

TEST(ComparisonDocument, ShowsBothInDecibelsAndTheMagnitudesOfTheirDifferences) {
  auto const document = desktop::ComparisonDocument(Example(), L"Solved", L"Measured");
  auto const & both = ItemOf<desktop::page::RectangularPlot>(document, 1);
  ASSERT_EQ(both.series.size(), 2u);
  EXPECT_EQ(both.series[0].name, L"S(2,1), Solved");
  EXPECT_NEAR(both.series[0].y[1], -20.0, 1e-12);
  EXPECT_NEAR(both.series[1].y[0], -6.0206, 1e-4);
  auto const & differences = ItemOf<desktop::page::RectangularPlot>(document, 2);
  EXPECT_EQ(differences.series.at(0).y, (std::vector<double>{0.5, 0.0}));
}

TEST(ComparisonDocument, TheTableTellsTheLargestDifferenceAndItsPlace) {
  auto const document = desktop::ComparisonDocument(Example(), L"Solved", L"Measured");
  auto const & table = ItemOf<desktop::page::Table>(document, 0);
  EXPECT_EQ(std::get<std::vector<double>>(table.columns.at(1).cells).at(0), 0.5);
  EXPECT_EQ(std::get<std::vector<double>>(table.columns.at(2).cells).at(0), 1e9);
}
