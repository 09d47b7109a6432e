#include "CoreInterfaces/solution/ISweepwiseSetup.h"
#include "basekit/command/KelvroCommand.h"
#include "basekit/value/VariableValues.h"
#include "tests/solutionmanager/model/ReportsFixture.h"
#include "tests/support/Printers.h"

#include <set>

namespace {

class SweepwiseSetup : public ISweepwiseSetup {
public:
  IProdSwiseSetupData const * GetIProdSwiseSetupData() const override { return &data; }
  IProdSwiseSetupData data;
};

/// Notes what the question about completeness was asked with.
class CompleteSolution : public support::TestSolution {
public:
  using TestSolution::IsDataComplete;
  using TestSolution::TestSolution;
  bool IsDataComplete(AString const & variation, bool forSweepwise, IProdSwiseSetupData const * data,
                      long version) const override {
    askedForSweepwise = forSweepwise;
    askedWith = data;
    return TestSolution::IsDataComplete(variation, forSweepwise, data, version);
  }
  mutable bool askedForSweepwise = false;
  mutable IProdSwiseSetupData const * askedWith = nullptr;
};

} // namespace

class SolutionValidityTest : public support::ReportsTest {
protected:
  bool IsValid() const { return m_solution->IsValid(); }
};

TEST_F(SolutionValidityTest, ASolutionIsValidWhileNothingSpeaksAgainstIt) {
  EXPECT_TRUE(IsValid());
  m_solution->ResetOverrideIsValid(true);
  EXPECT_FALSE(IsValid());
  m_solution->ResetOverrideIsValid(false);
  EXPECT_TRUE(IsValid());
  m_solution->SetExtractor(nullptr);
  EXPECT_FALSE(IsValid());
}

TEST_F(SolutionValidityTest, ASolutionOfADeletedSetupIsInvalidUntilUndo) {
  KelvroCommand command(L"Delete");
  Manager().DeleteSimulationSetup(m_setup->GetID(), &command);
  EXPECT_FALSE(IsValid());
  EXPECT_FALSE(m_solution->IsDeleted()) << "its setup still has it";
  command.Undo();
  EXPECT_TRUE(IsValid());
}

TEST_F(SolutionValidityTest, ADeletedSolutionIsInvalidUntilUndo) {
  KelvroCommand command(L"Delete");
  m_setup->DeleteSolution(m_solution->GetID(), &command);
  EXPECT_FALSE(IsValid());
  EXPECT_TRUE(m_solution->IsDeleted());
  command.Undo();
  EXPECT_TRUE(IsValid());
  EXPECT_FALSE(m_solution->IsDeleted());
}

TEST_F(SolutionValidityTest, AnInvalidSolutionHasNoValidDataWhateverItsVariationsSay) {
  Solve(*m_solution, L"x=1", {1});
  support::TestInstance const instance(m_design, L"x=1");
  EXPECT_TRUE(m_solution->HasValidSolutionData(&instance, -1));
  EXPECT_TRUE(m_solution->HasValidSolutionData(static_cast<IDesignInstance const *>(nullptr), -1));
  EXPECT_TRUE(m_solution->HasValidVariation(-1));
  EXPECT_TRUE(m_solution->AreAllVariationsValid());
  m_solution->ResetOverrideIsValid(true);
  EXPECT_FALSE(m_solution->HasValidSolutionData(&instance, -1));
  EXPECT_FALSE(m_solution->HasValidSolutionData(L"x=1", -1));
  EXPECT_FALSE(m_solution->HasValidVariation(-1));
  EXPECT_FALSE(m_solution->AreAllVariationsValid());
  EXPECT_TRUE(m_solution->HasSolutionData(&instance, -1)) << "data is there all the same";
}

TEST_F(SolutionValidityTest, ASolutionWithoutVariationsHasNoValidDataButNothingInvalidEither) {
  support::TestInstance const instance(m_design, L"x=1");
  EXPECT_FALSE(m_solution->HasValidSolutionData(&instance, -1));
  EXPECT_FALSE(m_solution->HasValidVariation(-1));
  EXPECT_TRUE(m_solution->AreAllVariationsValid());
}

TEST_F(SolutionValidityTest, AllVariationsAreValidOnlyWhileEachHasTheCurrentVersion) {
  Solve(*m_solution, L"x=1", {1});
  Solve(*m_solution, L"x=2", {1});
  m_solution->SetState(9, false);
  Solve(*m_solution, L"x=1", {1});
  EXPECT_FALSE(m_solution->AreAllVariationsValid());
  Solve(*m_solution, L"x=2", {1});
  EXPECT_TRUE(m_solution->AreAllVariationsValid());
}

TEST_F(SolutionValidityTest, ValidDataOfAnOlderVersionIsNoneThoughItIsStored) {
  Solve(*m_solution, L"x=1", {1});
  m_solution->SetState(9, false);
  EXPECT_TRUE(m_solution->HasSolutionData(L"x=1", 0));
  EXPECT_FALSE(m_solution->HasValidSolutionData(L"x=1", 0));
  EXPECT_FALSE(m_solution->HasValidVariation(0));
}

TEST_F(SolutionValidityTest, AValidVariationMustHaveItsDataInMemory) {
  Solve(*m_solution, L"x=1", {1});
  m_solution->UnloadAllSolutionData();
  EXPECT_FALSE(m_solution->HasValidVariation(-1));
  EXPECT_FALSE(m_solution->HasLoadedSolutionData(L"x=1", -1));
  EXPECT_TRUE(m_solution->HasValidSolutionData(L"x=1", -1)) << "the library has it";
}

TEST_F(SolutionValidityTest, WithoutAnInstanceAnyVariationOfTheVersionCounts) {
  IDesignInstance const * const none = nullptr;
  EXPECT_FALSE(m_solution->HasSolutionData(none, -1));
  Solve(*m_solution, L"x=1", {1});
  EXPECT_TRUE(m_solution->HasSolutionData(none, -1));
  EXPECT_TRUE(m_solution->HasSolutionData(none, 0));
  EXPECT_FALSE(m_solution->HasSolutionData(none, 1));
  m_solution->UnloadAllSolutionData();
  EXPECT_TRUE(m_solution->HasSolutionData(none, 0)) << "the library has it";
  m_solution->EnsureVariation(L"x=2", 4);
  EXPECT_FALSE(m_solution->HasSolutionData(none, 4));
}

TEST_F(SolutionValidityTest, WhatHasNoValidDataNeedsToBeSimulated) {
  EXPECT_TRUE(m_solution->NeedsToSimulate(L"x=1", -1));
  Solve(*m_solution, L"x=1", {1});
  EXPECT_FALSE(m_solution->NeedsToSimulate(L"x=1", -1));
  m_solution->Invalidate(nullptr, -1);
  EXPECT_TRUE(m_solution->NeedsToSimulate(L"x=1", -1));
}

TEST_F(SolutionValidityTest, CompleteDataIsValidDataUnlessTheProductRefinesIt) {
  EXPECT_FALSE(m_solution->IsDataComplete(L"x=1", false, nullptr, -1));
  Solve(*m_solution, L"x=1", {1});
  EXPECT_TRUE(m_solution->IsDataComplete(L"x=1", false, nullptr, -1));
  EXPECT_TRUE(m_solution->IsDataComplete(nullptr, L"x=1", -1));
}

TEST_F(SolutionValidityTest, AParametricSetupsOwnDataReachesTheProduct) {
  auto * const solution = new CompleteSolution(*m_setup, -1, 0);
  m_setup->AddSolution(solution, nullptr);
  SweepwiseSetup const sweepwise;
  EXPECT_FALSE(solution->IsDataComplete(&sweepwise, L"x=1", -1));
  EXPECT_TRUE(solution->askedForSweepwise);
  EXPECT_EQ(solution->askedWith, &sweepwise.data);
}

TEST_F(SolutionValidityTest, SolvedVariationsOfASetupAreThoseOfItsValidSolutions) {
  Solve(*m_solution, L"x=1; y=2", {1});
  Solve(*m_solution, L"x=2", {1});
  auto * const other = new support::TestSolution(*m_setup, -1, 0);
  m_setup->AddSolution(other, nullptr);
  Solve(*other, L"y=2;x=1.0", {1});
  std::set<VariableValues> variations;
  variations.insert(VariableValues());
  m_setup->GetSolvedVariations(variations);
  ASSERT_EQ(variations.size(), 2u) << "equal ones once, the former content gone";
  EXPECT_EQ(variations.begin()->size(), 2u);
  m_solution->ResetOverrideIsValid(true);
  m_setup->GetSolvedVariations(variations);
  EXPECT_EQ(variations.size(), 1u);
}

TEST_F(SolutionValidityTest, CurrentVariationsAreListedByWhetherTheyAreValid) {
  Solve(*m_solution, L"x=1", {1});
  m_solution->SetState(9, false);
  Solve(*m_solution, L"x=1", {1});
  Solve(*m_solution, L"x=2", {1});
  m_solution->DeleteSolutionVariation(L"x=2", nullptr);
  std::list<AString> valid, invalid;
  m_solution->ListCurrentVariations(valid, invalid);
  auto const key = [&](AString const & text, long version) {
    return SolutionVariationKey(m_setup->GetID(), text, m_solution->GetID(), version).Pack();
  };
  EXPECT_EQ(valid, std::list<AString>{key(L"x=1", 9)});
  EXPECT_EQ(invalid, (std::list<AString>{key(L"x=1", 0), key(L"x=2", 9)}));
}

TEST_F(SolutionValidityTest, AvailableVariationsAreGivenAsObjectsToo) {
  Solve(*m_solution, L"x=1", {1});
  Solve(*m_solution, L"x=2", {1});
  m_solution->SetState(9, false);
  Solve(*m_solution, L"x=2", {1});
  std::vector<BaseSolutionVariation *> variations;
  m_solution->GetAvailableVariations(variations, 0);
  ASSERT_EQ(variations.size(), 2u);
  EXPECT_EQ(variations[1], m_solution->GetBaseSolutionVariation(L"x=2", 0));
  variations.clear();
  m_solution->GetAvailableVariations(variations, -1);
  EXPECT_EQ(variations, std::vector<BaseSolutionVariation *>{m_solution->GetBaseSolutionVariation(L"x=2", 9)});
  variations.clear();
  m_solution->GetAvailableVariations(variations, 77);
  EXPECT_TRUE(variations.empty());
}
