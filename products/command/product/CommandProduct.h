#pragma once

#include "desktop/product/IDesktopProduct.h"
#include "desktop/product/IQuantityProduct.h"

namespace command {

/// Any executable as a solver, told by a solver file: values go in by files, arguments or standard input, quantities
/// come out of what it writes.  A setup is one set of texts for the file's settings.
class CommandProduct : public desktop::IDesktopProduct, public desktop::IQuantityProduct {
public:
  AString GetName() const override;
  bool ReadSource(LongFileName const & file, desktop::SourceDescription & description, AString & error) const override;
  std::unique_ptr<desktop::ProductSolutionManager> MakeManager(IDesign * design) const override;
  /// Null for a type that is not this product's.
  BaseSimulationSetup * CreateSetup(desktop::ProductSolutionManager & manager, desktop::SourceSetup const & setup,
                                    KelvroCommand * command) const override;
  /// "steps=1000 method=rk4", or "default".
  bool ReadSettings(AString const & words, desktop::SourceSetup & setup, AString & error) const override;
  std::vector<AString> GetSolutionNames(AString const & setupType) const override;
  bool FitSettings(LongFileName const & source, desktop::SourceSetup & setup, AString & error) const override;
  AString DescribeSettings(io::CBlock const & settings) const override;
  bool ApplySettings(BaseSimulationSetup & setup, io::CBlock const & settings) const override;
  void DescribeJob(BaseSimulationSetup const & setup, desktop::SolveJob & job) const override;
  std::unique_ptr<desktop::IJobRunner> MakeJobRunner() const override;

  std::vector<desktop::QuantityValues> GetQuantities(BaseSolutionVariation const & variation) const override;
};

} // namespace command
