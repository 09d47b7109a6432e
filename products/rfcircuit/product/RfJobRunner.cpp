#include "products/rfcircuit/product/RfJobRunner.h"

#include "basekit/profile/CProfileUpdate.h"
#include "basekit/text/Utf8.h"
#include "basekit/value/variation/VariationText.h"
#include "products/rfcircuit/engine/netlist/Elaborate.h"
#include "products/rfcircuit/engine/netlist/NetlistError.h"
#include "products/rfcircuit/engine/network/SParameterSolver.h"
#include "products/rfcircuit/engine/sweep/AdaptiveSweep.h"
#include "products/rfcircuit/product/NetworkData.h"
#include "products/rfcircuit/product/RfSetup.h"
#include "products/rfcircuit/product/SolveCosts.h"
#include "products/rfcircuit/product/SweepColumns.h"
#include "products/rfcircuit/product/SweepPlan.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <optional>
#include <system_error>

namespace rfcircuit {
namespace {

constexpr std::size_t kMostReports = 50;
constexpr int kOneSet = -1; // of convergence and profile records

/// Tells whether a file is the one that was read.
struct FileStamp {
  std::filesystem::path path;
  std::filesystem::file_time_type time;
  std::uintmax_t size = 0;

  explicit FileStamp(std::filesystem::path const & file) : path(file) {
    std::error_code ignored; // a file that is gone differs from one that was read
    time = std::filesystem::last_write_time(file, ignored);
    size = std::filesystem::file_size(file, ignored);
  }
  bool IsCurrent() const {
    FileStamp const now(path);
    return now.time == time && now.size == size;
  }
};

rf::Overrides OverridesOf(AString const & variation) {
  VariationText const values(variation);
  if (values.IsOpaque())
    throw rf::NetlistError({}, "variation", "'" + text::ToUtf8(variation) + "' can't be read",
                           "write name=value pairs, joined by ';'");
  rf::Overrides overrides;
  for (VariationText::Pair const & pair : values.Pairs()) {
    if (!pair.isNumber || pair.number.imag() != 0.0)
      throw rf::NetlistError({}, "design variable '" + text::ToUtf8(pair.name) + "'",
                             "its value '" + text::ToUtf8(pair.text) + "' is not a real number", "give a number");
    overrides[text::ToUtf8(pair.name)] = pair.number.real();
  }
  return overrides;
}

SweepPlan PlanOfJob(desktop::SolveJob const & job) {
  if (job.setupType != RfSetup::kTypeName)
    throw rf::NetlistError({}, "setup '" + text::ToUtf8(job.setupName) + "'",
                           "its type '" + text::ToUtf8(job.setupType) + "' is not known here",
                           "use " + text::ToUtf8(RfSetup::kTypeName));
  AString error;
  auto const plan = ReadPlan(job.settings, error);
  if (!plan)
    throw rf::NetlistError({}, "setup '" + text::ToUtf8(job.setupName) + "'", text::ToUtf8(error), "");
  return *plan;
}

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
class Solve {
public:
  Solve(SweepPlan const & plan, rf::Circuit const & circuit, desktop::IJobProgress & progress)
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
    TellTask(all.Without(solving), L"Fit", AString::Format(L"%d passes", result.last.number));
    Take(result);
    m_progress.Report(1.0, AString::Format(result.isConverged ? L"%lu of %lu frequencies solved, the others fitted"
                                                              : L"not converged: %lu of %lu frequencies solved",
                                           result.last.solved, result.last.total));
  }

  void TellPass(rf::SweepPass const & pass) {
    m_progress.ReportPass(SweepColumns::RowOf(pass), kOneSet);
    bool const isMet = pass.inARow >= m_plan.method.passes || pass.solved == pass.total;
    m_progress.ReportConvergence(isMet, AString::Format(L"%d", pass.inARow), kOneSet);
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
             AString::Format(L"%lu of %lu frequencies, pivots chosen %lu times", solved, m_frequencies.size(),
                             solver.FullFactorizations()));
  }

  void TellTask(SolveCosts const & costs, AString const & name, AString const & info) {
    m_progress.ReportProfile(CProfileUpdate(CProfileUpdate::kTask, costs.Task(name, info)), kOneSet);
  }

  SweepPlan const & m_plan;
  std::vector<double> m_frequencies;
  rf::Circuit const & m_circuit;
  desktop::IJobProgress & m_progress;
  NetworkData m_data;
};

/// The profile group of a job: open while this lives.
class ProfileGroup {
public:
  ProfileGroup(desktop::SolveJob const & job, desktop::IJobProgress & progress) : m_progress(progress) {
    m_costs.Start();
    CProfileTask const task(L"Solve", L"setup " + job.setupName);
    m_progress.ReportProfile(CProfileUpdate(CProfileUpdate::kStartGroup, task), kOneSet);
  }
  ProfileGroup(ProfileGroup const &) = delete;
  ProfileGroup & operator=(ProfileGroup const &) = delete;
  ~ProfileGroup() {
    m_costs.Stop();
    m_progress.ReportProfile(CProfileUpdate(CProfileUpdate::kStopGroup, m_costs.Task(L"Total", m_info), m_info),
                             kOneSet);
  }
  void Finish(AString const & info) { m_info = info; }

private:
  desktop::IJobProgress & m_progress;
  SolveCosts m_costs;
  AString m_info = L"refused";
};

} // namespace

class RfJobRunner::NetlistCache {
public:
  rf::Netlist const & Get(AString const & sourceFile) {
    bool const isCurrent =
        m_netlist && sourceFile == m_sourceFile &&
        std::all_of(m_stamps.begin(), m_stamps.end(), [](FileStamp const & stamp) { return stamp.IsCurrent(); });
    if (!isCurrent)
      Read(sourceFile);
    return *m_netlist;
  }

private:
  void Read(AString const & sourceFile) {
    m_netlist.reset();
    m_stamps.clear();
    m_netlist = rf::ReadNetlist(text::ToUtf8(sourceFile));
    m_sourceFile = sourceFile;
    for (std::string const & file : m_netlist->Files())
      m_stamps.emplace_back(file);
  }

  AString m_sourceFile;
  std::optional<rf::Netlist> m_netlist;
  std::vector<FileStamp> m_stamps;
};

RfJobRunner::RfJobRunner() : m_netlists(std::make_unique<NetlistCache>()) {}

RfJobRunner::~RfJobRunner() = default;

bool RfJobRunner::Run(desktop::SolveJob const & job, io::CBlock & result, AString & error,
                      desktop::IJobProgress & progress) {
  try {
    SweepPlan const plan = PlanOfJob(job);
    ProfileGroup group(job, progress);
    SolveCosts reading;
    reading.Start();
    rf::Circuit const circuit = rf::Elaborate(m_netlists->Get(job.sourceFile), OverridesOf(job.variation));
    reading.Stop();
    AString const size = AString::Format(L"%lu elements", circuit.Elements().size());
    progress.ReportProfile(CProfileUpdate(CProfileUpdate::kTask, reading.Task(L"Read netlist", size)), kOneSet);
    Solve(plan, circuit, progress).Run().Write(result);
    group.Finish(plan.method.isAdaptive ? L"adaptive sweep" : L"direct sweep");
    return true;
  } catch (rf::NetlistError const & refused) {
    error = text::FromUtf8(refused.what());
    return false;
  }
}

} // namespace rfcircuit
