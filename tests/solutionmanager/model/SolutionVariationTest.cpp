#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "tests/solutionmanager/support/TestProduct.h"
#include "tests/support/AssertWatch.h"
#include "tests/support/Printers.h"

using support::AssertWatch;
using support::TestVariation;

class SolutionVariationTest : public support::ModelTest {
protected:
  SolutionVariationTest() : m_setup(AddSetup(L"Setup")), m_solution(SolutionOf(m_setup)) {}

  io::CBlock BlockOf(BaseSolutionVariation const & variation) {
    return io::CBlock(variation.GetSolutionVariationKey().Pack());
  }
  static long DataIDOf(BaseSolutionVariation const & variation) {
    io::CBlock block(L"Written");
    EXPECT_TRUE(variation.BaseSolutionVariation::WriteVariationDataBlock(block));
    long dataID = 0;
    block >> io::named(L"VariationDataID", dataID);
    EXPECT_TRUE(block.Found());
    return dataID;
  }

  BaseSimulationSetup & m_setup;
  BaseSolution & m_solution;
};

TEST_F(SolutionVariationTest, WithoutAVersionItTakesTheSolutionsCurrentOne) {
  m_solution.SetState(6, false);
  BaseSolutionVariation const variation(&m_solution, L"x=1", -1);
  EXPECT_EQ(variation.GetVersionID(), 6);
  EXPECT_EQ(variation.GetDesignVariationKey(), AString(L"x=1"));
  EXPECT_EQ(variation.GetBaseSolution(), &m_solution);
  EXPECT_EQ(variation.GetSolutionVariationKey().Pack(),
            SolutionVariationKey(m_setup.GetID(), L"x=1", m_solution.GetID(), 6).Pack());
}

TEST_F(SolutionVariationTest, ItIsValidStaleOrOverridden) {
  BaseSolutionVariation variation(&m_solution, L"x=1", 6);
  EXPECT_FALSE(variation.IsVariationValid()) << "stale";
  m_solution.SetState(6, false);
  EXPECT_TRUE(variation.IsVariationValid());
  variation.NonUndoableInvalidate();
  EXPECT_FALSE(variation.IsVariationValid()) << "overridden, though the versions match";
  variation.ResetOverrideIsValid(false);
  EXPECT_TRUE(variation.IsVariationValid());
}

TEST_F(SolutionVariationTest, ResettingItsFlagResetsTheSolutionsToo) {
  BaseSolutionVariation variation(&m_solution, L"x=1", -1);
  variation.ResetOverrideIsValid(true);
  EXPECT_TRUE(m_solution.GetOverrideIsValid());
  EXPECT_FALSE(variation.IsVariationValid());
  variation.ResetOverrideIsValid(false);
  EXPECT_FALSE(m_solution.GetOverrideIsValid());
}

TEST_F(SolutionVariationTest, ACopyTakesIdentityFlagAndDataID) {
  BaseSolutionVariation variation(&m_solution, L"x=1", 6);
  io::CBlock block = BlockOf(variation);
  block << io::named(L"VariationDataID", 44L);
  variation.ReadVariationDataBlock(block);
  variation.NonUndoableInvalidate();
  BaseSolutionVariation const copy(variation);
  BaseSolutionVariation assigned(&m_solution, L"x=2", 7);
  assigned = variation;
  m_solution.SetState(6, false);
  for (BaseSolutionVariation const * other : std::initializer_list<BaseSolutionVariation const *>{&copy, &assigned}) {
    EXPECT_EQ(other->GetDesignVariationKey(), AString(L"x=1"));
    EXPECT_EQ(other->GetVersionID(), 6);
    EXPECT_EQ(other->GetBaseSolution(), &m_solution);
    EXPECT_FALSE(other->IsVariationValid());
    EXPECT_EQ(DataIDOf(*other), 44);
  }
}

TEST_F(SolutionVariationTest, ABlockWithoutTheItemLeavesTheDataIDUnset) {
  BaseSolutionVariation variation(&m_solution, L"x=1", 6);
  EXPECT_EQ(variation.ReadVariationDataBlock(BlockOf(variation)), io::kNoError);
  EXPECT_EQ(DataIDOf(variation), -1);
}

TEST_F(SolutionVariationTest, ABlockOfAnotherVariationIsReportedAndReadAllTheSame) {
  BaseSolutionVariation variation(&m_solution, L"x=1", 6);
  io::CBlock block = BlockOf(BaseSolutionVariation(&m_solution, L"x=2", 6));
  block << io::named(L"VariationDataID", 5L);
  AssertWatch::Expect("the_key == GetSolutionVariationKey()");
  EXPECT_EQ(variation.ReadVariationDataBlock(block), io::kNoError);
  EXPECT_EQ(DataIDOf(variation), 5);
}

TEST_F(SolutionVariationTest, ItsNameMayBeWrittenDifferently) {
  BaseSolutionVariation variation(&m_solution, L"x=1; y=2", 6);
  EXPECT_EQ(variation.ReadVariationDataBlock(BlockOf(BaseSolutionVariation(&m_solution, L"Y=2;x=1.0", 6))),
            io::kNoError);
}

TEST_F(SolutionVariationTest, TheDefaultHasNothingToRelease) {
  BaseSolutionVariation variation(&m_solution, L"x=1", 6);
  EXPECT_TRUE(variation.ClearInstanceMemoryData());
}

TEST_F(SolutionVariationTest, ItsBlockIsLoadedFromTheLibrary) {
  Solve(m_solution, L"x=1", {1, 2});
  TestVariation fresh(&m_solution, L"x=1", -1);
  EXPECT_EQ(fresh.LoadInstanceData(), io::kNoError);
  EXPECT_EQ(fresh.values, (std::vector<double>{1, 2}));
}

TEST_F(SolutionVariationTest, DeletingItTakesAllVersionsOfItsText) {
  Solve(m_solution, L"x=1", {1});
  m_solution.SetState(4, false);
  Solve(m_solution, L"x=1", {1});
  Solve(m_solution, L"x=2", {1});
  m_solution.GetBaseSolutionVariation(L"x=1", 4)->DeleteMe(nullptr);
  EXPECT_EQ(m_solution.size(), 1);
  EXPECT_NE(m_solution.GetBaseSolutionVariation(L"x=2", 4), nullptr);
}

TEST_F(SolutionVariationTest, AMissingEntryIsMadeWhenItsBlockIsRead) {
  Solve(m_solution, L"x=1", {3});
  SolutionVariationKey const key(m_setup.GetID(), L"x=5", m_solution.GetID(), 0);
  io::CBlock block(key.Pack());
  ASSERT_EQ(Manager().SaveSingleBlock(block), CStreamioLibrary::kLibSuccess);
  EXPECT_EQ(m_solution.ReadVariationDataBlock(L"x=5", 0), io::kNoError);
  ASSERT_NE(m_solution.GetBaseSolutionVariation(key), nullptr);
  EXPECT_EQ(m_solution.GetBaseSolutionVariation(SolutionVariationKey(m_setup.GetID(), L"x=9", m_solution.GetID(), 0)),
            nullptr);
}

TEST_F(SolutionVariationTest, AVariationWithoutABlockIsReadAsEmptyAndNotReported) {
  EXPECT_EQ(m_solution.ReadVariationDataBlock(L"x=5", 0), io::kNoError);
  EXPECT_NE(m_solution.GetBaseSolutionVariation(L"x=5", 0), nullptr);
  EXPECT_FALSE(m_solution.HasSolutionData(L"x=5", 0));
}

TEST_F(SolutionVariationTest, AVariationThatCannotBeWrittenIsNotStored) {
  struct Refusing : TestVariation {
    using TestVariation::TestVariation;
    bool WriteVariationDataBlock(io::CBlock &) const override { return false; }
  };
  m_solution.AddSolutionVariation(new Refusing(&m_solution, L"x=1", 0));
  EXPECT_FALSE(m_solution.WriteVariationDataBlock(L"x=1", -1));
  EXPECT_FALSE(Manager().HasDataBlock(SolutionVariationKey(m_setup.GetID(), L"x=1", m_solution.GetID(), 0)));
}

TEST_F(SolutionVariationTest, DataThatIsInMemoryIsNotReadAgain) {
  Solve(m_solution, L"x=1", {1});
  VariationIDIndex const index(L"x=1", 0, &Manager());
  auto * const variation = static_cast<TestVariation *>(m_solution.GetVariationData(index, false));
  variation->values = {7};
  m_solution.GetVariationData(index, false);
  EXPECT_EQ(variation->values, std::vector<double>{7});
  variation->ClearInstanceMemoryData();
  m_solution.GetVariationData(index, false);
  EXPECT_EQ(variation->values, std::vector<double>{1});
}
