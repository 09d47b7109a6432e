#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace bench {

/// One phase of a measurement, which runs in a process of its own.
struct Job {
  std::string engine;
  std::string workload;
  std::size_t n = 0;
  std::size_t payload = 0;
  std::string folder;
  /// Seconds of work after which a phase stops and tells of what it did so far.
  double limit = 0;
};

/// What must stand in the folder before a workload.
enum class Before { Nothing, Committed, Killed };

struct Workload {
  std::string name;
  Before before = Before::Nothing;
  /// Whether the files are others when it is done.
  bool changesFiles = true;
};

std::vector<Workload> const & AllWorkloads();
/// Runs it here and now.  {seconds, ops, bytes_on_disk, peak_rss, and where they apply index_bytes_per_block, stopped}.
nlohmann::json RunPhase(Job const & job);
/// Makes what must stand before a workload.  For Killed, the process kills itself in the end, with nothing closed.
void MakeFiles(Job const & job, Before before);

} // namespace bench
