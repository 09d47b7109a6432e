#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

/// A named span of work, summed over all its runs.  One static object stands at each place that is profiled;
/// the totals of all of them can be listed at any time.
class Profiling {
public:
  Profiling(char const * label, char const * file);
  Profiling(Profiling const &) = delete;
  Profiling & operator=(Profiling const &) = delete;

  void Start();
  void End();

  struct Total {
    std::string label;
    std::string file;
    std::uint64_t runs = 0;
    double seconds = 0.0;
  };
  static std::vector<Total> Totals();

private:
  char const * m_label;
  char const * m_file;
  std::uint64_t m_runs = 0;
  int m_depth = 0;
  std::chrono::steady_clock::time_point m_started;
  std::chrono::steady_clock::duration m_spent{};
  Profiling * m_next = nullptr;
};

/// Starts a span and ends it on every way out.
class ProfilingScope {
public:
  explicit ProfilingScope(Profiling & profiling) : m_profiling(profiling) { m_profiling.Start(); }
  ~ProfilingScope() { m_profiling.End(); }
  ProfilingScope(ProfilingScope const &) = delete;
  ProfilingScope & operator=(ProfilingScope const &) = delete;

private:
  Profiling & m_profiling;
};

/// Profiles the rest of the block under the label.
#define PROFILE_SCOPE(label)                                                                                           \
  static Profiling kvroProfiling(label, __FILE__);                                                                     \
  ProfilingScope kvroProfilingScope(kvroProfiling)
