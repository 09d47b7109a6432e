#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace command {

/// A process to run: in a folder, with an input, within limits.
struct ProcessRequest {
  std::vector<std::string> words; ///< the program, found on the PATH when it has no slash, and its arguments
  std::filesystem::path folder;   ///< the current folder of the process; removed when the caller dies
  std::filesystem::path input;    ///< standard input; empty: nothing to read
  double secondsLimit = 3600.0;
  std::size_t bytesLimit = 256'000'000; ///< of standard output, when that is kept, and of each file that is written
  bool keepsOutput = false;             ///< else standard output is read and dropped
};

struct ProcessOutcome {
  enum class End {
    kExited,      ///< with the code as exit status
    kSignalled,   ///< by the signal of the code
    kNotStarted,  ///< the code is the system's error
    kTimeLimit,   ///< stopped
    kOutputLimit, ///< stopped
    kLeftRunning, ///< it ended, but processes that it started did not, and were stopped; the code is their number
    kLost         ///< nothing is known of it
  };
  End end = End::kLost;
  int code = 0;
  std::string output;   ///< standard output, when it is kept
  std::string messages; ///< the end of standard error, or of a standard output that is not kept
  double seconds = 0.0;
  double cpuSeconds = 0.0; ///< of the process and all that it started and that ended by itself
  double peakBytes = 0.0;  ///< memory of the largest process; a few megabytes are the start's own
};

/// Runs a process to its end, with all that it starts: these are in nobody's way afterwards, whether they made groups
/// or sessions of their own or not, and also when the caller is killed meanwhile.  Throws SourceError when the system
/// has no room for processes.
ProcessOutcome RunProcess(ProcessRequest const & request);

} // namespace command
