#include "tests/products/rfcircuit/RfSupport.h"

namespace {

using namespace rftest;

TEST(ZeroFrequency, InductorsAreShortsAndCapacitorsOpen) {
  auto const through = SolveTwoPort("L1 in out 5n\nC1 out 0 1p\n", 0);
  ExpectNear(through(1, 0), 1);
  ExpectNear(through(0, 0), 0);
  auto const blocked = SolveTwoPort("C1 in out 1p\nL1 out 0 1n\n", 0);
  ExpectNear(blocked(0, 0), 1);
  ExpectNear(blocked(1, 0), 0);
  ExpectNear(blocked(1, 1), -1);
}

TEST(ZeroFrequency, ParallelInductorsAreOneShort) {
  auto const s = SolveTwoPort("L1 in out 5n\nL2 in out 3n\nL3 out in 1n\n", 0);
  ExpectNear(s(1, 0), 1);
}

TEST(ZeroFrequency, AnInductorAcrossASourceOrAShortIsFine) {
  EXPECT_NEAR(std::abs(SolveTwoPort("V9 in out 3\nL1 in out 5n\n", 0)(1, 0)), 1, 1e-12);
  EXPECT_NEAR(std::abs(SolveTwoPort("R9 in out 0\nL1 in out 5n\n", 0)(1, 0)), 1, 1e-12);
  EXPECT_NEAR(std::abs(SolveTwoPort("L1 in in 5n\nR1 in out 100\n", 0)(1, 0)), 0.5, 1e-12);
}

TEST(ZeroFrequency, NodesBetweenCapacitorsDoNotMatter) {
  auto const s = SolveTwoPort("C1 in a 1p\nC2 a b 1p\nR1 a b 10\nC3 b out 1p\nR2 in out 100\n", 0);
  ExpectNear(s(1, 0), 0.5);
}

TEST(ZeroFrequency, RingsOfLinesAreOneNode) {
  auto const circuit = rf::Elaborate(rf::ReadNetlist(ExampleFile("branchline/branchline.cir")));
  auto const s = rf::SParameterSolver(circuit).At(0);
  for (std::size_t i = 0; i < 4; ++i) {
    for (std::size_t j = 0; j < 4; ++j)
      ExpectNear(s(i, j), i == j ? -0.5 : 0.5);
  }
}

TEST(ZeroFrequency, ALineWhoseFarEndOnlyCapacitorsHoldIsFine) {
  ExpectNear(SolveTwoPort("T1 in 0 out 0 z0=50 td=1n\nC1 in x 1p\nT2 x 0 y 0 z0=50 td=1n\n", 0)(1, 0), 1);
}

TEST(ZeroFrequency, CoupledInductorsAreShorts) {
  auto const s = SolveTwoPort("L1 in 0 1n\nL2 out 0 1n\nK1 L1 L2 1\n", 0);
  ExpectNear(s(0, 0), -1);
  ExpectNear(s(1, 0), 0);
}

TEST(ZeroFrequency, APartThatASourceDrivesWithoutAPathToGroundIsSingular) {
  auto const circuit = Build("V1 in 0 portnum 1\nG1 x 0 in 0 1m\nC1 x 0 1p\n");
  EXPECT_EQ(
      ErrorOf([&] { rf::SParameterSolver(circuit).At(0); }),
      "test.cir: circuit at 0 Hz: its equations are singular: nothing determines node 'x'; look there for floating "
      "nodes, loops of sources and couplings with a factor of 1");
  rf::SParameterSolver(circuit).At(1);
}

} // namespace
