// What a setup answers about its solutions, its variables and what needs solving.

#include "basekit/command/KelvroCommand.h"
#include "basekit/value/Variable.h"
#include "basekit/value/VariableValues.h"
#include "solutionmanager/definition/FrequencySolutionDefinition.h"
#include "tests/solutionmanager/support/TestProduct.h"
#include "tests/support/AssertWatch.h"
#include "tests/support/Printers.h"

using support::AssertWatch;

namespace {

/// A design of some variables.
class DesignOfVariables : public support::TestDesign {
public:
  using TestDesign::TestDesign;
  void GetPropertyVariables(std::vector<Variable *> & variables) const override { variables = properties; }
  void GetFurtherVariables(std::vector<Variable *> & variables) const override {
    variables.insert(variables.end(), further.begin(), further.end());
  }
  void GetDefaultVariableValues(VariableValues & values) const override { values = defaults; }

  std::vector<Variable *> properties;
  std::vector<Variable *> further;
  VariableValues defaults;
};

} // namespace

class SetupQueriesTest : public support::ModelTest {
protected:
  SetupQueriesTest() : m_setup(AddSetup(L"A", L"First")) {}

  BaseSolution & AddSolution(AString const & name) {
    BaseSolution * const solution = m_setup.CreateSolution(name);
    m_setup.AddSolution(solution, nullptr);
    return *solution;
  }

  BaseSimulationSetup & m_setup;
  support::TestInstance m_instance{m_design, L"x=1"};
};

TEST_F(SetupQueriesTest, TheBestFitIsTheFirstSolutionOfAnEqualDefinition) {
  BaseSolution & second = AddSolution(L"Second");
  BaseSolution & third = AddSolution(L"Third");
  for (BaseSolution * const solution : {&second, &third})
    solution->GetFrequencySolutionDefinition(-1)->SetFrequencies({1e9, 2e9});
  FrequencySolutionDefinition wanted({1e9, 2e9}, kDefaultSolutionType);
  auto match = SolutionDefinitionMatch::kNone;
  EXPECT_EQ(m_setup.FindBestISolutionFit(&wanted, match), &second);
  EXPECT_EQ(match, SolutionDefinitionMatch::kExact);
  EXPECT_EQ(static_cast<int>(match), 0);
}

TEST_F(SetupQueriesTest, WithoutAnEqualDefinitionThereIsNoFit) {
  FrequencySolutionDefinition wanted({5e9}, kDefaultSolutionType);
  auto match = SolutionDefinitionMatch::kExact;
  EXPECT_EQ(m_setup.FindBestISolutionFit(&wanted, match), nullptr);
  EXPECT_EQ(static_cast<int>(match), 2);
}

TEST_F(SetupQueriesTest, TheFitIsByTheDefinitionOfTheCurrentVersion) {
  SolutionOf(m_setup).GetFrequencySolutionDefinition(-1)->SetFrequencies({5e9});
  FrequencySolutionDefinition wanted({5e9}, kDefaultSolutionType);
  SolutionOf(m_setup).Invalidate(nullptr, 40);
  SolutionOf(m_setup).GetFrequencySolutionDefinition(-1)->SetFrequencies({6e9});
  auto match = SolutionDefinitionMatch::kExact;
  EXPECT_EQ(m_setup.FindBestISolutionFit(&wanted, match), nullptr);
}

TEST_F(SetupQueriesTest, SolutionsAreListedInIDOrder) {
  BaseSolution & second = AddSolution(L"Second");
  std::vector<ISolution *> list{nullptr};
  EXPECT_EQ(m_setup.GetISolutionList(list), 3);
  EXPECT_EQ(list, (std::vector<ISolution *>{nullptr, &SolutionOf(m_setup), &second}));
  EXPECT_EQ(m_setup.GetISolutionListForSweepwise(list), 5);
  std::vector<ISolutionForSweepwise *> forSweepwise;
  EXPECT_EQ(m_setup.GetISolutionListForSweepwise(forSweepwise), 2);
  EXPECT_EQ(forSweepwise, (std::vector<ISolutionForSweepwise *>{&SolutionOf(m_setup), &second}));
}

TEST_F(SetupQueriesTest, ASetupWithoutSolutionsListsZeroWhateverTheListHolds) {
  support::TestSetup const empty(&Manager(), AString(L"Empty"));
  std::vector<ISolution *> list{nullptr};
  EXPECT_EQ(empty.GetISolutionList(list), 0);
  EXPECT_EQ(empty.GetDefaultISolution(), nullptr);
}

TEST_F(SetupQueriesTest, ValidSolutionsHaveAnExtractor) {
  BaseSolution & second = AddSolution(L"Second");
  static_cast<support::TestSolution &>(SolutionOf(m_setup)).SetExtractor(nullptr);
  std::vector<ISolution *> list;
  EXPECT_EQ(m_setup.GetValidISolutions(list), 1);
  EXPECT_EQ(list, std::vector<ISolution *>{&second});
}

TEST_F(SetupQueriesTest, ADefaultSolutionOfAnotherSetupIsReportedAndTaken) {
  BaseSolution & other = SolutionOf(AddSetup(L"B"));
  AssertWatch::Expect("m_BaseSolutionMap.find(solution->GetID()) != m_BaseSolutionMap.end()");
  m_setup.SetDefaultSolution(&other);
  EXPECT_EQ(m_setup.GetBaseSolution(), &other);
}

TEST_F(SetupQueriesTest, ASolutionCreatedWithoutAnIDIsReported) {
  support::TestManager manager(&m_design);
  BaseSimulationSetup setup(&manager, AString(L"Plain"));
  AssertWatch::Expect("sol_id != -1");
  std::unique_ptr<BaseSolution> const solution(setup.CreateSolution(-1, 4));
  EXPECT_EQ(solution->GetVersionID(), 4);
  EXPECT_TRUE(setup.GetSolutions().empty());
}

TEST_F(SetupQueriesTest, NoSolutionIsNotAdded) {
  AssertWatch::Expect("solution");
  m_setup.AddSolution(nullptr, nullptr);
  EXPECT_EQ(m_setup.GetSolutions().size(), 1u);
}

TEST_F(SetupQueriesTest, ASolutionThatIsThereIsNotAddedAgain) {
  KelvroCommand command(L"add");
  m_setup.AddSolution(&SolutionOf(m_setup), &command);
  EXPECT_FALSE(command.HasDeltaStates());
}

TEST_F(SetupQueriesTest, AnAddedSolutionIsTakenBackByUndo) {
  KelvroCommand command(L"add");
  BaseSolution * const second = m_setup.CreateSolution(L"Second");
  m_setup.AddSolution(second, &command);
  command.Undo();
  EXPECT_TRUE(m_setup.IsDeletedSolution(second));
  EXPECT_EQ(m_setup.GetISolutionByID(second->GetID(), false), nullptr);
  EXPECT_EQ(m_setup.GetISolutionByID(second->GetID(), true), second);
  EXPECT_EQ(m_setup.GetISolution(L"Second", true), static_cast<ISolution *>(second));
  command.Redo();
  EXPECT_FALSE(m_setup.IsDeletedSolution(second));
}

TEST_F(SetupQueriesTest, ARenameReachesActiveSolutionsOnly) {
  BaseSolution & second = AddSolution(L"Second");
  m_setup.DeleteSolution(second.GetID(), nullptr);
  m_setup.SolutionWasRenamed(L"first", L"One");
  m_setup.SolutionWasRenamed(L"Second", L"Two");
  EXPECT_EQ(SolutionOf(m_setup).GetSolutionName(), AString(L"One"));
  EXPECT_EQ(second.GetSolutionName(), AString(L"Second"));
}

TEST_F(SetupQueriesTest, ASetupIsActiveWhileTheManagerListsItsID) {
  EXPECT_TRUE(m_setup.IsActive());
  support::TestSetup const foreign(&Manager(), AString(L"Foreign"));
  EXPECT_FALSE(foreign.IsActive());
  Manager().DeleteSimulationSetup(m_setup.GetID(), nullptr);
  EXPECT_FALSE(m_setup.IsActive());
}

TEST_F(SetupQueriesTest, ASolutionThatNoActiveSetupHasCountsAsImported) {
  EXPECT_FALSE(m_setup.IsImportedSolution(static_cast<int>(SolutionOf(m_setup).GetID())));
  EXPECT_TRUE(m_setup.IsImportedSolution(4711));
}

TEST_F(SetupQueriesTest, VariablesAreTheIntrinsicOnesThoseOfTheDesignsPropertiesAndItsFurtherOnes) {
  DesignOfVariables design(m_design.project.resultsFolder);
  support::TestManager manager(&design);
  support::TestSetup const setup(&manager, AString(L"A"));
  Variable width(L"w"), length(L"l");
  design.properties = {nullptr, &width};
  design.further = {&length};
  std::vector<Variable *> intrinsic, variables;
  EXPECT_EQ(setup.GetIntrinsicVariables(intrinsic), 1);
  ASSERT_EQ(intrinsic.size(), 1u);
  EXPECT_EQ(setup.GetVariables(variables, 0, 0), 3);
  EXPECT_EQ(variables, (std::vector<Variable *>{intrinsic[0], &width, &length}));
  EXPECT_EQ(intrinsic[0]->GetName(), AString(L"F"));
}

TEST_F(SetupQueriesTest, SolvedVariationsAreThoseOfValidSolutionsCompletedByTheDesignsDefaults) {
  DesignOfVariables design(m_design.project.resultsFolder);
  VariableValues::ResolveVariationKey(L"y=7", nullptr, design.defaults, nullptr, true);
  m_manager = std::make_unique<support::TestManager>(&design);
  Manager().InitializeFromDesign(false);
  BaseSimulationSetup & setup = AddSetup(L"B");
  Solve(SolutionOf(setup), L"x=1", {1});
  Solve(SolutionOf(setup), L"x=2; y=3", {2});
  BaseSolution * const invalid = setup.CreateSolution(L"NoExtractor");
  setup.AddSolution(invalid, nullptr);
  Solve(*invalid, L"x=9", {9});
  static_cast<support::TestSolution &>(*invalid).SetExtractor(nullptr);
  std::set<VariableValues> solved;
  VariableValues former;
  VariableValues::ResolveVariationKey(L"old=1", nullptr, former, nullptr, true);
  solved.insert(former);
  setup.GetSolvedVariations(solved);
  std::vector<AString> texts;
  for (VariableValues const & values : solved)
    texts.push_back(values.GetVariationKey());
  EXPECT_EQ(texts, (std::vector<AString>{L"x=1; y=7", L"x=2; y=3"}));
  m_manager.reset();
}

TEST_F(SetupQueriesTest, KeysForASolveFollowTheListOrNameTheWholeSetup) {
  BaseSolution & second = AddSolution(L"Second");
  second.SetState(12, false);
  m_setup.SetState(5, false);
  std::vector<SolutionVariationKey> keys;
  std::vector<long> const ids = {second.GetID(), SolutionOf(m_setup).GetID()};
  EXPECT_TRUE(m_setup.GetSolutionVariationKeysForSolve(keys, L"x=1", &ids));
  ASSERT_EQ(keys.size(), 2u);
  EXPECT_TRUE(keys[0] == SolutionVariationKey(m_setup.GetID(), L"x=1", second.GetID(), 12));
  EXPECT_TRUE(keys[1] == SolutionVariationKey(m_setup.GetID(), L"x=1", SolutionOf(m_setup).GetID(), 0));
  keys.clear();
  EXPECT_TRUE(m_setup.GetSolutionVariationKeysForSolve(keys, L"x=1", nullptr));
  ASSERT_EQ(keys.size(), 1u);
  EXPECT_TRUE(keys[0] == SolutionVariationKey(m_setup.GetID(), L"x=1", -1, 5));
}

TEST_F(SetupQueriesTest, AnEmptyListGivesNoKeyAndAnUnknownSolutionIsReported) {
  std::vector<SolutionVariationKey> keys;
  std::vector<long> const none, unknown = {4711};
  EXPECT_TRUE(m_setup.GetSolutionVariationKeysForSolve(keys, L"x=1", &none));
  AssertWatch::Expect("soln");
  EXPECT_TRUE(m_setup.GetSolutionVariationKeysForSolve(keys, L"x=1", &unknown));
  EXPECT_TRUE(keys.empty());
}

TEST_F(SetupQueriesTest, AVariationNeedsSolvingWhileAnySolutionLacksIt) {
  BaseSolution & second = AddSolution(L"Second");
  Solve(SolutionOf(m_setup), L"x=1", {1});
  EXPECT_TRUE(m_setup.NeedsToSimulate(AString(L"x=1")));
  EXPECT_TRUE(m_setup.NeedsToSimulate(&m_instance));
  Solve(second, L"x=1", {2});
  EXPECT_FALSE(m_setup.NeedsToSimulate(AString(L"x=1")));
  EXPECT_TRUE(m_desktop.posted.empty());
  EXPECT_FALSE(m_setup.NeedsToSimulate(&m_instance));
  EXPECT_EQ(m_desktop.posted, (std::vector<std::pair<long, AString>>{{24680, L"A"}}));
}

TEST_F(SetupQueriesTest, SolutionsThatAreBeingSolvedAreNotSubmittedAgain) {
  m_design.service.solving = true;
  std::vector<long> const ids = {SolutionOf(m_setup).GetID()};
  EXPECT_EQ(m_setup.StartSingleSimulation(&m_instance, 0, 0, &ids), kAlreadySolving);
  EXPECT_EQ(m_design.service.asked, ids);
  EXPECT_TRUE(m_design.service.submitted.empty());
  EXPECT_EQ(m_desktop.posted, (std::vector<std::pair<long, AString>>{{24681, L"A"}}));
}

TEST_F(SetupQueriesTest, AListOfUnknownSolutionsComesToNothingWithoutAMessage) {
  std::vector<long> const ids = {4711};
  EXPECT_EQ(m_setup.StartSingleSimulation(&m_instance, 0, 0, &ids), kNothingToSolve);
  EXPECT_TRUE(m_desktop.posted.empty());
}

TEST_F(SetupQueriesTest, TheCodesOfASolveRequestAreFixedNumbers) {
  EXPECT_EQ(kNothingToSolve, 5001);
  EXPECT_EQ(kAlreadySolving, 5002);
  EXPECT_EQ(kSolveRefused, 5003);
  EXPECT_EQ(kSolveSubmitted, 5004);
}

TEST_F(SetupQueriesTest, AnInvalidationWithoutAVersionTakesANewOne) {
  m_setup.Invalidate(nullptr, -1, 0);
  EXPECT_EQ(m_setup.GetVersionID(), 0);
  m_setup.Invalidate(nullptr, -1, kInvalidateSetups | kInvalidateSolutions);
  EXPECT_GT(m_setup.GetVersionID(), 0);
  EXPECT_EQ(SolutionOf(m_setup).GetVersionID(), m_setup.GetVersionID());
}

TEST_F(SetupQueriesTest, InvalidatingForGoodGivesSetupAndSolutionsVersionsOfTheirOwn) {
  BaseSolution & second = AddSolution(L"Second");
  m_setup.DeleteSolution(second.GetID(), nullptr);
  m_setup.NonUndoableInvalidateAll();
  EXPECT_GT(m_setup.GetVersionID(), 0);
  EXPECT_GT(SolutionOf(m_setup).GetVersionID(), m_setup.GetVersionID());
  EXPECT_GT(second.GetVersionID(), SolutionOf(m_setup).GetVersionID());
}

TEST_F(SetupQueriesTest, DefaultsAreThoseOfAPlainSetup) {
  EXPECT_FALSE(m_setup.IsExclusiveSwiseSetup());
  EXPECT_EQ(m_setup.GetSimSetupTypeName(), AString(L"BaseSetup"));
  EXPECT_EQ(m_setup.GetISolutionMgr(), static_cast<ISolutionMgr const *>(&Manager()));
  EXPECT_EQ(m_setup.GetBaseSolutionMgr(), &Manager());
  support::TestSetup const fresh(&Manager(), 17, 4);
  EXPECT_EQ(fresh.GetID(), 17);
  EXPECT_EQ(fresh.GetVersionID(), 4);
  EXPECT_TRUE(fresh.GetName().empty());
}

TEST_F(SetupQueriesTest, DataAreCompleteWhenTheyAreValid) {
  BaseSolution & solution = SolutionOf(m_setup);
  EXPECT_FALSE(solution.IsDataComplete(L"x=1", true, nullptr, -1));
  Solve(solution, L"x=1", {1});
  EXPECT_TRUE(solution.IsDataComplete(L"x=1", false, nullptr, -1));
  EXPECT_TRUE(solution.IsDataComplete(static_cast<ISweepwiseSetup const *>(nullptr), L"x=1", -1));
  solution.Invalidate(nullptr, -1);
  EXPECT_FALSE(solution.IsDataComplete(L"x=1", true, nullptr, -1));
}

TEST_F(SetupQueriesTest, AVariationThatDeletesItselfGoesInAllItsVersions) {
  BaseSolution & solution = SolutionOf(m_setup);
  Solve(solution, L"x=1", {1});
  solution.SetState(8, false);
  Solve(solution, L"x=1", {2});
  Solve(solution, L"x=2", {3});
  solution.GetBaseSolutionVariation(L"x=1", 8)->DeleteMe(nullptr);
  EXPECT_EQ(solution.size(), 1);
  EXPECT_FALSE(Manager().HasDataBlock(SolutionVariationKey(m_setup.GetID(), L"x=1", solution.GetID(), -1)));
  EXPECT_TRUE(solution.HasValidSolutionData(L"x=2", -1));
}
