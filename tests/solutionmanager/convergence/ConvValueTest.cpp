#include "solutionmanager/convergence/ConvValue.h"

#include "basekit/io/CBlockFuncPtr.h"
#include "basekit/io/CNamed_value_manip.h"
#include "solutionmanager/convergence/ConvDef.h"
#include "solutionmanager/convergence/ConvValues.h"
#include "solutionmanager/convergence/SetupConvDef.h"
#include "tests/support/AssertWatch.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

IntConvDef const passes(L"Pass", L"n", false);
DoubleConvDef const delta(L"Max delta", L"d", true);
StringConvDef const remark(L"Remark", L"r", false);

constexpr double kLargest = std::numeric_limits<double>::max();

double Number(ConvValue const & value) {
  double number = -1.0;
  EXPECT_TRUE(value.GetValue(number));
  return number;
}

} // namespace

TEST(ConvDef, TypesAreNumberedAndMakeInvalidValuesOfTheirOwnKind) {
  EXPECT_EQ(passes.GetType(), 1);
  EXPECT_EQ(delta.GetType(), 2);
  EXPECT_EQ(remark.GetType(), 3);
  EXPECT_EQ(ConvDef::IntConvDef, 1);
  EXPECT_EQ(ConvDef::DoubleConvDef, 2);
  EXPECT_EQ(ConvDef::StringConvDef, 3);
  for (ConvDef const * def : {static_cast<ConvDef const *>(&passes), static_cast<ConvDef const *>(&delta),
                              static_cast<ConvDef const *>(&remark)}) {
    std::unique_ptr<ConvValue> const value(def->CreateValue(def));
    EXPECT_FALSE(value->IsValid());
    EXPECT_EQ(value->GetValue(), L"N/A");
    EXPECT_EQ(value->GetDef(), def);
  }
}

TEST(ConvDef, ACopyHasNoTokenOnPurposeAndAnAssignmentHas) {
  DoubleConvDef hidden(L"Max delta", L"d", true);
  hidden.SetHidden();
  DoubleConvDef const copy(hidden);
  EXPECT_EQ(copy.GetToken(), L"");
  EXPECT_EQ(copy.GetName(), L"Max delta");
  EXPECT_TRUE(copy.IsHidden());
  EXPECT_TRUE(copy.CanPlot());
  DoubleConvDef assigned(L"x", L"y", false);
  assigned = hidden;
  EXPECT_EQ(assigned.GetToken(), L"d");
  EXPECT_EQ(assigned.GetName(), L"Max delta");
  EXPECT_TRUE(assigned.IsHidden());
  EXPECT_TRUE(assigned.CanPlot());
}

TEST(ConvValue, TextsAreThoseOfTables) {
  EXPECT_EQ(IntConvValue(&passes, -7).GetValue(), L"-7");
  EXPECT_EQ(DoubleConvValue(&delta, 0.0123456789).GetValue(), L"0.012346");
  EXPECT_EQ(StringConvValue(&remark, L"fine").GetValue(), L"fine");
}

TEST(ConvValue, AnInvalidNumberIsTheLargestDoubleAndStillCountsAsOneOnPurpose) {
  EXPECT_EQ(Number(IntConvValue(&passes, 2147483647)), kLargest);
  EXPECT_EQ(Number(DoubleConvValue(&delta, kLargest)), kLargest);
  EXPECT_EQ(Number(IntConvValue(&passes, 3)), 3.0);
  EXPECT_EQ(Number(DoubleConvValue(&delta, 0.5)), 0.5);
}

TEST(ConvValue, ATextIsNoNumber) {
  double number = 0.0;
  ConvValue const & value = StringConvValue(&remark, L"3");
  EXPECT_FALSE(value.GetValue(number));
  EXPECT_EQ(number, kLargest);
}

TEST(ConvValue, ValuesComeBackUnderTheirTokens) {
  io::CBlockFuncPtr func(L"c");
  EXPECT_TRUE(IntConvValue(&passes, 4).Write(func));
  EXPECT_TRUE(DoubleConvValue(&delta, 1e-3).Write(func));
  EXPECT_TRUE(StringConvValue(&remark, L"fine").Write(func));
  EXPECT_EQ(func->Size(), 3);
  std::unique_ptr<ConvValue> const a(passes.ReadValue(func.GetTBlockFuncPtr()));
  std::unique_ptr<ConvValue> const b(delta.ReadValue(func.GetTBlockFuncPtr()));
  std::unique_ptr<ConvValue> const c(remark.ReadValue(func.GetTBlockFuncPtr()));
  EXPECT_EQ(a->GetValue(), L"4");
  EXPECT_EQ(Number(*b), 1e-3);
  EXPECT_EQ(c->GetValue(), L"fine");
}

TEST(ConvValue, AnInvalidValueIsWrittenAsAGapAndAGapIsReadAsInvalidOnPurpose) {
  io::CBlockFuncPtr func(L"c");
  EXPECT_TRUE(IntConvValue(&passes, 2147483647).Write(func));
  EXPECT_TRUE(StringConvValue(&remark, L"N/A").Write(func));
  EXPECT_EQ(func->Size(), 0);
  IntConvValue number(&passes, 5);
  EXPECT_TRUE(number.Read(func.GetTBlockFuncPtr()));
  EXPECT_FALSE(number.IsValid());
  EXPECT_EQ(number.GetValue(), L"N/A");
  EXPECT_EQ(Number(number), kLargest);
}

TEST(ConvValue, AValueOfAnotherTypeIsAGap) {
  io::CBlockFuncPtr func(L"c");
  *func << io::named(L"n", L"four");
  IntConvValue number(&passes, 5);
  number.Read(func.GetTBlockFuncPtr());
  EXPECT_FALSE(number.IsValid());
}

TEST(ConvValues, CopiesAreDeepAndAppended) {
  ConvValues row;
  row.AddValue(new IntConvValue(&passes, 1));
  row.AddValue(new StringConvValue(&remark, L"fine"));
  ConvValues copy(row);
  copy.CopyFrom(copy);
  ASSERT_EQ(copy.size(), 4);
  EXPECT_NE(copy.GetValue(0), row.GetValue(0));
  EXPECT_EQ(copy.GetValue(3)->GetValue(), L"fine");
  copy = row;
  EXPECT_EQ(copy.size(), 2);
  ConvValues & self = copy;
  copy = self;
  EXPECT_EQ(copy.size(), 2);
}

TEST(ConvValues, AValueOfAClassThatDoesNotGoWithItsColumnIsCopiedAsInvalid) {
  ConvValues row;
  row.AddValue(new IntConvValue(&delta, 1));
  ConvValues const copy(row);
  ASSERT_EQ(copy.size(), 1);
  EXPECT_FALSE(copy.GetValue(0)->IsValid());
}

TEST(ConvValues, ClearDataKeepsTheFirstOnes) {
  ConvValues column;
  for (int i = 0; i < 3; ++i)
    column.AddValue(new IntConvValue(&passes, i));
  column.ClearData(3);
  EXPECT_EQ(column.size(), 3);
  column.AddValue(new IntConvValue(&passes, 3));
  column.ClearData(3);
  EXPECT_EQ(column.size(), 3);
  column.ClearData(-1);
  EXPECT_EQ(column.size(), 0);
}

TEST(ConvValues, NumbersEndAtTheFirstValueThatIsNone) {
  ConvValues row;
  row.AddValue(new IntConvValue(&passes, 1));
  row.AddValue(new StringConvValue(&remark, L"2"));
  row.AddValue(new IntConvValue(&passes, 3));
  std::vector<double> numbers;
  EXPECT_FALSE(row.GetValues(numbers));
  EXPECT_EQ(numbers, std::vector<double>{1.0});
}

TEST(ConvValues, AnIndexThatThereIsNotGivesNull) {
  ConvValues const row;
  EXPECT_EQ(row.GetValue(0), nullptr);
  EXPECT_EQ(row.GetValue(-1), nullptr);
}

TEST(SetupConvDef, ColumnsAreFoundByNameAndByTokenExactly) {
  SetupConvDef setup(L"Adaptive");
  setup.AddDef(&passes);
  setup.AddDef(&delta);
  EXPECT_EQ(*setup.FindByName(L"Max delta"), &delta);
  EXPECT_EQ(*setup.FindByToken(L"n"), &passes);
  EXPECT_EQ(setup.FindByName(L"max delta"), setup.end());
  EXPECT_EQ(setup.FindByToken(L"Max delta"), setup.end());
}

TEST(SetupConvDef, ADuplicateTokenIsReportedAndAddedAllTheSameOnPurpose) {
  SetupConvDef setup(L"Adaptive");
  setup.AddDef(&delta);
  support::AssertWatch::Expect("!\"Duplicate convergence definition\"");
  setup.AddDef(&delta);
  EXPECT_EQ(setup.size(), 2);
}
