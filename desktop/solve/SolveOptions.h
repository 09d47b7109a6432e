#pragma once

#include "basekit/text/AString.h"

#include <vector>

namespace desktop {

/// How points are solved.
struct SolveOptions {
  int workers = 0;                  ///< processes; 0: one for each core
  double secondsPerJob = 3600.0;    ///< a worker that takes longer is stopped, and its job has failed
  double secondsToStart = 60.0;     ///< a worker that is not ready by then is stopped
  AString workerProgram;            ///< the executable; empty: the running one
  std::vector<AString> workerWords; ///< the words that make the executable a worker
};

} // namespace desktop
