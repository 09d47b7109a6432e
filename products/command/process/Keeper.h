#pragma once

namespace command {

struct ProcessRequest;

/// How a process ended, as its keeper reports it: plain bytes on a pipe.
struct KeeperReport {
  int end = 0; ///< ProcessOutcome::End
  int code = 0;
  double seconds = 0.0;
  double cpuSeconds = 0.0;
  double peakBytes = 0.0;
};

/// The ends of pipes that a keeper has.
struct KeeperFiles {
  int life = -1;     ///< for reading; its end is the caller's death, or its wish to end
  int report = -1;   ///< for writing
  int output = -1;   ///< standard output of the process
  int messages = -1; ///< its standard error
};

/// The life of the process between the caller and the program, right after its fork: it starts the program in a group
/// of its own, is the one whom orphans fall to, stops all of them when there is a reason, reports, and exits.  A caller
/// that dies leaves it alive for that.
[[noreturn]] void KeepProcess(ProcessRequest const & request, KeeperFiles const & files);

} // namespace command
