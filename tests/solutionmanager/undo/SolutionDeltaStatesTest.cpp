#include "solutionmanager/undo/CAllSolutionsDeltaState.h"
#include "solutionmanager/undo/SolutionMapDeltaState.h"
#include "solutionmanager/undo/SolutionVariationMapDeltaState.h"

#include "basekit/command/KelvroCommand.h"
#include "tests/solutionmanager/support/TestProduct.h"
#include "tests/support/AssertWatch.h"

#include <gtest/gtest.h>

using support::AssertWatch;

namespace {

class AllSolutionsTest : public support::ModelTest {
protected:
  AllSolutionsTest() : m_setup(AddSetup(L"Setup1", L"A")), m_a(SolutionOf(m_setup)), m_b(Add(L"B")) {}

  BaseSolution & Add(AString const & name) {
    BaseSolution * const solution = m_setup.CreateSolution(name);
    m_setup.AddSolution(solution, nullptr);
    return *solution;
  }

  BaseSimulationSetup & m_setup;
  BaseSolution & m_a;
  BaseSolution & m_b;
};

class VariationMapTest : public support::ModelTest {
protected:
  using Map = SolutionVariationMapDeltaState::Map;

  VariationMapTest() : m_solution(SolutionOf(AddSetup(L"Setup1"))) {}

  VariationIDIndex Index(AString const & variation) {
    return VariationIDIndex(variation, m_solution.GetVersionID(), &Manager());
  }
  support::TestVariation * NewVariation(AString const & variation) {
    return new support::TestVariation(&m_solution, variation, m_solution.GetVersionID());
  }

  BaseSolution & m_solution;
};

} // namespace

TEST_F(AllSolutionsTest, CaptureGivesTheNewStateToLiveAndDeletedSolutions) {
  m_setup.DeleteSolution(m_b.GetID(), nullptr);
  CAllSolutionsDeltaState delta(&m_setup, 500);
  delta.Capture();
  EXPECT_EQ(m_a.GetVersionID(), 500);
  EXPECT_EQ(m_b.GetVersionID(), 500);
}

TEST_F(AllSolutionsTest, UndoRedoUndoEndsInTheOldStates) {
  long const oldA = m_a.GetVersionID();
  long const oldB = m_b.GetVersionID();
  CAllSolutionsDeltaState delta(&m_setup, 500);
  delta.Capture();
  delta.UndoIt();
  EXPECT_EQ(m_a.GetVersionID(), oldA);
  EXPECT_EQ(m_b.GetVersionID(), oldB);
  delta.RedoIt();
  EXPECT_EQ(m_a.GetVersionID(), 500);
  delta.UndoIt();
  EXPECT_EQ(m_a.GetVersionID(), oldA);
  EXPECT_EQ(m_b.GetVersionID(), oldB);
}

TEST_F(AllSolutionsTest, ASolutionThatCameLaterGetsANumberOfItsOwnAtUndoAndKeepsIt) {
  CAllSolutionsDeltaState delta(&m_setup, 500);
  delta.Capture();
  BaseSolution & later = Add(L"Later");
  later.Invalidate(nullptr, 500);
  delta.UndoIt();
  long const own = later.GetVersionID();
  EXPECT_NE(own, 500);
  EXPECT_NE(own, m_a.GetVersionID());
  EXPECT_LT(own, Manager().FetchNextUniqueIDNoWrite()) << "the number comes from the design's server";
  delta.RedoIt();
  EXPECT_EQ(later.GetVersionID(), 500);
  delta.UndoIt();
  EXPECT_EQ(later.GetVersionID(), own);
}

TEST_F(AllSolutionsTest, ASolutionThatCameWhileTheChangeWasUndoneTakesTheNewStateAtRedo) {
  CAllSolutionsDeltaState delta(&m_setup, 500);
  delta.Capture();
  delta.UndoIt();
  BaseSolution & later = Add(L"Later");
  long const before = later.GetVersionID();
  delta.RedoIt();
  EXPECT_EQ(later.GetVersionID(), 500);
  delta.UndoIt();
  EXPECT_EQ(later.GetVersionID(), before);
}

TEST_F(AllSolutionsTest, AnotherStateThatIsGivenIsTakenForLaterOnes) {
  CAllSolutionsDeltaState delta(&m_setup, 500, 77);
  delta.Capture();
  BaseSolution & later = Add(L"Later");
  delta.UndoIt();
  EXPECT_EQ(later.GetVersionID(), 77);
}

TEST(AllSolutions, WithoutASetupNothingHappens) {
  CAllSolutionsDeltaState delta(nullptr, 500, -1);
  delta.Capture();
  delta.UndoIt();
  delta.RedoIt();
  EXPECT_TRUE(delta.IsStateChangeDone());
}

TEST_F(AllSolutionsTest, UndoneAddsAndDeletesOfSolutionsGiveTheSamePointersBack) {
  KelvroCommand command(L"Edit");
  BaseSolution * const added = m_setup.CreateSolution(L"C");
  m_setup.AddSolution(added, &command);
  m_setup.DeleteSolution(m_b.GetID(), &command);
  command.Undo();
  EXPECT_TRUE(m_setup.IsDeletedSolution(added));
  EXPECT_EQ(m_setup.GetISolutionByID(m_b.GetID(), false), static_cast<ISolution *>(&m_b));
  command.Redo();
  EXPECT_EQ(m_setup.GetISolutionByID(added->GetID(), false), static_cast<ISolution *>(added));
  EXPECT_TRUE(m_setup.IsDeletedSolution(&m_b));
}

TEST_F(VariationMapTest, UndoAndRedoMoveAVariationByItsIndex) {
  Map live;
  Map deleted;
  std::unique_ptr<support::TestVariation> const variation(NewVariation(L"x=1"));
  live.emplace(Index(L"x=1"), variation.get());
  SolutionVariationMapDeltaState delta(&live, &deleted, true);
  delta.Record(variation.get(), true);
  delta.UndoIt();
  EXPECT_TRUE(live.empty());
  EXPECT_EQ(deleted.at(Index(L"x=1")), variation.get());
  delta.RedoIt();
  EXPECT_EQ(live.at(Index(L"x=1")), variation.get());
  EXPECT_TRUE(deleted.empty());
}

TEST_F(VariationMapTest, BrokenExpectationsAreReported) {
  Map live;
  Map deleted;
  std::unique_ptr<support::TestVariation> const variation(NewVariation(L"x=1"));
  SolutionVariationMapDeltaState delta(&live, &deleted, true);
  AssertWatch::Expect("m_insertedItems.find(index) == m_insertedItems.end()");
  AssertWatch::Expect("m_removedItems.find(index) == m_removedItems.end()");
  delta.Record(variation.get(), true);
  delta.Record(variation.get(), true);
  delta.Record(variation.get(), false);
  delta.Record(variation.get(), false);
  AssertWatch::Expect("m_srcMap.find(index) != m_srcMap.end()");
  delta.UndoIt();
  AssertWatch::Expect("m_srcMap.find(index) == m_srcMap.end()");
  live.emplace(Index(L"x=1"), variation.get());
  SolutionVariationMapDeltaState second(&live, &deleted, true);
  second.Record(variation.get(), false);
  second.UndoIt();
}

TEST_F(VariationMapTest, WithoutADeletedMapTheRecordOwnsWhatIsOutside) {
  Map live;
  SolutionVariationMapDeltaState delta(&live, nullptr, true);
  delta.Record(NewVariation(L"x=2"), false);
  // The leak check of a sanitizer run tells whether the variation goes with the record.
  EXPECT_TRUE(live.empty());
}
