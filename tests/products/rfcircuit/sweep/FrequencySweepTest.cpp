#include "tests/products/rfcircuit/RfSupport.h"

#include "products/rfcircuit/engine/sweep/FrequencySweep.h"

#include <cmath>

namespace {

using namespace rftest;
using rf::FrequencySweep;
using Values = std::vector<double>;

TEST(FrequencySweep, LinearHasBothEnds) {
  EXPECT_EQ(FrequencySweep::Linear(5, 1e9, 2e9).Frequencies(), (Values{1e9, 1.25e9, 1.5e9, 1.75e9, 2e9}));
  EXPECT_EQ(FrequencySweep::Linear(2, 0, 1).Frequencies(), (Values{0, 1}));
}

TEST(FrequencySweep, LinearOfOnePointIsItsStart) {
  EXPECT_EQ(FrequencySweep::Linear(1, 5, 10).Frequencies(), (Values{5}));
}

TEST(FrequencySweep, LinearPointsAreNotSummedUp) {
  auto const points = FrequencySweep::Linear(201, 10e6, 2.01e9).Frequencies();
  ASSERT_EQ(points.size(), 201u);
  for (std::size_t k = 0; k < points.size(); ++k)
    EXPECT_EQ(points[k], 10e6 * static_cast<double>(k + 1));
}

TEST(FrequencySweep, AnEmptyRangeIsOnePoint) {
  EXPECT_EQ(FrequencySweep::Linear(7, 5, 5).Frequencies(), (Values{5}));
  EXPECT_EQ(FrequencySweep::Decade(7, 5, 5).Frequencies(), (Values{5}));
}

TEST(FrequencySweep, DecadeStopsBelowAnEndThatItMisses) {
  auto const points = FrequencySweep::Decade(3, 1e3, 150e3).Frequencies();
  ASSERT_EQ(points.size(), 7u);
  EXPECT_EQ(points[3], 1e4);
  EXPECT_EQ(points[6], 1e5);
  EXPECT_DOUBLE_EQ(points[1], 1e3 * std::cbrt(10.0));
}

TEST(FrequencySweep, DecadeReachesAnEndThatItMeets) {
  auto const points = FrequencySweep::Decade(3, 1e3, 1e6).Frequencies();
  ASSERT_EQ(points.size(), 10u);
  EXPECT_EQ(points.back(), 1e6);
}

TEST(FrequencySweep, ALastPointSlightlyAboveTheEndCountsAsSpiceSimulatorsHaveIt) {
  EXPECT_EQ(FrequencySweep::Decade(3, 1e3, 997.9e3).Frequencies().size(), 10u);
  EXPECT_EQ(FrequencySweep::Decade(3, 1e3, 997.8e3).Frequencies().size(), 9u);
  EXPECT_EQ(FrequencySweep::Octave(1, 1e3, 3992.1).Frequencies().size(), 3u);
  EXPECT_EQ(FrequencySweep::Octave(1, 1e3, 3990).Frequencies().size(), 2u);
}

TEST(FrequencySweep, ADenseSweepGoesNoHalfStepAboveItsEnd) {
  auto const points = FrequencySweep::Decade(100000, 1, 10).Frequencies();
  EXPECT_EQ(points.size(), 100001u);
  EXPECT_DOUBLE_EQ(points.back(), 10);
}

TEST(FrequencySweep, OctaveDoubles) {
  EXPECT_EQ(FrequencySweep::Octave(1, 1e3, 8e3).Frequencies(), (Values{1e3, 2e3, 4e3, 8e3}));
  EXPECT_EQ(FrequencySweep::Octave(2, 1e3, 7e3).Frequencies().size(), 6u);
}

TEST(FrequencySweep, AListIsSortedAndEachFrequencyCountsOnce) {
  EXPECT_EQ(FrequencySweep::List({3, 1, 2, 1, 3}).Frequencies(), (Values{1, 2, 3}));
  EXPECT_EQ(FrequencySweep::List({0}).Frequencies(), (Values{0}));
}

TEST(FrequencySweep, TheLargestSweepIsMadeAndOneMoreRefused) {
  EXPECT_EQ(FrequencySweep::Linear(10e6, 1, 1e9).GivenPoints(), 10'000'000u);
  EXPECT_NE(ErrorOf([] { FrequencySweep::Linear(10e6 + 1, 1, 1e9); }).find("points are too many"), std::string::npos);
  EXPECT_NE(ErrorOf([] { FrequencySweep::Decade(1e6, 1, 1e20); }).find("points are too many"), std::string::npos);
}

TEST(FrequencySweep, NumbersThatAreNotFiniteAreRefused) {
  EXPECT_EQ(ErrorOf([] { FrequencySweep::Linear(5, NAN, 1); }),
            "sweep: a frequency is not finite; give frequencies in Hz");
  EXPECT_NE(ErrorOf([] { FrequencySweep::Decade(5, 1, INFINITY); }).find("not finite"), std::string::npos);
  EXPECT_NE(ErrorOf([] { FrequencySweep::List({1, NAN}); }).find("not finite"), std::string::npos);
  EXPECT_NE(ErrorOf([] { FrequencySweep::Octave(NAN, 1, 2); }).find("is not a number of points"), std::string::npos);
  EXPECT_NE(ErrorOf([] { FrequencySweep::List({}); }).find("the list is empty"), std::string::npos);
  EXPECT_NE(ErrorOf([] { FrequencySweep::Linear(5, 0, 1e300); }).find("is too high"), std::string::npos);
}

} // namespace
