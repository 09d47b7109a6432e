#include "bench/sweep/OneFrequency.h"

#include "bench/support/Measure.h"
#include "products/rfcircuit/engine/netlist/Elaborate.h"
#include "products/rfcircuit/engine/network/SParameterSolver.h"

#include <algorithm>
#include <cmath>
#include <klu.h>

namespace bench {

namespace {

constexpr int kFrequencies = 50;

double Frequency(int i) { return 1e8 + 1e6 * i; }

/// Calls of the library, and nothing else: no check of pivots, no names, no waves.
class Library {
public:
  explicit Library(rf::Circuit const & circuit) : m_system(circuit), m_pattern(m_system.Pattern()) {
    klu_defaults(&m_common);
    m_symbolic = klu_analyze(m_pattern.size, m_pattern.columnStarts.data(), m_pattern.rows.data(), &m_common);
    Require(m_symbolic != nullptr, "the pattern can't be analysed");
    for (int i = 0; i < kFrequencies; ++i)
      m_system.Evaluate(Frequency(i), m_values.emplace_back());
    m_numeric =
        klu_z_factor(m_pattern.columnStarts.data(), m_pattern.rows.data(), Plain(m_values[0]), m_symbolic, &m_common);
    for (rf::Port const & port : circuit.Ports())
      m_branches.push_back(static_cast<std::size_t>(m_system.BranchOf(port.element)));
    m_scale = 2 * std::sqrt(circuit.Ports().front().z0);
    m_node = static_cast<std::size_t>(
        rf::NodalSystem::VoltageOf(circuit.Elements()[static_cast<std::size_t>(circuit.Ports()[1].element)].nodes[0]));
  }
  ~Library() {
    klu_z_free_numeric(&m_numeric, &m_common);
    klu_free_symbolic(&m_symbolic, &m_common);
  }
  Library(Library const &) = delete;
  Library & operator=(Library const &) = delete;

  void Solve(int frequency) {
    auto const size = static_cast<std::size_t>(m_pattern.size);
    m_solution.assign(size * m_branches.size(), 0.0);
    for (std::size_t i = 0; i < m_branches.size(); ++i)
      m_solution[i * size + m_branches[i]] = m_scale;
    Require(klu_z_refactor(m_pattern.columnStarts.data(), m_pattern.rows.data(),
                           Plain(m_values[static_cast<std::size_t>(frequency)]), m_symbolic, m_numeric, &m_common) != 0,
            "the matrix can't be factored");
    klu_z_solve(m_symbolic, m_numeric, m_pattern.size, static_cast<int>(m_branches.size()), Plain(m_solution),
                &m_common);
  }
  /// The wave at port 2 of the last solve, port 1 driven.
  std::complex<double> S21() const { return m_solution[m_node] / (m_scale / 2); }
  int Size() const { return m_pattern.size; }

private:
  static double * Plain(std::vector<std::complex<double>> & values) {
    return reinterpret_cast<double *>(values.data());
  }

  rf::NodalSystem m_system;
  rf::SparsePattern m_pattern;
  klu_common m_common{};
  klu_symbolic * m_symbolic = nullptr;
  klu_numeric * m_numeric = nullptr;
  std::vector<std::vector<std::complex<double>>> m_values;
  std::vector<std::complex<double>> m_solution;
  std::vector<std::size_t> m_branches;
  std::size_t m_node = 0;
  double m_scale = 0;
};

template <class Action> double SecondsOfOne(Action const & action) {
  double const before = ProcessorSeconds();
  for (int i = 0; i < kFrequencies; ++i)
    action(i);
  return (ProcessorSeconds() - before) / kFrequencies;
}

double Middle(std::vector<double> & values) {
  std::ranges::sort(values);
  return values[values.size() / 2];
}

} // namespace

OneFrequencyCost MeasureOneFrequency(std::string const & lines, int repeats) {
  rf::Circuit const circuit = rf::Elaborate(rf::ReadNetlistText("title\n" + lines, "ladder.cir"));
  rf::SParameterSolver solver(circuit);
  Library library(circuit);
  OneFrequencyCost cost;
  cost.unknowns = library.Size();
  std::vector<double> ours;
  std::vector<double> theirs;
  for (int repeat = 0; repeat < repeats; ++repeat) {
    ours.push_back(SecondsOfOne([&](int i) {
      auto const s = solver.At(Frequency(i));
      Require(std::isfinite(s(1, 0).real()), "an S-parameter is not finite");
    }));
    theirs.push_back(SecondsOfOne([&](int i) { library.Solve(i); }));
  }
  for (int i = 0; i < kFrequencies; ++i) {
    library.Solve(i);
    cost.difference = std::max(cost.difference, std::abs(solver.At(Frequency(i))(1, 0) - library.S21()));
  }
  cost.seconds = Middle(ours);
  cost.librarySeconds = Middle(theirs);
  return cost;
}

} // namespace bench
