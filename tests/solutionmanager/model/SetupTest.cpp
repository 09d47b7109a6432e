#include "solutionmanager/model/BaseSimulationSetup.h"

#include "CoreInterfaces/desktop/SimulationTask.h"
#include "basekit/command/KelvroCommand.h"
#include "basekit/file/LongFileName.h"
#include "plotkit/sweep/SweepDefinition.h"
#include "tests/solutionmanager/support/TestProduct.h"
#include "tests/support/AssertWatch.h"
#include "tests/support/Printers.h"

using support::AssertWatch;

class SetupTest : public support::ModelTest {
protected:
  support::TestInstance m_instance{m_design, L"x=1"};
};

TEST_F(SetupTest, AnIDIsIssuedOnce) {
  support::TestSetup const setup(&Manager(), AString(L"A"));
  long const id = setup.GetID();
  EXPECT_EQ(setup.GetID(), id);
  EXPECT_EQ(setup.GetUniqueID(), id);
}

TEST_F(SetupTest, TheFirstSolutionCreatedStaysTheDefault) {
  BaseSimulationSetup & setup = AddSetup(L"A");
  BaseSolution * const first = &SolutionOf(setup);
  BaseSolution * const second = setup.CreateSolution(L"Second");
  setup.AddSolution(second, nullptr);
  EXPECT_EQ(setup.GetBaseSolution(), first);
  setup.SetDefaultSolution(second);
  EXPECT_EQ(setup.GetBaseSolution(), second);
}

TEST_F(SetupTest, DeletingTheDefaultSolutionLeavesItSetOnPurpose) {
  BaseSimulationSetup & setup = AddSetup(L"A");
  BaseSolution & solution = SolutionOf(setup);
  setup.DeleteSolution(solution.GetID(), nullptr);
  EXPECT_EQ(setup.GetDefaultISolution(), static_cast<ISolution *>(&solution));
  EXPECT_TRUE(solution.IsDeleted());
}

TEST_F(SetupTest, ASecondDeletionIsNoChange) {
  BaseSimulationSetup & setup = AddSetup(L"A");
  long const id = SolutionOf(setup).GetID();
  setup.DeleteSolution(id, nullptr);
  KelvroCommand command(L"delete");
  setup.DeleteSolution(id, &command);
  EXPECT_FALSE(command.HasDeltaStates());
}

TEST_F(SetupTest, DeletingAnUnknownSolutionIsReported) {
  BaseSimulationSetup & setup = AddSetup(L"A");
  AssertWatch::Expect("(it != m_BaseSolutionMap.end()) || (GetISolutionByID(solution_id, true) != 0)");
  setup.DeleteSolution(999, nullptr);
}

TEST_F(SetupTest, OfTwoSolutionsOfOneNameTheYoungerIsFound) {
  BaseSimulationSetup & setup = AddSetup(L"A", L"Same");
  BaseSolution * const younger = setup.CreateSolution(L"Same");
  setup.AddSolution(younger, nullptr);
  EXPECT_EQ(setup.GetISolution(L"same", false), static_cast<ISolution *>(younger));
}

TEST_F(SetupTest, SolvingAsksForWhatIsNotValidYet) {
  BaseSimulationSetup & setup = AddSetup(L"A");
  SimulationTask const task(11, 22, {});
  EXPECT_EQ(setup.StartSingleSimulation(&m_instance, &task), kSolveSubmitted);
  ASSERT_EQ(m_design.service.submitted.size(), 1u);
  EXPECT_TRUE(m_design.service.submitted[0] == SolutionVariationKey(setup.GetID(), L"x=1", -1, setup.GetVersionID()));
  EXPECT_EQ(m_design.service.lastA, 11);
  EXPECT_EQ(m_design.service.lastB, 22);
  EXPECT_EQ(m_design.service.parent, -1);
}

TEST_F(SetupTest, SolvingAnswersWhatTheServiceSays) {
  BaseSimulationSetup & setup = AddSetup(L"A");
  m_design.service.accepts = false;
  EXPECT_EQ(setup.StartSingleSimulation(&m_instance, 0, 0, nullptr), kSolveRefused);
  m_design.service.solving = true;
  EXPECT_EQ(setup.StartSingleSimulation(&m_instance, 0, 0, nullptr), kAlreadySolving);
  ASSERT_EQ(m_desktop.posted.size(), 1u);
  EXPECT_EQ(m_desktop.posted[0], std::make_pair(24681L, AString(L"A")));
  EXPECT_EQ(m_desktop.severities[0], KelvroMessage::kWarning);
}

TEST_F(SetupTest, SolutionsThatAreUpToDateAreToldOneByOne) {
  BaseSimulationSetup & setup = AddSetup(L"A", L"First");
  BaseSolution * const second = setup.CreateSolution(L"Second");
  setup.AddSolution(second, nullptr);
  Solve(SolutionOf(setup), L"x=1", {1});
  Solve(*second, L"x=1", {2});
  std::vector<long> const both = {SolutionOf(setup).GetID(), second->GetID()};
  EXPECT_EQ(setup.StartSingleSimulation(&m_instance, 0, 0, &both), kNothingToSolve);
  ASSERT_EQ(m_desktop.posted.size(), 2u);
  EXPECT_EQ(m_desktop.posted[0], std::make_pair(24680L, AString(L"A : First")));
  EXPECT_EQ(m_desktop.posted[1], std::make_pair(24680L, AString(L"A : Second")));
  EXPECT_EQ(m_desktop.severities[0], KelvroMessage::kWarning);
  EXPECT_EQ(setup.StartSingleSimulation(&m_instance, 0, 0, nullptr), kNothingToSolve);
  EXPECT_EQ(m_desktop.posted.back(), std::make_pair(24680L, AString(L"A")));
}

TEST_F(SetupTest, OfAListOnlyWhatNeedsSolvingIsSubmitted) {
  BaseSimulationSetup & setup = AddSetup(L"A", L"First");
  BaseSolution * const second = setup.CreateSolution(L"Second");
  setup.AddSolution(second, nullptr);
  Solve(SolutionOf(setup), L"x=1", {1});
  std::vector<long> const asked = {SolutionOf(setup).GetID(), second->GetID(), 4711};
  EXPECT_EQ(setup.StartSingleSimulation(&m_instance, 0, 0, &asked), kSolveSubmitted);
  EXPECT_EQ(m_design.service.asked, std::vector<long>{second->GetID()});
  ASSERT_EQ(m_design.service.submitted.size(), 1u);
  EXPECT_EQ(m_design.service.submitted[0].GetSolutionKey(), second->GetID());
}

TEST_F(SetupTest, ASetupWithoutSolutionsNeedsNoSolveAndSaysSoForAnInstanceOnlyOnPurpose) {
  support::TestSetup const setup(&Manager(), AString(L"Empty"));
  EXPECT_FALSE(setup.NeedsToSimulate(AString(L"x=1")));
  EXPECT_TRUE(m_desktop.posted.empty());
  EXPECT_FALSE(setup.NeedsToSimulate(&m_instance));
  ASSERT_EQ(m_desktop.posted.size(), 1u);
  EXPECT_EQ(m_desktop.posted[0].first, 24680);
}

TEST_F(SetupTest, EqualityLooksAtSweepsNotAtNames) {
  support::TestSetup a(&Manager(), AString(L"A")), b(&Manager(), AString(L"B"));
  EXPECT_TRUE(a.IsEqual(&b));
  auto * sweep = new SweepDefinition;
  sweep->SetVariableName(L"F");
  a.AddSingleSweep(sweep);
  EXPECT_FALSE(a.IsEqual(&b));
  support::TestSetup shared(&Manager(), &a);
  EXPECT_TRUE(a.IsEqual(&shared));
  shared.RemoveAllSweeps();
  a.RemoveAllSweeps();
}

TEST_F(SetupTest, InvalidatingTheManagerAloneTellsTheDesignWhenThereAreNoSolutions) {
  support::TestSetup setup(&Manager(), AString(L"A"));
  setup.Invalidate(nullptr, 50, kInvalidateManager);
  EXPECT_EQ(setup.GetVersionID(), 0);
  EXPECT_EQ(m_design.changes, 1);
}

TEST_F(SetupTest, InvalidationReachesDeletedSolutionsToo) {
  BaseSimulationSetup & setup = AddSetup(L"A");
  BaseSolution & solution = SolutionOf(setup);
  setup.DeleteSolution(solution.GetID(), nullptr);
  setup.Invalidate(nullptr, 50, kInvalidateSolutions);
  EXPECT_EQ(solution.GetVersionID(), 50);
}

TEST_F(SetupTest, InvalidationWithACommandIsUndone) {
  BaseSimulationSetup & setup = AddSetup(L"A");
  Solve(SolutionOf(setup), L"x=1", {1});
  KelvroCommand command(L"edit");
  Manager().Invalidate(&command, kInvalidateSetups | kInvalidateSolutions);
  EXPECT_FALSE(SolutionOf(setup).HasValidSolutionData(L"x=1", -1));
  command.Undo();
  EXPECT_TRUE(SolutionOf(setup).HasValidSolutionData(L"x=1", -1));
  EXPECT_EQ(setup.GetVersionID(), 0);
  command.Redo();
  EXPECT_FALSE(SolutionOf(setup).HasValidSolutionData(L"x=1", -1));
}

TEST_F(SetupTest, ACopySharesSolutionsAndNeverFreesThem) {
  BaseSimulationSetup & setup = AddSetup(L"A");
  {
    BaseSimulationSetup const copy(setup);
    EXPECT_EQ(copy.GetSolutions(), setup.GetSolutions());
    EXPECT_EQ(copy.GetID(), setup.GetID());
  }
  EXPECT_EQ(SolutionOf(setup).GetSolutionName(), AString(L"Sweep"));
}

TEST_F(SetupTest, AConvergenceBlockNameKeepsAnInvalidVersionOnPurpose) {
  BaseSimulationSetup & setup = AddSetup(L"A");
  SolutionVariationKey key;
  ASSERT_TRUE(key.Unpack(setup.GetConvBlockName(L"x=1", -1)));
  EXPECT_EQ(key.GetVersionIDKey(), -1);
  EXPECT_EQ(key.GetSolutionKey(), SolutionVariationKey::kConvDataKey);
}

TEST_F(SetupTest, SweepsSharedWithAnotherSetupLiveUntilBothGaveThemUp) {
  support::TestSetup first(&Manager(), AString(L"A"));
  auto * const sweep = new SweepDefinition;
  sweep->SetVariableName(L"F");
  first.AddSingleSweep(sweep);
  support::TestSetup second(&Manager(), &first);
  {
    support::TestSetup copy(first);
    copy.RemoveAllSweeps();
  }
  first.RemoveAllSweeps();
  EXPECT_EQ(second.GetSweepDef(L"F"), sweep);
  EXPECT_EQ(second.GetSweepDef(L"f"), nullptr);
  second.RemoveAllSweeps();
}

TEST_F(SetupTest, ACopyAssignedBackLeavesEachSolutionOwnedOnce) {
  BaseSimulationSetup & setup = AddSetup(L"A");
  BaseSolution * const solution = &SolutionOf(setup);
  {
    BaseSimulationSetup copy(setup);
    copy.SetName(L"Edited");
    setup = copy;
  }
  EXPECT_EQ(setup.GetName(), AString(L"Edited"));
  EXPECT_EQ(&SolutionOf(setup), solution);
  EXPECT_EQ(solution->GetSolutionName(), AString(L"Sweep"));
}

TEST_F(SetupTest, ASolutionAddedToACopyBelongsToTheCopy) {
  BaseSimulationSetup & setup = AddSetup(L"A");
  BaseSimulationSetup copy(setup);
  copy.AddSolution(copy.CreateSolution(L"Second"), nullptr);
  EXPECT_EQ(copy.GetSolutions().size(), 2u);
  EXPECT_EQ(setup.GetSolutions().size(), 1u);
}

TEST_F(SetupTest, ASolutionThatIsAddedAgainAfterItsDeletionStandsInOneMap) {
  BaseSimulationSetup & setup = AddSetup(L"A");
  BaseSolution & solution = SolutionOf(setup);
  setup.DeleteSolution(solution.GetID(), nullptr);
  setup.AddSolution(&solution, nullptr);
  EXPECT_TRUE(setup.GetDeletedSolutions().empty());
  EXPECT_FALSE(solution.IsDeleted());
}

// What it shares is lost in a run that looks for leaks when its share stays counted.
TEST_F(SetupTest, AnEquivalentSetupThatDiesGivesUpItsShareOfTheSweeps) {
  support::TestSetup first(&Manager(), AString(L"A"));
  auto * const sweep = new SweepDefinition;
  sweep->SetVariableName(L"F");
  first.AddSingleSweep(sweep);
  {
    support::TestSetup const second(&Manager(), &first);
    EXPECT_EQ(second.GetSweepDef(L"F"), sweep);
  }
  EXPECT_EQ(first.GetSweepDef(L"F")->GetVariableName(), AString(L"F"));
  first.RemoveAllSweeps();
}

TEST_F(SetupTest, ASweepThatSomebodyHoldsLivesOnWhenItsSetupIsAssignedTo) {
  support::TestSetup first(&Manager(), AString(L"A")), other(&Manager(), AString(L"B"));
  auto * const sweep = new SweepDefinition;
  sweep->SetVariableName(L"F");
  first.AddSingleSweep(sweep);
  static_cast<BaseSimulationSetup &>(first) = other;
  EXPECT_EQ(first.GetSweepDef(L"F"), nullptr);
  EXPECT_EQ(sweep->GetVariableName(), AString(L"F"));
}

TEST_F(SetupTest, ADyingSetupLeavesItsSweepsToWhoeverUsesThemOnPurpose) {
  auto * const sweep = new SweepDefinition;
  sweep->SetVariableName(L"F");
  {
    support::TestSetup setup(&Manager(), AString(L"A"));
    setup.AddSingleSweep(sweep);
  }
  EXPECT_EQ(sweep->GetVariableName(), AString(L"F"));
  SweepDefinition::FreeStorage(sweep);
}

TEST_F(SetupTest, InvalidationReachesSolutionsWhosePlaceAnotherTook) {
  BaseSimulationSetup & setup = AddSetup(L"A");
  auto * const first = new support::TestSolution(setup, 301, 1);
  KelvroCommand command(L"Delete");
  setup.AddSolution(first, nullptr);
  setup.DeleteSolution(301, &command);
  setup.AddSolution(new support::TestSolution(setup, 301, 2), nullptr);
  setup.DeleteSolution(301, nullptr);
  ASSERT_NE(setup.GetDeletedSolutions().at(301), first);
  setup.Invalidate(nullptr, 50, kInvalidateSolutions);
  EXPECT_EQ(first->GetVersionID(), 50);
  setup.NonUndoableInvalidateAll();
  EXPECT_NE(first->GetVersionID(), 50);
}

TEST_F(SetupTest, WithoutADesignAnInvalidationOfASetupWithoutSolutionsIsReported) {
  BaseSolutionManager manager{LongFileName(L"none.qsol")};
  support::TestSetup setup(&manager, AString(L"A"));
  AssertWatch::Expect("design");
  setup.Invalidate(nullptr, 50, kInvalidateSetups);
  EXPECT_EQ(setup.GetVersionID(), 50);
}
