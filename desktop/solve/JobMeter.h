#pragma once

#include "desktop/solve/JobCost.h"

#include <chrono>

namespace desktop {

/// Measures what this process spends from its construction on: one at a time, as it begins the peak of memory anew.
class JobMeter {
public:
  JobMeter();
  JobCost Read() const;

private:
  std::chrono::steady_clock::time_point m_start;
  double m_cpuAtStart;
};

} // namespace desktop
