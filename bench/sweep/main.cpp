// bench_sweep: what an adaptive sweep solves and costs beside solving every point, and what one frequency costs beside
// the sparse library's own refactoring and solving.

#include "bench/support/Measure.h"
#include "bench/support/RunLoop.h"
#include "bench/sweep/Circuits.h"
#include "bench/sweep/OneFrequency.h"
#include "products/rfcircuit/engine/netlist/Elaborate.h"
#include "products/rfcircuit/engine/netlist/Netlist.h"
#include "products/rfcircuit/engine/network/SParameterSolver.h"
#include "products/rfcircuit/engine/sweep/AdaptiveSweep.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <fmt/format.h>
#include <iostream>
#include <nlohmann/json.hpp>

namespace {

struct Settings {
  std::vector<std::string> cases;
  int repeats = 5;
  int nodes = 2000;
  std::string out;
  bool isSmoke = false;
};

void Declare(CLI::App & app, Settings & settings) {
  app.add_option("--case", settings.cases, "These circuits only; one_frequency is one of them")->delimiter(',');
  app.add_option("--nodes", settings.nodes, "Nodes of the ladder that is solved at one frequency")
      ->check(CLI::Range(10, 1000000));
  app.add_option("--repeat", settings.repeats, "The measurement in the middle of so many counts")
      ->check(CLI::PositiveNumber);
  app.add_option("--out", settings.out, "File for the results, one JSON object a line; else standard output");
  app.add_flag("--smoke", settings.isSmoke, "Small circuits and sweeps, once: does it work?");
}

double Middle(std::vector<double> & values) {
  std::ranges::sort(values);
  return values[values.size() / 2];
}

/// Both ways over one sweep, each from a circuit to all values.
class Comparison {
public:
  explicit Comparison(bench::SweepCase const & sweepCase)
      : m_netlist(rf::ReadNetlistText("title\n" + sweepCase.lines + ".sp " + sweepCase.sweep + "\n", sweepCase.name)),
        m_circuit(rf::Elaborate(m_netlist)), m_frequencies(m_netlist.Sweeps().front().sweep.Frequencies()) {}

  void Directly() {
    double const before = bench::ProcessorSeconds();
    rf::SParameterSolver solver(m_circuit);
    m_direct.clear();
    for (double const frequency : m_frequencies)
      m_direct.push_back(solver.At(frequency));
    m_directSeconds.push_back(bench::ProcessorSeconds() - before);
  }
  void Adaptively() {
    double const before = bench::ProcessorSeconds();
    rf::SParameterSolver solver(m_circuit);
    rf::AdaptiveSweep sweep(m_frequencies, rf::SweepMethod::Adaptive(),
                            [&solver](double frequency) { return solver.At(frequency); });
    m_result = sweep.Run();
    m_seconds.push_back(bench::ProcessorSeconds() - before);
  }

  nlohmann::json Line(std::string const & name) {
    double const direct = Middle(m_directSeconds);
    double const adaptive = Middle(m_seconds);
    return {{"workload", name},
            {"points", m_frequencies.size()},
            {"solved", m_result.SolvedPoints()},
            {"passes", m_result.last.number},
            {"converged", m_result.isConverged},
            {"largest_change", m_result.last.largestChange.value_or(0)},
            {"largest_error", LargestError()},
            {"seconds", adaptive},
            {"direct_seconds", direct},
            {"ratio_to_direct", adaptive / direct}};
  }

private:
  double LargestError() const {
    double largest = 0;
    for (std::size_t i = 0; i < m_direct.size(); ++i)
      for (std::size_t entry = 0; entry < m_result.ports * m_result.ports; ++entry)
        largest = std::max(
            largest, std::abs(m_result.At(i)[entry] - m_direct[i](entry / m_result.ports, entry % m_result.ports)));
    return largest;
  }

  rf::Netlist m_netlist;
  rf::Circuit m_circuit;
  std::vector<double> m_frequencies;
  std::vector<rf::SMatrix> m_direct;
  rf::SweepResult m_result;
  std::vector<double> m_directSeconds;
  std::vector<double> m_seconds;
};

bool IsWanted(Settings const & settings, std::string const & name) {
  return settings.cases.empty() || std::ranges::count(settings.cases, name) > 0;
}

void CompareSweeps(Settings const & settings, bench::ResultLines & lines) {
  std::cerr << fmt::format("{:<24}{:>8}{:>8}{:>8}{:>12}{:>12}{:>12}{:>11}\n", "sweep", "points", "solved", "passes",
                           "error", "direct s", "adaptive s", "to direct");
  for (auto const & sweepCase : bench::SweepCases(settings.isSmoke ? 50 : 1)) {
    if (!IsWanted(settings, sweepCase.name))
      continue;
    Comparison comparison(sweepCase);
    for (int repeat = 0; repeat < settings.repeats; ++repeat) {
      comparison.Directly();
      comparison.Adaptively();
    }
    auto const line = comparison.Line(sweepCase.name);
    bench::Require(line["converged"], sweepCase.name + " did not converge");
    lines.Add(line);
    std::cerr << fmt::format("{:<24}{:>8}{:>8}{:>8}{:>12.1e}{:>12.4f}{:>12.4f}{:>10.2f}x\n", sweepCase.name,
                             line["points"].get<std::size_t>(), line["solved"].get<std::size_t>(),
                             line["passes"].get<int>(), line["largest_error"].get<double>(),
                             line["direct_seconds"].get<double>(), line["seconds"].get<double>(),
                             line["ratio_to_direct"].get<double>());
  }
}

void CompareOneFrequency(Settings const & settings, bench::ResultLines & lines) {
  int const nodes = settings.isSmoke ? 40 : settings.nodes;
  auto const cost = bench::MeasureOneFrequency(bench::LadderOfNodes(nodes), settings.repeats);
  bench::Require(cost.difference < 1e-9, "solver and sparse library disagree");
  double const ratio = cost.seconds / cost.librarySeconds;
  lines.Add({{"workload", "one_frequency"},
             {"nodes", nodes},
             {"unknowns", cost.unknowns},
             {"seconds", cost.seconds},
             {"library_seconds", cost.librarySeconds},
             {"ratio_to_library", ratio},
             {"difference", cost.difference}});
  std::cerr << fmt::format("one frequency of a ladder of {} nodes: {:.1f} us, {:.2f} times the library's {:.1f} us\n",
                           nodes, cost.seconds * 1e6, ratio, cost.librarySeconds * 1e6);
}

int Run(Settings settings) {
  if (settings.isSmoke)
    settings.repeats = 1;
  bench::ResultLines lines(settings.out);
  CompareSweeps(settings, lines);
  if (IsWanted(settings, "one_frequency"))
    CompareOneFrequency(settings, lines);
  return lines.ExitCode();
}

} // namespace

int main(int count, char ** words) {
  CLI::App app("What adaptive sweeps save: a line of JSON for each measurement, a table on standard error");
  Settings settings;
  Declare(app, settings);
  return bench::RunProgram("bench_sweep", app, count, words, [&] { return Run(settings); });
}
