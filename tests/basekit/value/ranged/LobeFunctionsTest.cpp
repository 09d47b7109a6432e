#include "tests/basekit/value/ranged/RangedSupport.h"

using namespace support;

namespace {

Numbers const kAngles = {-40, -30, -20, -10, 0, 10, 20, 30, 40};

} // namespace

TEST(LobeFunctions, SideLobesAreTheHighestBehindTheNulls) {
  Numbers const pattern = {0, 2, 1, 5, 10, 6, 0, 3, 2};
  EXPECT_EQ(Of(L"lSidelobeY", kAngles, pattern), 2);
  EXPECT_EQ(Of(L"lSidelobeX", kAngles, pattern), -30);
  EXPECT_EQ(Of(L"rSidelobeY", kAngles, pattern), 3);
  EXPECT_EQ(Of(L"rSidelobeX", kAngles, pattern), 30);
}

TEST(LobeFunctions, WorkForPatternsInDecibels) {
  Numbers const pattern = {-40, -13, -60, -3, 0, -2, -50, -15, -55};
  EXPECT_EQ(Of(L"lSidelobeY", kAngles, pattern), -13);
  EXPECT_EQ(Of(L"lSidelobeX", kAngles, pattern), -30);
  EXPECT_EQ(Of(L"rSidelobeY", kAngles, pattern), -15);
  EXPECT_EQ(Of(L"rSidelobeX", kAngles, pattern), 30);
}

TEST(LobeFunctions, TheHighestCountsNotTheNextAndOfEqualsTheNearest) {
  Numbers const x = Steps(0, 12, 13);
  //                       lobes at 1, 3; main at 6; lobes at 8, 10
  Numbers const equal = {0, 4, 0, 4, 0, 5, 9, 0, 4, 0, 4, 0, 0};
  EXPECT_EQ(Of(L"lSidelobeX", x, equal), 3);
  EXPECT_EQ(Of(L"rSidelobeX", x, equal), 8);
  Numbers const further = {0, 6, 0, 4, 0, 5, 9, 0, 4, 0, 7, 0, 0};
  EXPECT_EQ(Of(L"lSidelobeX", x, further), 1);
  EXPECT_EQ(Of(L"lSidelobeY", x, further), 6);
  EXPECT_EQ(Of(L"rSidelobeX", x, further), 10);
  EXPECT_EQ(Of(L"rSidelobeY", x, further), 7);
}

TEST(LobeFunctions, ARunOfEqualSamplesIsOneLobeAtItsFirstAndEndsAreNone) {
  Numbers const pattern = {7, 0, 3, 3, 0, 9, 0, 2, 2, 0, 8};
  Numbers const x = Steps(0, 10, 11);
  EXPECT_EQ(Of(L"lSidelobeX", x, pattern), 2);
  EXPECT_EQ(Of(L"lSidelobeY", x, pattern), 3);
  EXPECT_EQ(Of(L"rSidelobeX", x, pattern), 7);
  EXPECT_EQ(Of(L"rSidelobeY", x, pattern), 2);
}

TEST(LobeFunctions, AShoulderIsNoLobe) {
  Numbers const shoulder = {1, 2, 2, 5, 4, 4, 1};
  for (auto const name : {L"lSidelobeX", L"lSidelobeY", L"rSidelobeX", L"rSidelobeY"}) {
    EXPECT_NO_VALUE(Of(name, Steps(0, 6, 7), shoulder)) << name;
    EXPECT_NO_VALUE(Of(name, {0, 1, 2}, {3, 3, 3})) << name;
    EXPECT_NO_VALUE(Of(name, {1}, {3})) << name;
  }
}

TEST(LobeFunctions, OfAnArrayFactorAreThoseOfItsFormula) {
  // sin(x)/x in amplitude: the first side lobes of 0.2172 at 4.4934, half power at 1.3916.
  Numbers const x = Steps(-9, 9, 180001);
  Numbers const y = Map(x, [](double at) { return std::fabs(at) < 1e-9 ? 1.0 : std::fabs(std::sin(at) / at); });
  EXPECT_NEAR(Of(L"rSidelobeX", x, y), 4.493409458, 1e-4);
  EXPECT_NEAR(Of(L"lSidelobeX", x, y), -4.493409458, 1e-4);
  EXPECT_NEAR(Of(L"rSidelobeY", x, y), 0.217233628, 1e-8);
  EXPECT_NEAR(Of(L"lSidelobeY", x, y), 0.217233628, 1e-8);
  EXPECT_NEAR(Of(L"xdb20Beamwidth", x, y, {10 * std::log10(2.0)}), 2 * 1.391557378, 1e-7);
}

TEST(LobeFunctions, ABeamwidthIsBetweenStraightLinesOfYItself) {
  Numbers const x = {-4, 0, 8};
  Numbers const y = {0, 10, 0};
  // Falls linearly: a part p of the height is met at (1 - p) of each side.
  EXPECT_DOUBLE_EQ(Of(L"xdb10Beamwidth", x, y), 12 * (1 - std::pow(10, -0.3)));
  EXPECT_DOUBLE_EQ(Of(L"xdb20Beamwidth", x, y), 12 * (1 - std::pow(10, -0.15)));
  EXPECT_DOUBLE_EQ(Of(L"xdb10Beamwidth", x, y, {10}), 12 * 0.9);
  EXPECT_DOUBLE_EQ(Of(L"xdb20Beamwidth", x, y, {10}), 12 * (1 - std::pow(10, -0.5)));
  EXPECT_DOUBLE_EQ(Of(L"xdb20Beamwidth", x, y, {20}), 12 * 0.9);
  EXPECT_DOUBLE_EQ(Of(L"xdb10Beamwidth", {-4, 0, 8}, ComplexNumbers{{0, 0}, {6, 8}, {0, 0}}, {10}), 12 * 0.9);
}

TEST(LobeFunctions, ABeamThatNeverFallsSoFarHasNoWidth) {
  EXPECT_NO_VALUE(Of(L"xdb10Beamwidth", {-1, 0, 1}, {0, 10, 6}));
  EXPECT_NO_VALUE(Of(L"xdb10Beamwidth", {-1, 0, 1}, {6, 10, 0}));
  EXPECT_NO_VALUE(Of(L"xdb20Beamwidth", {-1, 0, 1}, {10, 10, 10}));
  EXPECT_NO_VALUE(Of(L"xdb20Beamwidth", {-1, 0, 1}, {0, 10, 0}, {0}));
  EXPECT_NO_VALUE(Of(L"xdb10Beamwidth", {-1, 0, 1}, {0, 10, 0}, {-3}));
  EXPECT_NO_VALUE(Of(L"xdb10Beamwidth", {-1, 0, 1}, {-9, -1, -9}));
  EXPECT_NO_VALUE(Of(L"xdb10Beamwidth", {-1, 0, 1}, {-1, 0, -1}));
}
