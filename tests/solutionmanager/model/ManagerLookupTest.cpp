// Which setups, solutions and extractors a manager finds, in which order.

#include "CoreInterfaces/solution/IProductSolutionMgrForReportSetupUI.h"
#include "basekit/command/KelvroCommand.h"
#include "basekit/value/Value.h"
#include "plotkit/sweep/SweepDefinition.h"
#include "tests/solutionmanager/support/TestProduct.h"
#include "tests/support/AssertWatch.h"
#include "tests/support/Printers.h"

using support::AssertWatch;

namespace {

class ReportingManager : public support::TestManager, public IProductSolutionMgrForReportSetupUI {
public:
  using TestManager::TestManager;
  void GetAvailableSolutions(std::vector<ISolution *> & solutions, unsigned reportType) const override {
    asked = reportType;
    solutions = available;
  }
  using BaseSolutionManager::GetAvailableSolutions;

  mutable unsigned asked = 0;
  std::vector<ISolution *> available;
};

class ExtractorOfThreeFaces : public BaseSimDataExtractor {
public:
  using BaseSimDataExtractor::BaseSimDataExtractor;
  ISimDataExtractor3 * GetISimDataExtractor3() override { return reinterpret_cast<ISimDataExtractor3 *>(this); }
};

class DesignOfOneInstance : public support::TestDesign {
public:
  using TestDesign::TestDesign;
  void GetDesignInstances(std::vector<IDesignInstance *> & instances) const override {
    instances.push_back(const_cast<support::TestInstance *>(&instance));
  }
  support::TestInstance instance{*this, L"x=1"};
};

} // namespace

class ManagerLookupTest : public support::ModelTest {
protected:
  /// Imported setups belong to whoever made them.
  BaseSimulationSetup & Import(AString const & name, AString const & solutionName = L"Data") {
    m_imported.push_back(std::make_unique<support::TestSetup>(&Manager(), name));
    BaseSimulationSetup & setup = *m_imported.back();
    setup.AddSolution(setup.CreateSolution(solutionName), nullptr);
    EXPECT_TRUE(Manager().AddImportData(&SolutionOf(setup), nullptr));
    return setup;
  }
  BaseSimulationSetup & AddDeleted(AString const & name) {
    BaseSimulationSetup & setup = AddSetup(name);
    Manager().DeleteSimulationSetup(setup.GetID(), nullptr);
    return setup;
  }

  std::vector<std::unique_ptr<BaseSimulationSetup>> m_imported;
};

TEST_F(ManagerLookupTest, ThereAreSolutionsOnceOneHasDataOrAnythingWasImportedOnPurpose) {
  EXPECT_FALSE(Manager().HasSolutions());
  BaseSimulationSetup & setup = AddSetup(L"A");
  EXPECT_FALSE(Manager().HasSolutions());
  Solve(SolutionOf(setup), L"x=1", {1});
  EXPECT_TRUE(Manager().HasSolutions());
  Manager().DeleteSimulationSetup(setup.GetID(), nullptr);
  EXPECT_FALSE(Manager().HasSolutions());
  Import(L"Measured");
  EXPECT_TRUE(Manager().HasSolutions());
}

TEST_F(ManagerLookupTest, ASolutionExistsWhileItIsNotDeletedAndImportedOnesCount) {
  BaseSimulationSetup & setup = AddSetup(L"A");
  long const id = SolutionOf(setup).GetID();
  EXPECT_TRUE(Manager().DoesSolutionExist(id));
  setup.DeleteSolution(id, nullptr);
  EXPECT_FALSE(Manager().DoesSolutionExist(id));
  EXPECT_FALSE(Manager().DoesSolutionExist(4711));
  EXPECT_TRUE(Manager().DoesSolutionExist(SolutionOf(Import(L"Measured")).GetID()));
}

TEST_F(ManagerLookupTest, TaskSetupsAreTheActiveOnes) {
  BaseSimulationSetup & a = AddSetup(L"A");
  BaseSimulationSetup & b = AddSetup(L"B");
  BaseSimulationSetup & deleted = AddDeleted(L"C");
  BaseSimulationSetup & imported = Import(L"D");
  EXPECT_EQ(Manager().GetITaskSetupByID(b.GetID()), static_cast<ITaskSetup *>(&b));
  EXPECT_EQ(Manager().GetITaskSetupByID(deleted.GetID()), nullptr);
  EXPECT_EQ(Manager().GetITaskSetupByID(imported.GetID()), nullptr);
  std::vector<ITaskSetup *> list{nullptr};
  EXPECT_EQ(Manager().GetITaskSetupList(list), 3);
  EXPECT_EQ(list, (std::vector<ITaskSetup *>{nullptr, &a, &b}));
}

TEST_F(ManagerLookupTest, OfSetupsOfOneNameTheActiveOneComesBeforeTheImportedAndThatBeforeTheDeleted) {
  BaseSimulationSetup & deleted = AddDeleted(L"Same");
  BaseSimulationSetup & imported = Import(L"Same");
  EXPECT_EQ(Manager().GetISimulationSetup(L"SAME", true, false), &deleted);
  EXPECT_EQ(Manager().GetISimulationSetup(L"SAME", true, true), &imported);
  BaseSimulationSetup & active = AddSetup(L"Same");
  EXPECT_EQ(Manager().GetISimulationSetup(L"SAME", true, true), &active);
  EXPECT_EQ(Manager().GetISimulationSetup(L"Other", true, true), nullptr);
}

TEST_F(ManagerLookupTest, SetupsAreListedActiveThenDeletedThenImported) {
  BaseSimulationSetup & imported = Import(L"I");
  BaseSimulationSetup & deleted = AddDeleted(L"D");
  BaseSimulationSetup & active = AddSetup(L"A");
  std::vector<ISimulationSetup *> list;
  EXPECT_EQ(Manager().GetISimulationSetupList(list, true, true), 3);
  EXPECT_EQ(list, (std::vector<ISimulationSetup *>{&active, &deleted, &imported}));
  EXPECT_EQ(Manager().GetISimulationSetupList(list, false, false), 4);
}

TEST_F(ManagerLookupTest, ADeletedSolutionOfAnActiveSetupNeedsTheDeletedFlag) {
  BaseSimulationSetup & setup = AddSetup(L"A");
  ISolution * const solution = &SolutionOf(setup);
  long const id = solution->GetID();
  setup.DeleteSolution(id, nullptr);
  EXPECT_EQ(Manager().GetISolutionByID(id, false, true), nullptr);
  EXPECT_EQ(Manager().GetISolutionByID(id, true, false), solution);
  EXPECT_EQ(Manager().GetISolution(L"Sweep", false, true), nullptr);
  EXPECT_EQ(Manager().GetISolution(L"Sweep", true, false), solution);
}

TEST_F(ManagerLookupTest, SolutionsOfImportedSetupsNeedTheirFlag) {
  ISolution * const solution = &SolutionOf(Import(L"Measured"));
  EXPECT_EQ(Manager().GetISolution(L"Measured : Data", true, false), nullptr);
  EXPECT_EQ(Manager().GetISolution(L"Measured : Data", false, true), solution);
  Manager().DeleteSimulationSetup(m_imported[0]->GetID(), nullptr);
  EXPECT_EQ(Manager().GetISolutionByID(solution->GetID(), true, false), nullptr);
  EXPECT_EQ(Manager().GetISolutionByID(solution->GetID(), true, true), solution);
}

TEST_F(ManagerLookupTest, ValidSolutionsAreThoseOfActiveSetupsWithAnExtractor) {
  BaseSimulationSetup & a = AddSetup(L"A");
  AddDeleted(L"B");
  BaseSimulationSetup & c = AddSetup(L"C");
  static_cast<support::TestSolution &>(SolutionOf(c)).SetExtractor(nullptr);
  std::vector<ISolution *> list;
  EXPECT_EQ(Manager().GetValidISolutionList(list, true, false), 1);
  EXPECT_EQ(list, std::vector<ISolution *>{&SolutionOf(a)});
  EXPECT_EQ(Manager().GetValidISolutionListForSweepwise(list, true, false), 2);
  std::vector<ISolutionForSweepwise *> forSweepwise;
  EXPECT_EQ(Manager().GetValidISolutionListForSweepwise(forSweepwise, false, false), 1);
  EXPECT_EQ(forSweepwise, std::vector<ISolutionForSweepwise *>{&SolutionOf(a)});
}

TEST_F(ManagerLookupTest, WithoutSetupsTheCountOfValidSolutionsIsZeroWhateverTheListHolds) {
  std::vector<ISolution *> list{nullptr};
  EXPECT_EQ(Manager().GetValidISolutionList(list, true, true), 0);
  EXPECT_EQ(Manager().GetValidISolutionListForSweepwise(list, true, true), 0);
  EXPECT_EQ(list.size(), 1u);
}

TEST_F(ManagerLookupTest, AnImportedSolutionIsNoValidOneUnlessItsProductSaysSoOnPurpose) {
  Import(L"Measured");
  std::vector<ISolution *> list;
  EXPECT_EQ(Manager().GetImportedSolutionList(list), 0);
  EXPECT_EQ(Manager().GetValidISolutionList(list, false, true), 0);
}

TEST_F(ManagerLookupTest, TheSweepwiseLookUpsGiveTheSameObjects) {
  BaseSimulationSetup & setup = AddSetup(L"A");
  BaseSolution & solution = SolutionOf(setup);
  EXPECT_EQ(Manager().GetISimulationSetupForSweepwise(L"A", false, false), &setup);
  EXPECT_EQ(Manager().GetISimulationSetupForSweepwiseByID(setup.GetID(), false, false), &setup);
  EXPECT_EQ(Manager().GetISolutionForSweepwise(L"A : Sweep", false, false), &solution);
  EXPECT_EQ(Manager().GetISolutionForSweepwiseByID(solution.GetID(), false, false), &solution);
  EXPECT_EQ(Manager().GetISimulationSetupForSweepwise(L"B", true, true), nullptr);
  EXPECT_EQ(Manager().GetISolutionForSweepwiseByID(4711, true, true), nullptr);
  std::vector<ISimulationSetupForSweepwise *> list;
  EXPECT_EQ(Manager().GetISimulationSetupForSweepwiseList(list, false, false), 1);
  EXPECT_EQ(list, std::vector<ISimulationSetupForSweepwise *>{&setup});
}

TEST_F(ManagerLookupTest, ExtractorsForReportsAreThoseOfImportedSolutions) {
  AddSetup(L"A");
  BaseSolution & imported = SolutionOf(Import(L"Measured"));
  std::vector<ISimDataExtractor *> extractors;
  EXPECT_EQ(Manager().GetISimDataExtractors(extractors, 0, true), 1);
  EXPECT_EQ(extractors, std::vector<ISimDataExtractor *>{imported.GetISimDataExtractor()});
  std::vector<IDesignDataExtractor *> ofDesign;
  EXPECT_EQ(Manager().GetIDesignDataExtractors(ofDesign, 0), 1);
  EXPECT_EQ(ofDesign, std::vector<IDesignDataExtractor *>{imported.GetIDesignDataExtractor()});
}

TEST_F(ManagerLookupTest, ExtractorsOfImportedSolutionsAreNotListedUnlessAskedFor) {
  BaseSolution & imported = SolutionOf(Import(L"Measured"));
  std::vector<ISimDataExtractor *> extractors{imported.GetISimDataExtractor()};
  EXPECT_EQ(Manager().GetISimDataExtractors(extractors, 0, false), 0);
  EXPECT_EQ(extractors, std::vector<ISimDataExtractor *>{imported.GetISimDataExtractor()}) << "as it was";
}

TEST_F(ManagerLookupTest, AllExtractorsAreThoseOfActiveThenOfImportedSetups) {
  BaseSolution & imported = SolutionOf(Import(L"Measured"));
  BaseSolution & active = SolutionOf(AddSetup(L"A"));
  static_cast<support::TestSolution &>(SolutionOf(AddSetup(L"B"))).SetExtractor(nullptr);
  AddDeleted(L"C");
  std::vector<BaseSimDataExtractor *> extractors;
  Manager().GetAllAssociatedSimDataExtractors(extractors);
  EXPECT_EQ(extractors, (std::vector<BaseSimDataExtractor *>{active.GetBaseSimDataExtractor(),
                                                             imported.GetBaseSimDataExtractor()}));
}

TEST_F(ManagerLookupTest, TheReportsViewBelongsToAnActiveSolution) {
  BaseSimulationSetup & setup = AddSetup(L"A");
  BaseSolution & solution = SolutionOf(setup);
  EXPECT_EQ(Manager().GetISimDataExtractorForReports(solution.GetID()),
            solution.GetBaseSimDataExtractor()->GetISimDataExtractorForReports());
  EXPECT_EQ(Manager().GetIVariableNameSpaceSetupper(solution.GetID()), solution.GetBaseSimDataExtractor());
  EXPECT_EQ(Manager().GetIVariableNameSpaceSetupper(4711), nullptr);
  EXPECT_EQ(Manager().GetISimDataExtractorForReports(4711), nullptr);
  EXPECT_EQ(Manager().GetISimDataExtractorForReports(SolutionOf(Import(L"Measured")).GetID()), nullptr);
  setup.DeleteSolution(solution.GetID(), nullptr);
  EXPECT_EQ(Manager().GetISimDataExtractorForReports(solution.GetID()), nullptr);
}

TEST_F(ManagerLookupTest, TheThirdExtractorFaceOfAnUnknownSolutionIsReported) {
  BaseSolution & solution = SolutionOf(AddSetup(L"A"));
  auto * const extractor = new ExtractorOfThreeFaces(&Manager(), &solution);
  static_cast<support::TestSolution &>(solution).SetExtractor(extractor);
  EXPECT_EQ(Manager().GetISimDataExtractor3(solution.GetID()), extractor->GetISimDataExtractor3());
  AssertWatch::Expect("0");
  EXPECT_EQ(Manager().GetISimDataExtractor3(4711), nullptr);
}

TEST_F(ManagerLookupTest, AvailableSolutionsAreAskedOfTheProductAndAppended) {
  BaseSolution & solution = SolutionOf(AddSetup(L"A"));
  ReportingManager manager(&m_design);
  manager.available = {&solution};
  std::vector<long> ids{1};
  manager.GetAvailableSolutions(ids, 12);
  EXPECT_EQ(ids, (std::vector<long>{1, solution.GetID()}));
  EXPECT_EQ(manager.asked, 12u);
}

TEST_F(ManagerLookupTest, WithoutAProductToAskAvailableSolutionsAreReportedTwice) {
  // Once by the look-up of the product's interface, once by the list that needs it.
  AssertWatch::Expect("0");
  AssertWatch::Expect("0");
  std::vector<long> ids;
  Manager().GetAvailableSolutions(ids, 0);
  EXPECT_TRUE(ids.empty());
}

TEST_F(ManagerLookupTest, AnInstanceOfTheDesignLeadsToTheDesignsID) {
  DesignOfOneInstance design(m_design.project.resultsFolder);
  support::TestManager const manager(&design);
  EXPECT_EQ(manager.GetDesignIDAssociatedWithDesignInstance(design.instance.GetID()), design.designID);
  EXPECT_EQ(manager.GetDesignIDAssociatedWithDesignInstance(99), -1);
}

TEST_F(ManagerLookupTest, ARenameReachesActiveAndImportedSetupsButNoDeletedOnes) {
  BaseSimulationSetup & active = AddSetup(L"A");
  BaseSimulationSetup & imported = Import(L"I");
  BaseSimulationSetup & deleted = AddDeleted(L"D");
  Manager().SimulationSetupWasRenamed(L"a", L"A2");
  Manager().SimulationSetupWasRenamed(L"i", L"I2");
  Manager().SimulationSetupWasRenamed(L"d", L"D2");
  EXPECT_EQ(active.GetName(), AString(L"A2"));
  EXPECT_EQ(imported.GetName(), AString(L"I2"));
  EXPECT_EQ(deleted.GetName(), AString(L"D"));
}

TEST_F(ManagerLookupTest, AnEquivalentSetupBearsTheSameNameAndSharesTheSweeps) {
  BaseSimulationSetup & source = AddSetup(L"A");
  source.AddSingleSweep(new SweepDefinition(L"F", SweepDefinition::kLinearCount, 1, 2));
  ISimulationSetup * const made = Manager().CreateEquivalentISimulationSetup(&source);
  std::unique_ptr<support::TestSetup> const owner(dynamic_cast<support::TestSetup *>(made));
  ASSERT_NE(owner, nullptr);
  EXPECT_EQ(owner->GetName(), AString(L"A"));
  EXPECT_EQ(owner->GetVersionID(), 0);
  EXPECT_NE(owner->GetID(), source.GetID());
  EXPECT_EQ(owner->GetSweepDef(L"F"), source.GetSweepDef(L"F"));
  EXPECT_EQ(Manager().FindEquivalentISimulationSetup(made), &source);
  owner->RemoveAllSweeps();
  source.RemoveAllSweeps();
}

TEST_F(ManagerLookupTest, ASetupThatWasImportedBeforeIsNotImportedAgain) {
  BaseSimulationSetup & setup = Import(L"Measured");
  KelvroCommand command(L"import");
  EXPECT_TRUE(Manager().AddImportData(&SolutionOf(setup), &command));
  EXPECT_FALSE(command.HasDeltaStates());
  EXPECT_EQ(Manager().GetImportedSetups().size(), 1u);
}

TEST_F(ManagerLookupTest, AnImportIsUndone) {
  m_imported.push_back(std::make_unique<support::TestSetup>(&Manager(), AString(L"Measured")));
  BaseSimulationSetup & setup = *m_imported.back();
  setup.AddSolution(setup.CreateSolution(L"Data"), nullptr);
  KelvroCommand command(L"import");
  EXPECT_TRUE(Manager().AddImportData(&SolutionOf(setup), &command));
  command.Undo();
  EXPECT_TRUE(Manager().GetImportedSetups().empty());
  EXPECT_EQ(Manager().GetISimulationSetup(L"Measured", true, true), &setup);
}

TEST_F(ManagerLookupTest, ADeletedImportedSetupIsFoundWithBothFlags) {
  BaseSimulationSetup & setup = Import(L"Measured");
  long const id = setup.GetID();
  Manager().DeleteSimulationSetup(id, nullptr);
  EXPECT_EQ(Manager().GetISimulationSetupByID(id, true, false), nullptr);
  EXPECT_EQ(Manager().GetISimulationSetupByID(id, false, true), nullptr);
  EXPECT_EQ(Manager().GetISimulationSetupByID(id, true, true), static_cast<ISimulationSetup *>(&setup));
}

TEST_F(ManagerLookupTest, AValueAskedForByTheSolutionsIDIsThatOfTheSolution) {
  class Answering : public support::TestManager {
  public:
    using TestManager::GetValueInfoForExpression;
    using TestManager::TestManager;
    bool GetValueInfoForExpression(AString const & expression, ISolution const * solution, Value &) const override {
      asked.emplace_back(expression, solution);
      return solution != nullptr;
    }
    mutable std::vector<std::pair<AString, ISolution const *>> asked;
  };
  Answering manager(&m_design);
  auto * const setup = new support::TestSetup(&manager, AString(L"A"));
  setup->AddSolution(setup->CreateSolution(L"Sweep"), nullptr);
  manager.AddSimulation(setup, nullptr);
  BaseSolution & solution = SolutionOf(*setup);
  Value value;
  EXPECT_TRUE(manager.GetValueInfoForExpression(L"x", solution.GetID(), value));
  EXPECT_FALSE(manager.GetValueInfoForExpression(L"y", 4711, value));
  ASSERT_EQ(manager.asked.size(), 2u);
  EXPECT_EQ(manager.asked[0], std::make_pair(AString(L"x"), static_cast<ISolution const *>(&solution)));
  EXPECT_EQ(manager.asked[1].second, nullptr);
}
