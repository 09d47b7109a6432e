#include "CoreInterfaces/IValueParser.h"
#include "CoreInterfaces/IVariableNameSpaceSetupper.h"
#include "basekit/value/AutoVectorOfClonablePtrs.h"
#include "basekit/value/EnumSet.h"
#include "basekit/value/Variable.h"
#include "basekit/value/VariableNameSpace.h"
#include "basekit/value/variation/VariationKeyVariableServer.h"
#include "tests/support/AssertWatch.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>

namespace {

class ArrayParser : public IValueParser {
public:
  ValueBase * ParseText(AString const & text) override {
    asked.push_back(text);
    if (text == AString(L"array"))
      return &m_array;
    return text == AString(L"number") ? &m_number : nullptr;
  }
  std::vector<AString> asked;

  class Array : public ValueBase {
    ValueState GetValueState() const override { return {Units::kNoUnits, Units::kNoUnitType, 1, val::kRealArray}; }
    ValueBase * CloneValueBase() const override { return new Array(*this); }
  };
  Array m_array;
  Variable m_number{L"n", L"1"};
};

class Setupper : public IVariableNameSpaceSetupper {
  void SetupVariableNameSpace(VariableNameSpace &) const override {}
};

} // namespace

TEST(Value, KeepsTheTextThatItWasSetBy) {
  Value value;
  EXPECT_TRUE(value.SetValueText(L" 2.40 GHz"));
  EXPECT_EQ(value.GetText(), AString(L" 2.40 GHz"));
  EXPECT_EQ(value.GetSIValue(), 2.4e9);
  EXPECT_EQ(value.GetParameterType(), val::kReal);
  EXPECT_EQ(Units::GetSymbol(value.GetUnits()), AString(L"GHz"));
}

TEST(Value, TextWithoutUnitIsTakenInTheUnitsOfTheValue) {
  Units::Scale picofarad;
  ASSERT_TRUE(Units::FindScale(L"pF", picofarad));
  Value value(picofarad.unit);
  EXPECT_TRUE(value.SetValueText(L"3"));
  EXPECT_EQ(value.GetSIValue(), 3e-12);
  EXPECT_TRUE(value.SetValueText(L"3", Units::kNoUnits));
  EXPECT_EQ(value.GetSIValue(), 3.0);
}

TEST(Value, WhatIsNoNumberStaysAText) {
  Value value;
  EXPECT_FALSE(value.SetValueText(L"2*C1"));
  EXPECT_TRUE(value.IsText());
  EXPECT_EQ(value.GetText(), AString(L"2*C1"));
  EXPECT_EQ(value.GetSIValue(), 0.0);
}

TEST(Value, NumbersWriteThemselves) {
  EXPECT_EQ(Value::Real(1.5).GetText(), AString(L"1.5"));
  EXPECT_EQ(Value::Integer(-42).GetText(), AString(L"-42"));
  EXPECT_EQ(Value::Integer(3).GetParameterType(), val::kInteger);
  EXPECT_EQ(static_cast<int>(val::kInteger), 13);
  EXPECT_EQ(Value::Complex({1, 2}).GetText(), AString(L"1+2i"));
  EXPECT_EQ(Value().GetText(), AString());
}

TEST(Value, IntrinsicVariablesAreFoundByNameWithoutCase) {
  Variable * const frequency = Value::GetIntrinsicVariable(L"F");
  ASSERT_NE(frequency, nullptr);
  EXPECT_EQ(Value::GetIntrinsicVariable(L"f"), frequency);
  EXPECT_EQ(Units::GetUnitType(frequency->GetUnits()), Units::kFrequency);
  EXPECT_NE(Value::GetIntrinsicVariable(val::kIntrinsicPass), nullptr);
  EXPECT_EQ(Value::GetIntrinsicVariable(L"C1"), nullptr);
}

TEST(Value, ASpanThatInstallsAParserGetsTheFormerOneToRestore) {
  ArrayParser parser;
  IValueParser * const former = Value::SetValueParser(&parser);
  EXPECT_EQ(Value::GetValueParser(), &parser);
  EXPECT_EQ(Value::SetValueParser(former), &parser);
  EXPECT_EQ(Value::GetValueParser(), former);
}

TEST(ValueState, TheStateOfAnUnknownQuantityHasFourWords) {
  ValueState const state;
  EXPECT_EQ(state, ValueState(Units::GetDefaultUnits(Units::kNoUnitType), static_cast<Units::UnitType>(15), 1,
                              val::kNotAQuantity));
}

TEST(Variable, UsesTheVariablesThatItsTextNames) {
  Variable const c(L"C1", L"1pF");
  EXPECT_TRUE(Variable(L"x", L"2*c1+C2").UsesVariable(c));
  EXPECT_FALSE(Variable(L"x", L"2*C11").UsesVariable(c));
  EXPECT_FALSE(Variable(L"x", L"f(\"C1\")").UsesVariable(c));
  EXPECT_FALSE(Variable(L"x", L"1").UsesVariable(c));
  EXPECT_FALSE(c.UsesVariable(c));
}

TEST(Variable, UsesAVariableThroughTheDefinitionsOfTheNameSpace) {
  Variable a(L"a", L"1");
  Variable b(L"b", L"2*A");
  Variable c(L"c", L"B + 1");
  Variable d(L"d", L"e");
  Variable e(L"e", L"D + c");
  EXPECT_FALSE(c.UsesVariable(a)) << "nobody knows b";
  VariableNameSpace space(true, true, false);
  for (Variable * const variable : {&a, &b, &c, &d, &e})
    space.AddVariable(variable);
  EXPECT_TRUE(c.UsesVariable(a));
  EXPECT_TRUE(d.UsesVariable(a)) << "beside a circle";
  EXPECT_TRUE(d.UsesVariable(d)) << "through e";
  EXPECT_FALSE(c.UsesVariable(c));
  EXPECT_FALSE(a.UsesVariable(c));
}

TEST(IValueParser, AnArrayEndsTheParsingOfDatasetTexts) {
  ArrayParser parser;
  ValueBase * first = nullptr;
  ValueBase * second = &parser.m_number;
  EXPECT_EQ(parser.ParseDatasetTexts(L"array", first, L"number", second), &parser.m_array);
  EXPECT_EQ(first, &parser.m_array);
  EXPECT_EQ(second, &parser.m_number);
  EXPECT_EQ(parser.asked.size(), 1u);
}

TEST(IValueParser, OtherwiseTheFirstPlaceIsClearedAndTheSecondTextCounts) {
  ArrayParser parser;
  ValueBase * first = nullptr;
  ValueBase * second = nullptr;
  EXPECT_EQ(parser.ParseDatasetTexts(L"number", first, L"array", second), &parser.m_array);
  EXPECT_EQ(first, nullptr);
  EXPECT_EQ(second, &parser.m_array);
  EXPECT_EQ(parser.ParseDatasetTexts(L"number", first, L"nothing", second), nullptr);
}

TEST(IValueParser, DefaultsAreNeutral) {
  ArrayParser parser;
  EXPECT_EQ(parser.GetDynamicDatasetValue(nullptr, nullptr), nullptr);
  EXPECT_EQ(parser.GetValue(parser.m_number), 0.0);
  EXPECT_EQ(parser.GetComplexValue(parser.m_number), AComplex<double>());
  EXPECT_FALSE(parser.ParserHookD());
  EXPECT_EQ(parser.ParserHookI(), nullptr);
  support::AssertWatch::Expect("0");
  EXPECT_EQ(parser.GetValueStateFromText(L"x"), ValueState());
}

TEST(IVariableNameSpaceSetupper, PostProcessingWithoutASetupOfItsOwnAsserts) {
  VariableNameSpace nameSpace;
  support::AssertWatch::Expect("0");
  Setupper().SetupVNSForPostProcessing(nameSpace);
}

TEST(IVariableServer, SearchFlagsAreTheSetOfValue128) {
  EXPECT_EQ(VariationKeyVariableServer(L"").GetVariableSearchFlags().Value(), 128u);
}

TEST(EnumSet, BitsBeyondTheEnumeratorsAreDropped) {
  EXPECT_EQ(VariableSearchFlags(0xff).Value(), 7u);
  EXPECT_EQ(VariableSearchFlags()
                .Set(VariableSearchFlag::SearchIntrinsicVariables)
                .Set(VariableSearchFlag::AppendToPreviousVNS)
                .Value(),
            3u);
}

TEST(VariableNameSpace, LooksInVariablesServersIntrinsicsAndThePreviousOne) {
  Variable own(L"x", L"1");
  Variable outerVariable(L"outer", L"2");
  VariationKeyVariableServer const server(L"x=5; served=3");
  VariableNameSpace outer(true, false);
  outer.AddVariable(&outerVariable);
  VariableNameSpace inner(&server, true, true);
  inner.AddVariable(&own);
  EXPECT_EQ(VariableNameSpace::Current(), &inner);
  EXPECT_EQ(inner.FindVariable(L"X"), &own);
  EXPECT_NE(inner.FindVariable(L"served"), nullptr);
  EXPECT_EQ(inner.FindVariable(L"f"), Value::GetIntrinsicVariable(L"F"));
  EXPECT_EQ(inner.FindVariable(L"outer"), &outerVariable);
  EXPECT_EQ(inner.FindVariable(L"nobody"), nullptr);

  inner.SetVariableSearchFlags(VariableSearchFlags().Set(VariableSearchFlag::SearchServersFirst));
  EXPECT_EQ(inner.FindVariable(L"x"), server.ResolveVariable(L"x"));
  EXPECT_EQ(inner.FindVariable(L"F"), nullptr);
  EXPECT_EQ(inner.FindVariable(L"outer"), nullptr);
  inner.ClearVariablesAndServers();
  EXPECT_EQ(inner.FindVariable(L"x"), nullptr);
}

TEST(VariableNameSpace, OneThatOutlivesALaterOneLeavesTheChainWhole) {
  auto first = std::make_unique<VariableNameSpace>();
  Variable variable(L"x", L"1");
  VariableNameSpace second;
  first->AddVariable(&variable);
  EXPECT_EQ(second.FindVariable(L"x"), &variable);
  first.reset();
  EXPECT_EQ(second.FindVariable(L"x"), nullptr);
  EXPECT_EQ(VariableNameSpace::Current(), &second);
}

TEST(AutoVectorOfClonablePtrs, CopiesHoldCopies) {
  struct Clonable {
    int number;
    Clonable * Clone() const { return new Clonable(*this); }
  };
  AutoVectorOfClonablePtrs<Clonable> vector;
  vector.push_back(new Clonable{1});
  vector.push_back(nullptr);
  AutoVectorOfClonablePtrs<Clonable> copy(vector);
  copy[0]->number = 2;
  EXPECT_EQ(vector[0]->number, 1);
  EXPECT_EQ(copy[1], nullptr);
  copy = vector;
  EXPECT_EQ(copy[0]->number, 1);
  EXPECT_NE(copy[0], vector[0]);
}
