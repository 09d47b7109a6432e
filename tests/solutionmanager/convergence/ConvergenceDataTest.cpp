#include "tests/solutionmanager/convergence/ConvergenceDataFixture.h"

#include <string>

using support::AssertWatch;

namespace {

class ConvergenceDataTest : public support::ConvergenceDataTest {};

} // namespace

TEST_F(ConvergenceDataTest, AnIndexWithoutASetIsSilentWhereASetMayBeMissingOnPurpose) {
  double number = 0.0;
  EXPECT_EQ(data.GetMaximumIter(3), L"N/A");
  EXPECT_EQ(data.GetCurrent(L"Pass", 3), L"N/A");
  EXPECT_FALSE(data.GetCurrent(L"Pass", number, 3));
  EXPECT_EQ(data.GetPassData(L"Pass", 1, 3), L"N/A");
  EXPECT_EQ(data.GetSetupConvDefName(3), L"N/A");
  EXPECT_TRUE(data.NeedInit(3));
  EXPECT_TRUE(data.NeedDefinition(3));
  EXPECT_EQ(data.find(L"Pass", 3), nullptr);
  std::vector<std::pair<AString, bool>> columns;
  data.GetTableColumns(columns, 3);
  data.ClearData(0, 3);
  data.Initialize(L"1", L"2", L"3", L"4", L"5", true, L"6", 3);
  EXPECT_TRUE(columns.empty());
  EXPECT_EQ(data.GetBaseConvergenceData(3), nullptr);
}

TEST_F(ConvergenceDataTest, EveryOtherAccessToAMissingSetIsReported) {
  EXPECT_EQ(data.GetMinimumIter(3), L"N/A");
  EXPECT_EQ(data.GetTargetCriterion(3), L"N/A");
  EXPECT_EQ(data.GetCriterionLabel(3), L"N/A");
  EXPECT_EQ(data.GetIterationLabel(3), L"N/A");
  EXPECT_EQ(data.GetPassesTitle(3), L"N/A");
  EXPECT_EQ(data.GetTargetConsecPasses(3), L"N/A");
  EXPECT_EQ(data.GetCurrentConsecPasses(3), L"N/A");
  EXPECT_FALSE(data.SupportsIsConverged(3));
  EXPECT_FALSE(data.GetIsConverged(3));
  EXPECT_FALSE(data.SupportsCriterionDisplay(3));
  EXPECT_EQ(data.begin(3), data.end(3));
  EXPECT_EQ(data.find(&pass, 3), data.end(3));
  data.SetRequestedIter(L"1", 3);
  data.SetMinimumIter(L"1", 3);
  data.SetTargetCriterion(L"1", 3);
  data.SetCriterionLabel(L"1", 3);
  data.SetTargetConsecPasses(L"1", 3);
  data.SetCurrentConsecPasses(L"1", 3);
  data.SetIsConverged(true, 3);
  EXPECT_EQ(AssertWatch::Take(), std::vector<std::string>(20, "pData"));
  EXPECT_EQ(data.GetBaseConvergenceData(3), nullptr);
}

TEST_F(ConvergenceDataTest, InitializeStoresTheTextsAndMakesTheColumns) {
  data.SetSetupDef(&setup, 0);
  EXPECT_TRUE(data.NeedInit(0));
  EXPECT_FALSE(data.NeedDefinition(0));
  EXPECT_EQ(data.GetMaximumIter(0), L"N/A");
  EXPECT_EQ(data.GetPassesTitle(0), L"");
  data.Initialize(L"10", L"0.02", L"Max delta", L"Pass", L"2", false, L"Passes", 0);
  EXPECT_FALSE(data.NeedInit(0));
  EXPECT_EQ(data.GetMaximumIter(0), L"10");
  EXPECT_EQ(data.GetTargetCriterion(0), L"0.02");
  EXPECT_EQ(data.GetCriterionLabel(0), L"Max delta");
  EXPECT_EQ(data.GetIterationLabel(0), L"Pass");
  EXPECT_EQ(data.GetMinimumIter(0), L"2");
  EXPECT_FALSE(data.SupportsCriterionDisplay(0));
  EXPECT_EQ(data.GetPassesTitle(0), L"Passes");
  EXPECT_EQ(data.GetSetupConvDefName(0), L"Adaptive");
  EXPECT_EQ(std::distance(data.begin(0), data.end(0)), 2);
}

TEST_F(ConvergenceDataTest, PassesAreCountedFromOne) {
  Start(0);
  AddPass(1, 0.5, 0);
  AddPass(2, 0.25, 0);
  double number = 0.0;
  EXPECT_EQ(data.GetPassData(L"Max delta", 1, 0), L"0.5");
  EXPECT_TRUE(data.GetPassData(L"Max delta", 2, number, 0));
  EXPECT_EQ(number, 0.25);
  EXPECT_EQ(data.GetPassData(L"Max delta", 3, 0), L"N/A");
  EXPECT_EQ(data.GetPassData(L"Max delta", 0, 0), L"N/A");
  EXPECT_FALSE(data.GetPassData(L"no such column", 1, number, 0));
  EXPECT_EQ(data.GetCurrent(L"Pass", 0), L"2");
  EXPECT_EQ(data.GetCurrentIter(0), L"2");
  EXPECT_EQ(data.GetCurrentCriterion(0), L"0.25");
}

TEST_F(ConvergenceDataTest, ARowOfTheWrongLengthIsReportedAndTakenAllTheSameOnPurpose) {
  Start(0);
  ConvValues row;
  row.AddValue(new IntConvValue(&pass, 1));
  AssertWatch::Expect("!\"Invalid size\"");
  data.AddData(&row, 0);
  EXPECT_EQ(data.GetCurrent(L"Pass", 0), L"1");
  EXPECT_EQ(data.GetCurrent(L"Max delta", 0), L"N/A");
}

TEST_F(ConvergenceDataTest, AValueOfAForeignColumnIsReportedAndGetsAColumnOnPurpose) {
  Start(0);
  IntConvDef const foreign(L"Mesh", L"m", false);
  ConvValues row;
  row.AddValue(new IntConvValue(&pass, 1));
  row.AddValue(new IntConvValue(&foreign, 100));
  AssertWatch::Expect("dIt != mDef->end()");
  data.AddData(&row, 0);
  EXPECT_EQ(data.find(&foreign, 0)->second.size(), 1);
}

TEST_F(ConvergenceDataTest, TableColumnsAreThoseThatAreShownInTheOrderOfTheList) {
  pass.SetHidden();
  Start(0);
  std::vector<std::pair<AString, bool>> columns;
  data.GetTableColumns(columns, 0);
  EXPECT_EQ(columns, (std::vector<std::pair<AString, bool>>{{L"Max delta", true}}));
  EXPECT_EQ(data.find(L"Pass", 0), &pass);
}

TEST_F(ConvergenceDataTest, ClearDataKeepsTheFirstPasses) {
  Start(0);
  AddPass(1, 0.5, 0);
  AddPass(2, 0.25, 0);
  data.ClearData(1, 0);
  EXPECT_EQ(data.GetCurrent(L"Pass", 0), L"1");
  data.ClearData(0, 0);
  EXPECT_EQ(data.GetCurrent(L"Pass", 0), L"N/A");
}

TEST_F(ConvergenceDataTest, AnotherListKeepsColumnsOfTheSameNameAndPadsNewOnes) {
  Start(0);
  AddPass(1, 0.5, 0);
  AddPass(2, 0.25, 0);
  IntConvDef const newPass(L"Pass", L"k", false);
  StringConvDef const remark(L"Remark", L"r", false);
  SetupConvDef other(L"Other");
  other.AddDef(&remark);
  other.AddDef(&newPass);
  data.SetSetupDef(&other, 0);
  EXPECT_EQ(data.GetCurrent(L"Pass", 0), L"2");
  EXPECT_EQ(data.find(&remark, 0)->second.size(), 2);
  EXPECT_FALSE(data.find(&remark, 0)->second.GetValue(0)->IsValid());
  EXPECT_EQ(data.find(&delta, 0), data.end(0));
  EXPECT_EQ(data.find(&pass, 0), data.end(0));
}

TEST_F(ConvergenceDataTest, AListThatIsTakenAwayLeavesNoColumns) {
  Start(0);
  AddPass(1, 0.5, 0);
  data.SetSetupDef(nullptr, 0);
  EXPECT_TRUE(data.NeedDefinition(0));
  EXPECT_EQ(data.begin(0), data.end(0));
  data.SetSetupDef(&setup, 0);
  EXPECT_EQ(data.GetCurrent(L"Pass", 0), L"N/A");
}

TEST_F(ConvergenceDataTest, AColumnThatBothListsHoldKeepsItsValues) {
  Start(0);
  AddPass(1, 0.5, 0);
  SetupConvDef other(L"Other");
  other.AddDef(&delta);
  data.SetSetupDef(&other, 0);
  EXPECT_EQ(data.GetCurrent(L"Max delta", 0), L"0.5");
  data.SetSetupDef(&other, 0);
  EXPECT_EQ(data.GetCurrent(L"Max delta", 0), L"0.5");
}

TEST_F(ConvergenceDataTest, AColumnThatWasNeverMadeIsReportedWhenTheListChanges) {
  data.SetSetupDef(&setup, 0);
  SetupConvDef const other(L"Other");
  AssertWatch::Expect("!column.empty()");
  data.SetSetupDef(&other, 0);
  EXPECT_EQ(data.GetSetupConvDefName(0), L"Other");
}

TEST_F(ConvergenceDataTest, CopiesShareTheSetsAndTheLastFreesThem) {
  ConvergenceData copy(L"Other");
  {
    ConvergenceData original(L"Record");
    original.SetSetupDef(&setup, 0);
    copy = original;
    original.SetTargetCriterion(L"7", 0);
  }
  EXPECT_EQ(copy.GetName(), L"Record");
  EXPECT_EQ(copy.GetTargetCriterion(0), L"7");
}

TEST_F(ConvergenceDataTest, ClearDataMakesMissingColumnsAndReportsASetWithoutDefinition) {
  data.SetSetupDef(&setup, kSingle);
  EXPECT_EQ(data.find(L"Pass", kSingle), &pass);
  data.ClearData(0, kSingle);
  EXPECT_EQ(std::distance(data.begin(kSingle), data.end(kSingle)), 2);
  data.ClearData(0, 7); // no set, nothing to do
  data.SetSetupDef(nullptr, 3);
  AssertWatch::Expect("mDef");
  data.ClearData(0, 3);
}

TEST_F(ConvergenceDataTest, ARowForAnIndexWithoutASetStaysWithTheCaller) {
  ConvValues row;
  row.AddValue(new IntConvValue(&pass, 1));
  data.AddData(&row, 5);
  EXPECT_EQ(row.size(), 1);
}

TEST_F(ConvergenceDataTest, TheCurrentPassOfAMissingSetIsReportedOnceAndNotAvailable) {
  EXPECT_EQ(data.GetCurrentIter(4), AString(L"N/A"));
  EXPECT_EQ(AssertWatch::Take(), std::vector<std::string>{"pData"});
  EXPECT_EQ(data.GetCurrentCriterion(4), AString(L"N/A"));
  AssertWatch::Take();
}

TEST_F(ConvergenceDataTest, AColumnOfTextHasNoNumber) {
  StringConvDef note(L"Note", L"t", false);
  SetupConvDef texts(L"Texts");
  texts.AddDef(&note);
  data.SetSetupDef(&texts, kSingle);
  ConvValues row;
  row.AddValue(new StringConvValue(&note, L"fine"));
  data.AddData(&row, kSingle);
  double value = 0;
  EXPECT_FALSE(data.GetCurrent(L"Note", value, kSingle));
  EXPECT_FALSE(data.GetPassData(L"Note", 1, value, kSingle));
  EXPECT_EQ(data.GetPassData(L"Note", 1, kSingle), AString(L"fine"));
  data.ClearData(0, kSingle);
  data.SetSetupDef(&setup, kSingle);
}

TEST_F(ConvergenceDataTest, ACopyMadeByConstructionSharesTheSets) {
  Start(kSingle);
  AddPass(3, 0.5, kSingle);
  ConvergenceData const copy(data);
  EXPECT_EQ(copy.GetBaseConvergenceData(kSingle), data.GetBaseConvergenceData(kSingle));
}
