#include "basekit/diag/Debug.h"

namespace diag {

namespace {
DebugSink s_sink = nullptr;
}

DebugSink SetDebugSink(DebugSink sink) {
  DebugSink const former = s_sink;
  s_sink = sink;
  return former;
}

bool IsDebugOn() { return s_sink != nullptr; }

void WriteDebug(AString const & category, int level, AString const & text) {
  if (s_sink)
    s_sink(category, level, text);
}

} // namespace diag
