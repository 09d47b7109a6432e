#include "plotkit/simvalue/ValueColumn.h"

#include "basekit/value/ColumnValue.h"
#include "basekit/value/Value.h"
#include "basekit/value/Variable.h"
#include "basekit/value/VariableNameSpace.h"
#include "tests/support/Printers.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace {

using Complex = std::complex<double>;
using Reals = std::vector<double>;

Reals RealsOf(ValueColumn const & column) { return {column.GetReals().begin(), column.GetReals().end()}; }

std::vector<Complex> ComplexesOf(ValueColumn const & column) {
  return {column.GetComplexes().begin(), column.GetComplexes().end()};
}

} // namespace

TEST(ValueColumn, IsRealUntilTheFirstComplexNumber) {
  ValueColumn column;
  EXPECT_TRUE(column.empty());
  column.Append(1.5);
  column.Append(Value::Integer(2));
  EXPECT_FALSE(column.IsComplex());
  EXPECT_EQ(RealsOf(column), (Reals{1.5, 2.0}));
  EXPECT_TRUE(column.GetComplexes().empty());
  column.Append(Value::Complex({3.0, -4.0}));
  EXPECT_TRUE(column.IsComplex());
  EXPECT_EQ(ComplexesOf(column), (std::vector<Complex>{1.5, 2.0, {3.0, -4.0}}));
  EXPECT_TRUE(column.GetReals().empty());
  column.Append(5.0);
  EXPECT_EQ(column.GetNumber(3), Complex(5.0));
  EXPECT_EQ(column.GetCount(), 4u);
  column.Clear();
  EXPECT_FALSE(column.IsComplex());
}

TEST(ValueColumn, AnEmptyComplexRunMakesNothingComplex) {
  ValueColumn column;
  column.Append(std::vector<Complex>());
  EXPECT_FALSE(column.IsComplex());
}

TEST(ValueColumn, WhatIsNoNumberIsMissing) {
  ValueColumn column;
  column.Append(Value::Text(L"word"));
  column.Append(Value());
  column.AppendInvalid(2);
  EXPECT_EQ(column.GetCount(), 4u);
  for (std::size_t place = 0; place < 4; ++place)
    EXPECT_FALSE(column.IsValid(place));
  column.Append(Complex(1.0, 2.0));
  EXPECT_FALSE(column.IsValid(0));
  EXPECT_TRUE(column.IsValid(4));
  EXPECT_FALSE(column.IsValid(5));
}

TEST(ValueColumn, TakesColumnsAndExpressionsAsTheyStandNow) {
  ValueColumn column;
  column.Append(Value::Column(ColumnValue(Reals{1.0, 2.0}, Units::kNoUnits)));
  column.Append(Value::Column(ColumnValue(std::vector<Complex>{{3.0, 4.0}}, Units::kNoUnits)));
  Variable x(L"x", L"5");
  VariableNameSpace names;
  names.AddVariable(&x);
  Value expression;
  ASSERT_TRUE(expression.SetValueText(L"2*x"));
  column.Append(expression);
  x.SetValueText(L"6");
  column.Append(expression);
  EXPECT_EQ(ComplexesOf(column), (std::vector<Complex>{1.0, 2.0, {3.0, 4.0}, 10.0, 12.0}));
}

TEST(ValueColumn, TextsReadBackWithTheirUnits) {
  ValueColumn column;
  column.Append(1.2e-12);
  column.AppendInvalid();
  EXPECT_EQ(column.GetText(0, Units::kPicofarad), L"1.2pF");
  EXPECT_EQ(column.GetText(0), L"1.2e-12");
  EXPECT_EQ(column.GetText(1), L"N/A");
  EXPECT_EQ(column.GetText(2), L"N/A");
  column.Append(Complex(1.0, -2.5));
  EXPECT_EQ(column.GetText(2), L"1-2.5i");
}

TEST(ValueColumn, ArrangePutsRangesInOrderAndDropsTheRest) {
  ValueColumn column;
  column.Append(Reals{0, 1, 2, 3, 4, 5});
  column.Arrange({{4, 2}, {0, 2}, {3, 0}});
  EXPECT_EQ(RealsOf(column), (Reals{4, 5, 0, 1}));
}

TEST(ValueColumn, SameMeansBitForBitButMissingIsMissing) {
  ValueColumn a;
  a.Append(Reals{0.0, -std::nan(""), 0.1});
  ValueColumn b;
  b.Append(Reals{0.0, std::numeric_limits<double>::quiet_NaN(), 0.1});
  EXPECT_TRUE(a.IsSame(b));
  ValueColumn negativeZero;
  negativeZero.Append(Reals{-0.0, 0.0, 0.1});
  EXPECT_FALSE(a.IsSame(negativeZero));
  ValueColumn complex;
  complex.Append(std::vector<Complex>{0.0, std::nan(""), 0.1});
  EXPECT_FALSE(a.IsSame(complex));
}

TEST(ValueColumn, TakesLessThanThreeTimesTheNumbers) {
  for (std::size_t const count : {1000u, 4097u, 100'000u}) {
    ValueColumn column;
    for (std::size_t place = 0; place < count; ++place)
      column.Append(static_cast<double>(place));
    EXPECT_LT(column.SizeOf(), 3 * count * sizeof(double));
    column.Append(Complex(0.0, 1.0));
    EXPECT_LT(column.SizeOf(), 3 * (count + 1) * sizeof(Complex));
    ValueColumn known;
    known.Reserve(count);
    known.AppendInvalid(count);
    EXPECT_EQ(known.SizeOf(), count * sizeof(double));
  }
}
