#include "CoreInterfaces/solution/IProductSolutionMgrForPlot.h"
#include "CoreInterfaces/solution/IProductSolutionMgrForReportSetupUI.h"
#include "basekit/diag/Assert.h"
#include "basekit/io/CBlock.h"
#include "basekit/value/ComplexValue.h"
#include "basekit/value/FloatValue.h"
#include "tests/solutionmanager/support/TestProduct.h"
#include "tests/support/AssertWatch.h"

#include <limits>
#include <type_traits>
#include <typeinfo>

using support::AssertWatch;

namespace {

/// A product that overrides nothing; what a product may call is shown.
class IdleProduct : public BaseSolutionManager {
public:
  using BaseSolutionManager::AllFilesRead;
  using BaseSolutionManager::AllFilesWrite;
  using BaseSolutionManager::BaseSolutionManager;
  using BaseSolutionManager::CreateSimulationSetup;
  using BaseSolutionManager::DefinitionFileRead;
  using BaseSolutionManager::DefinitionFileWrite;
  using BaseSolutionManager::GetDesignResultsFolderName;
  using BaseSolutionManager::GetFilesAndDirsToCopyForExportingVariation;
  using BaseSolutionManager::GetQSolBlocksForExportingVariation;
  using BaseSolutionManager::GetReportTypeForSimValues;
  using BaseSolutionManager::RecoverDerivedDataVersionConsistency;
  using BaseSolutionManager::SetSimValueContext;
};

static_assert(!std::is_abstract_v<IdleProduct>, "a product need not override anything to be made");
static_assert(std::is_base_of_v<ISolutionMgr, BaseSolutionManager>);
static_assert(std::is_base_of_v<ISolutionReporter, BaseSolutionManager>);
static_assert(std::is_base_of_v<KelvroIDServer, BaseSolutionManager>);
static_assert(std::is_base_of_v<ITaskSetupManager, BaseSolutionManager>);
static_assert(std::is_base_of_v<ISolutionMgrForReportSetupUI, BaseSolutionManager>);
static_assert(std::is_base_of_v<ISolutionManagerForReports, BaseSolutionManager>);
static_assert(std::is_base_of_v<ISolutionMgrForSweepwise, BaseSolutionManager>);
static_assert(std::is_base_of_v<ISolutionMgrForPlot, BaseSolutionManager>);
static_assert(std::is_base_of_v<ISolutionMgrForHubIntegration, BaseSolutionManager>);
static_assert(std::has_virtual_destructor_v<BaseSolutionManager>);
static_assert(std::has_virtual_destructor_v<ISolutionMgrForReportSetupUI>);
static_assert(std::has_virtual_destructor_v<ISolutionManagerForReports>);
static_assert(std::has_virtual_destructor_v<ISolutionMgrForSweepwise>);

/// One that plots and sets reports up.
class PlottingProduct : public IdleProduct,
                        public IProductSolutionMgrForPlot,
                        public IProductSolutionMgrForReportSetupUI {
public:
  using IdleProduct::IdleProduct;
  int GetProductRangedFunctionCategoryNames(std::vector<AString> &, unsigned, rep::DisplayType) const override {
    return 0;
  }
  int GetProductRangedFunctionNames(std::vector<AString> &, AString const &, unsigned,
                                    rep::DisplayType) const override {
    return 0;
  }
  AString GetProductRangedFunctionDescription(AString const &) const override { return {}; }
  bool GetProductRangedFunctionDefaultParameters(PropList &, AString const &) const override { return false; }
  bool ScaleProductRangedFunctionValueToGivenUnits(double &, AString &, AString const &, double, Units::FullUnitType,
                                                   Units::FullUnitType) const override {
    return false;
  }
  void GetAvailableSolutions(std::vector<ISolution *> &, unsigned) const override {}
};

AString lastAssertFile;
void KeepFile(char const * file, int, char const *) {
  std::string const text(file);
  lastAssertFile = AString(std::wstring(text.begin(), text.end()));
}

class ManagerDefaultsTest : public testing::Test {
protected:
  ManagerDefaultsTest() : m_design(AString(m_folder.Path().wstring())) {}

  /// The call reports this text once, and nothing else.
  template <class Call> auto Reports(char const * text, Call call) {
    if constexpr (std::is_void_v<decltype(call())>) {
      call();
      EXPECT_EQ(AssertWatch::Take(), (std::vector<std::string>{text}));
    } else {
      auto const result = call();
      EXPECT_EQ(AssertWatch::Take(), (std::vector<std::string>{text}));
      return result;
    }
  }

  support::TemporaryFolder m_folder;
  support::TestKitDesktop m_desktop;
  support::TestDesign m_design;
  IdleProduct m_product{&m_design};
};

} // namespace

TEST_F(ManagerDefaultsTest, WhatAProductMustOverrideSaysSoAndGivesNothing) {
  EXPECT_EQ(Reports("0", [&] { return m_product.Simulate(nullptr, nullptr, nullptr); }), 0);
  EXPECT_EQ(Reports("0", [&] { return m_product.SimulateBlocking(nullptr, nullptr, nullptr); }), nullptr);
  RunStatusType status = RunStatusType::kNotRun;
  EXPECT_EQ(Reports("0", [&] { return m_product.GetISolution(L"s", nullptr, nullptr, status, false); }), nullptr);
  EXPECT_EQ(Reports("!ACHAR(\"Please implement GetDesignResultsFolderName\")",
                    [&] { return m_product.GetDesignResultsFolderName(); }),
            AString());
  SimValueContext context;
  Reports("0", [&] { m_product.SetSimValueContext(context, L"c", nullptr, {1}); });
  EXPECT_TRUE(context == SimValueContext());
  std::vector<ISolutionPointSet *> pointSets;
  Reports("0", [&] { m_product.GetReportSolutionPointSetsToUpdate(pointSets); });
  EXPECT_TRUE(pointSets.empty());
}

TEST_F(ManagerDefaultsTest, AnUnknownReportTypeIsAStateOfTheDefaultUnits) {
  ISolutionMgr::ReportTypeMap reportTypes;
  ValueState const state =
      Reports("0", [&] { return m_product.GetReportTypeForSimValues(reportTypes, L"S", nullptr); });
  EXPECT_EQ(state.fullUnit, Units::GetDefaultUnits(static_cast<Units::UnitType>(15)));
  EXPECT_EQ(static_cast<int>(state.unitType), 15);
  EXPECT_EQ(state.thirdWord, 1);
  EXPECT_EQ(state.parameterType, 0);
  EXPECT_TRUE(reportTypes.empty());
}

TEST_F(ManagerDefaultsTest, TheContentOfTheDesignFileIsMissedWhereTheClassIsDeclared) {
  io::CBlock block(L"Module");
  EXPECT_EQ(Reports("0", [&] { return m_product.DefinitionFileRead(block, false); }), io::kNoError);
  EXPECT_TRUE(Reports("0", [&] { return m_product.AllFilesWrite(block); }));
  EXPECT_TRUE(Reports("0", [&] { return m_product.DefinitionFileWrite(block); }));
  AssertHandler const former = SetAssertHandler(KeepFile);
  EXPECT_EQ(m_product.AllFilesRead(block, false), io::kNoError);
  SetAssertHandler(former);
  EXPECT_TRUE(lastAssertFile.EndsWith(L"BaseSolutionManager.h"));
}

TEST_F(ManagerDefaultsTest, WhatAProductMayLeaveHasItsDefault) {
  EXPECT_EQ(m_product.GetInterfaceID(), 25);
  for (unsigned const reportType : {0u, 7u, 0xFFFFFFFFu})
    EXPECT_EQ(m_product.GetRptTypeIndex(reportType), reportType);
  EXPECT_FALSE(m_product.AllowEmptyReports());
  EXPECT_FALSE(m_product.AllowImportDataInTraces());
  EXPECT_FALSE(m_product.ReloadSolutionDataOnUndo());
  EXPECT_FALSE(m_product.IsSimContextDataAffectedByMinorEdits(nullptr, nullptr, 1));
  EXPECT_FALSE(m_product.IsExpressionAffectedByMinorEdits(nullptr, static_cast<CParsedExpressionCache *>(nullptr)));
  EXPECT_FALSE(m_product.IsReportTypeAffectedByMinorEdits(nullptr, 1));
  std::vector<AString> names;
  EXPECT_EQ(m_product.GetReportTypeNames(names), 0);
  EXPECT_EQ(m_product.GetReportType(L"any"), 0u);
  std::vector<rep::DisplayType> displayTypes;
  EXPECT_EQ(m_product.GetDisplayTypes(displayTypes, 1), 0);
  m_product.GetAllTraceDescriptions(names);
  m_product.RecoverDerivedDataVersionConsistency();
  EXPECT_TRUE(names.empty() && displayTypes.empty());
  EXPECT_EQ(m_product.GetFileExt(), L".qsol");
}

TEST_F(ManagerDefaultsTest, AProductNeedNotAddToAnExportedVariation) {
  std::map<AString, AString> renamed;
  std::vector<AString> files;
  std::vector<AString> dirs;
  EXPECT_TRUE(m_product.GetFilesAndDirsToCopyForExportingVariation(renamed, files, dirs, L"x=1"));
  EXPECT_TRUE(m_product.GetFilesAndDirsToCopyForExportingVariation(files, dirs, L"x=1"));
  io::CBlock blocks(L"Blocks");
  EXPECT_TRUE(m_product.GetQSolBlocksForExportingVariation(blocks));
  EXPECT_TRUE(m_product.GetQSolBlocksForExportingVariation(blocks, files));
  EXPECT_TRUE(renamed.empty() && files.empty() && dirs.empty() && blocks.Empty());
}

TEST_F(ManagerDefaultsTest, SetupsAreThePlainOnes) {
  std::unique_ptr<BaseSimulationSetup> const read(m_product.CreateSimulationSetup(5, 6, L"Type"));
  std::unique_ptr<BaseSimulationSetup> const added(m_product.CreateSimulationSetup(L"Setup", L"Type"));
  std::unique_ptr<BaseSimulationSetup> const copied(
      m_product.CreateSimulationSetup(static_cast<ISimulationSetup const *>(added.get())));
  for (auto const * const setup : {&read, &added, &copied}) {
    ASSERT_TRUE(*setup);
    EXPECT_TRUE(typeid(**setup) == typeid(BaseSimulationSetup));
  }
  EXPECT_EQ(read->GetID(), 5);
}

TEST_F(ManagerDefaultsTest, TransfersAreRefused) {
  io::CBlock const in(L"In");
  io::CBlock out(L"Out");
  bool flag = true;
  EXPECT_FALSE(m_product.RetrieveTransferData(L"", L"", nullptr, L"", in, out, flag));
  EXPECT_FALSE(m_product.OnRefreshTransferData(L"", L"", nullptr, L"", in, out, flag));
  EXPECT_FALSE(m_product.OnAcquireTransferDataConnection(L"", nullptr, L"", in, out, flag));
  EXPECT_FALSE(m_product.OnReleaseTransferDataConnection(L"", nullptr, L"", in, out, flag));
  EXPECT_TRUE(flag && out.Empty());
}

TEST_F(ManagerDefaultsTest, EveryFacetIsTheManagerItself) {
  auto const isProduct = [this](auto const * facet) { return dynamic_cast<IdleProduct const *>(facet) == &m_product; };
  EXPECT_TRUE(isProduct(m_product.GetISolutionMgrForReportSetupUI()));
  EXPECT_TRUE(isProduct(m_product.GetISolutionMgrForReportSetupUIForEdit()));
  EXPECT_TRUE(isProduct(m_product.GetISolutionManagerForReports()));
  EXPECT_TRUE(isProduct(m_product.GetISolutionManagerForReportsForEdit()));
  EXPECT_TRUE(isProduct(m_product.GetISolutionMgrForSweepwise()));
  EXPECT_TRUE(isProduct(m_product.GetISolutionMgrForSweepwiseForEdit()));
  EXPECT_EQ(m_product.GetISolutionMgrForPlot(), static_cast<ISolutionMgrForPlot const *>(&m_product));
  EXPECT_EQ(m_product.GetISolutionMgrForHubIntegration(),
            static_cast<ISolutionMgrForHubIntegration const *>(&m_product));
  EXPECT_EQ(m_product.GetISolutionMgrForHubIntegrationForEdit(),
            static_cast<ISolutionMgrForHubIntegration *>(&m_product));
}

TEST_F(ManagerDefaultsTest, InterfacesAreFoundByTheirNumbers) {
  EXPECT_EQ(m_product.GetInterface(0), static_cast<ISolutionMgr *>(&m_product));
  EXPECT_EQ(m_product.GetInterface(25), static_cast<ISolutionMgr *>(&m_product));
  EXPECT_EQ(m_product.GetInterface(26), static_cast<ISolutionReporter *>(&m_product));
  EXPECT_EQ(m_product.GetInterface(35500), static_cast<ITaskSetupManager *>(&m_product));
  for (int const other : {-1, 1, 24, 27, 35499, 35501})
    EXPECT_EQ(m_product.GetInterface(other), nullptr) << other;
}

TEST_F(ManagerDefaultsTest, TheProductsOwnFacesAreFoundOnItsObject) {
  PlottingProduct product(&m_design);
  EXPECT_EQ(product.GetIProductSolutionMgrForPlot(), static_cast<IProductSolutionMgrForPlot const *>(&product));
  EXPECT_EQ(product.GetIProductSolutionMgrForReportSetupUIForEdit(),
            static_cast<IProductSolutionMgrForReportSetupUI *>(&product));
  EXPECT_EQ(m_product.GetIProductSolutionMgrForPlot(), nullptr) << "without a report";
  EXPECT_EQ(Reports("0", [&] { return m_product.GetIProductSolutionMgrForReportSetupUI(); }), nullptr);
}

TEST_F(ManagerDefaultsTest, OperationsThatNobodyNamesKeepTheirDefaults) {
  EXPECT_FALSE(m_product.ManagerHookA());
  m_product.ManagerHookB();
  EXPECT_EQ(m_product.SweepwiseManagerHook(), 0);
  EXPECT_EQ(Reports("0", [&] { return m_product.ReportsHookA(); }), 0);
  EXPECT_EQ(m_product.ReportsHookB(), 0);
  Reports("!ACHAR(\"Please override\")", [&] { m_product.ReportsHookC(); });
  EXPECT_FALSE(m_product.ReportsHookD());
}

TEST_F(ManagerDefaultsTest, PortSettingsAreReplacedAndListed) {
  std::vector<FloatValue> distances(3);
  std::vector<ComplexValue> impedances(3);
  EXPECT_EQ(m_product.GetDeembeddingDistances(distances), 0);
  EXPECT_EQ(m_product.GetRenormalizeImpedances(impedances), 0);
  EXPECT_TRUE(distances.empty() && impedances.empty()) << "without ports";
  PortSettings first(L"P1");
  first.SetDeembeddingDist(0.25);
  PortSettings const second(L"P2");
  m_product.SetPortPostProcessingSettings({first, second});
  EXPECT_EQ(m_product.GetDeembeddingDistances(distances), 2);
  EXPECT_EQ(distances[0].GetValue(), 0.25);
  EXPECT_EQ(m_product.GetRenormalizeImpedances(impedances), 2);
  std::vector<PortSettings> settings(5, first);
  EXPECT_EQ(m_product.GetPortPostProcessingSettings(settings), 2);
  ASSERT_EQ(settings.size(), 2u);
  EXPECT_EQ(settings[1].GetDeembeddingDist().GetValue(), second.GetDeembeddingDist().GetValue());
}

TEST_F(ManagerDefaultsTest, PortsCountOnlyWhilePostProcessingIsOn) {
  PortSettings port(L"P1");
  port.SetDeembeddingDist(std::numeric_limits<double>::quiet_NaN());
  m_product.SetPortPostProcessingSettings({port});
  EXPECT_FALSE(m_product.IsDeembedding());
  m_product.SetPostProcessingIsOn(true);
  EXPECT_TRUE(m_product.IsDeembedding()) << "what is no number is not 0";
  port.SetDeembeddingDist(0.0);
  m_product.SetPortPostProcessingSettings({port});
  EXPECT_FALSE(m_product.IsDeembedding());
  EXPECT_FALSE(m_product.IsRenormalizing()) << "data is left as solved";
  port.SetRenormalization({0.0, -1.0});
  m_product.SetPortPostProcessingSettings({port});
  EXPECT_TRUE(m_product.IsRenormalizing());
  m_product.SetPostProcessingIsOn(false);
  EXPECT_FALSE(m_product.IsRenormalizing());
}

TEST_F(ManagerDefaultsTest, AnyPortIsEnoughAndWithoutPortsThereIsNothingToCorrect) {
  m_product.SetPostProcessingIsOn(true);
  EXPECT_FALSE(m_product.IsDeembedding());
  EXPECT_FALSE(m_product.IsRenormalizing());
  PortSettings const plain(L"P1");
  PortSettings moved(L"P2");
  moved.SetDeembeddingDist(0.1);
  m_product.SetPortPostProcessingSettings({plain, plain, moved});
  EXPECT_TRUE(m_product.IsDeembedding());
  EXPECT_FALSE(m_product.IsRenormalizing());
  PortSettings real(L"P3");
  real.SetRenormalization({75.0, 0.0});
  m_product.SetPortPostProcessingSettings({plain, real});
  EXPECT_FALSE(m_product.IsDeembedding());
  EXPECT_TRUE(m_product.IsRenormalizing());
}
