#include "products/rfcircuit/engine/network/Renormalize.h"

#include "tests/products/rfcircuit/RfSupport.h"

namespace {

using namespace rftest;

std::string const kNetwork = "R1 a b 30\nL1 b c 5n\nC1 c 0 2p\nR2 a c 200\nG1 b 0 a 0 0.01\n";

std::string Ports(double z1, double z2, double z3) {
  return "V1 a 0 portnum 1 z0 " + Text(z1) + "\nV2 b 0 portnum 2 z0 " + Text(z2) + "\nV3 c 0 portnum 3 z0 " + Text(z3) +
         "\n";
}

TEST(Renormalize, IsWhatASolveWithThatImpedanceGives) {
  auto const own = Solve(Ports(10, 75, 200) + kNetwork, 1e9);
  auto const expected = Solve(Ports(50, 50, 50) + kNetwork, 1e9);
  auto const seen = rf::Renormalized(own, {10, 75, 200}, 50);
  ASSERT_TRUE(seen);
  for (std::size_t row = 0; row < 3; ++row)
    for (std::size_t column = 0; column < 3; ++column)
      ExpectNear((*seen)(row, column), expected(row, column));
}

TEST(Renormalize, ToTheOwnImpedanceChangesNothing) {
  auto const own = Solve(Ports(50, 50, 50) + kNetwork, 1e9);
  auto const seen = rf::Renormalized(own, {50, 50, 50}, 50);
  ASSERT_TRUE(seen);
  for (std::size_t row = 0; row < 3; ++row)
    for (std::size_t column = 0; column < 3; ++column)
      ExpectNear((*seen)(row, column), own(row, column), 1e-15);
}

TEST(Renormalize, OfAnOpenAndAShortStaysOne) {
  for (double const reflection : {1.0, -1.0}) {
    rf::SMatrix s(1);
    s(0, 0) = reflection;
    auto const seen = rf::Renormalized(s, {50}, 7);
    ASSERT_TRUE(seen);
    ExpectNear((*seen)(0, 0), reflection);
  }
}

TEST(Renormalize, ToWhatANegativeResistorMatchesHasNoSolution) {
  rf::SMatrix s(1);
  s(0, 0) = -1.25 / 0.75; // -1 ohm at 4
  EXPECT_FALSE(rf::Renormalized(s, {4}, 1));
}

} // namespace
