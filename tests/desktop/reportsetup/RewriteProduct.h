#pragma once

#include "CoreInterfaces/solution/IProductSolutionMgrForPlot.h"
#include "CoreInterfaces/solution/IProductSolutionMgrForReportSetupUI.h"
#include "CoreInterfaces/solution/ISimDataExtractor2.h"
#include "CoreInterfaces/solution/ISimDataExtractor3.h"
#include "plotkit/simvalue/IContextedDerivedDataInstance.h"
#include "tests/desktop/support/FakeExtractor.h"
#include "tests/desktop/support/FakeProduct.h"

namespace support {

class RewriteExtractor;

/// One solved variation, which its extractor loads and gives up.
class RewriteInstance final : public IContextedSolutionInstance {
public:
  RewriteInstance(RewriteExtractor & extractor, AString const & variation, long version)
      : m_extractor(extractor), m_variation(variation), m_version(version) {}
  long GetVersionID() const override { return m_version; }
  IDerivedDataDefinition * GetDerivedDataDefinition() override { return nullptr; }
  void GetMajorVariableValues(VariableValues & values) const override;
  bool LoadInstance(AutoVectorOfClonablePtrs<IExtendedLoadInfo> const & infos, IProgressMonitor * progress) override;
  void NotifyDoneUsingInstance() override;
  void GetImmediateParentLoadDefinitions(AutoVectorOfClonablePtrs<IDerivedDataDefinition> &,
                                         IProgressMonitor *) override {}

private:
  RewriteExtractor & m_extractor;
  AString m_variation;
  long m_version;
};

/// The extractor of a product that was made for the reporter rewrite.  It counts what it loads.
class RewriteExtractor : public FakeExtractor, public ISimDataExtractor2, public ISimDataExtractor3 {
public:
  using FakeExtractor::FakeExtractor;

  ISimDataExtractor3 * GetISimDataExtractor3() override { return this; }

  // ISimDataExtractor2
  long GetVersionIDForPostprocessing(IDerivedDataDefinition const * definition) const override;
  void GetMajorVariables(std::vector<Variable *> & variables, IDerivedDataDefinition const * definition,
                         SimValueContext const * context) const override;
  void GetAvailableInstances(std::vector<IContextedSolutionInstance *> & instances,
                             IDerivedDataDefinition const * definition, IProgressMonitor * progress) const override;

  // ISimDataExtractor3
  void Extractor3Op1() override {}
  void Extractor3Op2() override {}
  void Extractor3Op3() override {}
  void Extractor3Op4() override {}
  void Extractor3Op5() override {}
  void Extractor3Op6() override {}
  void Extractor3Op7() override {}
  using FakeExtractor::GetQuantityType;
  void GetQuantityType(ValueState & state, bool & isInteger, AString const & quantity, SimValueContext const & context,
                       unsigned reportType) const override;
  void GetEnumQuantityText(AString &, AString const &, SimValueContext const &, unsigned, double) const override {}
  void Extractor3Op10() override {}
  void Extractor3Op11() override {}
  void Extractor3Op12() override {}
  void Extractor3Op13() override {}
  void Extractor3Op14() override {}
  void Extractor3Op15() override {}
  void Extractor3Op16() override {}

  int loads = 0;
  int inMemory = 0; ///< instances whose user is not done
  std::vector<AString> asked;

private:
  mutable std::vector<std::unique_ptr<RewriteInstance>> m_instances;
};

class RewriteSetup : public FakeSetup {
public:
  using FakeSetup::FakeSetup;
  BaseSolution * CreateSolution(long id, long version) override;
  BaseSolution * CreateSolution(AString const & name) override;
};

class RewriteManager : public FakeManager,
                       public IProductSolutionMgrForReportSetupUI,
                       public IProductSolutionMgrForPlot {
public:
  using FakeManager::FakeManager;
  BaseSimulationSetup * CreateSimulationSetup(long id, long version, AString const & typeName) override;
  BaseSimulationSetup * CreateSimulationSetup(AString const & name, AString const & typeName) override;
  BaseSimulationSetup * CreateSimulationSetup(ISimulationSetup const * source) override;

  // IProductSolutionMgrForReportSetupUI
  using FakeManager::GetAvailableSolutions;
  void GetAvailableSolutions(std::vector<ISolution *> & solutions, unsigned reportType) const override;

  // IProductSolutionMgrForPlot: one function of its own.
  int GetProductRangedFunctionCategoryNames(std::vector<AString> & names, unsigned reportType,
                                            rep::DisplayType displayType) const override;
  int GetProductRangedFunctionNames(std::vector<AString> & names, AString const & category, unsigned reportType,
                                    rep::DisplayType displayType) const override;
  AString GetProductRangedFunctionDescription(AString const & function) const override;
  bool GetProductRangedFunctionDefaultParameters(PropList &, AString const &) const override { return false; }
  bool ScaleProductRangedFunctionValueToGivenUnits(double &, AString &, AString const &, double, Units::FullUnitType,
                                                   Units::FullUnitType) const override {
    return false;
  }
};

/// The sources and numbers of FakeProduct, for the reporter rewrite.
class RewriteProduct : public FakeProduct {
public:
  AString GetName() const override { return L"rewrite"; }
  std::unique_ptr<desktop::ProductSolutionManager> MakeManager(IDesign * design) const override;
};

} // namespace support
