#include "basekit/io/BlockCodec.h"
#include "basekit/io/CNamed_value_manip.h"
#include "tests/solutionmanager/convergence/ConvergenceDataFixture.h"

#include <cmath>
#include <limits>
#include <string>

using support::AssertWatch;

namespace {

class ConvergenceDataBlocksTest : public support::ConvergenceDataTest {};

std::vector<std::wstring> ItemNames(io::CBlock const & block) {
  std::vector<std::wstring> names;
  for (auto const & item : block)
    names.emplace_back(item->Name().View());
  return names;
}

} // namespace

TEST_F(ConvergenceDataBlocksTest, ASetWithoutDefinitionIsReportedAndKeepsItsTexts) {
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

TEST_F(ConvergenceDataBlocksTest, ValuesThatChangedListsAreWrittenUnderTheirNewTokens) {
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

TEST_F(ConvergenceDataBlocksTest, AColumnThatChangesItsTypeKeepsItsOldValuesAsTheyWere) {
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

TEST_F(ConvergenceDataBlocksTest, NoPassIsLostWhenColumnsAreOfDifferentLength) {
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

TEST_F(ConvergenceDataBlocksTest, NumbersThatAreNoneComeBackAsTheyWere) {
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

TEST_F(ConvergenceDataBlocksTest, ItemsOfTheWrongTypeCountAsMissing) {
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

TEST_F(ConvergenceDataBlocksTest, AnIndexOutOfRangeIsTheNearestOneThereIs) {
  io::CBlock block(L"Record");
  block << io::CBlock(L"99999999999999999999");
  AssertWatch::Expect("0");
  EXPECT_EQ(data.Read(block, nullptr), io::kNoDefinition);
  EXPECT_NE(data.GetBaseConvergenceData(std::numeric_limits<int>::max()), nullptr);
}

TEST_F(ConvergenceDataBlocksTest, TheLastFailureOfSeveralSetsIsTheResult) {
  data.SetSetupDef(&setup, 2);
  io::CBlock block(L"Record");
  block << io::CBlock(L"1") << io::CBlock(L"2");
  AssertWatch::Expect("0");
  EXPECT_EQ(data.Read(block, nullptr), io::kNoDefinition) << "a set that reads well does not hide it";
}

TEST_F(ConvergenceDataBlocksTest, ReadingAgainAddsThePassesAgainOnPurpose) {
  Start(kSingle);
  AddPass(1, 0.5, kSingle);
  auto const block = Written();
  EXPECT_EQ(data.Read(block, nullptr), io::kNoError);
  EXPECT_EQ(data.find(&pass, kSingle)->second.size(), 2);
}

TEST_F(ConvergenceDataBlocksTest, TheSingleSetIsWrittenFlat) {
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

TEST_F(ConvergenceDataBlocksTest, ASingleSetOfAnotherIndexIsWrittenAsASubBlockOnPurpose) {
  Start(0);
  EXPECT_EQ(ItemNames(Written()), std::vector<std::wstring>{L"0"});
}

TEST_F(ConvergenceDataBlocksTest, SeveralSetsComeBackUnderTheirIndices) {
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

TEST_F(ConvergenceDataBlocksTest, AnswersThatAreNotSupportedAreLeftOut) {
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

TEST_F(ConvergenceDataBlocksTest, ABlockOfAnotherNameIsLeftAlone) {
  EXPECT_EQ(data.Read(io::CBlock(L"record"), nullptr), io::kNoError);
  EXPECT_EQ(data.GetBaseConvergenceData(kSingle), nullptr);
}

TEST_F(ConvergenceDataBlocksTest, AChildBlockThatIsNoNumberIsTheSingleSetAndTheParentsItemsDoNotCountOnPurpose) {
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

TEST_F(ConvergenceDataBlocksTest, OlderFilesHoldTheNumberOfPassesAsANumber) {
  ConvergenceData read(L"Record");
  read.SetSetupDef(&setup, kSingle);
  io::CBlock block(L"Record");
  block << io::named(L"MaxPasses", 12);
  read.Read(block, nullptr);
  EXPECT_EQ(read.GetMaximumIter(kSingle), L"12");
  read.Read(io::CBlock(L"Record"), nullptr);
  EXPECT_EQ(read.GetMaximumIter(kSingle), L"0") << "none at all reads as zero, on purpose";
}

TEST_F(ConvergenceDataBlocksTest, APassWithAMissingValueStillCounts) {
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

TEST_F(ConvergenceDataBlocksTest, WritingTheLastPassIsAProductsBusiness) {
  io::CBlock block(L"Record");
  EXPECT_FALSE(data.WriteLastConv(block));
}

TEST_F(ConvergenceDataBlocksTest, ARecordThatWasReadStillNeedsInitOnPurpose) {
  Start(kSingle);
  AddPass(1, 0.5, kSingle);
  ConvergenceData other(L"Record");
  other.SetSetupDef(&setup, kSingle);
  EXPECT_EQ(other.Read(Written(), nullptr), io::kNoError);
  EXPECT_EQ(other.GetCurrent(L"Pass", kSingle), AString(L"1"));
  EXPECT_TRUE(other.NeedInit(kSingle));
}

TEST_F(ConvergenceDataBlocksTest, AFileThatTellsNoNumberOfPassesGivesZeroOnPurpose) {
  data.SetSetupDef(&setup, kSingle);
  EXPECT_EQ(data.Read(io::CBlock(L"Record"), nullptr), io::kNoError);
  EXPECT_EQ(data.GetMaximumIter(kSingle), AString(L"0"));
}

TEST_F(ConvergenceDataBlocksTest, SayingThatItDidNotConvergeMakesTheAnswerSupportedOnPurpose) {
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

TEST_F(ConvergenceDataBlocksTest, SetsOfNegativeIndicesComeBackBesideOthers) {
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

TEST_F(ConvergenceDataBlocksTest, PassesOfTheParentDoNotCountBesideAChildBlockOnPurpose) {
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

TEST_F(ConvergenceDataBlocksTest, ARowThatAProductsColumnCantReadIsNoPass) {
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
