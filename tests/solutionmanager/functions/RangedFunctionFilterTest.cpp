#include "solutionmanager/functions/RangedFunctionFilter.h"
#include "basekit/value/Function.h"
#include "basekit/value/Value.h"
#include "solutionmanager/functions/RangedFunctionsGUIHelper.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>

namespace {

using Names = std::vector<AString>;

Names const kForComplex = {L"Math", L"AC", L"Radiation"};
Names const kForReal = {L"Math",   L"Pulse Width", L"Overshoot/Undershoot", L"TR & DC", L"Error",
                        L"Period", L"Radiation",   L"Eye Measurements"};
Names const kForBoth = {L"Math", L"Pulse Width", L"Overshoot/Undershoot", L"TR & DC", L"Error", L"Period",
                        L"AC",   L"Radiation",   L"Eye Measurements"};

rep::DisplayType Display(int number) { return static_cast<rep::DisplayType>(number); }

Names CategoriesFor(int display) {
  Names names;
  RangedFunctionsGUIHelper::GetInstance().GetCategoryNames(names, Display(display));
  return names;
}

std::size_t CountFor(int display) {
  std::vector<RangedFunctionsGUIHelper::CategoryFunctions> all;
  RangedFunctionsGUIHelper::GetInstance().GetAllFunctions(all, Display(display));
  std::size_t count = 0;
  for (auto const & [category, functions] : all) {
    EXPECT_FALSE(functions.empty());
    count += functions.size();
  }
  return count;
}

/// The states of the first arguments of a function's overloads for columns.
std::vector<val::ParameterType> ColumnsOf(AString const & name) {
  std::vector<Function const *> overloads;
  Value::GetFunctions(overloads, name);
  std::vector<val::ParameterType> columns;
  for (Function const * overload : overloads) {
    auto const first = overload->GetArgTypes().front().parameterType;
    if (ValueParamTypes::IsParameterTypeArray(first))
      columns.push_back(first);
  }
  return columns;
}

} // namespace

TEST(RangedFunctionFilter, CodesTellColumnsOfRealAndOfComplexNumbers) {
  EXPECT_EQ(static_cast<int>(val::kComplexArray), 11);
  EXPECT_EQ(static_cast<int>(val::kRealArray), 12);
  EXPECT_EQ(ColumnsOf(L"max"), (std::vector<val::ParameterType>{val::kRealArray, val::kComplexArray}));
  EXPECT_EQ(ColumnsOf(L"risetime"), (std::vector<val::ParameterType>{val::kRealArray}));
  EXPECT_EQ(ColumnsOf(L"bandwidth"), (std::vector<val::ParameterType>{val::kComplexArray}));
}

TEST(RangedFunctionFilter, EveryRangedFunctionGivesOneRealNumber) {
  for (auto const name : {L"max", L"risetime", L"bandwidth", L"lSidelobeX", L"EyeWidth"}) {
    std::vector<Function const *> overloads;
    Value::GetFunctions(overloads, name);
    for (Function const * overload : overloads)
      EXPECT_EQ(overload->GetValueState().parameterType, val::kReal);
  }
}

TEST(RangedFunctionFilter, DisplaysOfComplexTracesHaveWhatTakesThem) {
  for (int const display : {2, 5, 9, 11}) {
    EXPECT_EQ(CategoriesFor(display), kForComplex) << display;
    EXPECT_EQ(CountFor(display), 37u) << display;
    EXPECT_TRUE(ranged::FunctionFits(L"max", Display(display)));
    EXPECT_TRUE(ranged::FunctionFits(L"bandwidth", Display(display)));
    EXPECT_FALSE(ranged::FunctionFits(L"risetime", Display(display)));
  }
}

TEST(RangedFunctionFilter, DisplaysOfRealTracesHaveAllButGains) {
  for (int const display : {1, 3, 6, 7, 8, 10, 12, 13, 14, 16, 17, 1000, -1}) {
    EXPECT_EQ(CategoriesFor(display), kForReal) << display;
    EXPECT_EQ(CountFor(display), 78u) << display;
    EXPECT_TRUE(ranged::FunctionFits(L"max", Display(display)));
    EXPECT_FALSE(ranged::FunctionFits(L"bandwidth", Display(display)));
    EXPECT_TRUE(ranged::FunctionFits(L"risetime", Display(display)));
  }
}

TEST(RangedFunctionFilter, DataTablesHaveAll) {
  for (int const display : {0, 4}) {
    EXPECT_EQ(CategoriesFor(display), kForBoth) << display;
    EXPECT_EQ(CountFor(display), 87u) << display;
  }
}

TEST(RangedFunctionFilter, TheDisplayOfEyesHasEyesAloneWithoutRiseAndFallTimes) {
  EXPECT_EQ(CategoriesFor(15), Names{L"Eye Measurements"});
  EXPECT_EQ(CountFor(15), 11u);
  EXPECT_FALSE(ranged::FunctionFits(L"eyerisetime", Display(15)));
  EXPECT_FALSE(ranged::FunctionFits(L"EyeFallTime", Display(15)));
  EXPECT_TRUE(ranged::FunctionFits(L"EyeWidth", Display(15)));
  EXPECT_TRUE(ranged::CategoryFits(L"EYE measurements", Display(15)));
  EXPECT_FALSE(ranged::CategoryFits(L"Math", Display(15)));
  // Asked by category the display of eyes lets all others pass, as is meant.
  Names names;
  RangedFunctionsGUIHelper::GetInstance().GetFunctionNames(names, L"Math", Display(15));
  EXPECT_EQ(names.size(), 22u);
}

TEST(RangedFunctionFilter, WhatTheEngineDoesNotKnowFitsNoDisplayButThatOfEyes) {
  for (int display = 0; display < 18; ++display)
    EXPECT_EQ(ranged::FunctionFits(L"unheardof", Display(display)), display == 15) << display;
}
