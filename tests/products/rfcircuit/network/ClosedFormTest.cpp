#include "tests/products/rfcircuit/RfSupport.h"

#include <cmath>
#include <numbers>

namespace {

using namespace rftest;

constexpr double PI = std::numbers::pi;
constexpr Complex J(0, 1);
double const ROOT_HALF = std::sqrt(0.5);

TEST(ClosedForm, PiAndTAttenuatorsOfTenDecibels) {
  std::string const lines = ".param k={10^(10/20)}\n";
  double const loss = std::pow(10, -0.5);
  auto const pi =
      SolveTwoPort(lines + "R1 in 0 {50*(k+1)/(k-1)}\nR2 in out {50*(k^2-1)/(2*k)}\nR3 out 0 {50*(k+1)/(k-1)}\n", 1e9);
  auto const tee =
      SolveTwoPort(lines + "R1 in m {50*(k-1)/(k+1)}\nR2 m 0 {100*k/(k^2-1)}\nR3 m out {50*(k-1)/(k+1)}\n", 0);
  for (auto const & s : {pi, tee}) {
    ExpectNear(s(0, 0), 0);
    ExpectNear(s(1, 1), 0);
    ExpectNear(s(1, 0), loss);
    ExpectNear(s(0, 1), loss);
  }
}

TEST(ClosedForm, SeriesImpedanceBetweenUnequalPorts) {
  auto const s = Solve("V1 a 0 portnum 1 z0 50\nR1 a b 30\nV2 b 0 portnum 2 z0 75\n", 1e6);
  ExpectNear(s(0, 0), (30.0 + 75 - 50) / (30.0 + 75 + 50));
  ExpectNear(s(1, 1), (30.0 + 50 - 75) / (30.0 + 75 + 50));
  ExpectNear(s(1, 0), 2 * std::sqrt(50.0 * 75) / 155);
}

TEST(ClosedForm, ReactancesOfOnePorts) {
  double const omega = 2 * PI * 1e9;
  auto const reflection = [](Complex z) { return (z - 50.0) / (z + 50.0); };
  ExpectNear(Solve("V1 a 0 portnum 1\nL1 a 0 5n\n", 1e9)(0, 0), reflection(J * omega * 5e-9));
  ExpectNear(Solve("V1 a 0 portnum 1\nC1 a 0 2p\n", 1e9)(0, 0), reflection(1.0 / (J * omega * 2e-12)));
  ExpectNear(Solve("V1 a 0 portnum 1\nR1 a 0 0\n", 1e9)(0, 0), -1);
  ExpectNear(Solve("V1 a 0 portnum 1\nR1 a 0 -25\n", 1e9)(0, 0), -3);
}

TEST(ClosedForm, QuarterWaveLineMatchesTwoImpedances) {
  auto const s =
      Solve("V1 a 0 portnum 1 z0 50\nT1 a 0 b 0 Z0={sqrt(50*100)} F=1g NL=0.25\nV2 b 0 portnum 2 z0 100\n", 1e9);
  ExpectNear(s(0, 0), 0);
  ExpectNear(s(1, 1), 0);
  ExpectNear(s(1, 0), -J);
}

TEST(ClosedForm, LineOfAnyLengthBetweenItsOwnImpedance) {
  for (double frequency : {0.0, 1e8, 2.5e8, 5e8, 1e9, 7.3e10}) {
    auto const s = SolveTwoPort("T1 in 0 out 0 Z0=50 TD=1n\n", frequency);
    ExpectNear(s(0, 0), 0);
    ExpectNear(s(1, 0), std::exp(-J * 2.0 * PI * std::fmod(frequency * 1e-9, 1.0)));
  }
}

TEST(ClosedForm, MismatchedLine) {
  double const frequency = 1.7e8;
  double const theta = 2 * PI * frequency * 1e-9;
  Complex const s21 = 2.0 / (2 * std::cos(theta) + J * std::sin(theta) * (80.0 / 50 + 50.0 / 80));
  auto const s = SolveTwoPort("T1 in 0 out 0 Z0=80 F=250meg\n", frequency);
  ExpectNear(s(1, 0), s21);
  ExpectNear(s(0, 0), s21 / 2.0 * J * std::sin(theta) * (80.0 / 50 - 50.0 / 80));
}

TEST(ClosedForm, ALineAsAFloatingTransformer) {
  // Both far terminals crossed: the line inverts.
  auto const s = SolveTwoPort("T1 in 0 0 out Z0=50 TD=1n\n", 1.23e8);
  ExpectNear(s(1, 0), -std::exp(-J * 2.0 * PI * 0.123));
}

TEST(ClosedForm, BranchLineCouplerAtItsCentre) {
  auto const netlist = rf::ReadNetlist(ExampleFile("branchline/branchline.cir"));
  auto const s = rf::SParameterSolver(rf::Elaborate(netlist)).At(2.4e9);
  ASSERT_EQ(s.Ports(), 4u);
  for (std::size_t i = 0; i < 4; ++i)
    ExpectNear(s(i, i), 0);
  ExpectNear(s(1, 0), -J * ROOT_HALF);
  ExpectNear(s(2, 0), -ROOT_HALF);
  ExpectNear(s(3, 0), 0);
}

TEST(ClosedForm, CoupledInductorsAreATransformer) {
  double const omega = 2 * PI * 50e6;
  for (double k : {0.98, 0.3, -0.7, 0.0}) {
    auto const s = Solve(
        "V1 a 0 portnum 1 z0 50\nL1 a 0 1u\nL2 b 0 4u\nK1 L1 L2 " + Text(k) + "\nV2 b 0 portnum 2 z0 200\n", 50e6);
    Complex const z11 = J * omega * 1e-6, z22 = J * omega * 4e-6, z12 = J * omega * k * 2e-6;
    Complex const determinant = (z11 + 50.0) * (z22 + 200.0) - z12 * z12;
    ExpectNear(s(0, 0), ((z11 - 50.0) * (z22 + 200.0) - z12 * z12) / determinant);
    ExpectNear(s(1, 1), ((z11 + 50.0) * (z22 - 200.0) - z12 * z12) / determinant);
    ExpectNear(s(1, 0), 2.0 * z12 * std::sqrt(50.0 * 200.0) / determinant);
  }
}

TEST(ClosedForm, FullyCoupledInductorsThatTheCircuitDeterminesAreFine) {
  double const omega = 2 * PI * 50e6;
  auto const s = Solve("V1 a 0 portnum 1 z0 50\nL1 a 0 1u\nL2 b 0 4u\nK1 L1 L2 1\nV2 b 0 portnum 2 z0 200\n", 50e6);
  Complex const y = 1.0 / (J * omega * 1e-6); // an ideal 1:2 transformer with L1 across its primary
  ExpectNear(s(1, 0), 2.0 / (2.0 + y * 50.0));
}

TEST(ClosedForm, SallenKeyWithAnAmplifierOfFiniteGain) {
  for (double gain : {1e5, 100.0, 3.0}) {
    auto const circuit = rf::Elaborate(rf::ReadNetlist(ExampleFile("sallenkey/sallenkey.cir")), {{"gain", gain}});
    rf::SParameterSolver solver(circuit);
    for (double frequency : {0.0, 1e3, 1e5, 1.1e5, 1e6, 1e7}) {
      Complex const p = J * 2.0 * PI * frequency;
      double const k = gain / (1 + gain); // the amplifier in its loop
      double const r = 1e3, c1 = 2e-9, c2 = 1e-9, source = 50;
      // Node equations of a and b by hand, with the output at k times b and the port in series with the first resistor.
      Complex const atB = 1.0 + p * c2 * r; // a over b
      Complex const denominator = atB * (1 / (r + source) + 1 / r + p * c1) - 1 / r - k * p * c1;
      Complex const transfer = k / (r + source) / denominator; // output over the source's open voltage
      auto const s = solver.At(frequency);
      ExpectNear(s(1, 0), transfer); // halved by the matched output, doubled by the definition of the wave
      ExpectNear(s(1, 1), 0);
      ExpectNear(s(0, 1), 0);
    }
  }
}

TEST(ClosedForm, VoltageControlledCurrentSourceIsAnAmplifier) {
  auto const s = SolveTwoPort("R1 in 0 50\nG1 out 0 in 0 40m\nR2 out 0 50\n", 1e9);
  ExpectNear(s(0, 0), 0);
  ExpectNear(s(0, 1), 0);
  ExpectNear(s(1, 0), -40e-3 * 25);
}

TEST(ClosedForm, TwoVoltageControlledCurrentSourcesAreAGyrator) {
  auto const s = SolveTwoPort("G1 in 0 out 0 {1/50}\nG2 0 out in 0 {1/50}\n", 1e9);
  ExpectNear(s(0, 0), 0);
  ExpectNear(s(1, 1), 0);
  ExpectNear(s(1, 0), 1);
  ExpectNear(s(0, 1), -1);
}

TEST(ClosedForm, CurrentControlledSources) {
  // The probe carries the current from node `in` into R1: 1 V of the wave's 2 sqrt z0 over 100 ohm in all.
  auto const f = SolveTwoPort("Vp in m 0\nR1 m 0 50\nF1 out 0 Vp 3\nR2 out 0 50\n", 1e9);
  ExpectNear(f(0, 0), 0);
  ExpectNear(f(1, 0), -3 * 25.0 / 50);
  auto const h = SolveTwoPort("Vp in m 0\nR1 m 0 50\nH1 x 0 Vp 120\nR2 x out 50\n", 1e9);
  ExpectNear(h(1, 0), 120.0 / 50 / 2);
  ExpectNear(h(1, 1), 0);
}

TEST(ClosedForm, APortMayBeTheControllingSource) {
  // The current into the port's first node is minus the one that it sends.
  auto const s = Solve("V1 in 0 portnum 1 z0 50\nR1 in 0 50\nF1 out 0 V1 2\nV2 out 0 portnum 2 z0 50\n", 1e6);
  ExpectNear(s(1, 0), 2.0);
}

TEST(ClosedForm, IndependentSourcesAreZero) {
  auto const s = SolveTwoPort("Vb in m dc 5 ac 1\nR1 m out 50\nI1 in out dc 1 ac 1\n", 1e9);
  ExpectNear(s(1, 0), 2.0 / 3);
  ExpectNear(s(0, 0), 1.0 / 3);
}

TEST(ClosedForm, ALadderOfTwoThousandNodesIsALine) {
  // Sections far shorter than the wave: the exact response of n equal sections is known through Chebyshev polynomials.
  constexpr int SECTIONS = 2000;
  std::string lines;
  for (int i = 0; i < SECTIONS; ++i) {
    std::string const from = i == 0 ? "in" : "n" + Text(i);
    std::string const to = i + 1 == SECTIONS ? "out" : "n" + Text(i + 1);
    std::string const number = Text(i);
    lines += "L" + number + " " + from + " " + to + " 0.1n\nC" + number + " " + to + " 0 40f\n";
  }
  auto const circuit = Build(lines + "V1 in 0 portnum 1\nV2 out 0 portnum 2\n");
  rf::SParameterSolver solver(circuit);
  for (double frequency : {1e6, 1e9, 5e9, 10e9}) {
    double const omega = 2 * PI * frequency;
    // One section's chain matrix is {1 - w^2 LC, jwL; jwC, 1}; its power n by Cayley and Hamilton.
    double const a = 1 - omega * omega * 0.1e-9 * 40e-15;
    double const theta = std::acos((a + 1) / 2);
    double const u = std::sin(SECTIONS * theta) / std::sin(theta);
    double const v = std::sin((SECTIONS - 1) * theta) / std::sin(theta);
    Complex const chainA = u * a - v, chainB = u * J * omega * 0.1e-9, chainC = u * J * omega * 40e-15, chainD = u - v;
    ExpectNear(solver.At(frequency)(1, 0), 2.0 / (chainA + chainB / 50.0 + chainC * 50.0 + chainD), 1e-9);
  }
}

} // namespace
