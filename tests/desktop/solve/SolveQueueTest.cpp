#include "basekit/text/Utf8.h"
#include "desktop/Error.h"
#include "tests/desktop/solve/SolveQueueFixture.h"

#include <filesystem>

using namespace desktop;

namespace {

using support::LargestFile;
using support::Listener;

class SolveQueueTest : public support::SolveQueueTest {};

} // namespace

TEST_F(SolveQueueTest, EveryPointIsStoredAndReadable) {
  ASSERT_TRUE(SubmitVariations(30));
  EXPECT_EQ(m_queue.QueuedCount(), 30);
  SolveOutcome const outcome = m_queue.Run(m_listener);
  EXPECT_EQ(outcome.stored, 30);
  EXPECT_EQ(outcome.failed, 0);
  EXPECT_FALSE(outcome.interrupted);
  EXPECT_EQ(m_queue.QueuedCount(), 0);
  EXPECT_EQ(m_listener.started.size(), 30u);
  EXPECT_EQ(m_listener.stored.size(), 30u);
  EXPECT_EQ(m_listener.progress, (std::vector{30, 0, 30}));
  for (int i = 0; i < 30; ++i) {
    auto const values = ValuesOf(AString::Format(L"N=%d", i));
    ASSERT_EQ(values.size(), 3u);
    EXPECT_EQ(values[0], i < 10 ? 3.0 : 4.0);
  }
}

TEST_F(SolveQueueTest, WhatWasAcknowledgedIsInTheLibraryOfTheNextSession) {
  ASSERT_TRUE(SubmitVariations(5));
  m_listener.onStored = [this](AString const & variation) { EXPECT_TRUE(Manager().HasDataBlock(KeyOf(variation))); };
  m_queue.Run(m_listener);
  WriteDefinitions();
  auto const keys = std::vector{KeyOf(L"N=0"), KeyOf(L"N=4")};
  Reopen();
  for (auto const & key : keys) {
    io::CBlock block(key.Pack());
    EXPECT_EQ(Manager().LoadSingleBlock(block), CStreamioLibrary::kLibSuccess);
    EXPECT_EQ(block.Size(), 1);
  }
}

TEST_F(SolveQueueTest, ASolvedVariationIsMadeWithoutItsDataInMemory) {
  ASSERT_TRUE(SubmitVariations(1));
  m_queue.Run(m_listener);
  ASSERT_EQ(m_solution.size(), 1);
  EXPECT_FALSE(m_solution.GetVariations().begin()->second->HasSolutionData());
  EXPECT_TRUE(m_solution.HasValidSolutionData(AString(L"N=0"), id::invalidID));
}

TEST_F(SolveQueueTest, DataInMemoryOfAFormerSolveGivesWayToWhatIsStoredNow) {
  Solve(m_solution, L"N=0", {17.0});
  ASSERT_EQ(ValuesOf(L"N=0"), std::vector{17.0});
  ASSERT_TRUE(SubmitVariations(1));
  m_queue.Run(m_listener);
  EXPECT_EQ(ValuesOf(L"N=0").size(), 3u);
}

TEST_F(SolveQueueTest, AKeyOfTheWholeSetupMeansEachSolutionThatNeedsItAtItsOwnVersion) {
  m_setup.AddSolution(m_setup.CreateSolution(L"Second"), nullptr);
  m_setup.AddSolution(m_setup.CreateSolution(L"Third"), nullptr);
  auto at = m_setup.GetSolutions().begin();
  BaseSolution & second = *(++at)->second;
  BaseSolution & third = *(++at)->second;
  second.Invalidate(nullptr, id::invalidID);
  Solve(third, L"N=1", {1.0});
  ASSERT_TRUE(Submit({WholeSetup(L"N=1")}));
  EXPECT_EQ(m_queue.QueuedCount(), 2);
  EXPECT_EQ(m_queue.Run(m_listener).stored, 2);
  EXPECT_TRUE(m_solution.HasValidSolutionData(AString(L"N=1"), id::invalidID));
  EXPECT_TRUE(second.HasValidSolutionData(AString(L"N=1"), second.GetVersionID()));
}

TEST_F(SolveQueueTest, AWholeSetupThatNeedsNothingQueuesNothing) {
  Solve(m_solution, L"N=1", {1.0});
  EXPECT_TRUE(Submit({WholeSetup(L"N=1")}));
  EXPECT_EQ(m_queue.QueuedCount(), 0);
  EXPECT_EQ(m_queue.Run(m_listener).stored, 0);
  EXPECT_EQ(m_preparations, 0);
}

TEST_F(SolveQueueTest, APointIsStoredUnderTheVersionSubmittedThoughAnEditCameMeanwhile) {
  long const version = m_solution.GetVersionID();
  ASSERT_TRUE(SubmitVariations(1));
  m_solution.Invalidate(nullptr, id::invalidID);
  EXPECT_EQ(m_queue.Run(m_listener).stored, 1);
  EXPECT_TRUE(Manager().HasDataBlock(KeyOf(L"N=0", version)));
  EXPECT_NE(DataOf(L"N=0", version), nullptr);
  EXPECT_FALSE(m_solution.HasValidSolutionData(AString(L"N=0"), id::invalidID));
}

TEST_F(SolveQueueTest, APointThatIsQueuedOrRunningIsNotQueuedAgain) {
  ASSERT_TRUE(SubmitVariations(3));
  ASSERT_TRUE(SubmitVariations(4));
  ASSERT_TRUE(Submit({WholeSetup(L"N=1")}));
  EXPECT_EQ(m_queue.QueuedCount(), 4);
  m_listener.onStart = [this](AString const & variation) { EXPECT_TRUE(Submit({KeyOf(variation)})); };
  EXPECT_EQ(m_queue.Run(m_listener).stored, 4);
}

TEST_F(SolveQueueTest, EqualVariationsWrittenDifferentlyAreOnePoint) {
  Solve(m_solution, L"C=1pF", {1.0});
  ASSERT_TRUE(Submit({KeyOf(L"C=0.001nF"), KeyOf(L"C=1pF"), KeyOf(L"C=1e-12F")}));
  EXPECT_EQ(m_queue.QueuedCount(), 1);
  EXPECT_EQ(m_queue.Run(m_listener).stored, 1);
  EXPECT_EQ(m_solution.size(), 1);
  EXPECT_EQ(ValuesOf(L"C=1pF").size(), 3u) << "under the text that was there first";
}

TEST_F(SolveQueueTest, WhatIsBeingSolvedIsToldTruly) {
  support::TestInstance instance(m_design, L"N=0");
  support::TestInstance other(m_design, L"N=7");
  auto const isSolving = [this](support::TestInstance & which, long solutionID) {
    return m_queue.IsSolutionSolving(&which, m_setup.GetID(), {solutionID});
  };
  EXPECT_EQ(m_queue.IsSetupSolving(&instance, m_setup.GetID()), 0);
  ASSERT_TRUE(SubmitVariations(1));
  EXPECT_EQ(m_queue.IsSetupSolving(&instance, m_setup.GetID()), 1);
  EXPECT_EQ(m_queue.IsSetupSolving(&instance, m_setup.GetID() + 100), 0);
  EXPECT_EQ(m_queue.IsSetupSolving(&other, m_setup.GetID()), 0);
  EXPECT_EQ(isSolving(instance, m_solution.GetID()), 1);
  EXPECT_EQ(isSolving(instance, m_solution.GetID() + 100), 0);
  m_listener.onStart = [&](AString const &) { EXPECT_EQ(isSolving(instance, m_solution.GetID()), 1); };
  m_listener.onStored = [&](AString const &) { EXPECT_EQ(isSolving(instance, m_solution.GetID()), 0); };
  m_queue.Run(m_listener);
  EXPECT_EQ(m_queue.IsSetupSolving(&instance, m_setup.GetID()), 0);
}

TEST_F(SolveQueueTest, WhatIsSolvedForAFormerVersionDoesNotSolveThePresentOne) {
  support::TestInstance instance(m_design, L"N=0");
  ASSERT_TRUE(SubmitVariations(1));
  m_solution.Invalidate(nullptr, id::invalidID);
  EXPECT_EQ(m_queue.IsSolutionSolving(&instance, m_setup.GetID(), {m_solution.GetID()}), 0);
  EXPECT_EQ(m_queue.IsSetupSolving(&instance, m_setup.GetID()), 0);
  ASSERT_TRUE(SubmitVariations(1));
  EXPECT_EQ(m_queue.QueuedCount(), 2);
  EXPECT_EQ(m_queue.IsSetupSolving(&instance, m_setup.GetID()), 1);
}

TEST_F(SolveQueueTest, KeysWithAnUnknownSetupOrSolutionAreRefusedTogether) {
  SolutionVariationKey const unknownSetup(m_setup.GetID() + 100, L"N=1", m_solution.GetID(), 0);
  SolutionVariationKey const unknownSolution(m_setup.GetID(), L"N=1", m_solution.GetID() + 100, 0);
  EXPECT_FALSE(Submit({KeyOf(L"N=1"), unknownSetup}));
  EXPECT_FALSE(Submit({KeyOf(L"N=1"), unknownSolution}));
  EXPECT_EQ(m_queue.QueuedCount(), 0);
}

TEST_F(SolveQueueTest, AProjectOpenForReadingTakesNoSolve) {
  SolveSite site = Site();
  site.isReadOnly = true;
  SolveQueue queue(site, Options());
  EXPECT_FALSE(SubmitTo(queue, {KeyOf(L"N=1")}));
  EXPECT_EQ(queue.QueuedCount(), 0);
}

TEST_F(SolveQueueTest, TheProjectIsMadeSafeOnceBeforeTheFirstJob) {
  ASSERT_TRUE(SubmitVariations(5));
  m_listener.onStart = [this](AString const &) { EXPECT_EQ(m_preparations, 1); };
  m_queue.Run(m_listener);
  EXPECT_EQ(m_preparations, 1);
}

TEST_F(SolveQueueTest, AFailureToMakeTheProjectSafeStartsNothing) {
  SolveSite site = Site();
  site.prepare = [] { throw Error(ErrorKind::kStorage, L"the autosave can't be written"); };
  SolveQueue queue(site, Options());
  ASSERT_TRUE(SubmitTo(queue, {KeyOf(L"N=1")}));
  EXPECT_THROW(queue.Run(m_listener), Error);
  EXPECT_TRUE(m_listener.started.empty());
  EXPECT_EQ(queue.QueuedCount(), 0);
}

TEST_F(SolveQueueTest, FailedPointsAreToldByNameAndTheRestIsStored) {
  ASSERT_TRUE(Submit({KeyOf(L"Do=abort"), KeyOf(L"Do=refuse"), KeyOf(L"Do=solve")}));
  SolveOutcome const outcome = m_queue.Run(m_listener);
  EXPECT_EQ(outcome.stored, 1);
  EXPECT_EQ(outcome.failed, 2);
  EXPECT_EQ(m_listener.progress, (std::vector{1, 2, 3}));
  EXPECT_EQ(m_listener.errors[L"Do=refuse"], L"node 7 has no connection");
  ASSERT_EQ(outcome.errors.size(), 2u);
  auto errors = outcome.errors;
  std::sort(errors.begin(), errors.end());
  EXPECT_EQ(errors[0], L"Setup1, Do=abort: the worker was killed by signal 6 (Aborted): matrix is singular");
  EXPECT_EQ(errors[1], L"Setup1, Do=refuse: node 7 has no connection");
  EXPECT_EQ(m_solution.size(), 1);
}

TEST_F(SolveQueueTest, AFailedPointCanBeSubmittedAgain) {
  ASSERT_TRUE(Submit({KeyOf(L"Do=refuse")}));
  m_queue.Run(m_listener);
  ASSERT_TRUE(Submit({KeyOf(L"Do=refuse")}));
  EXPECT_EQ(m_queue.QueuedCount(), 1);
}

TEST_F(SolveQueueTest, PointsSubmittedDuringARunAreSolvedByIt) {
  ASSERT_TRUE(SubmitVariations(1));
  m_listener.onStored = [this](AString const & variation) {
    if (variation == L"N=0") {
      EXPECT_TRUE(SubmitVariations(3, L"Later=%d"));
    }
  };
  EXPECT_EQ(m_queue.Run(m_listener).stored, 4);
  EXPECT_EQ(m_listener.progress, (std::vector{4, 0, 4}));
}

TEST_F(SolveQueueTest, ARunInsideARunIsRefused) {
  ASSERT_TRUE(SubmitVariations(1));
  m_listener.onStart = [this](AString const &) { EXPECT_THROW(m_queue.Run(m_listener), Error); };
  EXPECT_EQ(m_queue.Run(m_listener).stored, 1);
}

TEST_F(SolveQueueTest, PointsOfASetupThatWasDeletedMeanwhileFail) {
  ASSERT_TRUE(SubmitVariations(2));
  Manager().DeleteSimulationSetup(m_setup.GetID(), nullptr);
  SolveOutcome const outcome = m_queue.Run(m_listener);
  EXPECT_EQ(outcome.failed, 2);
  EXPECT_EQ(m_listener.errors[L"N=0"], L"the setup or solution was deleted before the point was solved");
}

TEST_F(SolveQueueTest, AnInterruptedRunKeepsWhatIsSolvedAndForgetsTheRest) {
  ASSERT_TRUE(SubmitVariations(50));
  m_listener.onStart = [this](AString const &) {
    if (m_listener.started.size() == 4)
      SolveQueue::RequestStop();
  };
  SolveOutcome const outcome = m_queue.Run(m_listener);
  EXPECT_TRUE(outcome.interrupted);
  EXPECT_EQ(outcome.stored, 4);
  EXPECT_EQ(outcome.failed, 0);
  EXPECT_EQ(m_listener.stored.size(), 4u);
  EXPECT_EQ(m_solution.size(), 4);
  EXPECT_EQ(m_queue.QueuedCount(), 0);
  for (AString const & variation : {AString(L"N=0"), AString(L"N=49")}) {
    support::TestInstance instance(m_design, variation);
    EXPECT_EQ(m_queue.IsSetupSolving(&instance, m_setup.GetID()), 0) << text::ToUtf8(variation);
  }
}

TEST_F(SolveQueueTest, APointThatFailedIsNotBeingSolvedAnyMore) {
  support::TestInstance instance(m_design, L"Do=refuse");
  ASSERT_TRUE(Submit({KeyOf(L"Do=refuse")}));
  EXPECT_EQ(m_queue.IsSolutionSolving(&instance, m_setup.GetID(), {m_solution.GetID()}), 1);
  m_queue.Run(m_listener);
  EXPECT_EQ(m_queue.IsSolutionSolving(&instance, m_setup.GetID(), {m_solution.GetID()}), 0);
}

TEST_F(SolveQueueTest, ResultsThatCannotBeStoredEndTheRunAndAreNotAcknowledged) {
  ASSERT_TRUE(SubmitVariations(2));
  m_queue.Run(m_listener);
  ASSERT_EQ(m_listener.stored.size(), 2u);
  auto const keys = std::vector{KeyOf(L"Do=large; N=1"), KeyOf(L"Do=large; N=2")};
  ASSERT_TRUE(Submit(keys));
  {
    std::uintmax_t constexpr kRoom = 100'000;
    LargestFile const limit(std::filesystem::file_size(text::ToUtf8(Manager().GetQsolPath()) + "_priv") + kRoom);
    try {
      m_queue.Run(m_listener);
      FAIL() << "results of 1.6 MB fit into 0.1 MB";
    } catch (Error const & error) {
      EXPECT_EQ(error.Kind(), ErrorKind::kStorage);
      EXPECT_NE(std::string(error.what()).find("Design.qsol"), std::string::npos) << error.what();
    }
  }
  EXPECT_EQ(m_listener.stored.size(), 2u);
  EXPECT_EQ(m_queue.QueuedCount(), 0);
  EXPECT_EQ(ValuesOf(L"N=1").size(), 3u);
  ASSERT_TRUE(Submit(keys));
  EXPECT_EQ(m_queue.Run(m_listener).stored, 2) << "there is room again";
  EXPECT_EQ(ValuesOf(L"Do=large; N=2").size(), 200'003u);
}
