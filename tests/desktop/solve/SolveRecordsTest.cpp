#include "desktop/solve/SolveRecords.h"

#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "basekit/profile/CProfileData.h"
#include "basekit/profile/CProfileGroup.h"
#include "basekit/profile/CProfileTask.h"
#include "desktop/solve/JobCost.h"
#include "tests/solutionmanager/support/RecordsFixture.h"
#include "tests/support/AssertWatch.h"
#include "tests/support/Printers.h"

#include <thread>

using namespace desktop;

namespace {

constexpr wchar_t const * kPoint = L"C=1";
JobCost const kCost{2.0, 1.5, 3e6};

io::CBlock_ptr<io::CBlock_func> Row(int pass, double delta) {
  io::CBlock_ptr<io::CBlock_func> const row(new io::CBlock_func(L"c"));
  *row << io::named(L"n", pass) << io::named(L"d", delta);
  return row;
}

/// A setup whose product makes a record for each solve, and the records of solves of it.
class SolveRecordsTest : public support::RecordsTest {
protected:
  SolveRecordsTest() : m_records(Manager()) { Recorded().makesRecords = List(); }

  RecordAddress Address(AString const & variation = kPoint) {
    return {Recorded().GetID(), Version(), Manager().GetVariationID(variation), variation};
  }
  long Version() { return Recorded().GetVersionID(); }
  void Begin(int number, AString const & variation = kPoint) { m_records.Begin(number, Address(variation)); }
  /// What the library holds, whatever is in memory.
  ConvergenceData & Stored(AString const & variation = kPoint) {
    Recorded().ForgetRecords(variation, Version());
    Recorded().ReadConvergenceDataBlock(variation, Version());
    ConvergenceData * const record = Recorded().GetConvData(variation, Version(), kSingle);
    EXPECT_NE(record, nullptr);
    return *record;
  }
  bool IsStored(AString const & variation = kPoint) {
    io::CBlock block(Recorded().GetConvBlockName(variation, Version()));
    return Manager().LoadSingleBlock(block) == CStreamioLibrary::kLibSuccess;
  }
  int StoredPasses(AString const & variation = kPoint) {
    ConvergenceData const & record = Stored(variation);
    auto const column = record.find(*List()->begin(), kSingle);
    return column == record.end(kSingle) ? 0 : column->second.size();
  }
  CProfileData const & Profile(AString const & variation = kPoint) {
    Recorded().ForgetRecords(variation, Version());
    return *Recorded().GetProfileData(variation, Version());
  }

  SolveRecords m_records;
};

} // namespace

TEST_F(SolveRecordsTest, EachSolveLeavesWhatItCostThoughItsSolverTellsNothing) {
  Begin(0);
  m_records.End(0, SolveRecords::kSolved, kCost);
  auto const * const groups = Profile().GetGroupList(kSingle);
  ASSERT_TRUE(groups);
  ASSERT_EQ(groups->size(), 1u);
  CProfileGroup const & group = *groups->front().second;
  EXPECT_EQ(group.GetStartInfo(), L"A at C=1");
  EXPECT_EQ(group.GetTotalInfo(), L"solved");
  CProfileTask const * const whole = SolveRecords::WholeOf(kSingle, group);
  ASSERT_TRUE(whole);
  EXPECT_EQ(whole->GetRealTime(), 2.0);
  EXPECT_EQ(whole->GetCpuTime(), 1.5);
  EXPECT_EQ(whole->GetMemory(), 3e6);
}

TEST_F(SolveRecordsTest, PassesAndTheirTargetReachTheLibrary) {
  Begin(0);
  m_records.AddPass(0, Row(1, 0.5), kSingle);
  m_records.AddPass(0, Row(2, 0.25), kSingle);
  m_records.SetConvergence(0, true, L"1", kSingle);
  m_records.End(0, SolveRecords::kSolved, kCost);
  ConvergenceData const & record = Stored();
  EXPECT_EQ(record.GetPassData(L"Max delta", 1, kSingle), L"0.5");
  EXPECT_EQ(record.GetPassData(L"Max delta", 2, kSingle), L"0.25");
  EXPECT_EQ(record.GetTargetCriterion(kSingle), L"0.02");
  EXPECT_EQ(record.GetCurrentConsecPasses(kSingle), L"1");
  EXPECT_TRUE(record.GetIsConverged(kSingle));
}

TEST_F(SolveRecordsTest, RecordsAreLetGoFromMemoryOnceTheyAreWritten) {
  Begin(0);
  m_records.AddPass(0, Row(1, 0.5), kSingle);
  EXPECT_TRUE(Recorded().AnyConvData(kPoint));
  m_records.End(0, SolveRecords::kSolved, kCost);
  EXPECT_FALSE(Recorded().AnyConvData(kPoint));
  EXPECT_EQ(StoredPasses(), 1);
}

TEST_F(SolveRecordsTest, ASolveBeginsItsPassesAnewAndAddsItsCostsToThoseBefore) {
  for (int solve = 0; solve < 2; ++solve) {
    Begin(solve);
    for (int pass = 1; pass <= 3 - solve; ++pass)
      m_records.AddPass(solve, Row(pass, 0.1 * pass), kSingle);
    if (solve == 0)
      m_records.SetConvergence(solve, true, L"1", kSingle);
    m_records.End(solve, SolveRecords::kSolved, kCost);
  }
  EXPECT_EQ(StoredPasses(), 2);
  EXPECT_FALSE(Stored().GetIsConverged(kSingle)) << "the second solve did not say so";
  EXPECT_EQ(Profile().GetGroupList(kSingle)->size(), 2u);
}

TEST_F(SolveRecordsTest, ASolveThatFailsAtOnceLeavesNoPassesOfAFormerOne) {
  Begin(0);
  m_records.AddPass(0, Row(1, 0.5), kSingle);
  m_records.End(0, SolveRecords::kSolved, kCost);
  Begin(1);
  m_records.End(1, L"failed: the worker was killed by signal 6", JobCost{0.5, 0, 0});
  EXPECT_EQ(StoredPasses(), 0);
  EXPECT_EQ(Profile().GetGroupList(kSingle)->back().second->GetTotalInfo(),
            L"failed: the worker was killed by signal 6");
}

TEST_F(SolveRecordsTest, ASolveThatFailsAtOnceLeavesNoCountOfPassesInARow) {
  Begin(0);
  m_records.AddPass(0, Row(1, 0.5), kSingle);
  m_records.SetConvergence(0, true, L"2", kSingle);
  m_records.End(0, SolveRecords::kSolved, kCost);
  EXPECT_EQ(Stored().GetCurrentConsecPasses(kSingle), L"2");
  Begin(1);
  m_records.End(1, L"failed: no licence", kCost);
  EXPECT_EQ(Stored().GetCurrentConsecPasses(kSingle), L"N/A");
}

TEST_F(SolveRecordsTest, PassesOfARunningSolveAreWrittenEveryHalfSecondAtMost) {
  Begin(0);
  m_records.AddPass(0, Row(1, 0.5), kSingle);
  m_records.WriteDue();
  EXPECT_FALSE(IsStored());
  std::this_thread::sleep_for(SolveRecords::kBetweenWrites + std::chrono::milliseconds(20));
  m_records.WriteDue();
  EXPECT_TRUE(IsStored());
  m_records.AddPass(0, Row(2, 0.5), kSingle);
  m_records.WriteDue();
  m_records.End(0, SolveRecords::kSolved, kCost);
  EXPECT_EQ(StoredPasses(), 2);
}

TEST_F(SolveRecordsTest, CostsOutsideAGroupCountForTheWholeSolve) {
  Begin(0);
  m_records.AddCost(0, Task(L"Read"), 5);
  m_records.AddCost(0, Start(L"sweep"), 5);
  m_records.AddCost(0, Task(L"Factor"), 5);
  m_records.AddCost(0, Stop(L"sweep done"), 5);
  m_records.AddCost(0, Task(L"Fit"), 5);
  m_records.AddCost(0, Stop(L"of nothing"), 7);
  m_records.End(0, SolveRecords::kSolved, kCost);
  CProfileData const & profile = Profile();
  auto const & whole = profile.GetGroupList(kSingle)->front().second->GetTasks();
  ASSERT_EQ(whole.size(), 3u);
  EXPECT_EQ(whole[0]->GetName(), L"Read");
  EXPECT_EQ(whole[1]->GetName(), L"Fit");
  ASSERT_TRUE(profile.HasGroupList(5));
  CProfileGroup const & sweep = *profile.GetGroupList(5)->front().second;
  EXPECT_EQ(sweep.GetTasks().size(), 1u);
  EXPECT_EQ(sweep.GetTotalInfo(), L"sweep done");
  EXPECT_FALSE(profile.HasGroupList(7));
}

TEST_F(SolveRecordsTest, ACostWithoutANameIsGivenOne) {
  Begin(0);
  m_records.AddCost(0, Task(L""), kSingle);
  m_records.End(0, SolveRecords::kSolved, kCost);
  EXPECT_EQ(Profile().GetGroupList(kSingle)->front().second->GetTasks().front()->GetName(), L"Task");
}

TEST_F(SolveRecordsTest, SolutionsOfOneSetupShareItsRecordInARun) {
  Recorded().AddSolution(Recorded().CreateSolution(L"Second"), nullptr);
  Begin(0);
  m_records.AddPass(0, Row(1, 0.5), kSingle);
  Begin(1);
  m_records.AddPass(1, Row(2, 0.25), kSingle);
  m_records.End(0, SolveRecords::kSolved, kCost);
  EXPECT_TRUE(Recorded().AnyConvData(kPoint)) << "the other one still runs";
  m_records.End(1, SolveRecords::kSolved, kCost);
  EXPECT_EQ(StoredPasses(), 2);
  EXPECT_EQ(Profile().GetGroupList(kSingle)->size(), 2u);
}

TEST_F(SolveRecordsTest, WhatIsLeftAtTheEndOfARunIsClosedWithItsReason) {
  Begin(0);
  Begin(1, L"C=2");
  m_records.AddPass(1, Row(1, 0.5), kSingle);
  m_records.EndAll();
  CProfileGroup const & group = *Profile().GetGroupList(kSingle)->front().second;
  EXPECT_EQ(group.GetTotalInfo(), L"stopped before its end");
  EXPECT_EQ(SolveRecords::WholeOf(kSingle, group), nullptr) << "what it cost is unknown, not nothing";
  EXPECT_EQ(StoredPasses(L"C=2"), 1);
  m_records.AddPass(1, Row(2, 0.5), kSingle);
  EXPECT_EQ(StoredPasses(L"C=2"), 1) << "nobody solves it any more";
}

TEST_F(SolveRecordsTest, ReportsOfASetupThatWasDeletedMeanwhileAreDropped) {
  Begin(0);
  Manager().DeleteSimulationSetup(Recorded().GetID(), nullptr);
  m_records.AddPass(0, Row(1, 0.5), kSingle);
  m_records.AddCost(0, Task(L"Read"), kSingle);
  m_records.End(0, SolveRecords::kSolved, kCost);
  EXPECT_FALSE(IsStored());
}

TEST_F(SolveRecordsTest, APassOfAProductThatDeclaresNoColumnsIsReportedAndDropped) {
  Recorded().makesRecords = nullptr;
  Begin(0);
  support::AssertWatch::Expect("definition");
  m_records.AddPass(0, Row(1, 0.5), kSingle);
  m_records.End(0, SolveRecords::kSolved, kCost);
  EXPECT_FALSE(IsStored());
}

TEST_F(SolveRecordsTest, RecordsStandUnderTheVersionThatWasSubmitted) {
  RecordAddress const address = Address();
  m_records.Begin(0, address);
  Recorded().Invalidate(nullptr, id::invalidID, 2);
  ASSERT_NE(Version(), address.version);
  m_records.AddPass(0, Row(1, 0.5), kSingle);
  m_records.End(0, SolveRecords::kSolved, kCost);
  EXPECT_FALSE(IsStored());
  io::CBlock block(Recorded().GetConvBlockName(kPoint, address.version));
  EXPECT_EQ(Manager().LoadSingleBlock(block), CStreamioLibrary::kLibSuccess);
}
