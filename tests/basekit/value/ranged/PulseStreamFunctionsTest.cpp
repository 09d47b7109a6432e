#include "tests/basekit/value/ranged/RangedSupport.h"

using namespace support;

namespace {

// Edges of length 1 between 0 and 1, rising and falling by turns, with their middles at these times.
struct Stream {
  explicit Stream(Numbers const & middles) {
    double level = 0;
    for (double const middle : middles) {
      x.insert(x.end(), {middle - 0.5, middle + 0.5});
      y.insert(y.end(), {level, 1 - level});
      level = 1 - level;
    }
  }
  Numbers x;
  Numbers y;
};

// Positive widths 3, 5, 4; negative widths 2, 6; periods 5, 11.
Stream const kStream({1, 4, 6, 11, 17, 21});

Numbers const kTime = Steps(0, 10, 100001);
double Sine(double t) { return std::sin(2 * kPi * (t - 0.1)); }

} // namespace

TEST(PulseStreamFunctions, OfAStreamOfKnownEdgesAreExact) {
  auto const of = [](std::wstring_view name) { return Of(name, kStream.x, kStream.y, {0.5}); };
  EXPECT_EQ(of(L"pw_plus"), 3);
  EXPECT_EQ(of(L"pw_plus_avg"), 4);
  EXPECT_EQ(of(L"pw_plus_max"), 5);
  EXPECT_EQ(of(L"pw_plus_min"), 3);
  EXPECT_DOUBLE_EQ(of(L"pw_plus_rms"), std::sqrt(50.0 / 3));
  EXPECT_EQ(of(L"pw_minus"), 2);
  EXPECT_EQ(of(L"pw_minus_avg"), 4);
  EXPECT_EQ(of(L"pw_minus_max"), 6);
  EXPECT_EQ(of(L"pw_minus_min"), 2);
  EXPECT_DOUBLE_EQ(of(L"pw_minus_rms"), std::sqrt(20.0));
  EXPECT_EQ(of(L"per"), 8);
  EXPECT_EQ(of(L"pmax"), 11);
  EXPECT_EQ(of(L"pmin"), 5);
  EXPECT_DOUBLE_EQ(of(L"prms"), std::sqrt(73.0));
}

TEST(PulseStreamFunctions, AnotherThresholdMovesTheWidthsButNotThePeriods) {
  auto const of = [](std::wstring_view name) { return Of(name, kStream.x, kStream.y, {0.75}); };
  EXPECT_EQ(of(L"pw_plus"), 2.5);
  EXPECT_EQ(of(L"pw_plus_avg"), 3.5);
  EXPECT_EQ(of(L"pw_plus_max"), 4.5);
  EXPECT_EQ(of(L"pw_plus_min"), 2.5);
  EXPECT_DOUBLE_EQ(of(L"pw_plus_rms"), std::sqrt((6.25 + 20.25 + 12.25) / 3));
  EXPECT_EQ(of(L"pw_minus"), 2.5);
  EXPECT_EQ(of(L"pw_minus_avg"), 4.5);
  EXPECT_EQ(of(L"pw_minus_max"), 6.5);
  EXPECT_EQ(of(L"pw_minus_min"), 2.5);
  EXPECT_DOUBLE_EQ(of(L"pw_minus_rms"), std::sqrt((6.25 + 42.25) / 2));
  EXPECT_EQ(of(L"per"), 8);
  EXPECT_EQ(of(L"pmax"), 11);
  EXPECT_EQ(of(L"pmin"), 5);
  EXPECT_DOUBLE_EQ(of(L"prms"), std::sqrt(73.0));
}

TEST(PulseStreamFunctions, OfASineAreThoseOfItsFormula) {
  // Above one half for a third of each period.
  Numbers const y = Map(kTime, Sine);
  for (auto const name : {L"pw_plus", L"pw_plus_avg", L"pw_plus_max", L"pw_plus_min", L"pw_plus_rms"})
    EXPECT_NEAR(Of(name, kTime, y, {0.5}), 1.0 / 3, 1e-7) << name;
  for (auto const name : {L"pw_minus", L"pw_minus_avg", L"pw_minus_max", L"pw_minus_min", L"pw_minus_rms"})
    EXPECT_NEAR(Of(name, kTime, y, {0.5}), 2.0 / 3, 1e-7) << name;
  for (auto const name : {L"per", L"pmax", L"pmin", L"prms"})
    EXPECT_NEAR(Of(name, kTime, y, {0.5}), 1, 1e-7) << name;
}

TEST(PulseStreamFunctions, EvenPointsAreTakenFromTheStraightLinesBetweenSamples) {
  // Points at 0.5, 2.5, ...: the edges become as long as the steps, their middles move.
  Numbers const x = {0, 3, 4, 7, 8, 12};
  Numbers const y = {0, 0, 1, 1, 0, 0};
  EXPECT_EQ(Of(L"pw_plus", x, y, {0.5, 0}), 4);
  EXPECT_EQ(Of(L"pw_plus", x, y, {0.5, 13}), 4);
  // Four points at 0, 4, 8, 12 with 0, 1, 0, 0.
  EXPECT_EQ(Of(L"pw_plus", x, y, {0.25, 4}), 7 - 1);
  EXPECT_EQ(Of(L"pw_plus", x, y, {0.25, 4.9}), 7 - 1); // cut to a whole number
  EXPECT_EQ(Of(L"pw_plus", x, y, {0.5, -3}), 4);       // as they are
  EXPECT_EQ(Of(L"pw_plus", x, y, {0.5, 0.9}), 4);
  EXPECT_NO_VALUE(Of(L"pw_plus", x, y, {0.5, 2}));
  // A glitch between the points is not seen.
  Numbers const glitchX = {0, 1, 1.25, 1.5, 3, 5, 8};
  Numbers const glitchY = {0, 0, 1, 0, 0, 1, 0};
  EXPECT_DOUBLE_EQ(Of(L"pw_plus", glitchX, glitchY, {0.5}), 0.25);
  EXPECT_DOUBLE_EQ(Of(L"pw_plus", glitchX, glitchY, {0.5, 9}), 2.5);
  EXPECT_DOUBLE_EQ(Of(L"per", glitchX, glitchY, {0.5}), 4 - 1.125);
  EXPECT_NO_VALUE(Of(L"per", glitchX, glitchY, {0.5, 9}));
}

TEST(PulseStreamFunctions, ANumberOfPointsOutOfRangeIsNoValue) {
  for (auto const name : {L"pw_plus", L"pw_minus_rms", L"per", L"prms"}) {
    EXPECT_NO_VALUE(Of(name, kStream.x, kStream.y, {0.5, 1})) << name;
    EXPECT_NO_VALUE(Of(name, kStream.x, kStream.y, {0.5, 1.5})) << name;
    EXPECT_NO_VALUE(Of(name, kStream.x, kStream.y, {0.5, 10000001})) << name;
    EXPECT_NO_VALUE(Of(name, kStream.x, kStream.y, {0.5, kInfinity})) << name;
  }
}

TEST(PulseStreamFunctions, PulsesCutOffByAnEndAreNone) {
  EXPECT_NO_VALUE(Of(L"pw_plus", {0, 1, 2}, {1, 1, 0}, {0.5}));
  EXPECT_NO_VALUE(Of(L"pw_plus", {0, 1, 2}, {0, 1, 1}, {0.5}));
  EXPECT_NO_VALUE(Of(L"pw_minus", {0, 1, 2}, {0, 1, 0}, {0.5}));
  EXPECT_EQ(Of(L"pw_plus", {0, 1, 2}, {0, 1, 0}, {0.5}), 1);
  EXPECT_NO_VALUE(Of(L"per", {0, 1, 2}, {0, 1, 0}, {0.5}));
}

TEST(PulseStreamFunctions, AThresholdOnTheBaseLineIsNeverCrossed) {
  for (auto const name : {L"pw_plus", L"pw_minus", L"pw_plus_avg", L"per", L"pmin"})
    EXPECT_NO_VALUE(Of(name, kStream.x, kStream.y)) << name;
}

TEST(PulseStreamFunctions, ATouchIsNoCrossingAndAStretchOnTheLevelCrossesAtItsFirstSample) {
  // Touches 1 from above at 2; rises through 1 with a stretch from 5 to 6.
  Numbers const x = {0, 1, 2, 3, 4, 5, 6, 7, 8};
  Numbers const y = {0, 2, 1, 2, 0, 1, 1, 2, 0};
  EXPECT_EQ(Of(L"pw_plus", x, y, {1}), 3.5 - 0.5);
  EXPECT_EQ(Of(L"pw_minus", x, y, {1}), 5 - 3.5);
  EXPECT_EQ(Of(L"per", x, y, {1}), 5 - 0.5);
  // A trace that starts on the level has no crossing there.
  EXPECT_NO_VALUE(Of(L"pw_plus", {0, 1, 2}, {1, 2, 0}, {1}));
}
