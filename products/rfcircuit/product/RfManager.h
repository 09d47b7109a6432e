#pragma once

#include "desktop/product/ProductSolutionManager.h"

namespace rfcircuit {

/// The solved data of one circuit.  Results that are no blocks lie in the folder "<design>.rf".
class RfManager : public desktop::ProductSolutionManager {
public:
  static AString const kProductName;

  using ProductSolutionManager::ProductSolutionManager;

  BaseSimulationSetup * CreateSimulationSetup(ISimulationSetup const * source) override;
  BaseSimulationSetup * CreateSimulationSetup(AString const & name, AString const & typeName) override;
  desktop::ImportedSolution * CreateImportedSolution(BaseSimulationSetup const & setup, long id) override;

  /// A change of port settings is a minor edit: nothing is solved anew, and it reaches the expressions whose quantities
  /// depend on what it changed.
  using ProductSolutionManager::IsExpressionAffectedByMinorEdits;
  bool IsExpressionAffectedByMinorEdits(KelvroCommand const * command, CParsedExpressionCache * cache) const override;
  bool IsReportTypeAffectedByMinorEdits(KelvroCommand const * command, unsigned reportType) const override;
  /// No context as a whole: expression by expression is exact.
  bool IsSimContextDataAffectedByMinorEdits(KelvroCommand const * command, SimValueContext const * context,
                                            unsigned reportType) const override;

  /// Solved networks go from circuit to circuit as desktop::TransferredNetwork tells; other kinds of transfer are not
  /// offered.
  bool RetrieveTransferData(AString const & provider, AString const & consumer, IDesignInstance * instance,
                            AString const & transferType, io::CBlock const & in, io::CBlock & out,
                            bool & flag) const override;
  bool OnRefreshTransferData(AString const & provider, AString const & consumer, IDesignInstance * instance,
                             AString const & transferType, io::CBlock const & in, io::CBlock & out,
                             bool & flag) override;
  bool OnAcquireTransferDataConnection(AString const & consumer, IDesignInstance * instance,
                                       AString const & transferType, io::CBlock const & in, io::CBlock & out,
                                       bool & flag) override;
  bool OnReleaseTransferDataConnection(AString const & consumer, IDesignInstance * instance,
                                       AString const & transferType, io::CBlock const & in, io::CBlock & out,
                                       bool & flag) override;

protected:
  /// Imported setups come under the base's type name, whatever the design's block says.
  BaseSimulationSetup * CreateSimulationSetup(long id, long version, AString const & typeName) override;
  AString GetDesignResultsFolderName() const override;

private:
  void SetupConvDefs() override;
};

} // namespace rfcircuit
