#pragma once

#include <cstddef>
#include <string>

namespace bench {

/// What a recovery finds: a committed library of a design with one setup and one solution, and beside it a private file
/// with blocks that a solver stored since.
struct CrashedDesign {
  std::string folder;
  std::size_t blocks = 0;
  /// Doubles in each block.
  std::size_t payload = 0;
  bool isBinary = true;
};

/// Makes the files and kills the process.
[[noreturn]] void SolveAndDie(CrashedDesign const & design);

struct Recovered {
  double seconds = 0;
  std::size_t blocks = 0;
};
/// The manager takes the private file over.  Throws when it doesn't take every block.
Recovered Recover(CrashedDesign const & design);

/// Seconds to read the private file's bytes, write them to another file and sync that.
double CopyAndSync(CrashedDesign const & design);

} // namespace bench
