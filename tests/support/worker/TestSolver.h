#pragma once

#include "desktop/product/IDesktopProduct.h"
#include "desktop/product/ProductSolutionManager.h"

#include <string>

namespace support {

/// A product whose jobs do what the variation's words say: "abort", "exit", "sleep", "print", "throw", "refuse",
/// "deep", "large", "slow", "tell", "passes" (three of them, each with its costs), "slowly" (with a pause between
/// them), "flood" with "passes" or "costs" (without an end), "heap" (takes 64 MB for a while), "peak" (a task with the
/// memory of the worker), "leave" (a process stays behind that holds the pipes), "gossip" (megabytes on standard
/// error); anything else is solved.  The result is the list Values with the length of the variation's text, the number
/// of jobs that this worker has solved, the worker's process, and of a job with sources the number that the source file
/// held when it was read.
class TestSolver : public desktop::IDesktopProduct {
public:
  static inline wchar_t const * const kName = L"testsolver";

  AString GetName() const override { return kName; }
  bool ReadSource(LongFileName const &, desktop::SourceDescription &, AString &) const override { return false; }
  std::unique_ptr<desktop::ProductSolutionManager> MakeManager(IDesign *) const override { return nullptr; }
  BaseSimulationSetup * CreateSetup(desktop::ProductSolutionManager &, desktop::SourceSetup const &,
                                    KelvroCommand *) const override {
    return nullptr;
  }
  bool ReadSettings(AString const &, desktop::SourceSetup &, AString &) const override { return false; }
  std::vector<AString> GetSolutionNames(AString const &) const override { return {}; }
  AString DescribeSettings(io::CBlock const &) const override { return AString(); }
  bool ApplySettings(BaseSimulationSetup &, io::CBlock const &) const override { return false; }
  void DescribeJob(BaseSimulationSetup const & setup, desktop::SolveJob & job) const override;
  std::unique_ptr<desktop::IJobRunner> MakeJobRunner() const override;
};

/// Puts the right checksum into a frame's header that was tampered with.
void SignHeader(std::string & frame);

} // namespace support
