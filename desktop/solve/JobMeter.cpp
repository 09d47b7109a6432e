#include "desktop/solve/JobMeter.h"

#include "desktop/product/PeakMemory.h"
#include "desktop/solve/FileDescriptor.h"

#include <fcntl.h>
#include <sys/resource.h>

namespace desktop {

namespace {

double Seconds(timeval const & time) {
  return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
}

double CpuSeconds() {
  double sum = 0;
  for (auto const who : {RUSAGE_SELF, RUSAGE_CHILDREN}) {
    rusage usage{};
    if (::getrusage(who, &usage) == 0)
      sum += Seconds(usage.ru_utime) + Seconds(usage.ru_stime);
  }
  return sum;
}

// Where the system refuses, the peak stays that of the process.
void BeginPeakAnew() {
  FileDescriptor const file(::open("/proc/self/clear_refs", O_WRONLY | O_CLOEXEC));
  if (file.Get() >= 0) {
    [[maybe_unused]] auto const ignored = ::write(file.Get(), "5", 1);
  }
}

} // namespace

JobMeter::JobMeter() {
  BeginPeakAnew();
  m_cpuAtStart = CpuSeconds();
  m_start = std::chrono::steady_clock::now();
}

JobCost JobMeter::Read() const {
  JobCost cost;
  cost.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - m_start).count();
  cost.cpuSeconds = CpuSeconds() - m_cpuAtStart;
  cost.memory = PeakMemory();
  return cost;
}

} // namespace desktop
