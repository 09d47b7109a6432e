#include "solutionmanager/model/BaseSolution.h"

#include "basekit/command/KelvroCommand.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CBlock_func.h"
#include "basekit/io/CBlock_ptr.h"
#include "basekit/io/CNamed_value_manip.h"
#include "solutionmanager/definition/FrequencySolutionDefinition.h"
#include "tests/solutionmanager/support/TestProduct.h"
#include "tests/support/AssertWatch.h"
#include "tests/support/Printers.h"

using support::AssertWatch;
using support::TestVariation;

class SolutionTest : public support::ModelTest {
protected:
  SolutionTest() : m_setup(AddSetup(L"Setup")), m_solution(SolutionOf(m_setup)) {}

  /// A variation in memory at a version, with one number as its data.
  TestVariation & Enter(AString const & text, long version) {
    auto * const variation =
        static_cast<TestVariation *>(m_solution.GetVariationData(VariationIDIndex(text, version, &Manager()), true));
    variation->values = {static_cast<double>(version)};
    return *variation;
  }
  std::list<AString> Available(long version) const {
    std::list<AString> texts;
    m_solution.GetAvailableVariations(texts, version);
    return texts;
  }

  BaseSimulationSetup & m_setup;
  BaseSolution & m_solution;
};

TEST_F(SolutionTest, TheClosestVersionIsTheCurrentOneOrElseTheHighest) {
  EXPECT_EQ(m_solution.GetClosestVersionWithData(), -1);
  Enter(L"x=1", 5);
  Enter(L"x=2", 9);
  m_solution.SetState(7, false);
  EXPECT_EQ(m_solution.GetClosestVersionWithData(), 9);
  m_solution.SetState(5, false);
  EXPECT_EQ(m_solution.GetClosestVersionWithData(), 5);
}

TEST_F(SolutionTest, TheBestVariationIsTheCurrentOneOrElseTheLowestVersion) {
  TestVariation & five = Enter(L"x=1", 5);
  TestVariation & nine = Enter(L"x=1", 9);
  m_solution.SetState(7, false);
  EXPECT_EQ(m_solution.GetBestVariation(L"x=1", false), &five);
  EXPECT_EQ(m_solution.GetBestVariation(L"X=1", false), nullptr);
  m_solution.SetState(9, false);
  EXPECT_EQ(m_solution.GetBestVariation(L"x=1", false), &nine);
}

TEST_F(SolutionTest, AMissAmongDeletedVariationsIsNotSeenAsOneOnPurpose) {
  Enter(L"x=1", 5);
  m_solution.SetState(7, false);
  EXPECT_EQ(m_solution.GetBestVariation(L"x=1", true), nullptr);
}

TEST_F(SolutionTest, DataAboveTheCurrentVersionIsNeverFound) {
  Enter(L"x=1", 9);
  m_solution.SetState(7, false);
  EXPECT_FALSE(m_solution.HasSolutionData(L"x=1", -1));
  EXPECT_TRUE(m_solution.HasSolutionData(L"x=1", 9));
  Enter(L"x=1", 3);
  EXPECT_TRUE(m_solution.HasSolutionData(L"x=1", -1));
  m_solution.SetState(-5, false);
  EXPECT_FALSE(m_solution.HasSolutionData(L"x=1", -1));
}

TEST_F(SolutionTest, TheCountDownCrossesVersionsWithoutDataQuickly) {
  Enter(L"w=1", 2000000000);
  Enter(L"x=1", 4).values.clear();
  Enter(L"x=1", 2);
  Enter(L"y=1", 1);
  m_solution.SetState(1999999999, false);
  EXPECT_TRUE(m_solution.HasLoadedSolutionData(L"x=1", -1));
  EXPECT_FALSE(m_solution.HasLoadedSolutionData(L"w=1", -1));
  EXPECT_FALSE(m_solution.HasLoadedSolutionData(L"z=1", -1));
}

TEST_F(SolutionTest, DataIsStaleAfterAnEditAndValidAgainAfterItsUndo) {
  Solve(m_solution, L"x=1", {1, 2});
  EXPECT_TRUE(m_solution.HasValidSolutionData(L"x=1", -1));
  m_solution.Invalidate(nullptr, -1);
  EXPECT_FALSE(m_solution.HasValidSolutionData(L"x=1", -1));
  EXPECT_TRUE(m_solution.HasSolutionData(L"x=1", -1));
  m_solution.SetState(0, true);
  EXPECT_TRUE(m_solution.HasValidSolutionData(L"x=1", -1));
}

TEST_F(SolutionTest, ADefinitionIsKeptForEveryVersion) {
  auto * const first = m_solution.GetFrequencySolutionDefinition(-1);
  ASSERT_NE(first, nullptr);
  first->SetFrequencies({1e9, 2e9});
  m_solution.Invalidate(nullptr, 40);
  auto * const second = m_solution.GetFrequencySolutionDefinition(40);
  ASSERT_NE(second, nullptr);
  EXPECT_NE(first, second);
  EXPECT_TRUE(*second == *first);
  EXPECT_EQ(m_solution.GetSolutionDefinition(39), nullptr);
}

TEST_F(SolutionTest, ASolutionIsNamedAloneOrWithItsSetup) {
  m_solution.SetSolutionName(L"Sweep");
  EXPECT_TRUE(m_solution.NameIdentifiesSolution(L"sweep"));
  EXPECT_TRUE(m_solution.NameIdentifiesSolution(L"SETUP:sweep"));
  EXPECT_TRUE(m_solution.NameIdentifiesSolution(L" Setup  :  Sweep "));
  EXPECT_FALSE(m_solution.NameIdentifiesSolution(L"Other : Sweep"));
  EXPECT_FALSE(m_solution.NameIdentifiesSolution(L"Setup : Sweep : x"));
  EXPECT_FALSE(m_solution.NameIdentifiesSolution(L"Setup::Sweep"));
  EXPECT_FALSE(m_solution.NameIdentifiesSolution(L"Setup:Sweep:"));
  m_solution.SetSolutionName(L"a : b : c");
  EXPECT_TRUE(m_solution.NameIdentifiesSolution(L"A : B : C"));
}

TEST_F(SolutionTest, SeveralVersionsOfAVariationAreListedOnce) {
  Enter(L"x=1", 3);
  Enter(L"x=1", 5);
  Enter(L"x=2", 3);
  EXPECT_EQ(Available(3), (std::list<AString>{L"x=1", L"x=2"}));
  EXPECT_EQ(Available(5), std::list<AString>{L"x=1"});
  EXPECT_EQ(Available(-1), std::list<AString>{L"x=1"});
}

TEST_F(SolutionTest, AVariationCalledTempIsSkippedWhenItComesFirstOnPurpose) {
  Enter(L"TEMP", 3);
  EXPECT_TRUE(Available(3).empty());
  Enter(L"x=1", 3);
  EXPECT_EQ(Available(3), std::list<AString>{L"x=1"});
}

TEST_F(SolutionTest, DeletingAVariationMatchesCaseAndTakesItsBlocks) {
  Solve(m_solution, L"x=1", {1});
  SolutionVariationKey const key(m_setup.GetID(), L"x=1", m_solution.GetID(), 0);
  m_solution.DeleteSolutionVariation(L"X=1", nullptr);
  EXPECT_TRUE(Manager().HasDataBlock(key));
  m_solution.DeleteSolutionVariation(L"x=1", nullptr);
  EXPECT_FALSE(Manager().HasDataBlock(key));
  EXPECT_EQ(m_solution.size(), 0);
  EXPECT_EQ(m_design.deletions, 2);
  std::list<AString> valid, invalid;
  m_solution.ListCurrentVariations(valid, invalid);
  EXPECT_TRUE(valid.empty());
  EXPECT_EQ(invalid, std::list<AString>{key.Pack()});
}

TEST_F(SolutionTest, AVariationDeletedTwiceIsFreedOnce) {
  for (int round = 0; round < 2; ++round) {
    Solve(m_solution, L"x=1", {1});
    m_solution.DeleteSolutionVariation(L"x=1", nullptr);
  }
  EXPECT_EQ(m_solution.size(), 0);
}

TEST_F(SolutionTest, GetVariationDataLoadsTheBlockOnce) {
  Solve(m_solution, L"x=1", {1, 2, 3});
  auto * const variation =
      static_cast<TestVariation *>(m_solution.GetVariationData(VariationIDIndex(L"x=1", 0, &Manager()), false));
  ASSERT_NE(variation, nullptr);
  EXPECT_EQ(variation->values, (std::vector<double>{1, 2, 3}));
  EXPECT_EQ(m_solution.GetVariationData(VariationIDIndex(L"x=9", 0, &Manager()), false), nullptr);
}

TEST_F(SolutionTest, CreatingOnATakenIndexGivesTheVariationThatIsThere) {
  TestVariation & there = Enter(L"x=1", 3);
  EXPECT_EQ(m_solution.EnsureVariation(L"x=1", 3), &there);
  TestVariation mine(&m_solution, L"x=1", 3);
  m_solution.AddSolutionVariation(&mine);
  EXPECT_EQ(m_solution.GetBaseSolutionVariation(L"x=1", 3), &there);
}

TEST_F(SolutionTest, OverriddenDataStaysInvalidUntilTheFlagIsReset) {
  Solve(m_solution, L"x=1", {1});
  m_solution.NonUndoableInvalidateAll();
  long const version = m_solution.GetVersionID();
  EXPECT_NE(version, 0);
  m_solution.SetState(0, true);
  EXPECT_FALSE(m_solution.HasValidSolutionData(L"x=1", -1));
  m_solution.GetBaseSolutionVariation(L"x=1", 0)->ResetOverrideIsValid(false);
  EXPECT_FALSE(m_solution.GetOverrideIsValid());
  EXPECT_TRUE(m_solution.HasValidSolutionData(L"x=1", -1));
}

TEST_F(SolutionTest, ACopyHasAnIDOfItsOwnAndNoData) {
  Solve(m_solution, L"x=1", {1});
  BaseSolution const copy(m_solution);
  EXPECT_NE(copy.GetID(), m_solution.GetID());
  EXPECT_EQ(copy.size(), 0);
  EXPECT_EQ(copy.GetSolutionDefinition(-1), nullptr);
  EXPECT_EQ(copy.GetISimDataExtractor(), nullptr);
}

TEST_F(SolutionTest, ASolutionWithoutAnExtractorIsInvalid) {
  static_cast<support::TestSolution &>(m_solution).SetExtractor(nullptr);
  EXPECT_FALSE(m_solution.IsValid());
  EXPECT_FALSE(m_solution.AreAllVariationsValid());
}

TEST_F(SolutionTest, AnUnknownKindOfKeyIsNotReadAsData) {
  EXPECT_EQ(m_solution.ReadVariationDataBlock(L"SolutionDefinition", 0), -2);
}

TEST_F(SolutionTest, WritingAVariationThatIsNotThereIsNoError) {
  EXPECT_TRUE(m_solution.WriteVariationDataBlock(L"x=77", 0));
  Enter(L"x=1", 0).values = {4, 5};
  EXPECT_TRUE(m_solution.WriteVariationDataBlock(L"x=1", -1));
  m_solution.UnloadAllSolutionData();
  EXPECT_FALSE(m_solution.HasLoadedSolutionData(L"x=1", 0));
  EXPECT_EQ(m_solution.ReadVariationDataBlock(L"x=1", -1), io::kNoError);
  EXPECT_EQ(static_cast<TestVariation *>(m_solution.GetBaseSolutionVariation(L"x=1", 0))->values,
            (std::vector<double>{4, 5}));
}

TEST_F(SolutionTest, TheDefinitionBlockListsTheVariationsOfTheCurrentVersion) {
  Enter(L"x=1", 0);
  Enter(L"x=2", 4);
  io::CBlock block(m_solution.GetBlockDefinitionName());
  ASSERT_TRUE(m_solution.WriteDefinitionBlock(block));
  io::CBlock states(L"States");
  block >> states;
  ASSERT_EQ(states.Size(), 1);
  long version = -1;
  block >> io::named(L"V", version);
  EXPECT_EQ(version, 0);
}

TEST_F(SolutionTest, TheVersionInTheBlocksNameCountsNotTheOneInsideOnPurpose) {
  io::CBlock block(m_solution.GetBlockDefinitionName());
  m_solution.WriteDefinitionBlock(block);
  io::CBlock other(block.Name());
  other << io::named(L"SolutionName", L"Sweep") << io::named(L"SolutionID", m_solution.GetID()) << io::named(L"V", 99L);
  EXPECT_EQ(m_solution.ReadDefinitionBlock(other), io::kNoError);
  EXPECT_EQ(m_solution.GetVersionID(), 0);
}

TEST_F(SolutionTest, TheOlderFormOfAStatesBlockStillGivesVariations) {
  io::CBlock states(L"States");
  io::CBlock_func old(L"F");
  old << io::named(L"V", L"x=8") << io::named(L"VersionID", 0L);
  states << old << io::CBlock(L"not a function");
  EXPECT_EQ(m_solution.LoadSolutionVariations(states), io::kNoError);
  EXPECT_NE(m_solution.GetBaseSolutionVariation(L"x=8", 0), nullptr);
  EXPECT_EQ(m_solution.size(), 1);
}

TEST_F(SolutionTest, ABaseVariationMustBeToldWhetherItHasData) {
  BaseSolutionVariation const variation(&m_solution, L"x=1", -1);
  EXPECT_EQ(variation.GetVersionID(), m_solution.GetVersionID());
  AssertWatch::Expect("0");
  EXPECT_FALSE(variation.HasSolutionData());
}

TEST_F(SolutionTest, LoadingAVariationWithoutABlockIsNotFoundAndChangesNothing) {
  TestVariation variation(&m_solution, L"x=1", 3);
  variation.values = {9};
  EXPECT_EQ(variation.LoadInstanceData(), io::kNotFound);
  EXPECT_EQ(variation.values, std::vector<double>{9});
}

TEST_F(SolutionTest, ADeletedVariationIsTheBestOneWhenAskedFor) {
  TestVariation & variation = Enter(L"x=1", 5);
  m_solution.SetState(5, false);
  m_solution.DeleteSolutionVariation(L"x=1", nullptr);
  EXPECT_EQ(m_solution.GetBestVariation(L"x=1", false), nullptr);
  EXPECT_EQ(m_solution.GetBestVariation(L"x=1", true), &variation);
}

TEST_F(SolutionTest, TheDeletionOfAVariationGivesItsCommandNothingToUndoOnPurpose) {
  Enter(L"x=1", 5);
  KelvroCommand command(L"Delete");
  m_solution.DeleteSolutionVariation(L"x=1", &command);
  EXPECT_FALSE(command.HasDeltaStates());
}

TEST_F(SolutionTest, TheDefinitionIsStoredAfterADeletionWhateverAProductsWritingSays) {
  class Refusing : public support::TestSolution {
  public:
    using TestSolution::TestSolution;
    bool WriteDefinitionBlock(io::CBlock & block) const override {
      TestSolution::WriteDefinitionBlock(block);
      return false;
    }
  };
  auto * const solution = new Refusing(m_setup, 301, 0);
  m_setup.AddSolution(solution, nullptr);
  Solve(*solution, L"x=1", {1});
  WriteDefinitions();
  solution->DeleteSolutionVariation(L"x=1", nullptr);
  io::CBlock stored(solution->GetBlockDefinitionName());
  ASSERT_EQ(Manager().LoadSingleBlock(stored), CStreamioLibrary::kLibSuccess);
  ASSERT_NE(stored.FindBlock(L"States"), nullptr);
  EXPECT_TRUE(stored.FindBlock(L"States")->Empty());
}

TEST_F(SolutionTest, AnOlderBlocksVersionCountsAndItsNumberIsNotGivenOutAgain) {
  io::CBlock block(m_solution.GetBlockDefinitionName());
  block << io::named(L"VersionID", 5000L);
  m_solution.ReadDefinitionBlock(block);
  EXPECT_EQ(m_solution.GetVersionID(), 5000);
  EXPECT_GT(Manager().FetchNextUniqueID(), 5000);
}

TEST_F(SolutionTest, ABlockWithoutADefinitionLeavesTheOneThatIsThere) {
  FrequencySolutionDefinition sweep;
  sweep.SetSamplingInfo(1e9, 2e9, 0.5e9, 1.5e9);
  *m_solution.GetFrequencySolutionDefinition(-1) = sweep;
  io::CBlock const block(m_solution.GetBlockDefinitionName());
  m_solution.ReadDefinitionBlock(block);
  EXPECT_TRUE(*m_solution.GetSolutionDefinition(-1) == sweep);
}
