#pragma once

#include <string>
#include <vector>

namespace bench {

struct Ended {
  /// What it wrote to standard output.
  std::string output;
  int exitCode = 0;
  /// The signal that ended it, or 0.
  int signal = 0;
};

/// Runs this program anew, in a process of its own, and waits for it.
Ended RunSelf(std::vector<std::string> const & arguments);
/// Runs another program, looked up in the path, and waits for it; the exit code is 127 where there is none of the name.
Ended RunTool(std::vector<std::string> const & words);

} // namespace bench
