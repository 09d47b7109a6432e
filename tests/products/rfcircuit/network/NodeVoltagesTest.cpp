#include "tests/products/rfcircuit/RfSupport.h"

#include <cmath>
#include <numbers>

namespace {

using namespace rftest;

std::vector<Complex> VoltagesOf(std::string const & lines, double frequency) {
  return rf::SParameterSolver(Build(lines)).VoltagesAt(frequency);
}

TEST(NodeVoltages, OfADividerAreThoseOfOneVoltBehindThePortsImpedance) {
  auto const voltages = VoltagesOf("V1 in 0 portnum 1 z0 50\nR1 in mid 30\nR2 mid 0 20\n", 1e6);
  ASSERT_EQ(voltages.size(), 2u);
  ExpectNear(voltages[0], 0.5);
  ExpectNear(voltages[1], 0.2);
}

TEST(NodeVoltages, StandPortByPortWithTheOtherPortsEnded) {
  auto const voltages = VoltagesOf("V1 in 0 portnum 1 z0 50\nR1 in out 25\nV2 out 0 portnum 2 z0 75\n", 1e6);
  ASSERT_EQ(voltages.size(), 4u);
  ExpectNear(voltages[0], 100.0 / 150);
  ExpectNear(voltages[1], 75.0 / 150);
  ExpectNear(voltages[2], 50.0 / 150);
  ExpectNear(voltages[3], 75.0 / 150);
}

TEST(NodeVoltages, OfALowPassTurnByItsAngle) {
  double const frequency = 1 / (2 * std::numbers::pi * 50 * 1e-9);
  auto const voltages = VoltagesOf("V1 in 0 portnum 1 z0 50\nC1 in 0 1n\n", frequency);
  ExpectNear(voltages[0], Complex(0.5, -0.5));
}

TEST(NodeVoltages, AtZeroFrequencyPassInductorsAndNoCapacitors) {
  auto const voltages = VoltagesOf("V1 in 0 portnum 1 z0 50\nL1 in a 1n\nC1 a b 1p\nR1 b 0 10\nR2 a 0 50\n", 0);
  ExpectNear(voltages[0], 0.5);
  ExpectNear(voltages[1], 0.5);
  ExpectNear(voltages[2], 0);
}

TEST(NodeVoltages, LeaveTheSParametersAsTheyAre) {
  rf::SParameterSolver solver(Build("V1 in 0 portnum 1 z0 50\nR1 in 0 30\n"));
  Complex const before = solver.At(1e6)(0, 0);
  solver.VoltagesAt(2e6);
  EXPECT_EQ(solver.At(1e6)(0, 0), before);
}

} // namespace
