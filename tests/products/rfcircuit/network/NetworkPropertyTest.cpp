#include "tests/products/rfcircuit/RfSupport.h"

#include <cmath>
#include <random>

namespace {

using namespace rftest;

/** Random connected networks of four ports; the seed makes each one repeatable. */
std::string RandomNetwork(unsigned seed, std::string const & kinds) {
  std::mt19937 random(seed);
  auto const below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
  auto const node = [&](int i) { return i == 0 ? std::string("0") : "n" + Text(i); };
  auto const scale = [&] { return Text(0.5 + below(100) / 50.0); };
  std::string lines;
  int const nodes = 8;
  for (int i = 1; i < 30; ++i) {
    int const from = i <= nodes ? i : below(nodes) + 1; // a tree first, so that nothing floats
    int const to = i <= nodes ? below(i) : below(nodes + 1);
    if (from == to)
      continue;
    std::string const name = Text(i) + " " + node(from) + " " + node(to);
    switch (kinds[static_cast<std::size_t>(below(static_cast<int>(kinds.size())))]) {
    case 'R':
      lines += "R" + name + " {50*" + scale() + "}\n";
      break;
    case 'L':
      lines += "L" + name + " {5n*" + scale() + "}\n";
      break;
    case 'C':
      lines += "C" + name + " {2p*" + scale() + "}\n";
      break;
    default:
      lines += "T" + Text(i) + " " + node(from) + " 0 " + node(to) + " 0 z0={50*" + scale() + "} td={0.3n*" + scale() +
               "}\n";
      lines += "Cx" + name + " {1p*" + scale() + "}\n";
    }
  }
  for (int port = 1; port <= 4; ++port)
    lines += "V" + Text(port) + " n" + Text(port) + " 0 portnum " + Text(port) + " z0 {40*" + scale() + "}\n";
  return lines;
}

TEST(NetworkProperty, PassiveNetworksAreReciprocal) {
  for (unsigned seed = 1; seed <= 40; ++seed) {
    rf::SParameterSolver solver(Build(RandomNetwork(seed, "RLCT")));
    for (double frequency : {1e7, 1e9, 3.3e9}) {
      auto const s = solver.At(frequency);
      for (std::size_t i = 0; i < 4; ++i) {
        for (std::size_t j = 0; j < i; ++j)
          ExpectNear(s(i, j), s(j, i), 1e-11);
      }
    }
  }
}

TEST(NetworkProperty, NetworksWithoutResistorsAreLossless) {
  for (unsigned seed = 1; seed <= 40; ++seed) {
    rf::SParameterSolver solver(Build(RandomNetwork(seed, "LCT")));
    auto const s = solver.At(1.234e9);
    for (std::size_t i = 0; i < 4; ++i) {
      for (std::size_t j = 0; j < 4; ++j) {
        Complex product = 0;
        for (std::size_t k = 0; k < 4; ++k)
          product += std::conj(s(k, i)) * s(k, j);
        ExpectNear(product, i == j ? 1 : 0);
      }
    }
  }
}

TEST(NetworkProperty, NetworksWithResistorsNeverReturnMoreThanTheyGet) {
  for (unsigned seed = 1; seed <= 40; ++seed) {
    auto const s = rf::SParameterSolver(Build(RandomNetwork(seed, "RRC"))).At(1e9);
    for (std::size_t j = 0; j < 4; ++j) {
      double power = 0;
      for (std::size_t i = 0; i < 4; ++i)
        power += std::norm(s(i, j));
      EXPECT_LE(power, 1 + 1e-12);
    }
  }
}

TEST(NetworkProperty, TheOrderOfFrequenciesDoesNotMatter) {
  auto const circuit = Build(RandomNetwork(7, "RLCT"));
  rf::SParameterSolver wandering(circuit);
  for (double frequency : {0.0, 1e12, 1.0, 1e9, 1e3, 5e9, 0.0, 1e9}) {
    rf::SParameterSolver fresh(circuit);
    auto const s = wandering.At(frequency);
    auto const expected = fresh.At(frequency);
    for (std::size_t i = 0; i < 16; ++i)
      ExpectNear(s(i / 4, i % 4), expected(i / 4, i % 4), 1e-9);
  }
}

TEST(NetworkProperty, PivotsAreChosenOnceForASmoothSweep) {
  rf::SParameterSolver solver(rf::Elaborate(rf::ReadNetlist(ExampleFile("lowpass/lowpass.cir"))));
  for (int i = 1; i <= 200; ++i)
    solver.At(10e6 * i);
  EXPECT_EQ(solver.FullFactorizations(), 1u);
}

TEST(NetworkProperty, PivotsAreChosenAfreshWhenTheOldOnesFail) {
  // A capacitor behind a gyrator at each node: at 0 Hz those pivots are gone, only the gyrators remain.
  std::string lines = "V1 n0 0 portnum 1\nV2 n3 0 portnum 2\n";
  for (int i = 0; i < 4; ++i) {
    std::string const number = Text(i), node = "n" + number;
    lines += "Ga" + number + " " + node + " 0 leaf" + number + " 0 20m\n";
    lines += "Gb" + number + " 0 leaf" + number + " " + node + " 0 20m\n";
    lines += "C" + number + " leaf" + number + " 0 1p\nR" + number + " " + node + " n" + Text((i + 1) % 4) + " 50\n";
  }
  rf::SParameterSolver solver(Build(lines));
  solver.At(1e12);
  EXPECT_EQ(solver.FullFactorizations(), 1u);
  ExpectNear(solver.At(0)(0, 0), -1); // an open end behind a gyrator is a short
  EXPECT_EQ(solver.FullFactorizations(), 2u);
}

} // namespace
