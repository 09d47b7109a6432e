#include "desktop/product/PeakMemory.h"

#include "desktop/solve/FileDescriptor.h"

#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/resource.h>

namespace desktop {

namespace {

double PeakWithParent() {
  rusage usage{};
  return ::getrusage(RUSAGE_SELF, &usage) == 0 ? 1024.0 * static_cast<double>(usage.ru_maxrss) : 0.0;
}

} // namespace

double PeakMemory() {
  char bytes[4096];
  FileDescriptor const file(::open("/proc/self/status", O_RDONLY | O_CLOEXEC));
  ssize_t const count = file.Get() < 0 ? -1 : ::read(file.Get(), bytes, sizeof bytes - 1);
  if (count <= 0)
    return PeakWithParent();
  bytes[count] = '\0';
  char const * const line = std::strstr(bytes, "VmHWM:");
  return line ? 1024.0 * std::strtod(line + std::strlen("VmHWM:"), nullptr) : PeakWithParent();
}

} // namespace desktop
