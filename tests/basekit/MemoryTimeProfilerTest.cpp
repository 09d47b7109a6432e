#include "basekit/diag/IMemoryTimeProfiler.h"

#include <gtest/gtest.h>

#include <string>

namespace {

struct Log : IMemoryTimeProfiler {
  void Begin(char const * label) override { text += std::string("<") + label; }
  void End(char const * label) override { text += std::string(label) + ">"; }
  std::string text;
};

} // namespace

TEST(MemoryTimeProfiler, ScopesEndAtTheProfilerThatTheyBeganWith) {
  Log log;
  IMemoryTimeProfiler * const former = IMemoryTimeProfiler::SetInstance(&log);
  {
    MemoryTimeProfilerScope const outer("outer");
    { MemoryTimeProfilerScope const inner("inner"); }
    EXPECT_EQ(IMemoryTimeProfiler::SetInstance(former), &log);
    MemoryTimeProfilerScope const silent("silent");
  }
  EXPECT_EQ(log.text, "<outer<innerinner>outer>");
}
