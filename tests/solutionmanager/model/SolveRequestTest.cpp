#include "CoreInterfaces/desktop/SimulationTask.h"
#include "tests/solutionmanager/support/TestProduct.h"
#include "tests/support/AssertWatch.h"
#include "tests/support/Printers.h"

using support::AssertWatch;

class SolveRequestTest : public support::ModelTest {
protected:
  BaseSolution & AddSolution(AString const & name) {
    BaseSolution * const solution = m_setup.CreateSolution(name);
    m_setup.AddSolution(solution, nullptr);
    return *solution;
  }
  int Request(std::vector<long> const & solutionIDs) {
    return m_setup.StartSingleSimulation(&m_instance, 0, 0, &solutionIDs);
  }

  support::TestInstance m_instance{m_design, L"x=1"};
  BaseSimulationSetup & m_setup = AddSetup(L"A", L"First");
  BaseSolution & m_first = SolutionOf(m_setup);
};

TEST_F(SolveRequestTest, TheCodesAreThoseThatDesktopsKnow) {
  EXPECT_EQ(kNothingToSolve, 5001);
  EXPECT_EQ(kAlreadySolving, 5002);
  EXPECT_EQ(kSolveRefused, 5003);
  EXPECT_EQ(kSolveSubmitted, 5004);
}

TEST_F(SolveRequestTest, AnEmptyListOfATaskMeansTheWholeSetupAndOneHandedOverMeansNothingOnPurpose) {
  EXPECT_EQ(m_setup.StartSingleSimulation(&m_instance, 0, 0, nullptr), kSolveSubmitted);
  m_design.service.submitted.clear();
  SimulationTask const task(1, 2, {});
  EXPECT_EQ(m_setup.StartSingleSimulation(&m_instance, &task), kSolveSubmitted);
  ASSERT_EQ(m_design.service.submitted.size(), 1u);
  EXPECT_EQ(m_design.service.submitted[0].GetSolutionKey(), id::invalidID);
  EXPECT_EQ(Request({}), kNothingToSolve);
  EXPECT_TRUE(m_desktop.posted.empty());
}

TEST_F(SolveRequestTest, ATasksListIsHandedOn) {
  BaseSolution & second = AddSolution(L"Second");
  SimulationTask const task(1, 2, {second.GetID()});
  EXPECT_EQ(m_setup.StartSingleSimulation(&m_instance, &task), kSolveSubmitted);
  EXPECT_EQ(m_design.service.asked, std::vector<long>{second.GetID()});
}

TEST_F(SolveRequestTest, SolutionsThatAreNotThereAreDroppedWithoutAMessage) {
  EXPECT_EQ(Request({4711, 4712}), kNothingToSolve);
  EXPECT_TRUE(m_desktop.posted.empty());
}

TEST_F(SolveRequestTest, ADeletedSolutionIsNotSolved) {
  m_setup.DeleteSolution(m_first.GetID(), nullptr);
  EXPECT_EQ(Request({m_first.GetID()}), kNothingToSolve);
  EXPECT_TRUE(m_desktop.posted.empty());
}

TEST_F(SolveRequestTest, EachSolutionIsAskedForAtItsOwnVersionAndTheSetupAtIts) {
  BaseSolution & second = AddSolution(L"Second");
  m_first.Invalidate(nullptr, 41);
  second.Invalidate(nullptr, 42);
  m_setup.Invalidate(nullptr, 43, kInvalidateSetups);
  EXPECT_EQ(Request({second.GetID(), m_first.GetID()}), kSolveSubmitted);
  long const setupID = m_setup.GetID();
  ASSERT_EQ(m_design.service.submitted.size(), 2u);
  EXPECT_TRUE(m_design.service.submitted[0] == SolutionVariationKey(setupID, L"x=1", second.GetID(), 42));
  EXPECT_TRUE(m_design.service.submitted[1] == SolutionVariationKey(setupID, L"x=1", m_first.GetID(), 41));
  m_design.service.submitted.clear();
  EXPECT_EQ(m_setup.StartSingleSimulation(&m_instance, 0, 0, nullptr), kSolveSubmitted);
  ASSERT_EQ(m_design.service.submitted.size(), 1u);
  EXPECT_TRUE(m_design.service.submitted[0] == SolutionVariationKey(setupID, L"x=1", -1, 43));
}

TEST_F(SolveRequestTest, OneSolutionThatIsBehindIsEnoughToSolveTheWholeSetup) {
  Solve(m_first, L"x=1", {1.0});
  AddSolution(L"Second");
  EXPECT_EQ(m_setup.StartSingleSimulation(&m_instance, 0, 0, nullptr), kSolveSubmitted);
  EXPECT_TRUE(m_desktop.posted.empty());
}

TEST_F(SolveRequestTest, AnEditMakesASolveNecessaryAndUndoingItMakesItUnnecessaryAgain) {
  Solve(m_first, L"x=1", {1.0});
  EXPECT_EQ(Request({m_first.GetID()}), kNothingToSolve);
  long const former = m_first.GetVersionID();
  m_first.Invalidate(nullptr, 50);
  EXPECT_EQ(Request({m_first.GetID()}), kSolveSubmitted);
  m_first.SetState(former, true);
  EXPECT_EQ(Request({m_first.GetID()}), kNothingToSolve);
}

TEST_F(SolveRequestTest, AnotherVariationIsAnotherSolve) {
  Solve(m_first, L"x=1", {1.0});
  support::TestInstance other(m_design, L"x=2");
  EXPECT_EQ(m_setup.StartSingleSimulation(&other, 0, 0, nullptr), kSolveSubmitted);
  EXPECT_EQ(m_design.service.submitted.back().GetDesignVariationKey(), L"x=2");
}

TEST_F(SolveRequestTest, WhatIsBeingSolvedIsToldOnceForTheSetupWhateverTheListAsksFor) {
  BaseSolution & second = AddSolution(L"Second");
  m_design.service.solving = true;
  EXPECT_EQ(Request({m_first.GetID(), second.GetID()}), kAlreadySolving);
  ASSERT_EQ(m_desktop.posted.size(), 1u);
  EXPECT_EQ(m_desktop.posted[0], std::make_pair(24681L, AString(L"A")));
  EXPECT_TRUE(m_design.service.submitted.empty());
}

TEST_F(SolveRequestTest, ARefusalPostsNothing) {
  m_design.service.accepts = false;
  EXPECT_EQ(Request({m_first.GetID()}), kSolveRefused);
  EXPECT_TRUE(m_desktop.posted.empty());
}

TEST_F(SolveRequestTest, KeysOfSolutionsThatAreNotThereAreReportedAndLeftOut) {
  std::vector<SolutionVariationKey> keys;
  std::vector<long> const ids = {4711, m_first.GetID()};
  AssertWatch::Expect("soln");
  EXPECT_TRUE(m_setup.GetSolutionVariationKeysForSolve(keys, L"x=1", &ids));
  EXPECT_EQ(keys.size(), 1u);
  std::vector<long> const none;
  EXPECT_TRUE(m_setup.GetSolutionVariationKeysForSolve(keys, L"x=1", &none));
  EXPECT_EQ(keys.size(), 1u) << "an empty list asks for nothing, and what was there stays";
}

TEST_F(SolveRequestTest, MessagesTellTheSetupAndAreSevereAsWarnings) {
  Solve(m_first, L"x=1", {1.0});
  EXPECT_FALSE(m_setup.NeedsToSimulate(&m_instance));
  ASSERT_EQ(m_desktop.posted.size(), 1u);
  EXPECT_EQ(m_desktop.posted[0], std::make_pair(24680L, AString(L"A")));
  EXPECT_FALSE(m_setup.NeedsToSimulate(AString(L"x=1")));
  EXPECT_EQ(m_desktop.posted.size(), 1u);
  EXPECT_TRUE(m_setup.NeedsToSimulate(AString(L"x=2")));
}

TEST_F(SolveRequestTest, ARequestWithoutInstanceOrTaskIsReportedAndRefused) {
  AssertWatch::Expect("instance");
  EXPECT_EQ(m_setup.StartSingleSimulation(nullptr, 0, 0, nullptr), kSolveRefused);
  AssertWatch::Expect("task");
  EXPECT_EQ(m_setup.StartSingleSimulation(&m_instance, static_cast<SimulationTask const *>(nullptr)), kSolveRefused);
}
