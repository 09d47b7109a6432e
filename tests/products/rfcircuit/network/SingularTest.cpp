#include "tests/products/rfcircuit/RfSupport.h"

#include <cmath>

namespace {

using namespace rftest;

std::string ErrorOfSolving(std::string const & lines, double frequency) {
  auto const circuit = Build(lines);
  return ErrorOf([&] { rf::SParameterSolver(circuit).At(frequency); });
}

TEST(Singular, ACurrentSourceIntoNothingNamesTheNodeAndTheFrequency) {
  EXPECT_EQ(
      ErrorOfSolving("V1 in 0 portnum 1\nG1 x 0 in 0 1m\n", 1e9),
      "test.cir: circuit at 1000000000 Hz: its equations are singular: nothing determines node 'x'; look there for "
      "floating nodes, loops of sources and couplings with a factor of 1");
}

TEST(Singular, AmplifierThatFeedsItselfWithAGainOfOne) {
  EXPECT_NE(ErrorOfSolving("V1 in 0 portnum 1\nR1 in x 50\nR2 x y 1\nE1 y 0 z 0 1\nR3 z y 1\n", 1e9)
                .find("its equations are singular"),
            std::string::npos);
}

TEST(Singular, FullyCoupledInductorsInALoop) {
  EXPECT_NE(ErrorOfSolving("V1 in 0 portnum 1\nL1 in x 1n\nL2 in x 1n\nK1 L1 L2 1\nR1 x 0 50\n", 1e9)
                .find("circuit at 1000000000 Hz: its equations are singular"),
            std::string::npos);
}

TEST(Singular, APortBetweenGroundAndGroundIsAShort) {
  ExpectNear(rf::SParameterSolver(Build("V1 0 0 portnum 1\n")).At(1e9)(0, 0), -1);
}

TEST(Singular, AfterAFailureTheSolverGoesOn) {
  rf::SParameterSolver solver(Build("V1 in 0 portnum 1\nR1 in 0 50\nG1 x 0 in 0 1m\nC1 x 0 1p\n"));
  EXPECT_NE(ErrorOf([&] { solver.At(0); }), "");
  ExpectNear(solver.At(1e9)(0, 0), 0);
  EXPECT_NE(ErrorOf([&] { solver.At(0); }), "");
  ExpectNear(solver.At(1e6)(0, 0), 0);
}

TEST(Singular, FrequenciesThatAreNone) {
  rf::SParameterSolver solver(Build("V1 in 0 portnum 1\nR1 in 0 50\n"));
  EXPECT_EQ(ErrorOf([&] { solver.At(-1); }), "test.cir: frequency: -1 Hz is not a frequency; give one from 0 Hz");
  EXPECT_NE(ErrorOf([&] { solver.At(NAN); }), "");
  EXPECT_NE(ErrorOf([&] { solver.At(INFINITY); }), "");
}

} // namespace
