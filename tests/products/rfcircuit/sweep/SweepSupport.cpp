#include "tests/products/rfcircuit/sweep/SweepSupport.h"

#include "products/rfcircuit/engine/closedform/Chebyshev.h"
#include "products/rfcircuit/engine/closedform/LadderNetlist.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace rftest {
namespace {

SweepRun Run(rf::AdaptiveSweep::SolveAt const & solveAt, std::vector<double> const & frequencies,
             rf::SweepMethod const & method) {
  SweepRun run;
  rf::AdaptiveSweep sweep(frequencies, method, solveAt);
  run.result = sweep.Run([&run](rf::SweepPass const & pass) { run.passes.push_back(pass); });
  for (std::size_t i = 0; i < frequencies.size(); ++i) {
    rf::SMatrix const exact = solveAt(frequencies[i]);
    for (std::size_t row = 0; row < exact.Ports(); ++row)
      for (std::size_t column = 0; column < exact.Ports(); ++column)
        run.error = std::max(run.error, std::abs(run.result.At(i)[row * exact.Ports() + column] - exact(row, column)));
  }
  return run;
}

} // namespace

std::string BandPass(double relativeBandwidth) {
  return rf::LadderNetlist(rf::ChebyshevBandPassLadder(5, 0.1, 1e9, relativeBandwidth, 50), 50, 50);
}

std::string Crystal(std::string const & name, double resonance, double q, std::string const & between) {
  std::string const first = between.substr(0, between.find(' '));
  std::string const second = between.substr(between.find(' ') + 1);
  double const omega = 2 * std::numbers::pi * resonance;
  double const inductance = q * 30 / omega;
  return "R" + name + " " + first + " x" + name + " 30\nL" + name + " x" + name + " y" + name + " " + Text(inductance) +
         "\nC" + name + " y" + name + " " + second + " " + Text(1 / (omega * omega * inductance)) + "\nCp" + name +
         " " + between + " 5p\n";
}

std::string WithPorts(std::string const & lines) {
  return "V1 in 0 dc 0 ac 1 portnum 1 z0 50\nV2 out 0 dc 0 ac 0 portnum 2 z0 50\n" + lines;
}

SweepRun RunSweep(std::string const & lines, std::vector<double> const & frequencies, rf::SweepMethod const & method) {
  rf::SParameterSolver solver(Build(lines));
  return Run([&solver](double frequency) { return solver.At(frequency); }, frequencies, method);
}

SweepRun RunSweepOf(std::function<Complex(double)> const & function, std::vector<double> const & frequencies,
                    rf::SweepMethod const & method) {
  auto const solveAt = [&function](double frequency) {
    rf::SMatrix matrix(1);
    matrix(0, 0) = function(frequency);
    return matrix;
  };
  return Run(solveAt, frequencies, method);
}

bool IsFinite(rf::SweepResult const & result) {
  return std::all_of(result.values.begin(), result.values.end(),
                     [](Complex value) { return std::isfinite(value.real()) && std::isfinite(value.imag()); });
}

} // namespace rftest
