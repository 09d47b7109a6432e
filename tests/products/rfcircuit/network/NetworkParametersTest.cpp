#include "products/rfcircuit/engine/network/NetworkParameters.h"

#include "products/rfcircuit/engine/network/Renormalize.h"
#include "tests/products/rfcircuit/RfSupport.h"

namespace {

using namespace rftest;

// A pi of resistors between ports of 30 and 75 ohm: shunts of 100 and 200, 40 between them.
std::string const kPi = "V1 a 0 portnum 1 z0 30\nV2 b 0 portnum 2 z0 75\nR1 a 0 100\nR2 b 0 200\nR3 a b 40\n";

std::string const kThreePort = "V1 a 0 portnum 1 z0 10\nV2 b 0 portnum 2 z0 50\nV3 c 0 portnum 3 z0 200\n"
                               "R1 a b 30\nL1 b c 5n\nC1 c 0 2p\nR2 a c 200\nG1 b 0 a 0 0.01\nR3 b 0 500\n";

TEST(NetworkParameters, AdmittancesOfAPiAreItsBranches) {
  auto const y = rf::AdmittanceMatrix(Solve(kPi, 1e9), {30, 75});
  ASSERT_TRUE(y);
  ExpectNear((*y)(0, 0), 1.0 / 100 + 1.0 / 40, 1e-15);
  ExpectNear((*y)(1, 1), 1.0 / 200 + 1.0 / 40, 1e-15);
  ExpectNear((*y)(0, 1), -1.0 / 40, 1e-15);
  ExpectNear((*y)(1, 0), -1.0 / 40, 1e-15);
}

TEST(NetworkParameters, ImpedancesOfAPiAreThoseOfItsTee) {
  auto const z = rf::ImpedanceMatrix(Solve(kPi, 1e9), {30, 75});
  ASSERT_TRUE(z);
  double const sum = 100.0 + 200.0 + 40.0;
  ExpectNear((*z)(0, 0), 100.0 * 240.0 / sum, 1e-12);
  ExpectNear((*z)(1, 1), 200.0 * 140.0 / sum, 1e-12);
  ExpectNear((*z)(1, 0), 100.0 * 200.0 / sum, 1e-12);
}

TEST(NetworkParameters, AdmittancesAreTheInverseOfImpedances) {
  auto const s = Solve(kThreePort, 2e9);
  auto const y = rf::AdmittanceMatrix(s, {10, 50, 200});
  auto const z = rf::ImpedanceMatrix(s, {10, 50, 200});
  ASSERT_TRUE(y && z);
  for (std::size_t row = 0; row < 3; ++row)
    for (std::size_t column = 0; column < 3; ++column) {
      Complex product = 0.0;
      for (std::size_t k = 0; k < 3; ++k)
        product += (*y)(row, k) * (*z)(k, column);
      ExpectNear(product, row == column ? 1.0 : 0.0, 1e-12);
    }
}

TEST(NetworkParameters, DependOnNoReferenceImpedance) {
  auto const s = Solve(kThreePort, 2e9);
  auto const seen = rf::Renormalized(s, {10, 50, 200}, 75.0);
  ASSERT_TRUE(seen);
  auto const own = rf::ImpedanceMatrix(s, {10, 50, 200});
  auto const other = rf::ImpedanceMatrix(*seen, {75, 75, 75});
  ASSERT_TRUE(own && other);
  for (std::size_t row = 0; row < 3; ++row)
    for (std::size_t column = 0; column < 3; ++column)
      ExpectNear((*own)(row, column), (*other)(row, column), 1e-10);
}

TEST(NetworkParameters, OfASeriesElementThereAreNoImpedancesAndOfAShuntNoAdmittances) {
  auto const series = SolveTwoPort("R1 in out 37\n", 1e9);
  auto const shunt = SolveTwoPort("R1 in 0 37\nR2 in out 0\n", 1e9);
  EXPECT_FALSE(rf::ImpedanceMatrix(series, {50, 50}));
  EXPECT_TRUE(rf::AdmittanceMatrix(series, {50, 50}));
  EXPECT_FALSE(rf::AdmittanceMatrix(shunt, {50, 50}));
  EXPECT_TRUE(rf::ImpedanceMatrix(shunt, {50, 50}));
}

TEST(NetworkParameters, RenormalizedToAComplexImpedanceAreThoseOfPowerWaves) {
  Complex const load(20, 35);
  Complex const reference(15, -40);
  rf::SMatrix s(1);
  s(0, 0) = (load - 50.0) / (load + 50.0);
  auto const seen = rf::Renormalized(s, {50}, std::vector<Complex>{reference});
  ASSERT_TRUE(seen);
  ExpectNear((*seen)(0, 0), (load - std::conj(reference)) / (load + reference), 1e-14);
}

TEST(NetworkParameters, NothingComesBackFromTheConjugateOfTheReference) {
  Complex const load(20, 35);
  rf::SMatrix s(1);
  s(0, 0) = (load - 50.0) / (load + 50.0);
  auto const seen = rf::Renormalized(s, {50}, std::vector<Complex>{std::conj(load)});
  ASSERT_TRUE(seen);
  ExpectNear((*seen)(0, 0), 0.0, 1e-14);
}

} // namespace
