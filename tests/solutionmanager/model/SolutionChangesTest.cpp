#include "basekit/command/KelvroCommand.h"
#include "basekit/file/LongFileName.h"
#include "basekit/io/CBlock.h"
#include "solutionmanager/definition/FrequencySolutionDefinition.h"
#include "tests/solutionmanager/model/ReportsFixture.h"
#include "tests/support/AssertWatch.h"
#include "tests/support/Printers.h"

using support::AssertWatch;

class SolutionChangesTest : public support::ReportsTest {
protected:
  FrequencySolutionDefinition & Definition(long version) {
    auto * const definition = m_solution->GetFrequencySolutionDefinition(version);
    EXPECT_NE(definition, nullptr);
    return *definition;
  }
};

TEST_F(SolutionChangesTest, AnAssignedSolutionTakesNamesVersionAndDeepCopiesOfTheDefinitions) {
  support::TestSolution source(*m_setup, 900, 30);
  source.SetSolutionName(L"Other");
  source.SetProductName(L"Its product");
  source.GetFrequencySolutionDefinition(30)->SetFrequencies({1e9});
  source.Invalidate(nullptr, 31);
  Solve(*m_solution, L"x=1", {1});
  long const id = m_solution->GetID();

  static_cast<BaseSolution &>(*m_solution) = source;
  EXPECT_EQ(m_solution->GetSolutionName(), AString(L"Other"));
  EXPECT_EQ(m_solution->GetProductName(), AString(L"Its product"));
  EXPECT_EQ(m_solution->GetVersionID(), 31);
  EXPECT_EQ(m_solution->GetID(), id);
  EXPECT_EQ(m_solution->size(), 1);
  EXPECT_EQ(m_solution->GetISimDataExtractor(), m_extractor);
  EXPECT_EQ(m_solution->GetSolutionDefinition(0), nullptr) << "its own definitions are gone";
  EXPECT_NE(&Definition(30), source.GetFrequencySolutionDefinition(30));
  EXPECT_TRUE(Definition(30) == *source.GetSolutionDefinition(30));
  EXPECT_TRUE(Definition(31) == *source.GetSolutionDefinition(31));
}

TEST_F(SolutionChangesTest, ASolutionAssignedToItselfKeepsItsDefinitions) {
  Definition(-1).SetFrequencies({5});
  BaseSolution & same = *m_solution;
  *m_solution = static_cast<support::TestSolution &>(same);
  std::vector<double> frequencies;
  Definition(-1).GetFrequencies(frequencies);
  EXPECT_EQ(frequencies, std::vector<double>{5});
}

TEST_F(SolutionChangesTest, ACopyTakesNamesAndVersionAndAFreshID) {
  m_solution->SetSolutionName(L"Mine");
  m_solution->SetProductName(L"P");
  m_solution->SetState(12, false);
  BaseSolution const copy(*m_solution);
  EXPECT_EQ(copy.GetSolutionName(), AString(L"Mine"));
  EXPECT_EQ(copy.GetProductName(), AString(L"P"));
  EXPECT_EQ(copy.GetVersionID(), 12);
  EXPECT_LT(copy.GetID(), Manager().FetchNextUniqueIDNoWrite()) << "the design's server gave it";
}

TEST_F(SolutionChangesTest, AnIDIsIssuedOnFirstUse) {
  BaseSolution const solution(*m_setup, -1, 0);
  long const before = Manager().FetchNextUniqueID();
  EXPECT_GT(solution.GetID(), before);
  EXPECT_EQ(solution.GetID(), solution.GetID());
}

TEST_F(SolutionChangesTest, ANewSolutionBearsTheSetupsNameAndAnUnknownProduct) {
  BaseSolution const solution(*m_setup, 800, 4);
  EXPECT_EQ(solution.GetSolutionName(), AString(L"Setup"));
  EXPECT_EQ(solution.GetProductName(), AString(L"Unknown"));
  EXPECT_EQ(solution.GetGlobalSolutionName(), AString(L"Setup : Setup"));
  EXPECT_NE(solution.GetSolutionDefinition(4), nullptr);
  EXPECT_FALSE(solution.GetOverrideIsValid());
  EXPECT_FALSE(solution.IsSolutionImported());
}

TEST_F(SolutionChangesTest, InvalidationTakesANewIDWhenNoneIsGiven) {
  long const before = Manager().FetchNextUniqueID();
  m_solution->Invalidate(nullptr, -1);
  EXPECT_GT(m_solution->GetVersionID(), before);
  m_solution->Invalidate(nullptr, 77);
  EXPECT_EQ(m_solution->GetVersionID(), 77);
}

TEST_F(SolutionChangesTest, InvalidationWithoutADefinitionLeavesADefaultOne) {
  BaseSolution copy(*m_solution);
  copy.Invalidate(nullptr, 50);
  ASSERT_NE(copy.GetSolutionDefinition(50), nullptr);
  EXPECT_TRUE(*copy.GetSolutionDefinition(50) == FrequencySolutionDefinition());
}

TEST_F(SolutionChangesTest, ADefinitionOfTheNewVersionStays) {
  m_solution->Invalidate(nullptr, 50);
  Definition(50).SetFrequencies({3});
  m_solution->SetState(0, true);
  m_solution->Invalidate(nullptr, 50);
  std::vector<double> frequencies;
  Definition(50).GetFrequencies(frequencies);
  EXPECT_EQ(frequencies, std::vector<double>{3});
}

TEST_F(SolutionChangesTest, InvalidationTellsTheDesignAndValidatesTheReports) {
  ForgetCounts();
  m_solution->Invalidate(nullptr, 50);
  EXPECT_EQ(m_design.changes, 1);
  EXPECT_EQ(m_extractor->validations, 1);
  EXPECT_EQ(m_extractor->updates, 0);
}

TEST_F(SolutionChangesTest, DataOfTheNewVersionIsLoadedWhenTheManagerReloads) {
  m_reloading->reloads = true;
  Solve(*m_solution, L"x=1", {1});
  ForgetCounts();
  m_solution->Invalidate(nullptr, 50);
  EXPECT_EQ(m_extractor->updates, 0) << "version 50 has no variations";
  EXPECT_EQ(m_extractor->validations, 1);
  m_solution->Invalidate(nullptr, 0);
  EXPECT_EQ(m_extractor->updates, 1);
  EXPECT_TRUE(m_extractor->isStamped);
}

TEST_F(SolutionChangesTest, ADesignOfTheNewReportsIsToldButItsExtractorsAreLeftAlone) {
  m_design.isV2 = true;
  m_reloading->reloads = true;
  Solve(*m_solution, L"x=1", {1});
  ForgetCounts();
  m_solution->Invalidate(nullptr, 50);
  m_solution->SetState(0, true);
  m_solution->UpdatePostProcessingItems(true);
  EXPECT_EQ(m_design.changes, 2);
  EXPECT_EQ(m_extractor->updates + m_extractor->validations, 0);
}

TEST_F(SolutionChangesTest, ACommandsInvalidationIsDoneByItsDeltaStateAlone) {
  Solve(*m_solution, L"x=1", {1});
  ForgetCounts();
  KelvroCommand command(L"Edit");
  m_solution->Invalidate(&command, 50);
  EXPECT_TRUE(command.HasDeltaStates());
  EXPECT_EQ(m_solution->GetVersionID(), 50);
  EXPECT_NE(m_solution->GetSolutionDefinition(50), nullptr);
  EXPECT_EQ(m_design.changes, 1) << "told once, by the state change";
  command.Undo();
  EXPECT_EQ(m_solution->GetVersionID(), 0);
  EXPECT_TRUE(m_solution->HasValidSolutionData(L"x=1", -1));
  command.Redo();
  EXPECT_EQ(m_solution->GetVersionID(), 50);
  EXPECT_EQ(m_design.changes, 3);
}

TEST_F(SolutionChangesTest, AnInvalidationToThePresentVersionGivesTheCommandNothing) {
  KelvroCommand command(L"Edit");
  m_solution->Invalidate(&command, m_solution->GetVersionID());
  EXPECT_FALSE(command.HasDeltaStates());
}

TEST_F(SolutionChangesTest, UndoLoadsTheDataThatIsValidAgainWhenTheManagerReloads) {
  m_reloading->reloads = true;
  Solve(*m_solution, L"x=1", {1});
  KelvroCommand command(L"Edit");
  m_solution->Invalidate(&command, 50);
  ForgetCounts();
  command.Undo();
  EXPECT_EQ(m_extractor->updates, 1);
  EXPECT_EQ(m_extractor->validations, 0);
}

TEST_F(SolutionChangesTest, NonUndoableInvalidationOverridesAllAndCopiesTheDefinition) {
  Solve(*m_solution, L"x=1", {1});
  Solve(*m_solution, L"x=2", {1});
  m_solution->DeleteSolutionVariation(L"x=2", nullptr);
  Definition(-1).SetFrequencies({7});
  ForgetCounts();
  m_solution->NonUndoableInvalidateAll();
  EXPECT_TRUE(m_solution->GetOverrideIsValid());
  EXPECT_NE(m_solution->GetVersionID(), 0);
  EXPECT_TRUE(Definition(-1) == Definition(0));
  EXPECT_EQ(m_extractor->validations, 1);
  EXPECT_EQ(m_design.changes, 0);
  m_solution->SetState(0, true);
  EXPECT_FALSE(m_solution->GetBaseSolutionVariation(L"x=1", 0)->IsVariationValid());
}

TEST_F(SolutionChangesTest, NonUndoableInvalidationWithoutADefinitionMakesNone) {
  BaseSolution copy(*m_solution);
  copy.NonUndoableInvalidateAll();
  EXPECT_EQ(copy.GetSolutionDefinition(-1), nullptr);
}

TEST_F(SolutionChangesTest, LoadingTheDesignsDataUpdatesTheReportsAndSaysFalseOnPurpose) {
  EXPECT_FALSE(m_solution->LoadCurrentDesignSolutionData());
  EXPECT_EQ(m_extractor->updates, 1);
  m_solution->SetExtractor(nullptr);
  EXPECT_FALSE(m_solution->LoadCurrentDesignSolutionData());
  m_solution->UpdatePostProcessingItems(true);
}

TEST_F(SolutionChangesTest, DeletingAVariationTakesAllItsVersionsAndStoresTheDefinition) {
  Solve(*m_solution, L"x=1", {1});
  m_solution->SetState(5, false);
  Solve(*m_solution, L"x=1", {2});
  Solve(*m_solution, L"x=2", {3});
  ForgetCounts();
  m_solution->DeleteSolutionVariation(L"x=1", nullptr);
  EXPECT_EQ(m_solution->size(), 1);
  EXPECT_EQ(m_design.deletions, 1);
  EXPECT_EQ(m_extractor->validations, 1);
  SolutionVariationKey const anyOfX1(m_setup->GetID(), L"x=1", m_solution->GetID(), -1);
  EXPECT_FALSE(Manager().HasDataBlock(anyOfX1));
  io::CBlock stored(m_solution->GetBlockDefinitionName());
  ASSERT_EQ(Manager().LoadSingleBlock(stored), CStreamioLibrary::kLibSuccess);
  io::CBlock states(L"States");
  stored >> states;
  EXPECT_EQ(states.Size(), 1);
}

TEST_F(SolutionChangesTest, AddingNoVariationIsReported) {
  AssertWatch::Expect("variation");
  m_solution->AddSolutionVariation(nullptr);
  EXPECT_EQ(m_solution->size(), 0);
}

TEST_F(SolutionChangesTest, AnAddedVariationBelongsToTheSolution) {
  auto * const variation = new support::TestVariation(m_solution, L"x=1", 3);
  m_solution->AddSolutionVariation(variation);
  EXPECT_EQ(m_solution->GetBaseSolutionVariation(L"x=1", 3), variation);
}

TEST_F(SolutionChangesTest, TheExtractorIsGivenByEachOfItsFacets) {
  BaseSolution const & solution = *m_solution;
  EXPECT_EQ(solution.GetISimDataExtractor(), m_extractor);
  EXPECT_EQ(solution.GetIDesignDataExtractor(), m_extractor);
  EXPECT_EQ(solution.GetISimDataExtractorForSweepwise(), m_extractor->GetISimDataExtractorForSweepwise());
  EXPECT_EQ(solution.GetIDesignDataExtractorForSweepwise(), m_extractor->GetIDesignDataExtractorForSweepwise());
  m_solution->SetExtractor(nullptr);
  EXPECT_EQ(solution.GetIDesignDataExtractor(), nullptr);
  EXPECT_EQ(solution.GetISimDataExtractorForSweepwise(), nullptr);
  EXPECT_EQ(solution.GetIDesignDataExtractorForSweepwise(), nullptr);
}

TEST_F(SolutionChangesTest, TheFacetsOfTheOwnerAreTheSetups) {
  EXPECT_EQ(m_solution->GetISimulationSetup(), m_setup);
  EXPECT_EQ(m_solution->GetISimulationSetupForSweepwise(), m_setup);
  EXPECT_EQ(m_solution->GetSolutionMgr(), m_manager.get());
  long version = -1;
  m_solution->SetState(17, false);
  m_solution->GetState(version);
  EXPECT_EQ(version, 17);
}

TEST_F(SolutionChangesTest, WithoutADesignToTellChangesAreReportedAndMade) {
  Solve(*m_solution, L"x=1", {1});
  Commit();
  AString const library = Manager().GetQsolPath();
  m_manager.reset();
  BaseSolutionManager reader((LongFileName(library)));
  ASSERT_EQ(reader.GetSetups().size(), 1u);
  BaseSolution & solution = SolutionOf(*reader.GetSetups().begin()->second);
  AssertWatch::Expect("design");
  solution.Invalidate(nullptr, 50);
  EXPECT_EQ(solution.GetVersionID(), 50);
  AssertWatch::Expect("design");
  solution.SetState(0, true);
  EXPECT_EQ(solution.GetVersionID(), 0);
}
