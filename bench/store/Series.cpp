#include "bench/store/Series.h"

#include "bench/support/Measure.h"
#include "bench/support/OwnProcess.h"

#include <algorithm>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace bench {

namespace fs = std::filesystem;

namespace {

void CopyToDisk(fs::path const & from, fs::path const & to) {
  fs::create_directories(to);
  for (auto const & entry : fs::directory_iterator(from)) {
    auto const target = to / entry.path().filename();
    fs::copy_file(entry.path(), target);
    int const file = ::open(target.c_str(), O_RDWR | O_CLOEXEC);
    Require(file >= 0 && ::fsync(file) == 0, "cannot sync " + target.string());
    ::close(file);
  }
}

} // namespace

Series::Series(Job const & job, int repeats, fs::path const & root)
    : m_job(job), m_repeats(repeats), m_root(root / (job.engine + "-" + std::to_string(job.n))) {
  fs::create_directories(m_root);
}

Series::~Series() {
  std::error_code ignored;
  fs::remove_all(m_root, ignored);
}

std::vector<std::string> Series::Arguments(std::string const & phase, fs::path const & folder) const {
  return {"--phase",   phase,
          "--engine",  m_job.engine,
          "--n",       std::to_string(m_job.n),
          "--payload", std::to_string(m_job.payload),
          "--limit",   std::to_string(m_job.limit),
          "--dir",     folder.string()};
}

fs::path const & Series::Files(Before before) {
  auto const [at, isNew] = m_files.emplace(before, m_root / (before == Before::Killed ? "killed" : "committed"));
  if (!isNew)
    return at->second;
  fs::create_directories(at->second);
  Ended const ended = RunSelf(Arguments(before == Before::Killed ? "make_killed" : "make_committed", at->second));
  bool const isGood = before == Before::Killed ? ended.signal == SIGKILL : ended.exitCode == 0 && ended.signal == 0;
  if (!isGood)
    m_files.erase(at);
  Require(isGood, "the files for it could not be made");
  return at->second;
}

nlohmann::json Series::RunOnce(Workload const & workload) {
  fs::path const scratch = m_root / "scratch";
  fs::path folder = scratch;
  if (workload.before == Before::Nothing)
    fs::create_directories(folder);
  else if (workload.changesFiles)
    CopyToDisk(Files(workload.before), folder);
  else
    folder = Files(workload.before);
  Ended const ended = RunSelf(Arguments(workload.name, folder));
  fs::remove_all(scratch);
  Require(ended.exitCode == 0 && ended.signal == 0,
          ended.signal == SIGALRM ? "it took too long" : "the process failed, signal " + std::to_string(ended.signal));
  return nlohmann::json::parse(ended.output);
}

nlohmann::json Series::Run(Workload const & workload) {
  nlohmann::json line = {
      {"engine", m_job.engine}, {"workload", workload.name}, {"n", m_job.n}, {"payload", m_job.payload}};
  std::vector<nlohmann::json> runs;
  try {
    do
      runs.push_back(RunOnce(workload));
    while (static_cast<int>(runs.size()) < m_repeats && !runs.back().contains("stopped"));
  } catch (std::exception const & failure) {
    line["failed"] = failure.what();
    return line;
  }
  if (runs.back().contains("stopped"))
    runs = {runs.back()};
  auto const seconds = [](nlohmann::json const & run) { return run["seconds"].get<double>(); };
  std::ranges::sort(runs, {}, seconds);
  auto const & middle = runs[runs.size() / 2];
  line.update(middle);
  line["per_op_us"] = seconds(middle) * 1e6 / std::max(1.0, middle["ops"].get<double>());
  line["fastest"] = seconds(runs.front());
  line["slowest"] = seconds(runs.back());
  line["repeats"] = runs.size();
  return line;
}

} // namespace bench
