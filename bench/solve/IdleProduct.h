#pragma once

#include "desktop/product/IDesktopProduct.h"

namespace bench {

/// A product that solves nothing: its jobs wait as long as the source's first word tells, in milliseconds, report a few
/// passes and costs, and give a list of numbers.  What is left of the time of a solve is the desktop's own.
class IdleProduct : public desktop::IDesktopProduct {
public:
  static inline wchar_t const * const kName = L"idle";
  static constexpr int kPasses = 5;

  AString GetName() const override { return kName; }
  bool ReadSource(LongFileName const & file, desktop::SourceDescription & description, AString & error) const override;
  std::unique_ptr<desktop::ProductSolutionManager> MakeManager(IDesign * design) const override;
  BaseSimulationSetup * CreateSetup(desktop::ProductSolutionManager & manager, desktop::SourceSetup const & setup,
                                    KelvroCommand * command) const override;
  std::vector<AString> GetSolutionNames(AString const &) const override { return {L"Points"}; }
  bool ReadSettings(AString const &, desktop::SourceSetup &, AString &) const override { return false; }
  AString DescribeSettings(io::CBlock const &) const override { return AString(); }
  bool ApplySettings(BaseSimulationSetup &, io::CBlock const &) const override { return true; }
  void DescribeJob(BaseSimulationSetup const & setup, desktop::SolveJob & job) const override;
  std::unique_ptr<desktop::IJobRunner> MakeJobRunner() const override;
};

} // namespace bench
