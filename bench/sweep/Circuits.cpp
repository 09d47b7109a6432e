#include "bench/sweep/Circuits.h"

#include "products/rfcircuit/engine/closedform/Chebyshev.h"
#include "products/rfcircuit/engine/closedform/LadderNetlist.h"

#include <fmt/format.h>
#include <numbers>

namespace bench {

namespace {

constexpr char kPorts[] = "V1 in 0 dc 0 ac 1 portnum 1 z0 50\nV2 out 0 dc 0 ac 0 portnum 2 z0 50\n";

std::string Crystal(int number, double resonance) {
  double const omega = 2 * std::numbers::pi * resonance;
  double const inductance = 1e5 * 30 / omega;
  return fmt::format("R{0} in x{0} 30\nL{0} x{0} y{0} {1}\nC{0} y{0} out {2}\nCp{0} in out 5p\n", number, inductance,
                     1 / (omega * omega * inductance));
}

std::string Crystals(int count) {
  std::string lines = kPorts;
  for (int i = 0; i < count; ++i)
    lines += Crystal(i, 10e6 + i * 0.5137e6);
  return lines;
}

std::string Lines(double nanoseconds) {
  return fmt::format("{}T1 in 0 a 0 z0=75 td={}n\nR1 a b 10\nT2 b 0 out 0 z0=30 td={}n\n", kPorts, nanoseconds,
                     nanoseconds * 0.65);
}

} // namespace

std::string LadderOfNodes(int nodes) {
  int const sections = nodes / 2;
  std::string lines = fmt::format("V1 n0 0 dc 0 ac 1 portnum 1 z0 50\nV2 n{} 0 dc 0 ac 0 portnum 2 z0 50\n", sections);
  for (int i = 0; i < sections; ++i)
    lines += fmt::format("L{0} n{0} m{0} 2.5n\nR{0} m{0} n{1} 0.01\nC{0} n{1} 0 1p\n", i, i + 1);
  return lines;
}

std::vector<SweepCase> SweepCases(int divisor) {
  std::string const bandPass = rf::LadderNetlist(rf::ChebyshevBandPassLadder(5, 0.1, 1e9, 0.002, 50), 50, 50);
  auto const linear = [divisor](int points, char const * range) {
    return fmt::format("lin {} {}", (points - 1) / divisor + 1, range);
  };
  return {{"band_pass_5_widths", bandPass, linear(10001, "0.995g 1.005g")},
          {"band_pass_100_widths", bandPass, linear(10001, "0.9g 1.1g")},
          {"band_pass_1000_widths", bandPass, linear(10001, "0.137g 2.137g")},
          {"band_pass_4_decades", bandPass, fmt::format("dec {} 10meg 100g", 2500 / divisor)},
          {"crystal", Crystals(1), linear(10001, "9.95meg 10.05meg")},
          {"crystal_3000_widths", Crystals(1), linear(10001, "1meg 31meg")},
          {"eight_crystals", Crystals(8), linear(10001, "1meg 31meg")},
          {"lines_10_wavelengths", Lines(2), linear(10001, "1meg 3g")},
          {"lines_100_wavelengths", Lines(20), linear(10001, "1meg 3g")},
          {"ladder_2000_nodes", LadderOfNodes(2000 / divisor), linear(10001, "1meg 200meg")}};
}

} // namespace bench
