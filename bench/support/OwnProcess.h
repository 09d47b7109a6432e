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

} // namespace bench
