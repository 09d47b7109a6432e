#include "desktop/study/LatinHypercube.h"

#include "tests/support/Printers.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

namespace {

using desktop::SampledRange;
using desktop::SampleLatinHypercube;

std::vector<std::vector<SampledRange>> const kTwo{{{L"a", 0.9, 1.1}}, {{L"b", -5, 3}}};

void ExpectOneInEachPiece(std::vector<double> values, double from, double to) {
  std::sort(values.begin(), values.end());
  double const width = (to - from) / static_cast<double>(values.size());
  for (std::size_t i = 0; i < values.size(); ++i) {
    EXPECT_GE(values[i], from + static_cast<double>(i) * width - 1e-12 * width);
    EXPECT_LE(values[i], from + static_cast<double>(i + 1) * width + 1e-12 * width);
  }
}

TEST(LatinHypercube, HasOneValueInEachPieceOfEachRange) {
  for (std::size_t const count : {1, 2, 7, 100, 1000}) {
    auto const axis = SampleLatinHypercube(kTwo, count, count);
    ASSERT_EQ(axis.Rows(), count);
    ExpectOneInEachPiece(axis.columns[0], 0.9, 1.1);
    ExpectOneInEachPiece(axis.columns[1], -5, 3);
  }
}

TEST(LatinHypercube, TheSameSeedGivesTheSamePointsAndAnotherOneOthers) {
  EXPECT_EQ(SampleLatinHypercube(kTwo, 20, 7).columns, SampleLatinHypercube(kTwo, 20, 7).columns);
  EXPECT_NE(SampleLatinHypercube(kTwo, 20, 7).columns, SampleLatinHypercube(kTwo, 20, 8).columns);
}

TEST(LatinHypercube, VariablesOfOneDimensionTakeTheSamePlace) {
  auto const axis = SampleLatinHypercube({{{L"a", 0, 1}, {L"b", 10, 30}}}, 50, 3);
  for (std::size_t i = 0; i < axis.Rows(); ++i)
    EXPECT_NEAR(axis.columns[1][i], 10 + 20 * axis.columns[0][i], 1e-5);
}

TEST(LatinHypercube, RangesAsWideAsNumbersGoStayFinite) {
  auto const axis = SampleLatinHypercube({{{L"a", -1.7e308, 1.7e308}}}, 100, 1);
  for (double const value : axis.columns[0])
    EXPECT_TRUE(std::isfinite(value));
}

TEST(LatinHypercube, RangesOfFewNumbersStayWithinTheirEnds) {
  double const next = std::nextafter(1.0, 2.0);
  auto const axis = SampleLatinHypercube({{{L"a", 1.0, next}}}, 10, 1);
  for (double const value : axis.columns[0])
    EXPECT_TRUE(value == 1.0 || value == next);
}

// Worked out apart from this code, from the engine's definition: so machines that differ would be seen.
TEST(LatinHypercube, GivesTheseVeryPointsOnEveryMachine) {
  auto const axis = SampleLatinHypercube(kTwo, 4, 7);
  EXPECT_EQ(axis.columns, (std::vector<std::vector<double>>{{0.99459566, 1.0070636, 0.90275466, 1.0916261},
                                                            {-1.4885099, 2.1923776, -4.2051091, -0.38294257}}));
}

} // namespace
