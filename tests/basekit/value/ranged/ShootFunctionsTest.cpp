#include "tests/basekit/value/ranged/RangedSupport.h"

using namespace support;

TEST(ShootFunctions, ArePerCentOfTheReferenceBehindTheArrival) {
  Numbers const x = {0, 1, 2, 3};
  Numbers const y = {0, 1.25, 0.875, 1};
  EXPECT_EQ(Of(L"overshoot", x, y, {1}), 25);
  EXPECT_EQ(Of(L"undershoot", x, y, {1}), 12.5);
  EXPECT_EQ(Of(L"overshoot", x, y, {0.5}), 150);
  EXPECT_EQ(Of(L"undershoot", x, y, {0.5}), 0); // the way up from 0 is no undershoot
}

TEST(ShootFunctions, OfANegativeReferenceAreThoseOfYItself) {
  Numbers const x = {0, 1, 2, 3};
  Numbers const y = {0, -1.25, -0.875, -1};
  EXPECT_EQ(Of(L"overshoot", x, y, {-1}), 12.5);
  EXPECT_EQ(Of(L"undershoot", x, y, {-1}), 25);
}

TEST(ShootFunctions, OfASecondOrderStepAreThoseOfControlTextbooks) {
  double const damping = 0.25;
  double const root = std::sqrt(1 - damping * damping);
  Numbers const t = Steps(0, 40, 400001);
  Numbers const y = Map(t, [&](double at) {
    return 1 - std::exp(-damping * at) * (std::cos(root * at) + damping / root * std::sin(root * at));
  });
  double const first = std::exp(-damping * kPi / root);
  EXPECT_NEAR(Of(L"overshoot", t, y, {1}), 100 * first, 1e-6);
  EXPECT_NEAR(Of(L"undershoot", t, y, {1}), 100 * first * first, 1e-6);
}

TEST(ShootFunctions, ATraceThatArrivesOnASampleCountsFromThere) {
  EXPECT_EQ(Of(L"undershoot", {0, 1, 2, 3}, {0, 1, 0.5, 1}, {1}), 50);
  EXPECT_EQ(Of(L"overshoot", {0, 1, 2, 3}, {3, 1, 0.5, 2}, {1}), 100); // from above: what came before doesn't count
}

TEST(ShootFunctions, ATraceThatNeverArrivesNeverShotOverOnTheSideWhereItStays) {
  EXPECT_EQ(Of(L"overshoot", {0, 1}, {0, 0.5}, {1}), 0);
  EXPECT_NO_VALUE(Of(L"undershoot", {0, 1}, {0, 0.5}, {1}));
  EXPECT_EQ(Of(L"undershoot", {0, 1}, {2, 1.5}, {1}), 0);
  EXPECT_NO_VALUE(Of(L"overshoot", {0, 1}, {2, 1.5}, {1}));
}

TEST(ShootFunctions, EvenPointsMissWhatLiesBetweenThem) {
  Numbers const x = {0, 1, 1.5, 2, 4};
  Numbers const y = {0, 1, 3, 1, 1.5};
  EXPECT_EQ(Of(L"overshoot", x, y, {1}), 200);
  EXPECT_EQ(Of(L"overshoot", x, y, {1, 5}), 50);
  EXPECT_EQ(Of(L"undershoot", x, y, {1, 5}), 0);
  EXPECT_NO_VALUE(Of(L"overshoot", x, y, {1, 1}));
  EXPECT_NO_VALUE(Of(L"undershoot", x, y, {1, 2e7}));
}

TEST(ShootFunctions, TheDefaultReferenceHasToBeReplaced) {
  EXPECT_NO_VALUE(Of(L"overshoot", {0, 1}, {-1, 1}));
  EXPECT_NO_VALUE(Of(L"undershoot", {0, 1}, {-1, 1}, {0}));
}
