#include "plotkit/outputvariable/OutputVariable.h"

#include "plotkit/outputvariable/COutputVarKvroCmdInfo.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>

namespace {

ValueState const kDecibel(Units::kNoUnits, Units::kNoUnitType, 1, val::kReal);

class Made : public OutputVariable {
public:
  Made(AString const & name, AString const & text, ValueState const & state = kDecibel) : OutputVariable(name) {
    SetValueBaseText(text, state);
  }
};

io::CBlock_func Func(AString const & text) {
  io::CBlock_func func;
  EXPECT_TRUE(func.Unpack(text));
  return func;
}

} // namespace

TEST(OutputVariable, IsWrittenAsItsTextAndTheFourWordsOfItsState) {
  io::CBlock_func func(L"Gain");
  EXPECT_TRUE(Made(L"Gain", L"dB(S21)").WriteToFunc(func));
  EXPECT_EQ(func.Pack(), L"Gain(\"dB(S21)\", 90, 15, 1, 1)");
}

TEST(OutputVariable, ComesBackFromWhatWasWritten) {
  io::CBlock_func func(L"Gain");
  ValueState const state(Units::kNoUnits, Units::kNoUnitType, 1, val::kComplex);
  EXPECT_TRUE(Made(L"Gain", L"S21", state).WriteToFuncForCopy(func));
  OutputVariable read(L"Gain");
  EXPECT_TRUE(read.ReadFromFuncForPaste(func, func.begin()));
  EXPECT_EQ(read.GetValueBaseText(), L"S21");
  EXPECT_EQ(read.GetValueState(), state);
}

TEST(OutputVariable, WithoutATextIsNotWritten) {
  io::CBlock_func func(L"Gain");
  EXPECT_FALSE(OutputVariable(L"Gain").WriteToFunc(func));
  EXPECT_TRUE(func.Empty());
}

TEST(OutputVariable, MayBeReadWithoutItsState) {
  Made variable(L"Gain", L"1");
  io::CBlock_func const func = Func(L"Gain(\"S21\")");
  EXPECT_TRUE(variable.ReadFromFunc(func, func.begin()));
  EXPECT_EQ(variable.GetValueBaseText(), L"S21");
  EXPECT_EQ(variable.GetValueState(), ValueState());
}

TEST(OutputVariable, StaysAsItIsWhenItCantBeRead) {
  for (wchar_t const * const text :
       {L"Gain()", L"Gain(3)", L"Gain(\"\")", L"Gain(\"S21\", 90)", L"Gain(\"S21\", 90, 15, 1, \"x\")"}) {
    Made variable(L"Gain", L"1");
    io::CBlock_func const func = Func(text);
    EXPECT_FALSE(variable.ReadFromFunc(func, func.begin())) << testing::PrintToString(AString(text));
    EXPECT_EQ(variable.GetValueBaseText(), L"1");
    EXPECT_EQ(variable.GetValueState(), kDecibel);
  }
}

TEST(OutputVariable, IsReadFromThePlaceThatIsGiven) {
  OutputVariable variable(L"Gain");
  io::CBlock_func const func = Func(L"Gain(7, \"S21\")");
  EXPECT_TRUE(variable.ReadFromFunc(func, ++func.begin()));
  EXPECT_EQ(variable.GetValueBaseText(), L"S21");
}

TEST(OutputVariable, ComparesStatesButForTheUnitWithinItsType) {
  Made const variable(L"a", L"1");
  EXPECT_TRUE(variable.IsValueStateEqualIgnoreFullUnitType(kDecibel));
  ValueState other = kDecibel;
  other.fullUnit = static_cast<Units::FullUnitType>(1);
  EXPECT_TRUE(variable.IsValueStateEqualIgnoreFullUnitType(other));
  other.parameterType = val::kComplex;
  EXPECT_FALSE(variable.IsValueStateEqualIgnoreFullUnitType(other));
}

TEST(OutputVariable, TakesOverTextAndStateButKeepsItsName) {
  Made a(L"a", L"1");
  ValueState const state(Units::kNoUnits, Units::kNoUnitType, 1, val::kComplex);
  a.Assign(Made(L"b", L"2", state));
  EXPECT_EQ(a.GetName(), L"a");
  EXPECT_EQ(a.GetValueBaseText(), L"2");
  EXPECT_EQ(a.GetValueState(), state);
}

TEST(OutputVariable, ACloneIsAnInactiveVariableOfTheSameContents) {
  Made const a(L"a", L"1");
  std::unique_ptr<OutputVariable> const clone(a.Clone());
  EXPECT_EQ(clone->GetName(), L"a");
  EXPECT_EQ(clone->GetValueBaseText(), L"1");
  EXPECT_FALSE(clone->IsActive());
}

TEST(OutputVariable, CantBeUsedWithoutAnExtractor) {
  Made a(L"a", L"1");
  EXPECT_FALSE(a.IsValid(nullptr, nullptr));
  EXPECT_FALSE(a.Activate(nullptr, nullptr));
  EXPECT_TRUE(a.GetUsedVariables(nullptr).empty());
}

TEST(OutputVarKvroCmdInfo, ListsEachVariableOnceInTheOrderOfTheFirstEdit) {
  OutputVariable const a(L"a"), b(L"b"), c(L"c");
  COutputVarKvroCmdInfo info;
  for (OutputVariable const * const variable : {&b, &a, &b, static_cast<OutputVariable const *>(nullptr)})
    info.AddEditedOutputVar(variable);
  EXPECT_EQ(info.GetEditedOutputVars(), (std::vector<OutputVariable const *>{&b, &a}));
  EXPECT_TRUE(info.IsEdited(&a));
  EXPECT_FALSE(info.IsEdited(&c));
}
