#include "basekit/profile/CProfileData.h"
#include "basekit/profile/CProfileGroup.h"
#include "basekit/profile/CProfileTask.h"
#include "basekit/text/Utf8.h"
#include "desktop/Error.h"
#include "desktop/solve/SolveRecords.h"
#include "tests/desktop/solve/SolveQueueFixture.h"
#include "tests/solutionmanager/support/RecordsFixture.h"

#include <filesystem>

using namespace desktop;

namespace {

using support::LargestFile;
using support::Listener;
using support::TwoWorkers;

/// Real workers that report passes and costs, over a setup that keeps them.
class SolveReportsTest : public support::RecordsTest {
protected:
  SolveReportsTest() : m_queue({Manager(), m_solver, L"filter.cir", false, [] {}}, Options()) {
    Recorded().makesRecords = List();
  }
  static SolveOptions Options() { return TwoWorkers(); }
  void Submit(AString const & variation) {
    BaseSolution const & solution = SolutionOf(Recorded());
    long const parent = id::invalidID;
    ASSERT_TRUE(m_queue.SubmitSolve(
        nullptr, {SolutionVariationKey(Recorded().GetID(), variation, solution.GetID(), solution.GetVersionID())},
        nullptr, nullptr, &parent, 0, 0, AString(), 0, 0));
  }
  ConvergenceData const * RecordOf(AString const & variation) {
    Recorded().ReadConvergenceDataBlock(variation, Recorded().GetVersionID());
    return Recorded().GetConvData(variation, Recorded().GetVersionID(), kSingle);
  }
  CProfileGroup const & LastSolveOf(AString const & variation) {
    return *Recorded().GetProfileData(variation, Recorded().GetVersionID())->GetGroupList(kSingle)->back().second;
  }

  support::TestSolver m_solver;
  SolveQueue m_queue;
  Listener m_listener;
};

} // namespace

TEST_F(SolveReportsTest, WhatAWorkerReportsStandsInTheLibraryWhenThePointIsAcknowledged) {
  Submit(L"Do=passes");
  m_listener.onStored = [this](AString const & variation) {
    ConvergenceData const * const record = RecordOf(variation);
    ASSERT_TRUE(record);
    EXPECT_EQ(record->GetPassData(L"Max delta", 3, kSingle), L"0.125");
    EXPECT_TRUE(record->GetIsConverged(kSingle));
    EXPECT_EQ(record->GetCurrentConsecPasses(kSingle), L"2");
    auto const * const groups = Recorded().GetProfileData(variation, Recorded().GetVersionID())->GetGroupList(0);
    ASSERT_TRUE(groups);
    ASSERT_EQ(groups->size(), 1u);
    CProfileGroup const & group = *groups->front().second;
    EXPECT_EQ(group.GetStartInfo(), L"adaptive");
    EXPECT_EQ(group.GetTotalInfo(), L"three passes");
    ASSERT_EQ(group.GetTasks().size(), 3u);
    EXPECT_EQ(group.GetTasks()[2]->GetInfo(), L"pass 3");
    EXPECT_EQ(group.GetTasks()[2]->GetMemory(), 3072.0);
  };
  EXPECT_EQ(m_queue.Run(m_listener).stored, 1);
}

TEST_F(SolveReportsTest, TheWorkerMeasuresTimeAndMemoryOfEachSolve) {
  Submit(L"Do=heap");
  m_queue.Run(m_listener);
  Submit(L"N=1");
  m_queue.Run(m_listener);
  auto const * const large = SolveRecords::WholeOf(kSingle, LastSolveOf(L"Do=heap"));
  auto const * const small = SolveRecords::WholeOf(kSingle, LastSolveOf(L"N=1"));
  ASSERT_TRUE(large && small);
  EXPECT_GT(large->GetMemory(), 64e6);
  EXPECT_GT(small->GetMemory(), 0.0);
  EXPECT_GT(large->GetCpuTime(), 0.0);
  EXPECT_GE(large->GetRealTime(), large->GetCpuTime() * 0.5);
}

TEST_F(SolveReportsTest, APointThatFailsLeavesItsPassesAndWhy) {
  Submit(L"Do=passes, then refuse");
  EXPECT_EQ(m_queue.Run(m_listener).failed, 1);
  EXPECT_EQ(LastSolveOf(L"Do=passes, then refuse").GetTotalInfo(), L"failed: it does not converge");
  ASSERT_TRUE(RecordOf(L"Do=passes, then refuse"));
  EXPECT_EQ(RecordOf(L"Do=passes, then refuse")->GetPassData(L"Pass", 3, kSingle), L"3");
}

TEST_F(SolveReportsTest, AWorkerThatDiesLeavesARecordOfItsPoint) {
  Submit(L"Do=abort");
  EXPECT_EQ(m_queue.Run(m_listener).failed, 1);
  AString const end = LastSolveOf(L"Do=abort").GetTotalInfo();
  EXPECT_TRUE(end.StartsWith(L"failed: the worker was killed by signal 6")) << text::ToUtf8(end);
}

TEST_F(SolveReportsTest, PassesOfALongSolveAreInTheLibraryWhileItRuns) {
  class Watching : public Listener {
  public:
    void OnTick() override {
      if (onTick)
        onTick();
    }
    std::function<void()> onTick;
  } listener;
  int seen = 0;
  listener.onTick = [this, &seen] {
    io::CBlock block(Recorded().GetConvBlockName(L"Do=passes slowly", Recorded().GetVersionID()));
    if (Manager().LoadSingleBlock(block) == CStreamioLibrary::kLibSuccess)
      ++seen;
  };
  Submit(L"Do=passes slowly");
  EXPECT_EQ(m_queue.Run(listener).stored, 1);
  EXPECT_GT(seen, 0);
}

TEST_F(SolveReportsTest, ASolverThatReportsWithoutAnEndCostsItsPointAlone) {
  Submit(L"Do=flood of passes");
  Submit(L"Do=flood of costs");
  Submit(L"N=1");
  EXPECT_EQ(m_queue.Run(m_listener).stored, 1);
  EXPECT_EQ(m_listener.errors[L"Do=flood of passes"],
            L"the worker was stopped because it reported more than 10000 passes");
  EXPECT_EQ(m_listener.errors[L"Do=flood of costs"],
            L"the worker was stopped because it reported more than 10000 costs");
  EXPECT_EQ(LastSolveOf(L"Do=flood of costs").GetTasks().size(), 10'001u) << "what it told before, and the whole";
}

TEST_F(SolveReportsTest, ThePassesOfARunningPointAreToldAsTheyCome) {
  Submit(L"Do=passes");
  m_listener.onStored = [this](AString const &) { EXPECT_EQ(m_listener.passes.size(), 3u); };
  m_queue.Run(m_listener);
  EXPECT_EQ(m_listener.passes, (std::vector<AString>{L"Do=passes: 0.5", L"Do=passes: 0.25", L"Do=passes: 0.125"}));
}

TEST_F(SolveReportsTest, APointWhoseResultCannotBeStoredHasNoRecordThatSaysSolved) {
  Submit(L"N=1");
  m_queue.Run(m_listener);
  Submit(L"Do=large; N=1");
  {
    std::uintmax_t constexpr kRoom = 100'000;
    LargestFile const limit(std::filesystem::file_size(text::ToUtf8(Manager().GetQsolPath()) + "_priv") + kRoom);
    EXPECT_THROW(m_queue.Run(m_listener), Error);
  }
  EXPECT_EQ(LastSolveOf(L"N=1").GetTotalInfo(), SolveRecords::kSolved);
  EXPECT_EQ(LastSolveOf(L"Do=large; N=1").GetTotalInfo(), L"failed: solved, but the result could not be stored");
}

TEST_F(SolveReportsTest, APointThatARunStopsLeavesARecordThatSaysSoAndNoCost) {
  Submit(L"Do=sleep");
  m_listener.onStart = [](AString const &) {
    SolveQueue::RequestStop();
    SolveQueue::RequestStop();
  };
  EXPECT_TRUE(m_queue.Run(m_listener).interrupted);
  EXPECT_EQ(LastSolveOf(L"Do=sleep").GetTotalInfo(), SolveRecords::kStopped);
  EXPECT_TRUE(LastSolveOf(L"Do=sleep").GetTasks().empty());
}

TEST_F(SolveReportsTest, TheMemoryOfATaskIsThatOfItsWorkerNotOfTheDesktopThatStartedIt) {
  constexpr std::size_t kMegabyte = std::size_t{1024} * 1024;
  std::vector<char> const held(512 * kMegabyte, 'x');
  Submit(L"Do=peak");
  m_queue.Run(m_listener);
  auto const & tasks = LastSolveOf(L"Do=peak").GetTasks();
  ASSERT_EQ(tasks.size(), 2u);
  EXPECT_EQ(tasks[0]->GetName(), L"Peak");
  EXPECT_GT(tasks[0]->GetMemory(), static_cast<double>(kMegabyte));
  EXPECT_LT(tasks[0]->GetMemory(), static_cast<double>(held.size()) / 2);
}
