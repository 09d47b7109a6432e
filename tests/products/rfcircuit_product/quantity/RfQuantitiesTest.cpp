// Each kind of quantity against what it is by a closed form.
#include "tests/products/rfcircuit_product/quantity/ExtractorFixture.h"

#include <cmath>
#include <numbers>

using namespace rftest;

namespace {

using Complex = std::complex<double>;

class RfQuantities : public ExtractorTest {
protected:
  void TwoPort(std::string const & lines, double z1 = 50, double z2 = 50) {
    Netlist("V1 in 0 portnum 1 z0 " + std::to_string(z1) + "\nV2 out 0 portnum 2 z0 " + std::to_string(z2) + "\n" +
            lines + "\n.sp lin 11 100meg 1.1g");
    Solve(L"");
    ASSERT_TRUE(Load(L""));
  }
  void ExpectAll(Column const & column, Complex expected, double tolerance = 1e-12) {
    ASSERT_EQ(column.size(), 11u);
    for (Complex const & number : column)
      EXPECT_LE(std::abs(number - expected), tolerance) << number;
  }
  void ExpectNone(Column const & column) {
    ASSERT_EQ(column.size(), 11u);
    for (Complex const & number : column)
      EXPECT_TRUE(std::isnan(number.real()));
  }
};

} // namespace

TEST_F(RfQuantities, OfASeriesResistorAreReflectionAndTransmissionOfItsRatio) {
  TwoPort("R1 in out 50");
  ExpectAll(Numbers(L"S(1,1)"), 1.0 / 3);
  ExpectAll(Numbers(L"S(2,1)"), 2.0 / 3);
  ExpectAll(Numbers(L"S21"), 2.0 / 3);
  ExpectAll(Numbers(L"S(V2,V1)"), 2.0 / 3);
}

TEST_F(RfQuantities, OfASeriesResistorAreItsConductanceAndNoImpedances) {
  TwoPort("R1 in out 50", 20, 80);
  ExpectAll(Numbers(L"Y(1,1)"), 0.02, 1e-15);
  ExpectAll(Numbers(L"Y(2,1)"), -0.02, 1e-15);
  ExpectNone(Numbers(L"Z(1,1)"));
}

TEST_F(RfQuantities, OfAShuntCapacitorAreItsReactanceAndNoAdmittances) {
  TwoPort("C1 in 0 2p\nR1 in out 0");
  Column const z = Numbers(L"Z(2,1)");
  std::vector<double> const frequencies = Axis();
  ASSERT_EQ(z.size(), 11u);
  for (std::size_t i = 0; i < z.size(); ++i) {
    Complex const expected = 1.0 / Complex(0, 2 * std::numbers::pi * frequencies[i] * 2e-12);
    EXPECT_LE(std::abs(z[i] - expected), 1e-9 * std::abs(expected));
  }
  ExpectNone(Numbers(L"Y(1,1)"));
}

TEST_F(RfQuantities, OfAPortAreItsStandingWaveRatioAndItsImpedance) {
  TwoPort("R1 in 0 75\nR2 out 0 20", 50, 80);
  std::vector<double> const first = Reals(L"VSWR1");
  std::vector<double> const second = Reals(L"VSWR(2)");
  ASSERT_EQ(first.size(), 11u);
  EXPECT_NEAR(first[3], 1.5, 1e-12);
  EXPECT_NEAR(second[3], 4.0, 1e-12);
  ExpectAll(Numbers(L"Zo(1)"), 50.0);
  ExpectAll(Numbers(L"Zo2"), 80.0);
}

TEST_F(RfQuantities, OfAnOpenPortAreAnInfiniteStandingWaveRatio) {
  TwoPort("C1 in 0 1p\nR1 out 0 50");
  EXPECT_GT(Reals(L"VSWR1").at(0), 1e12);
}

TEST_F(RfQuantities, OfALineAreItsDelayAtEveryFrequency) {
  TwoPort("T1 in 0 out 0 z0=50 td=1.25n");
  std::vector<double> const delays = Reals(L"GD(2,1)");
  std::vector<double> const frequencies = Axis();
  Column const s = Numbers(L"S(2,1)");
  ASSERT_EQ(delays.size(), 11u);
  for (std::size_t i = 0; i < delays.size(); ++i) {
    EXPECT_NEAR(delays[i], 1.25e-9, 1e-18);
    EXPECT_LE(std::abs(s[i] - std::polar(1.0, -2 * std::numbers::pi * frequencies[i] * 1.25e-9)), 1e-10);
  }
}

TEST_F(RfQuantities, TellTheFrequencies) {
  TwoPort("R1 in out 50");
  EXPECT_EQ(Reals(L"Freq"), Axis());
  EXPECT_DOUBLE_EQ(Axis().front(), 1e8);
  EXPECT_DOUBLE_EQ(Axis().back(), 1.1e9);
}

TEST_F(RfQuantities, AreSeenFromTheImpedancesThatPortsAreSetTo) {
  TwoPort("R1 in 0 75\nR2 out 0 20");
  SetPort(L"v1", 75.0);
  Extractor().FinishLoadingSolvedData();
  ASSERT_TRUE(Load(L""));
  ExpectAll(Numbers(L"S(1,1)"), 0.0);
  ExpectAll(Numbers(L"S(2,2)"), -30.0 / 70);
  ExpectAll(Numbers(L"Zo(1)"), 75.0);
  ExpectAll(Numbers(L"Zo(2)"), 50.0);
  ExpectAll(Numbers(L"Z(1,1)"), 75.0, 1e-10);
  EXPECT_NEAR(Reals(L"VSWR1").at(0), 1.0, 1e-12);
}

TEST_F(RfQuantities, AreSeenFromComplexImpedancesAsPowerWaves) {
  TwoPort("R1 in 0 75\nR2 out 0 20");
  SetPort(L"V1", Complex(30, 40));
  Extractor().FinishLoadingSolvedData();
  ASSERT_TRUE(Load(L""));
  ExpectAll(Numbers(L"S(1,1)"), (75.0 - Complex(30, -40)) / (75.0 + Complex(30, 40)));
  ExpectAll(Numbers(L"Zo(1)"), Complex(30, 40));
}

TEST_F(RfQuantities, AreStillThoseOfTheSolveInTheContextOfThat) {
  TwoPort("R1 in 0 75\nR2 out 0 20");
  SetPort(L"V1", 75.0, 0.1);
  Extractor().FinishLoadingSolvedData();
  ASSERT_TRUE(Load(L""));
  ExpectAll(Numbers(L"S(1,1)", 1), 0.2);
  ExpectAll(Numbers(L"Zo(1)", 1), 50.0);
  std::vector<SimValueContext> contexts;
  ASSERT_TRUE(Extractor().GetContexts(contexts, 1));
  ASSERT_EQ(contexts.size(), 2u);
  EXPECT_EQ(contexts[0], SimValueContext());
  EXPECT_EQ(Extractor().GetContextName(contexts[1]), L"Ports as solved");
  EXPECT_EQ(Extractor().GetContextID(contexts[1]), 1);
}

TEST_F(RfQuantities, HaveTheDelayOfALineTakenAwayThatThePlanesMoveOver) {
  double const length = 0.3;
  double const delay = length / 299792458.0;
  char text[64];
  std::snprintf(text, sizeof text, "T1 in 0 out 0 z0=50 td=%.17g", delay);
  TwoPort(text);
  SetPort(L"V1", 0.0, length);
  Extractor().FinishLoadingSolvedData();
  ASSERT_TRUE(Load(L""));
  ExpectAll(Numbers(L"S(2,1)"), 1.0, 1e-9);
  EXPECT_NEAR(Reals(L"GD(2,1)").at(5), 0.0, 1e-18);
}

TEST_F(RfQuantities, OfNodesAreTheirVoltagesWhereTheyAreStored) {
  TwoPort("R1 in mid 50\nR2 mid out 50\n");
  EXPECT_FALSE(Extractor().IsSupportedReportTypes({2}));
  EXPECT_TRUE(Numbers(L"V(mid)").empty());
}
