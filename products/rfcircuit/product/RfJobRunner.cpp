#include "products/rfcircuit/product/RfJobRunner.h"

#include "basekit/text/Utf8.h"
#include "basekit/value/variation/VariationText.h"
#include "products/rfcircuit/engine/netlist/Elaborate.h"
#include "products/rfcircuit/engine/netlist/NetlistError.h"
#include "products/rfcircuit/engine/network/SParameterSolver.h"
#include "products/rfcircuit/product/NetworkData.h"
#include "products/rfcircuit/product/RfSetup.h"
#include "products/rfcircuit/product/SweepSettings.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <optional>
#include <system_error>

namespace rfcircuit {
namespace {

constexpr std::size_t kMostReports = 50;

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

rf::FrequencySweep SweepOfJob(desktop::SolveJob const & job) {
  if (job.setupType != RfSetup::kTypeName)
    throw rf::NetlistError({}, "setup '" + text::ToUtf8(job.setupName) + "'",
                           "its type '" + text::ToUtf8(job.setupType) + "' is not known here",
                           "use " + text::ToUtf8(RfSetup::kTypeName));
  AString error;
  auto const sweep = ReadSweep(job.settings, error);
  if (!sweep)
    throw rf::NetlistError({}, "setup '" + text::ToUtf8(job.setupName) + "'", text::ToUtf8(error), "");
  return *sweep;
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

NetworkData Solve(rf::Circuit const & circuit, std::vector<double> const & frequencies,
                  desktop::IJobProgress & progress) {
  rf::SParameterSolver solver(circuit);
  NetworkData data = NewData(frequencies, solver.Ports());
  std::size_t const stride = std::max<std::size_t>(1, frequencies.size() / kMostReports);
  for (std::size_t i = 0; i < frequencies.size(); ++i) {
    Enter(solver.At(frequencies[i]), i, data);
    std::size_t const done = i + 1;
    if (done % stride == 0 || done == frequencies.size())
      progress.Report(static_cast<double>(done) / static_cast<double>(frequencies.size()),
                      AString::Format(L"%lu of %lu frequencies", done, frequencies.size()));
  }
  return data;
}

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
    rf::FrequencySweep const sweep = SweepOfJob(job);
    rf::Circuit const circuit = rf::Elaborate(m_netlists->Get(job.sourceFile), OverridesOf(job.variation));
    Solve(circuit, sweep.Frequencies(), progress).Write(result);
    return true;
  } catch (rf::NetlistError const & refused) {
    error = text::FromUtf8(refused.what());
    return false;
  }
}

} // namespace rfcircuit
