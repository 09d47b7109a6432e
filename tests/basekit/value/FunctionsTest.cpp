#include "basekit/value/ColumnValue.h"
#include "basekit/value/Function.h"
#include "basekit/value/Value.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

bool Has(std::vector<AString> const & names, wchar_t const * name) {
  return std::find(names.begin(), names.end(), AString(name)) != names.end();
}

} // namespace

TEST(Functions, OverloadsAreFoundByNameWithoutCase) {
  std::vector<Function const *> functions;
  EXPECT_EQ(Value::GetFunctions(functions, L"DB"), 2);
  ASSERT_EQ(functions.size(), 2u);
  EXPECT_EQ(functions[0]->GetName(), AString(L"dB"));
  EXPECT_EQ(functions[0]->GetArgTypes()[0].parameterType, val::kReal);
  EXPECT_EQ(functions[1]->GetArgTypes()[0].parameterType, val::kComplex);
  EXPECT_EQ(functions[1]->GetValueState(), ValueState(Units::kDecibel, Units::kLevel, 1, val::kReal));
  EXPECT_EQ(Value::GetFunctions(functions, L"nosuch"), 0);
  EXPECT_TRUE(functions.empty());
}

TEST(Functions, NumbersAndNamesInvertEachOther) {
  for (wchar_t const * const name : {L"mag", L"dB", L"cang_deg", L"deriv"}) {
    int const number = Value::GetFunctionID(name);
    EXPECT_GT(number, 0);
    EXPECT_EQ(Value::GetFunctionName(number), AString(name));
  }
  EXPECT_EQ(Value::GetFunctionID(L"mag"), 1);
  EXPECT_EQ(Value::GetFunctionID(L"nosuch"), 0);
  EXPECT_EQ(Value::GetFunctionName(0), AString());
  EXPECT_EQ(Value::GetFunctionName(499), AString());
  EXPECT_EQ(Value::GetFunctionName(-3), AString());
}

TEST(Functions, ConversionsOfComplexQuantitiesToRealOnesAreListed) {
  std::vector<AString> names;
  EXPECT_GT(
      Value::GetConversionFunctionNames(names, {Units::kNoUnits, Units::kNoUnitType, 1, val::kComplex}, val::kReal), 0);
  EXPECT_TRUE(Has(names, L"dB"));
  EXPECT_TRUE(Has(names, L"cang_deg"));
  EXPECT_FALSE(Has(names, L"sqrt"));
  EXPECT_FALSE(Has(names, L"atan2"));
}

TEST(Functions, ComplexNumbersShownInPolarFormHaveConversionsOfTheirOwn) {
  ValueState const complex(Units::kNoUnits, Units::kNoUnitType, 1, val::kComplex);
  for (auto const & [type, name] :
       {std::pair(val::kMagnitudeDegrees, L"mag_ang_deg"), std::pair(val::kMagnitudeRadians, L"mag_ang_rad"),
        std::pair(val::kDecibelDegrees, L"dB_ang_deg")}) {
    std::vector<AString> names;
    EXPECT_EQ(Value::GetConversionFunctionNames(names, complex, type), 1);
    EXPECT_TRUE(Has(names, name));
  }
}

TEST(ColumnValue, ItsStateTellsRealFromComplexArrays) {
  Value const real = Value::Column(ColumnValue(std::vector<double>{1, 2, 3}, Units::kVolt));
  EXPECT_EQ(real.GetValueState(), ValueState(Units::kVolt, Units::kVoltage, 1, val::kRealArray));
  ASSERT_NE(real.GetColumn(), nullptr);
  EXPECT_EQ(real.GetColumn()->GetCount(), 3u);
  EXPECT_FALSE(real.IsNumber());
  Value const complex = Value::Column(ColumnValue(std::vector<std::complex<double>>{{1, 2}}, Units::kNoUnits));
  EXPECT_EQ(complex.GetParameterType(), val::kComplexArray);
  EXPECT_EQ(complex.GetColumn()->GetComplexes()[0], std::complex<double>(1, 2));
  EXPECT_EQ(Value().GetColumn(), nullptr);
}
