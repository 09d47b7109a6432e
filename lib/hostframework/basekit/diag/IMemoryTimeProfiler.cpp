#include "basekit/diag/IMemoryTimeProfiler.h"

namespace {

class SilentProfiler : public IMemoryTimeProfiler {
public:
  void Begin(char const *) override {}
  void End(char const *) override {}
};

SilentProfiler silentProfiler;
IMemoryTimeProfiler * installedProfiler = &silentProfiler;

} // namespace

IMemoryTimeProfiler::~IMemoryTimeProfiler() = default;

IMemoryTimeProfiler & IMemoryTimeProfiler::Instance() { return *installedProfiler; }

IMemoryTimeProfiler * IMemoryTimeProfiler::SetInstance(IMemoryTimeProfiler * profiler) {
  IMemoryTimeProfiler * const former = installedProfiler;
  installedProfiler = profiler ? profiler : &silentProfiler;
  return former;
}
