#include "products/rfcircuit/product/RfJobRunner.h"

#include "basekit/profile/CProfileUpdate.h"
#include "basekit/text/Utf8.h"
#include "basekit/value/variation/VariationText.h"
#include "products/rfcircuit/engine/netlist/Elaborate.h"
#include "products/rfcircuit/engine/netlist/NetlistError.h"
#include "products/rfcircuit/product/NetworkData.h"
#include "products/rfcircuit/product/RfSetup.h"
#include "products/rfcircuit/product/SolveCosts.h"
#include "products/rfcircuit/product/SolveFiles.h"
#include "products/rfcircuit/product/SweepPlan.h"
#include "products/rfcircuit/product/SweepSolve.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <system_error>

namespace rfcircuit {
namespace {

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

/// The profile group of a job: open while this lives.
class ProfileGroup {
public:
  ProfileGroup(desktop::SolveJob const & job, desktop::IJobProgress & progress) : m_progress(progress) {
    m_costs.Start();
    CProfileTask const task(L"Solve", L"setup " + job.setupName);
    m_progress.ReportProfile(CProfileUpdate(CProfileUpdate::kStartGroup, task), kRecordSet);
  }
  ProfileGroup(ProfileGroup const &) = delete;
  ProfileGroup & operator=(ProfileGroup const &) = delete;
  ~ProfileGroup() {
    m_costs.Stop();
    m_progress.ReportProfile(CProfileUpdate(CProfileUpdate::kStopGroup, m_costs.Task(L"Total", m_info), m_info),
                             kRecordSet);
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
    progress.ReportProfile(CProfileUpdate(CProfileUpdate::kTask, reading.Task(L"Read netlist", size)), kRecordSet);
    NetworkData const data = SolveSweep(plan, circuit, progress);
    data.Write(result);
    DeliverFiles(plan, circuit, data, job, result);
    group.Finish(plan.method.isAdaptive ? L"adaptive sweep" : L"direct sweep");
    return true;
  } catch (rf::NetlistError const & refused) {
    error = text::FromUtf8(refused.what());
    return false;
  }
}

} // namespace rfcircuit
