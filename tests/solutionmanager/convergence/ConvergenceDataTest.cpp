#include "solutionmanager/convergence/ConvergenceData.h"

#include "basekit/io/BlockCodec.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "solutionmanager/convergence/ConvDef.h"
#include "solutionmanager/convergence/ConvValue.h"
#include "solutionmanager/convergence/SetupConvDef.h"
#include "tests/support/AssertWatch.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

using support::AssertWatch;

namespace {

constexpr int kSingle = ConvergenceData::kSingleSet;

class ConvergenceDataTest : public testing::Test {
protected:
  ConvergenceDataTest() {
    setup.AddDef(&pass);
    setup.AddDef(&delta);
  }

  void Start(int index) {
    data.SetSetupDef(&setup, index);
    data.Initialize(L"10", L"0.02", L"Max delta", L"Pass", L"2", true, L"Passes", index);
  }

  void AddPass(int number, double value, int index) {
    ConvValues row;
    row.AddValue(new IntConvValue(&pass, number));
    row.AddValue(new DoubleConvValue(&delta, value));
    data.AddData(&row, index);
    EXPECT_EQ(row.size(), 0) << "the columns own the values now";
  }

  void AddRowOf(ConvDef const & def, int number) {
    ConvValues row;
    row.AddValue(new IntConvValue(&def, number));
    data.AddData(&row, kSingle);
  }

  io::CBlock Written() const {
    io::CBlock block(L"Record");
    EXPECT_TRUE(data.Write(block));
    return block;
  }

  IntConvDef pass{L"Pass", L"n", false};
  DoubleConvDef delta{L"Max delta", L"d", true};
  SetupConvDef setup{L"Adaptive"};
  ConvergenceData data{L"Record"};
};

std::vector<std::wstring> ItemNames(io::CBlock const & block) {
  std::vector<std::wstring> names;
  for (auto const & item : block)
    names.emplace_back(item->Name().View());
  return names;
}

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

TEST_F(ConvergenceDataTest, ASetWithoutDefinitionIsReportedAndKeepsItsTexts) {
  data.SetSetupDef(nullptr, 0);
  AssertWatch::Expect("mDef");
  data.Initialize(L"10", L"0.02", L"Max delta", L"Pass", L"2", true, L"Passes", 0);
  EXPECT_EQ(data.GetMaximumIter(0), L"N/A");
  EXPECT_TRUE(data.NeedInit(0));
  EXPECT_EQ(data.GetSetupConvDefName(0), L"N/A");
  AssertWatch::Expect("mDef");
  ConvValues row;
  row.AddValue(new IntConvValue(&pass, 1));
  data.AddData(&row, 0);
  EXPECT_EQ(row.size(), 1);
  io::CBlock block(L"Record");
  EXPECT_FALSE(data.Write(block));
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

TEST_F(ConvergenceDataTest, ValuesThatChangedListsAreWrittenUnderTheirNewTokens) {
  Start(kSingle);
  AddPass(1, 0.5, kSingle);
  IntConvDef const newPass(L"Pass", L"k", false);
  SetupConvDef other(L"Other");
  other.AddDef(&newPass);
  data.SetSetupDef(&other, kSingle);
  AddRowOf(newPass, 2);
  ConvergenceData read(L"Record");
  read.SetSetupDef(&other, kSingle);
  read.Read(Written(), nullptr);
  EXPECT_EQ(read.GetPassData(L"Pass", 1, kSingle), L"1");
  EXPECT_EQ(read.GetPassData(L"Pass", 2, kSingle), L"2");
}

TEST_F(ConvergenceDataTest, AColumnThatChangesItsTypeKeepsItsOldValuesAsTheyWere) {
  Start(kSingle);
  AddPass(123456789, 0.5, kSingle);
  DoubleConvDef const real(L"Pass", L"n", false);
  SetupConvDef other(L"Other");
  other.AddDef(&real);
  data.SetSetupDef(&other, kSingle);
  EXPECT_EQ(data.GetCurrent(L"Pass", kSingle), L"123456789");
  ConvergenceData read(L"Record");
  read.SetSetupDef(&other, kSingle);
  read.Read(Written(), nullptr);
  double number = 0.0;
  EXPECT_TRUE(read.GetCurrent(L"Pass", number, kSingle));
  EXPECT_EQ(number, 123456789.0);
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

TEST_F(ConvergenceDataTest, NoPassIsLostWhenColumnsAreOfDifferentLength) {
  Start(kSingle);
  AddPass(1, 0.5, kSingle);
  for (int number : {2, 3}) {
    AddRowOf(pass, number);
    AssertWatch::Take();
  }
  ConvergenceData read(L"Record");
  read.SetSetupDef(&setup, kSingle);
  read.Read(Written(), nullptr);
  EXPECT_EQ(read.GetCurrent(L"Pass", kSingle), L"3");
  EXPECT_EQ(read.GetPassData(L"Max delta", 1, kSingle), L"0.5");
  EXPECT_EQ(read.GetCurrent(L"Max delta", kSingle), L"N/A");
}

TEST_F(ConvergenceDataTest, NumbersThatAreNoneComeBackAsTheyWere) {
  for (io::Form const form : {io::Form::Text, io::Form::Binary}) {
    Start(kSingle);
    data.ClearData(0, kSingle);
    AddPass(-2147483647, std::numeric_limits<double>::quiet_NaN(), kSingle);
    AddPass(0, -std::numeric_limits<double>::infinity(), kSingle);
    AddPass(2147483647, std::numeric_limits<double>::max(), kSingle);
    std::string bytes;
    ASSERT_TRUE(io::EncodeBlock(Written(), form, io::kExactDigits, bytes));
    io::CBlock block;
    ASSERT_TRUE(io::DecodeBlock(bytes, form, block));
    ConvergenceData read(L"Record");
    read.SetSetupDef(&setup, kSingle);
    ASSERT_EQ(read.Read(block, nullptr), io::kNoError);
    double number = 0.0;
    EXPECT_TRUE(read.GetPassData(L"Max delta", 1, number, kSingle));
    EXPECT_TRUE(std::isnan(number));
    EXPECT_TRUE(read.GetPassData(L"Max delta", 2, number, kSingle));
    EXPECT_EQ(number, -std::numeric_limits<double>::infinity());
    EXPECT_EQ(read.GetPassData(L"Pass", 1, kSingle), L"-2147483647");
    EXPECT_EQ(read.GetPassData(L"Pass", 3, kSingle), L"N/A");
    EXPECT_EQ(read.GetPassData(L"Max delta", 3, kSingle), L"N/A");
  }
}

TEST_F(ConvergenceDataTest, ItemsOfTheWrongTypeCountAsMissing) {
  io::CBlock block;
  ASSERT_TRUE(io::DecodeBlock("Record {\n ConvSetupName = 7\n IsConverged = \"yes\"\n MaxPasses = 1e300\n"
                              " MinPasses = 4\n c = 5\n c(1, 2, 3)\n c(n = \"x\", d = true)\n c(n = 1e300)\n"
                              " c(n = 9223372036854775807, d = 2)\n c [1, 2]\n}\n",
                              io::Form::Text, block));
  data.SetSetupDef(&setup, kSingle);
  EXPECT_EQ(data.Read(block, nullptr), io::kNoError);
  EXPECT_FALSE(data.SupportsIsConverged(kSingle));
  EXPECT_EQ(data.GetMaximumIter(kSingle), L"0");
  EXPECT_EQ(data.GetMinimumIter(kSingle), L"N/A");
  EXPECT_EQ(data.find(&pass, kSingle)->second.size(), 4) << "each function item is a pass";
  EXPECT_EQ(data.GetPassData(L"Pass", 2, kSingle), L"N/A");
  EXPECT_EQ(data.GetPassData(L"Max delta", 2, kSingle), L"N/A");
  EXPECT_EQ(data.GetPassData(L"Pass", 3, kSingle), L"N/A");
  EXPECT_EQ(data.GetPassData(L"Pass", 4, kSingle), L"N/A");
  EXPECT_EQ(data.GetPassData(L"Max delta", 4, kSingle), L"2");
}

TEST_F(ConvergenceDataTest, AnIndexOutOfRangeIsTheNearestOneThereIs) {
  io::CBlock block(L"Record");
  block << io::CBlock(L"99999999999999999999");
  AssertWatch::Expect("0");
  EXPECT_EQ(data.Read(block, nullptr), io::kNoDefinition);
  EXPECT_NE(data.GetBaseConvergenceData(std::numeric_limits<int>::max()), nullptr);
}

TEST_F(ConvergenceDataTest, TheLastFailureOfSeveralSetsIsTheResult) {
  data.SetSetupDef(&setup, 2);
  io::CBlock block(L"Record");
  block << io::CBlock(L"1") << io::CBlock(L"2");
  AssertWatch::Expect("0");
  EXPECT_EQ(data.Read(block, nullptr), io::kNoDefinition) << "a set that reads well does not hide it";
}

TEST_F(ConvergenceDataTest, ReadingAgainAddsThePassesAgainOnPurpose) {
  Start(kSingle);
  AddPass(1, 0.5, kSingle);
  auto const block = Written();
  EXPECT_EQ(data.Read(block, nullptr), io::kNoError);
  EXPECT_EQ(data.find(&pass, kSingle)->second.size(), 2);
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

TEST_F(ConvergenceDataTest, TheSingleSetIsWrittenFlat) {
  Start(kSingle);
  AddPass(1, 0.5, kSingle);
  data.SetTargetConsecPasses(L"2", kSingle);
  data.SetCurrentConsecPasses(L"1", kSingle);
  auto const block = Written();
  EXPECT_EQ(ItemNames(block), (std::vector<std::wstring>{L"ConvSetupName", L"MaxPasses", L"MinPasses", L"ConvTarget",
                                                         L"ConvTargetConsecPasses", L"ConvCurrentConsecPasses", L"c"}));
  ConvergenceData read(L"Record");
  read.SetSetupDef(&setup, kSingle);
  EXPECT_EQ(read.Read(block, nullptr), io::kNoError);
  EXPECT_EQ(read.GetMaximumIter(kSingle), L"10");
  EXPECT_EQ(read.GetTargetConsecPasses(kSingle), L"2");
  EXPECT_EQ(read.GetCurrentConsecPasses(kSingle), L"1");
  EXPECT_EQ(read.GetPassData(L"Max delta", 1, kSingle), L"0.5");
  EXPECT_TRUE(read.NeedInit(kSingle)) << "reading is not initialising";
}

TEST_F(ConvergenceDataTest, ASingleSetOfAnotherIndexIsWrittenAsASubBlockOnPurpose) {
  Start(0);
  EXPECT_EQ(ItemNames(Written()), std::vector<std::wstring>{L"0"});
}

TEST_F(ConvergenceDataTest, SeveralSetsComeBackUnderTheirIndices) {
  Start(0);
  Start(1);
  AddPass(1, 0.5, 1);
  auto const block = Written();
  EXPECT_EQ(ItemNames(block), (std::vector<std::wstring>{L"0", L"1"}));
  ConvergenceData read(L"Record");
  read.SetSetupDef(&setup, 0);
  read.SetSetupDef(&setup, 1);
  EXPECT_EQ(read.Read(block, nullptr), io::kNoError);
  EXPECT_EQ(read.GetCurrent(L"Pass", 0), L"N/A");
  EXPECT_EQ(read.GetCurrent(L"Pass", 1), L"1");
}

TEST_F(ConvergenceDataTest, AnswersThatAreNotSupportedAreLeftOut) {
  Start(kSingle);
  data.SetIsConverged(false, kSingle);
  EXPECT_TRUE(data.SupportsIsConverged(kSingle));
  data.GetBaseConvergenceData(kSingle);
  auto block = Written();
  EXPECT_EQ(ItemNames(block)[1], L"IsConverged");
  ConvergenceData read(L"Record");
  read.SetSetupDef(&setup, kSingle);
  read.Read(block, nullptr);
  EXPECT_TRUE(read.SupportsIsConverged(kSingle));
  EXPECT_FALSE(read.GetIsConverged(kSingle));
  data.Initialize(L"1", L"2", L"3", L"4", L"5", false, L"6", kSingle);
  EXPECT_EQ(ItemNames(Written())[2], L"SupportsCriterionDisplay");
}

TEST_F(ConvergenceDataTest, ABlockOfAnotherNameIsLeftAlone) {
  EXPECT_EQ(data.Read(io::CBlock(L"record"), nullptr), io::kNoError);
  EXPECT_EQ(data.GetBaseConvergenceData(kSingle), nullptr);
}

TEST_F(ConvergenceDataTest, AChildBlockThatIsNoNumberIsTheSingleSetAndTheParentsItemsDoNotCountOnPurpose) {
  Start(kSingle);
  AddPass(1, 0.5, kSingle);
  io::CBlock child(L"abc");
  ASSERT_TRUE(data.GetBaseConvergenceData(kSingle)->Write(child));
  io::CBlock block(L"Record");
  block << io::named(L"MaxPasses", L"99") << child;
  ConvergenceData read(L"Record");
  read.SetSetupDef(&setup, kSingle);
  EXPECT_EQ(read.Read(block, nullptr), io::kNoError);
  EXPECT_EQ(read.GetMaximumIter(kSingle), L"10");
  EXPECT_EQ(read.GetCurrent(L"Pass", kSingle), L"1");
}

TEST_F(ConvergenceDataTest, OlderFilesHoldTheNumberOfPassesAsANumber) {
  ConvergenceData read(L"Record");
  read.SetSetupDef(&setup, kSingle);
  io::CBlock block(L"Record");
  block << io::named(L"MaxPasses", 12);
  read.Read(block, nullptr);
  EXPECT_EQ(read.GetMaximumIter(kSingle), L"12");
  read.Read(io::CBlock(L"Record"), nullptr);
  EXPECT_EQ(read.GetMaximumIter(kSingle), L"0") << "none at all reads as zero, on purpose";
}

TEST_F(ConvergenceDataTest, APassWithAMissingValueStillCounts) {
  io::CBlock block(L"Record");
  io::CBlock_func first(L"c");
  first << io::named(L"n", 1);
  block << first << io::CBlock_func(L"C") << io::CBlock_func(L"c");
  ConvergenceData read(L"Record");
  read.SetSetupDef(&setup, kSingle);
  read.Read(block, nullptr);
  EXPECT_EQ(read.find(&pass, kSingle)->second.size(), 2) << "the name of a pass is exact";
  EXPECT_EQ(read.GetPassData(L"Max delta", 1, kSingle), L"N/A");
  EXPECT_EQ(read.GetPassData(L"Pass", 1, kSingle), L"1");
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

TEST_F(ConvergenceDataTest, WritingTheLastPassIsAProductsBusiness) {
  io::CBlock block(L"Record");
  EXPECT_FALSE(data.WriteLastConv(block));
}

TEST_F(ConvergenceDataTest, ARecordThatWasReadStillNeedsInitOnPurpose) {
  Start(kSingle);
  AddPass(1, 0.5, kSingle);
  ConvergenceData other(L"Record");
  other.SetSetupDef(&setup, kSingle);
  EXPECT_EQ(other.Read(Written(), nullptr), io::kNoError);
  EXPECT_EQ(other.GetCurrent(L"Pass", kSingle), AString(L"1"));
  EXPECT_TRUE(other.NeedInit(kSingle));
}

TEST_F(ConvergenceDataTest, AFileThatTellsNoNumberOfPassesGivesZeroOnPurpose) {
  data.SetSetupDef(&setup, kSingle);
  EXPECT_EQ(data.Read(io::CBlock(L"Record"), nullptr), io::kNoError);
  EXPECT_EQ(data.GetMaximumIter(kSingle), AString(L"0"));
}

TEST_F(ConvergenceDataTest, SayingThatItDidNotConvergeMakesTheAnswerSupportedOnPurpose) {
  Start(kSingle);
  EXPECT_FALSE(data.SupportsIsConverged(kSingle));
  data.SetIsConverged(false, kSingle);
  EXPECT_TRUE(data.SupportsIsConverged(kSingle));
  bool isConverged = true;
  io::CBlock const block = Written();
  block >> io::named(L"IsConverged", isConverged);
  EXPECT_TRUE(block.Found());
  EXPECT_FALSE(isConverged);
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

TEST_F(ConvergenceDataTest, SetsOfNegativeIndicesComeBackBesideOthers) {
  for (int const index : {kSingle, 0, -7}) {
    Start(index);
    AddPass(index, 0.5, index);
  }
  io::CBlock const block = Written();
  EXPECT_NE(block.FindBlock(L"-1"), nullptr);
  EXPECT_NE(block.FindBlock(L"-7"), nullptr);
  ConvergenceData other(L"Record");
  for (int const index : {kSingle, 0, -7})
    other.SetSetupDef(&setup, index);
  EXPECT_EQ(other.Read(block, nullptr), io::kNoError);
  for (int const index : {kSingle, 0, -7})
    EXPECT_EQ(other.GetCurrent(L"Pass", index), AString::Format(L"%d", index));
}

TEST_F(ConvergenceDataTest, PassesOfTheParentDoNotCountBesideAChildBlockOnPurpose) {
  Start(kSingle);
  AddPass(1, 0.5, kSingle);
  io::CBlock block = Written();
  io::CBlock child(L"0");
  block << child;
  ConvergenceData other(L"Record");
  other.SetSetupDef(&setup, kSingle);
  other.SetSetupDef(&setup, 0);
  EXPECT_EQ(other.Read(block, nullptr), io::kNoError);
  EXPECT_EQ(other.GetCurrent(L"Pass", kSingle), AString(L"N/A"));
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

TEST_F(ConvergenceDataTest, ARowThatAProductsColumnCantReadIsNoPass) {
  class Unreadable : public IntConvDef {
  public:
    using IntConvDef::IntConvDef;
    ConvValue * CreateValue(ConvDef const * def) const override {
      class Value : public IntConvValue {
      public:
        using IntConvValue::IntConvValue;
        bool Read(io::CBlock_ptr<io::CBlock_func> const &) override { return false; }
      };
      return new Value(def, 1);
    }
  };
  Unreadable const never(L"Pass", L"n", false);
  SetupConvDef list(L"Adaptive");
  list.AddDef(&never);
  list.AddDef(&delta);
  Start(kSingle);
  AddPass(1, 0.5, kSingle);
  ConvergenceData other(L"Record");
  other.SetSetupDef(&list, kSingle);
  EXPECT_EQ(other.Read(Written(), nullptr), io::kNoError);
  EXPECT_EQ(other.GetCurrent(L"Max delta", kSingle), AString(L"N/A"));
}
