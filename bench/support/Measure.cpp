#include "bench/support/Measure.h"

#include <filesystem>
#include <fstream>
#include <malloc.h>
#include <stdexcept>

namespace bench {

std::uint64_t HeapInUse() {
  auto const info = ::mallinfo2();
  return info.uordblks + info.hblkhd;
}

// Of this program's image alone: what getrusage tells survives an exec.
std::uint64_t PeakMemory() {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;)
    if (word == "VmHWM:") {
      std::uint64_t kilobytes = 0;
      status >> kilobytes;
      return kilobytes * 1024;
    }
  return 0;
}

std::uint64_t BytesOfFiles(std::string const & folder) {
  std::uint64_t sum = 0;
  for (auto const & entry : std::filesystem::recursive_directory_iterator(folder))
    if (entry.is_regular_file())
      sum += entry.file_size();
  return sum;
}

void Require(bool holds, std::string const & what) {
  if (!holds)
    throw std::runtime_error(what);
}

} // namespace bench
