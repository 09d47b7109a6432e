// Changes of version by edits: what each kind of object does with a new state, and which changes are recorded.

#include "basekit/command/KelvroCommand.h"
#include "basekit/file/LongFileName.h"
#include "solutionmanager/undo/CAllSolutionsDeltaState.h"
#include "solutionmanager/undo/SolutionMapDeltaState.h"
#include "solutionmanager/undo/SolutionVariationMapDeltaState.h"
#include "tests/solutionmanager/support/TestProduct.h"
#include "tests/support/AssertWatch.h"

#include <gtest/gtest.h>

namespace {

using namespace support;

std::vector<std::string> g_updates;

/// Tells what is derived from its data that the data changed.
struct WatchedSolution : TestSolution {
  using TestSolution::TestSolution;
  void UpdatePostProcessingItems(bool hasData) override {
    g_updates.push_back(std::to_string(GetID()) + (hasData ? " has data" : ""));
  }
};

struct ReloadingManager : TestManager {
  using TestManager::TestManager;
  bool ReloadSolutionDataOnUndo() const override { return reloads; }
  bool reloads = true;
};

class VersionChanges : public ModelTest {
protected:
  VersionChanges() : m_setup(AddSetup(L"Setup1", L"A")), m_solution(SolutionOf(m_setup)) { g_updates.clear(); }
  BaseSolution & AddWatched(BaseSimulationSetup & setup, long id) {
    auto * const solution = new WatchedSolution(setup, id, 0);
    setup.AddSolution(solution, nullptr);
    g_updates.clear();
    return *solution;
  }
  long NextID() { return Manager().FetchNextUniqueIDNoWrite() + 1; }

  BaseSimulationSetup & m_setup;
  BaseSolution & m_solution;
};

} // namespace

TEST_F(VersionChanges, AStateIsTheVersionWhicheverWayItCame) {
  for (bool const undo : {false, true}) {
    long const state = undo ? 31 : 30;
    long told = 0;
    Manager().SetState(state, undo);
    Manager().GetState(told);
    EXPECT_EQ(told, state);
    m_setup.SetState(state, undo);
    m_setup.GetState(told);
    EXPECT_EQ(told, state);
    m_solution.SetState(state, undo);
    m_solution.GetState(told);
    EXPECT_EQ(told, state);
    EXPECT_EQ(m_solution.GetVersionID(), state);
  }
}

TEST_F(VersionChanges, ASolutionTellsTheDesignAndWhatIsDerivedFromItsData) {
  BaseSolution & solution = AddWatched(m_setup, 301);
  m_design.changes = 0;
  solution.SetState(44, true);
  EXPECT_EQ(m_design.changes, 1);
  EXPECT_EQ(g_updates, std::vector<std::string>{"301"});
}

TEST_F(VersionChanges, OnlyAProductThatReloadsIsToldOfDataAtTheNewVersion) {
  ReloadingManager manager(&m_design);
  TestSetup setup(&manager, 300, 0);
  WatchedSolution solution(setup, 301, 0);
  manager.AddVariationID(L"x=1", 7);
  solution.EnsureVariation(L"x=1", 44);
  solution.SetState(44, true);
  solution.SetState(45, false);
  manager.reloads = false;
  solution.SetState(44, true);
  EXPECT_EQ(g_updates, (std::vector<std::string>{"301 has data", "301", "301"}));
}

TEST_F(VersionChanges, ASolutionWithoutADesignReportsItsAbsenceAndTakesTheState) {
  BaseSolutionManager manager(LongFileName(L"/nowhere/none.qsol"));
  TestSetup setup(&manager, 300, 0);
  WatchedSolution solution(setup, 301, 0);
  AssertWatch::Expect("design");
  solution.SetState(44, true);
  EXPECT_EQ(solution.GetVersionID(), 44);
  EXPECT_EQ(g_updates, std::vector<std::string>{"301"});
}

TEST_F(VersionChanges, AProductReloadsNothingOnUndoUnlessItSaysSo) {
  EXPECT_FALSE(Manager().ReloadSolutionDataOnUndo());
}

TEST_F(VersionChanges, InvalidatingToTheStateThatIsHeldIsNoChange) {
  KelvroCommand command(L"Edit");
  m_setup.Invalidate(&command, m_setup.GetVersionID(), kInvalidateSetups);
  m_solution.Invalidate(&command, m_solution.GetVersionID());
  EXPECT_FALSE(command.HasDeltaStates());
}

TEST_F(VersionChanges, InvalidatingWithACommandIsRecorded) {
  KelvroCommand ofSolution(L"Edit"), ofSetup(L"Edit"), ofManager(L"Edit");
  m_solution.Invalidate(&ofSolution, 50);
  m_setup.Invalidate(&ofSetup, 51, kInvalidateSetups);
  Manager().Invalidate(&ofManager, kInvalidateManager);
  long const managerState = Manager().GetVersionID();
  for (KelvroCommand * const command : {&ofManager, &ofSetup, &ofSolution}) {
    EXPECT_TRUE(command->HasDeltaStates());
    command->Undo();
  }
  EXPECT_EQ(m_solution.GetVersionID(), 0);
  EXPECT_EQ(m_setup.GetVersionID(), 0);
  EXPECT_EQ(Manager().GetVersionID(), 0);
  ofManager.Redo();
  EXPECT_EQ(Manager().GetVersionID(), managerState);
}

TEST_F(VersionChanges, NoFlagsAreNoChangeAndTakeNoID) {
  long const next = NextID();
  Manager().Invalidate(nullptr, 0);
  m_setup.Invalidate(nullptr, 50, 0);
  EXPECT_EQ(Manager().GetVersionID(), 0);
  EXPECT_EQ(m_setup.GetVersionID(), 0);
  EXPECT_EQ(m_solution.GetVersionID(), 0);
  EXPECT_EQ(Manager().FetchNextUniqueIDNoWrite(), next);
}

TEST_F(VersionChanges, EachFlagReachesItsKindOfObjectAlone) {
  Manager().Invalidate(nullptr, kInvalidateManager);
  EXPECT_NE(Manager().GetVersionID(), 0);
  EXPECT_EQ(m_setup.GetVersionID(), 0);
  EXPECT_EQ(m_solution.GetVersionID(), 0);
  m_setup.Invalidate(nullptr, 51, kInvalidateSetups);
  EXPECT_EQ(m_setup.GetVersionID(), 51);
  EXPECT_EQ(m_solution.GetVersionID(), 0);
  m_setup.Invalidate(nullptr, 52, kInvalidateSolutions);
  EXPECT_EQ(m_setup.GetVersionID(), 51);
  EXPECT_EQ(m_solution.GetVersionID(), 52);
}

TEST_F(VersionChanges, WhatNoUndoMayReverseReachesLiveAndDeletedObjects) {
  BaseSolution & deletedSolution = AddWatched(m_setup, 301);
  m_setup.DeleteSolution(301, nullptr);
  BaseSimulationSetup & deletedSetup = AddSetup(L"Setup2");
  Manager().DeleteSimulationSetup(deletedSetup.GetID(), nullptr);
  auto * const variation = new TestVariation(&m_solution, L"x=1", 0);
  m_solution.AddSolutionVariation(variation);
  Manager().NonUndoableInvalidateAll();
  std::set<long> const states = {m_setup.GetVersionID(), m_solution.GetVersionID(), deletedSolution.GetVersionID(),
                                 deletedSetup.GetVersionID(), SolutionOf(deletedSetup).GetVersionID()};
  EXPECT_EQ(states.size(), 5u) << "each takes an ID of its own";
  EXPECT_FALSE(states.contains(0));
  m_solution.SetState(0, true);
  m_solution.ResetOverrideIsValid(false);
  EXPECT_FALSE(variation->IsVariationValid()) << "the variation itself is invalid, not only its version";
}

TEST_F(VersionChanges, AllSolutionsTakeTheStateInTheOrderOfLiveAndThenDeletedOnes) {
  AddWatched(m_setup, 303);
  m_setup.DeleteSolution(303, nullptr);
  AddWatched(m_setup, 305);
  AddWatched(m_setup, 304);
  CAllSolutionsDeltaState delta(&m_setup, 500);
  delta.Capture();
  EXPECT_EQ(g_updates, (std::vector<std::string>{"304", "305", "303"}));
}

TEST_F(VersionChanges, ANumberForNewcomersIsTakenOnceAndOnlyWhenNeeded) {
  CAllSolutionsDeltaState delta(&m_setup, 500);
  delta.Capture();
  long const next = NextID();
  delta.UndoIt();
  delta.RedoIt();
  EXPECT_EQ(Manager().FetchNextUniqueIDNoWrite(), next) << "there was no newcomer";
  BaseSolution & first = AddWatched(m_setup, 301);
  BaseSolution & second = AddWatched(m_setup, 302);
  delta.UndoIt();
  EXPECT_EQ(first.GetVersionID(), next + 1);
  EXPECT_EQ(second.GetVersionID(), next + 1);
}

TEST_F(VersionChanges, MovesOfSolutionsAreToldToTheAddedOnesFirstAndThenToTheDeletedOnes) {
  BaseSolution & removed = AddWatched(m_setup, 301);
  BaseSolution & inserted = AddWatched(m_setup, 302);
  BaseSimulationSetup::SolutionMap live{{302, &inserted}};
  BaseSimulationSetup::SolutionMap deleted{{301, &removed}};
  SolutionMapDeltaState<long, BaseSolution *> delta(&live, &deleted);
  delta.Record(301, &removed, false);
  delta.Record(302, &inserted, true);
  delta.UndoIt();
  delta.RedoIt();
  EXPECT_EQ(g_updates, (std::vector<std::string>{"302", "301", "302", "301"}));
}

TEST_F(VersionChanges, EveryMovedVariationIsToldToItsSolution) {
  BaseSolution & solution = AddWatched(m_setup, 301);
  SolutionVariationMapDeltaState::Map live, deleted;
  SolutionVariationMapDeltaState delta(&live, &deleted, false);
  TestVariation first(&solution, L"x=1", 0), second(&solution, L"x=2", 0);
  delta.Record(&first, true);
  delta.Record(&second, true);
  delta.RedoIt();
  EXPECT_EQ(g_updates, (std::vector<std::string>{"301", "301"}));
}

TEST_F(VersionChanges, EveryAddAndDeleteIsRecordedWithACommandAndStandsWithoutOne) {
  auto const changes = [&](auto change) {
    KelvroCommand command(L"Edit");
    change(&command);
    return command.HasDeltaStates();
  };
  EXPECT_TRUE(changes([&](auto * command) { m_setup.AddSolution(new TestSolution(m_setup, 301, 0), command); }));
  EXPECT_TRUE(changes([&](auto * command) { m_setup.DeleteSolution(301, command); }));
  EXPECT_TRUE(changes([&](auto * command) { Manager().AddSimulation(new TestSetup(&Manager(), 300, 0), command); }));
  EXPECT_TRUE(changes([&](auto * command) { Manager().DeleteSimulationSetup(300, command); }));
  EXPECT_EQ(m_setup.GetDeletedSolutions().count(301), 1u) << "it stays after its command is gone";
  EXPECT_EQ(Manager().GetDeletedSetups().count(300), 1u);
  m_setup.DeleteSolution(m_solution.GetID(), nullptr);
  EXPECT_EQ(m_setup.GetDeletedSolutions().count(m_solution.GetID()), 1u);
}

TEST_F(VersionChanges, ObjectsThatHadOneIDComeBackOneAfterTheOtherAtUndo) {
  std::vector<BaseSolution *> solutions;
  std::vector<std::unique_ptr<KelvroCommand>> deletions;
  for (long round = 0; round < 3; ++round) {
    solutions.push_back(new TestSolution(m_setup, 301, round));
    m_setup.AddSolution(solutions.back(), nullptr);
    deletions.push_back(std::make_unique<KelvroCommand>(L"Delete"));
    m_setup.DeleteSolution(301, deletions.back().get());
    EXPECT_EQ(m_setup.GetDeletedSolutions().at(301), solutions.back());
  }
  deletions[2]->Undo();
  EXPECT_EQ(m_setup.GetSolutions().at(301), solutions[2]);
  EXPECT_EQ(m_setup.GetDeletedSolutions().at(301), solutions[1]) << "as it was before";
  m_setup.DeleteSolution(301, nullptr);
  deletions[0]->Undo();
  EXPECT_EQ(m_setup.GetSolutions().at(301), solutions[0]);
  EXPECT_EQ(solutions[1]->GetVersionID(), 1) << "alive, though no map holds it";
}

TEST_F(VersionChanges, SetupsThatHadOneIDStayAliveForUndo) {
  auto * const first = new TestSetup(&Manager(), 300, 1);
  auto * const second = new TestSetup(&Manager(), 300, 2);
  KelvroCommand command(L"Delete");
  Manager().AddSimulation(first, nullptr);
  Manager().DeleteSimulationSetup(300, &command);
  Manager().AddSimulation(second, nullptr);
  Manager().DeleteSimulationSetup(300, nullptr);
  EXPECT_EQ(Manager().GetDeletedSetups().at(300), second);
  command.Undo();
  EXPECT_EQ(Manager().GetSetups().at(300), first);
  EXPECT_EQ(Manager().GetDeletedSetups().at(300), second) << "another object under the key keeps its place";
}

TEST_F(VersionChanges, AVariationSolvedAndDeletedAgainAndAgainKeepsFormerObjectsForWhoeverHoldsThem) {
  std::vector<BaseSolutionVariation *> former;
  for (int round = 0; round < 3; ++round) {
    Solve(m_solution, L"x=1", {1});
    former.push_back(m_solution.GetBaseSolutionVariation(L"x=1", 0));
    m_solution.DeleteSolutionVariation(L"x=1", nullptr);
  }
  for (BaseSolutionVariation const * const variation : former)
    EXPECT_EQ(variation->GetDesignVariationKey(), AString(L"x=1"));
  EXPECT_EQ(std::set<BaseSolutionVariation *>(former.begin(), former.end()).size(), 3u);
}
