#pragma once

namespace desktop {

/// What a job took: seconds by the clock and of processors, the processes that it started and waited for included, and
/// the most bytes of memory that its worker held.  0 for what nobody could measure.
struct JobCost {
  double seconds = 0.0;
  double cpuSeconds = 0.0;
  double memory = 0.0;
};

} // namespace desktop
