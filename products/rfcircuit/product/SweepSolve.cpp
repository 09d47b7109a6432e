#include "products/rfcircuit/product/SweepSolve.h"

#include "basekit/profile/CProfileUpdate.h"
#include "basekit/text/Utf8.h"
#include "desktop/product/SolveJob.h"
#include "products/rfcircuit/engine/netlist/NetlistError.h"
#include "products/rfcircuit/engine/network/SParameterSolver.h"
#include "products/rfcircuit/engine/sweep/AdaptiveSweep.h"
#include "products/rfcircuit/product/SolveCosts.h"
#include "products/rfcircuit/product/SweepColumns.h"
#include "products/rfcircuit/product/SweepPlan.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

namespace rfcircuit {
namespace {

constexpr std::size_t kMostReports = 50;

NetworkData NewData(std::vector<double> const & frequencies, std::vector<rf::Port> const & ports) {
  std::vector<NetworkPort> named;
  for (rf::Port const & port : ports)
    named.push_back({port.number, text::FromUtf8(port.name), port.z0});
  return NetworkData(frequencies, named);
}

void Enter(rf::SMatrix const & matrix, std::size_t frequency, NetworkData & data) {
  for (std::size_t row = 0; row < matrix.Ports(); ++row)
    for (std::size_t column = 0; column < matrix.Ports(); ++column) {
      auto const value = matrix(row, column);
      if (!std::isfinite(value.real()) || !std::isfinite(value.imag()))
        throw rf::NetlistError({}, "circuit at " + std::to_string(data.Frequencies()[frequency]) + " Hz",
                               "an S-parameter is not finite", "look for values of elements beyond all measure");
      data.SetS(frequency, row, column, value);
    }
}

/// Solves one job, and tells its passes and costs.
class SweepSolve {
public:
  SweepSolve(SweepPlan const & plan, rf::Circuit const & circuit, desktop::IJobProgress & progress)
      : m_plan(plan), m_frequencies(plan.sweep.Frequencies()), m_circuit(circuit), m_progress(progress) {}

  NetworkData Run() {
    SolveCosts analysis;
    analysis.Start();
    rf::SParameterSolver solver(m_circuit);
    m_data = NewData(m_frequencies, solver.Ports());
    analysis.Stop();
    TellTask(analysis, L"Analyse",
             AString::Format(L"%d unknowns, %lu ports", solver.Unknowns(), solver.Ports().size()));
    if (m_plan.method.isAdaptive)
      Adaptively(solver);
    else
      Directly(solver);
    return std::move(m_data);
  }

private:
  void Directly(rf::SParameterSolver & solver) {
    std::size_t const count = m_frequencies.size();
    std::size_t const stride = std::max<std::size_t>(1, count / kMostReports);
    SolveCosts solving;
    solving.Start();
    for (std::size_t i = 0; i < count; ++i) {
      Enter(solver.At(m_frequencies[i]), i, m_data);
      std::size_t const done = i + 1;
      if (done % stride == 0 || done == count)
        m_progress.Report(static_cast<double>(done) / static_cast<double>(count),
                          AString::Format(L"%lu of %lu frequencies", done, count));
    }
    solving.Stop();
    TellSolving(solving, solver, count);
  }

  void Adaptively(rf::SParameterSolver & solver) {
    SolveCosts all;
    SolveCosts solving;
    all.Start();
    rf::AdaptiveSweep sweep(m_frequencies, m_plan.method, [&](double frequency) {
      solving.Start();
      rf::SMatrix matrix = solver.At(frequency);
      solving.Stop();
      return matrix;
    });
    rf::SweepResult const result = sweep.Run([this](rf::SweepPass const & pass) { TellPass(pass); });
    all.Stop();
    TellSolving(solving, solver, result.SolvedPoints());
    TellTask(all.Without(solving), L"Fit",
             AString::Format(result.last.number == 1 ? L"%d pass" : L"%d passes", result.last.number));
    Take(result);
    m_progress.Report(1.0, AString::Format(result.isConverged ? L"%lu of %lu frequencies solved, the others fitted"
                                                              : L"not converged: %lu of %lu frequencies solved",
                                           result.last.solved, result.last.total));
  }

  void TellPass(rf::SweepPass const & pass) {
    m_progress.ReportPass(SweepColumns::RowOf(pass), kRecordSet);
    bool const isMet = pass.inARow >= m_plan.method.passes || pass.solved == pass.total;
    m_progress.ReportConvergence(isMet, AString::Format(L"%d", pass.inARow), kRecordSet);
    m_progress.Report(static_cast<double>(pass.solved) / static_cast<double>(pass.total),
                      AString::Format(L"pass %d: %lu of %lu frequencies", pass.number, pass.solved, pass.total));
  }

  void Take(rf::SweepResult const & result) {
    AdaptiveOrigin origin;
    for (std::size_t i = 0; i < m_frequencies.size(); ++i) {
      for (std::size_t entry = 0; entry < result.ports * result.ports; ++entry)
        m_data.SetS(i, entry / result.ports, entry % result.ports, result.At(i)[entry]);
      if (result.isSolved[i])
        origin.solved.push_back(i);
    }
    origin.passes = result.last.number;
    origin.target = m_plan.method.target;
    origin.change = result.last.largestChange.value_or(0.0);
    origin.isConverged = result.isConverged;
    m_data.SetOrigin(std::move(origin));
  }

  void TellSolving(SolveCosts const & costs, rf::SParameterSolver const & solver, std::size_t solved) {
    TellTask(costs, L"Solve",
             AString::Format(solver.FullFactorizations() == 1 ? L"%lu of %lu frequencies, pivots chosen %lu time"
                                                              : L"%lu of %lu frequencies, pivots chosen %lu times",
                             solved, m_frequencies.size(), solver.FullFactorizations()));
  }

  void TellTask(SolveCosts const & costs, AString const & name, AString const & info) {
    m_progress.ReportProfile(CProfileUpdate(CProfileUpdate::kTask, costs.Task(name, info)), kRecordSet);
  }

  SweepPlan const & m_plan;
  std::vector<double> m_frequencies;
  rf::Circuit const & m_circuit;
  desktop::IJobProgress & m_progress;
  NetworkData m_data;
};

} // namespace

NetworkData SolveSweep(SweepPlan const & plan, rf::Circuit const & circuit, desktop::IJobProgress & progress) {
  return SweepSolve(plan, circuit, progress).Run();
}

} // namespace rfcircuit
