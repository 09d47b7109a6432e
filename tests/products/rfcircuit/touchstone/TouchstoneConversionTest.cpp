#include "products/rfcircuit/engine/network/NetworkParameters.h"
#include "products/rfcircuit/engine/touchstone/TouchstoneReader.h"

#include "tests/products/rfcircuit/RfSupport.h"

#include <gtest/gtest.h>

#include <fmt/format.h>

#include <random>

namespace {

using namespace rftest;

rf::SMatrix Random(std::size_t ports, unsigned seed) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> value(-0.4, 0.4);
  rf::SMatrix matrix(ports);
  for (std::size_t i = 0; i < ports * ports; ++i)
    matrix(i / ports, i % ports) = {value(random), value(random)};
  return matrix;
}

/** A version 2 text with one point at 1 Hz. */
std::string Text2(char parameters, rf::SMatrix const & matrix, std::vector<double> const & z0) {
  std::string text = fmt::format("[Version] 2.0\n# Hz {} RI\n[Number of Ports] {}\n[Two-Port Data Order] 12_21\n"
                                 "[Number of Frequencies] 1\n[Reference]",
                                 parameters, z0.size());
  for (double const z : z0)
    text += fmt::format(" {}", z);
  text += "\n[Network Data]\n1";
  for (std::size_t i = 0; i < z0.size() * z0.size(); ++i) {
    auto const value = matrix(i / z0.size(), i % z0.size());
    text += fmt::format(" {} {}", value.real(), value.imag());
  }
  return text + "\n[End]\n";
}

void ExpectSame(rf::SMatrix const & actual, rf::SMatrix const & expected, double tolerance = 1e-13) {
  for (std::size_t i = 0; i < expected.Ports() * expected.Ports(); ++i)
    ExpectNear(actual(i / expected.Ports(), i % expected.Ports()), expected(i / expected.Ports(), i % expected.Ports()),
               tolerance);
}

rf::SMatrix Read(std::string const & text, std::string const & name) {
  return rf::ReadTouchstoneText(text, name).network.matrices[0];
}

// H and G of a two-port with the admittances y, by definition: V1, I2 for I1, V2, and I1, V2 for V1, I2.
rf::SMatrix HybridOf(rf::SMatrix const & y) {
  rf::SMatrix h(2);
  h(0, 0) = 1.0 / y(0, 0);
  h(0, 1) = -y(0, 1) / y(0, 0);
  h(1, 0) = y(1, 0) / y(0, 0);
  h(1, 1) = y(1, 1) - y(0, 1) * y(1, 0) / y(0, 0);
  return h;
}

rf::SMatrix InverseHybridOf(rf::SMatrix const & z) {
  return HybridOf(z); // the same with voltages and currents exchanged
}

TEST(TouchstoneConversion, ImpedancesAndAdmittancesBecomeSParametersOfTheReference) {
  for (std::size_t ports = 1; ports <= 5; ++ports) {
    std::vector<double> z0;
    for (std::size_t i = 0; i < ports; ++i)
      z0.push_back(20 + 15 * static_cast<double>(i));
    auto const s = Random(ports, static_cast<unsigned>(ports));
    ExpectSame(Read(Text2('Z', *rf::ImpedanceMatrix(s, z0), z0), "x"), s);
    ExpectSame(Read(Text2('Y', *rf::AdmittanceMatrix(s, z0), z0), "x"), s);
  }
}

TEST(TouchstoneConversion, HybridParametersBecomeSParametersOfTheReference) {
  std::vector<double> const z0{30, 80};
  auto const s = Random(2, 7);
  ExpectSame(Read(Text2('H', HybridOf(*rf::AdmittanceMatrix(s, z0)), z0), "x"), s);
  ExpectSame(Read(Text2('G', InverseHybridOf(*rf::ImpedanceMatrix(s, z0)), z0), "x"), s);
}

// A series resistor of 100 ohm between ports of 50 ohm: S11 = 0.5, S21 = 0.5; a shunt one of 25 ohm: S11 = -0.5.
TEST(TouchstoneConversion, VersionOneHasOtherParametersNormalised) {
  auto const series = Read("# Hz Y RI R 50\n1 0.5 0 -0.5 0 -0.5 0 0.5 0\n", "x.s2p");
  ExpectNear(series(0, 0), 0.5, 1e-15);
  ExpectNear(series(1, 0), 0.5, 1e-15);
  auto const shunt = Read("# Hz Z RI R 50\n1 0.5 0 0.5 0 0.5 0 0.5 0\n", "x.s2p");
  ExpectNear(shunt(0, 0), -0.5, 1e-15);
  ExpectNear(shunt(1, 0), 0.5, 1e-15);
}

TEST(TouchstoneConversion, TheSameNetworkIsTheSameFromHybridParametersOfVersionOne) {
  auto const series = Read("# Hz H RI R 50\n1 2 0 -1 0 1 0 0 0\n", "x.s2p");
  ExpectNear(series(0, 0), 0.5, 1e-15);
  ExpectNear(series(0, 1), 0.5, 1e-15);
  ExpectNear(series(1, 0), 0.5, 1e-15);
  ExpectNear(series(1, 1), 0.5, 1e-15);
}

TEST(TouchstoneConversion, ParametersWithoutSParametersAreRefusedAtTheirFrequency) {
  try {
    Read("# Hz Z RI R 50\n1 0 0\n 2 -1 0\n", "x.s1p");
    FAIL() << "no error was raised";
  } catch (rf::TouchstoneSyntaxError const & error) {
    EXPECT_STREQ(error.what(),
                 "x.s1p:3:2: the Z-parameters at 2 Hz have no S-parameters; expected finite ones that the "
                 "reference impedances allow");
  }
}

} // namespace
