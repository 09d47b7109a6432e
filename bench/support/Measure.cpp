#include "bench/support/Measure.h"

#include <filesystem>
#include <fstream>
#include <malloc.h>
#include <stdexcept>
#include <time.h>

namespace bench {

double ProcessorSeconds() {
  timespec now{};
  Require(::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now) == 0, "the processor's clock can't be read");
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

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
