#include "products/rfcircuit/engine/sweep/PointChoice.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

namespace {

using Points = std::vector<std::size_t>;

/** Solved at the ends and in the middle, nothing else known. */
rf::SweepState State(std::size_t total) {
  rf::SweepState state{std::vector<char>(total, 0), std::vector<double>(total, 0), std::vector<double>(total, 0)};
  state.isSolved[0] = state.isSolved[total / 2] = state.isSolved[total - 1] = 1;
  return state;
}

bool Contains(Points const & points, std::size_t point) {
  return std::binary_search(points.begin(), points.end(), point);
}

TEST(PointChoice, SpreadsPointsWithTheEnds) {
  EXPECT_EQ(rf::SpreadPoints(3, 101), (Points{0, 50, 100}));
  EXPECT_EQ(rf::SpreadPoints(5, 3), (Points{0, 1, 2}));
  EXPECT_EQ(rf::SpreadPoints(1, 9), (Points{0}));
}

TEST(PointChoice, TakesTheTopOfEachPeakOfDisagreementOnce) {
  auto state = State(101);
  for (std::size_t i = 0; i <= 4; ++i)
    state.disagreement[20 + i] = state.disagreement[20 - i] = state.disagreement[80 + i] = state.disagreement[80 - i] =
        1.0 / (1 + static_cast<double>(i));
  auto const points = rf::ChoosePoints(state, {4, 10}, 1e-3);
  EXPECT_EQ(points.size(), 4u);
  EXPECT_TRUE(Contains(points, 20));
  EXPECT_TRUE(Contains(points, 80));
}

TEST(PointChoice, LeavesDisagreementBelowTheThresholdAlone) {
  auto state = State(101);
  state.disagreement[20] = 1e-4;
  EXPECT_FALSE(Contains(rf::ChoosePoints(state, {2, 10}, 1e-3), 20));
}

TEST(PointChoice, BeginsWithPointsThatHaveNoValue) {
  auto state = State(101);
  state.disagreement[20] = 1;
  state.disagreement[33] = std::numeric_limits<double>::infinity();
  EXPECT_EQ(rf::ChoosePoints(state, {1, 3}, 1e-3).size(), 3u);
  EXPECT_TRUE(Contains(rf::ChoosePoints(state, {1, 3}, 1e-3), 33));
}

TEST(PointChoice, LooksWhereTheResponseMovesMostAndWhereTheGapIsWidest) {
  auto state = State(1001);
  for (std::size_t i = 0; i < 1001; i += 10)
    state.isSolved[i] = i < 300 || i > 700;
  state.steps[105] = 1;
  auto const points = rf::ChoosePoints(state, {4, 4}, 1e-3);
  EXPECT_TRUE(Contains(points, 105));
  EXPECT_TRUE(std::any_of(points.begin(), points.end(), [](std::size_t i) { return i > 300 && i < 700; }));
}

TEST(PointChoice, TakesNeitherSolvedPointsNorMoreThanAllowed) {
  for (std::size_t most = 0; most < 12; ++most) {
    auto state = State(11);
    state.disagreement.assign(11, 1);
    auto const points = rf::ChoosePoints(state, {most, most}, 1e-3);
    EXPECT_EQ(points.size(), std::min<std::size_t>(most, 8));
    for (std::size_t const point : points)
      EXPECT_FALSE(state.isSolved[point]);
    EXPECT_TRUE(std::is_sorted(points.begin(), points.end()));
  }
}

} // namespace
