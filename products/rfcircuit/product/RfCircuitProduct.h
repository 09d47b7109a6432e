#pragma once

#include "desktop/product/IComparisonProduct.h"
#include "desktop/product/IDesktopProduct.h"
#include "desktop/product/IImportProduct.h"
#include "desktop/product/IPortProduct.h"
#include "desktop/product/IQuantityProduct.h"
#include "desktop/product/ISelfContainedSource.h"

namespace rfcircuit {

/// Linear RF networks from a netlist: every `.sp` line is a setup, every plain number that a `.param` line of the main
/// file defines is a design variable.
class RfCircuitProduct : public desktop::IDesktopProduct,
                         public desktop::IComparisonProduct,
                         public desktop::IImportProduct,
                         public desktop::INetworkProduct,
                         public desktop::IPortProduct,
                         public desktop::IQuantityProduct,
                         public desktop::ISelfContainedSource {
public:
  AString GetName() const override;
  bool ReadSource(LongFileName const & file, desktop::SourceDescription & description, AString & error) const override;
  std::unique_ptr<desktop::ProductSolutionManager> MakeManager(IDesign * design) const override;
  /// Null for a type that is not this product's, or settings without a sensible sweep.
  BaseSimulationSetup * CreateSetup(desktop::ProductSolutionManager & manager, desktop::SourceSetup const & setup,
                                    KelvroCommand * command) const override;
  /// The words of a .sp line: "lin 201 10meg 2g", "list 1g 2g".
  bool ReadSettings(AString const & words, desktop::SourceSetup & setup, AString & error) const override;
  std::vector<AString> GetSolutionNames(AString const & setupType) const override;
  AString DescribeSettings(io::CBlock const & settings) const override;
  bool ApplySettings(BaseSimulationSetup & setup, io::CBlock const & settings) const override;
  void DescribeJob(BaseSimulationSetup const & setup, desktop::SolveJob & job) const override;
  std::unique_ptr<desktop::IJobRunner> MakeJobRunner() const override;

  bool WriteTouchstone(BaseSolutionVariation const & variation, LongFileName const & fileWithoutExtension, int digits,
                       LongFileName & written, AString & error) const override;

  std::vector<Port> GetPorts(desktop::ProductSolutionManager const & manager) const override;
  void ShowPorts(desktop::ProductSolutionManager & manager, std::vector<Port> const & ports,
                 KelvroCommand & command) const override;

  std::vector<desktop::QuantityValues> GetQuantities(BaseSolutionVariation const & variation) const override;

  /// Touchstone files, by the number of ports in their names.  Ports are named by their numbers, so that no setting of
  /// the circuit's ports reaches measured data.
  AString GetImportableFiles() const override;
  bool IsImportable(LongFileName const & file) const override;
  bool ReadImport(LongFileName const & file, LongFileName const & source, desktop::ImportedData & data,
                  AString & error) const override;

  /// S-parameters as they were solved or measured; see rf::Compare.
  bool Compare(BaseSolutionVariation const & first, BaseSolutionVariation const & second,
               desktop::Comparison & comparison, AString & error) const override;
};

} // namespace rfcircuit
