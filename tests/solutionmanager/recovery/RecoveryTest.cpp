#include "tests/solutionmanager/support/RecoveryFixture.h"
#include "tests/support/AssertWatch.h"
#include "tests/support/Printers.h"

using support::RecoveryTest;

TEST_F(RecoveryTest, BlocksSolvedBeforeACrashAreTakenOver) {
  io::CBlock const design = SavedDesign();
  Crash([this] {
    Open();
    Solve(SolutionOf(*Manager().GetSetups().begin()->second), L"x=2", {2, 3});
  });
  support::TestManager probe(&m_design);
  EXPECT_TRUE(probe.CanRecoverSolutions());
  ReopenRecovering(design);
  EXPECT_TRUE(Manager().IsRecovered());
  BaseSolution & solution = SolutionOf(*Manager().GetSetups().begin()->second);
  auto * const data =
      static_cast<support::TestVariation *>(solution.GetVariationData(VariationIDIndex(L"x=2", 0, &Manager()), false));
  ASSERT_NE(data, nullptr);
  EXPECT_EQ(data->values, (std::vector<double>{2, 3}));
  EXPECT_TRUE(solution.HasSolutionData(L"x=1", 0));
}

TEST_F(RecoveryTest, ACrashBeforeTheFirstSaveLeavesAllInThePrivateFile) {
  io::CBlock design;
  AddSetup(L"A");
  design = DesignBlock();
  Crash([this] {
    WriteDefinitions();
    Solve(SolutionOf(*Manager().GetSetups().begin()->second), L"x=1", {7});
  });
  ReopenRecovering(design);
  ASSERT_EQ(Manager().GetSetups().size(), 1u);
  EXPECT_TRUE(Manager().HasDataBlock(SolutionVariationKey(-1, L"x=1", -1, -1)));
}

TEST_F(RecoveryTest, AfterACleanCloseThereIsNothingToRecover) {
  SavedDesign();
  support::TestManager probe(&m_design);
  EXPECT_FALSE(probe.CanRecoverSolutions());
}

TEST_F(RecoveryTest, BlocksOfAVersionThatTheDesignDoesNotRememberAreDropped) {
  io::CBlock const design = SavedDesign();
  Crash([this] {
    Open();
    BaseSolution & solution = SolutionOf(*Manager().GetSetups().begin()->second);
    solution.Invalidate(nullptr, -1);
    Solve(solution, L"x=1", {9});
  });
  ReopenRecovering(design);
  BaseSimulationSetup & setup = *Manager().GetSetups().begin()->second;
  EXPECT_EQ(SolutionOf(setup).GetVersionID(), 0);
  EXPECT_TRUE(Manager().HasDataBlock(SolutionVariationKey(setup.GetID(), L"x=1", SolutionOf(setup).GetID(), 0)));
  std::list<AString> names;
  Manager().GetSolutionFileManager().IndexKeyList(names, false);
  for (AString const & name : names) {
    SolutionVariationKey key;
    if (!key.Unpack(name))
      continue;
    EXPECT_LE(key.GetVersionIDKey(), 0) << testing::PrintToString(name);
  }
}

TEST_F(RecoveryTest, DeletionsOfTheInterfaceTakeSetupsAndSolutionsAlong) {
  BaseSimulationSetup & kept = AddSetup(L"Kept");
  BaseSimulationSetup & gone = AddSetup(L"Gone");
  Solve(SolutionOf(kept), L"x=1", {1});
  Solve(SolutionOf(gone), L"x=1", {1});
  long const keptID = kept.GetID(), goneID = gone.GetID();
  Manager().RecoverUIDeletions({keptID}, {SolutionOf(kept).GetID()});
  EXPECT_EQ(Manager().GetSetups().size(), 1u);
  EXPECT_FALSE(Manager().HasDataBlock(SolutionVariationKey(goneID, L"NotSet", -1, -1)));
  EXPECT_TRUE(Manager().HasDataBlock(SolutionVariationKey(keptID, L"NotSet", -1, -1)));
  Manager().RecoverUIDeletions({}, {});
  EXPECT_TRUE(Manager().GetSetups().empty());
}

TEST_F(RecoveryTest, ABlockDeletedAndSolvedAgainBeforeACrashIsFoundUnderItsNewName) {
  io::CBlock const design = SavedDesign();
  Crash([this] {
    Open();
    BaseSolution & solution = SolutionOf(*Manager().GetSetups().begin()->second);
    solution.DeleteSolutionVariation(L"x=1", nullptr);
    Solve(solution, L"x=9", {9});
    Solve(solution, L"x=1", {5, 6});
  });
  ReopenRecovering(design);
  BaseSolution & solution = SolutionOf(*Manager().GetSetups().begin()->second);
  auto const valuesOf = [&](AString const & text) {
    auto * const data =
        static_cast<support::TestVariation *>(solution.GetVariationData(VariationIDIndex(text, 0, &Manager()), false));
    return data ? data->values : std::vector<double>();
  };
  EXPECT_EQ(valuesOf(L"x=1"), (std::vector<double>{5, 6}));
  EXPECT_EQ(valuesOf(L"x=9"), std::vector<double>{9});
}
