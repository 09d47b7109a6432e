#pragma once

#include "bench/store/Workloads.h"

#include <filesystem>
#include <map>

namespace bench {

/// Repeats workloads of one engine at one size, each time in a process of its own and on files of their own, which
/// are made once and copied; a copy is on the disk before the clock starts.
class Series {
public:
  Series(Job const & job, int repeats, std::filesystem::path const & root);
  ~Series();
  Series(Series const &) = delete;
  Series & operator=(Series const &) = delete;

  /// The repeat in the middle, with what makes the line of a result; "failed" when one failed.
  nlohmann::json Run(Workload const & workload);

private:
  nlohmann::json RunOnce(Workload const & workload);
  std::filesystem::path const & Files(Before before);
  std::vector<std::string> Arguments(std::string const & phase, std::filesystem::path const & folder) const;

  Job m_job;
  int m_repeats;
  std::filesystem::path m_root;
  std::map<Before, std::filesystem::path> m_files;
};

} // namespace bench
