#include "plotkit/trace/TextTraceComponent.h"

#include "basekit/io/CBlock.h"
#include "basekit/value/Variable.h"
#include "basekit/value/VariableNameSpace.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>
#include <memory>

namespace {

class TraceComponentTest : public testing::Test {
protected:
  TraceComponentTest() { m_names.AddVariable(&m_x); }

  static int DecibelID() { return Value::GetFunctionID(L"dB"); }
  static std::unique_ptr<TraceComponent> Of(AString const & text, int functionID = 0) {
    return std::make_unique<TraceComponent>(text, 1, functionID, false, Units::kNoUnits);
  }
  static io::CBlock_func Written(TraceComponent const & component) {
    io::CBlock_func func(L"Y");
    component.Write(func);
    return func;
  }
  static std::unique_ptr<TraceComponent> ThroughABlock(TraceComponent const & component) {
    io::CBlock_func read(L"Y");
    EXPECT_TRUE(read.Unpack(Written(component).Pack()));
    return std::unique_ptr<TraceComponent>(TraceComponent::Read(read));
  }
  static std::unique_ptr<TraceComponent> FromText(wchar_t const * text) {
    io::CBlock_func func(L"Y");
    EXPECT_TRUE(func.Unpack(text));
    return std::unique_ptr<TraceComponent>(TraceComponent::Read(func));
  }

  VariableNameSpace m_names;
  Variable m_x{L"x", L"10"};
};

} // namespace

TEST_F(TraceComponentTest, KeepsTheTextApartFromTheFunction) {
  TraceComponent const component(L"S21", 12, DecibelID(), true, Units::kDecibel);
  EXPECT_EQ(component.GetValueText(), L"S21");
  EXPECT_EQ(component.GetExpressionText(), L"dB(S21)");
  EXPECT_EQ(component.GetCategory(), 12);
  EXPECT_EQ(component.GetFunctionID(), DecibelID());
  EXPECT_TRUE(component.IsPass());
  EXPECT_EQ(component.GetUnits(), Units::kDecibel);
}

TEST_F(TraceComponentTest, AFunctionThatTheTextHasAlreadyIsNotAppliedTwice) {
  EXPECT_EQ(Of(L"db(S21)", DecibelID())->GetExpressionText(), L"db(S21)");
  EXPECT_EQ(Of(L"dB(S21)+dB(S11)", DecibelID())->GetExpressionText(), L"dB(dB(S21)+dB(S11))");
  EXPECT_EQ(Of(L"dB10(S21)", DecibelID())->GetExpressionText(), L"dB(dB10(S21))");
  EXPECT_EQ(Of(L"", DecibelID())->GetExpressionText(), L"");
}

TEST_F(TraceComponentTest, TheValueIsTheWholeExpression) {
  Value value;
  ASSERT_TRUE(value.SetValueText(L"dB(dB(x))"));
  TraceComponent component(value, L"dB(x)", 0, DecibelID(), false, Units::kNoUnits);
  EXPECT_EQ(component.GetExpressionText(), L"dB(dB(x))");
  EXPECT_TRUE(component.IsBound());
  component.AppendPresentValue();
  EXPECT_NEAR(component.GetValues().GetNumber(0).real(), 26.0206, 1e-4);
  std::unique_ptr<TraceComponent> const read = ThroughABlock(component);
  ASSERT_TRUE(read);
  EXPECT_EQ(read->GetExpressionText(), L"dB(dB(x))");
  EXPECT_EQ(read->GetValueText(), L"dB(x)");
}

TEST_F(TraceComponentTest, BindsToWhatNamesMeanNow) {
  auto const component = Of(L"2*x");
  EXPECT_FALSE(component->IsBound());
  component->AppendPresentValue();
  EXPECT_TRUE(component->Bind());
  component->AppendPresentValue();
  m_x.SetValueText(L"20");
  component->AppendPresentValue();
  EXPECT_EQ(component->GetEntryText(0), L"N/A");
  EXPECT_EQ(component->GetEntryText(1), L"20");
  EXPECT_EQ(component->GetEntryText(2), L"40");
  component->ClearComponentValues();
  EXPECT_TRUE(component->GetValues().empty());
}

TEST_F(TraceComponentTest, UnknownWordsAndEmptyTextsAreMissingEverywhere) {
  for (wchar_t const * const text : {L"nobody", L"", L"2*"}) {
    auto const component = Of(text);
    EXPECT_FALSE(component->Bind());
    component->AppendPresentValue();
    EXPECT_FALSE(component->GetValues().IsValid(0));
  }
}

TEST_F(TraceComponentTest, ANumberIsTheSameAtEveryPoint) {
  auto const component = Of(L"1.5");
  EXPECT_TRUE(component->Bind());
  component->AppendPresentValue();
  EXPECT_EQ(component->GetEntryText(0), L"1.5");
}

TEST_F(TraceComponentTest, ACloneHasNoValuesAndIsBoundWherePossible) {
  auto const component = Of(L"x");
  component->AppendComponentValue(Value::Real(3.0));
  component->AppendInvalidValue();
  component->SetSimValueContext(SimValueContext(4, rep::CalculationType{}, 2, 0, 1, 1, 0, 0));
  std::unique_ptr<TraceComponent> const clone(component->Clone());
  EXPECT_TRUE(clone->GetValues().empty());
  EXPECT_TRUE(clone->IsBound());
  EXPECT_TRUE(clone->IsEqual(*component));
  EXPECT_EQ(component->GetValues().GetCount(), 2u);
}

TEST_F(TraceComponentTest, ComponentsDifferInAnyOfTheirFacts) {
  TraceComponent const component(L"x", 1, 2, false, Units::kHertz);
  EXPECT_TRUE(component.IsEqual(TraceComponent(L"x", 1, 2, false, Units::kHertz)));
  EXPECT_FALSE(component.IsEqual(TraceComponent(L"X", 1, 2, false, Units::kHertz)));
  EXPECT_FALSE(component.IsEqual(TraceComponent(L"x", 0, 2, false, Units::kHertz)));
  EXPECT_FALSE(component.IsEqual(TraceComponent(L"x", 1, 3, false, Units::kHertz)));
  EXPECT_FALSE(component.IsEqual(TraceComponent(L"x", 1, 2, true, Units::kHertz)));
  EXPECT_FALSE(component.IsEqual(TraceComponent(L"x", 1, 2, false, Units::kMetre)));
  TraceComponent inContext(L"x", 1, 2, false, Units::kHertz);
  inContext.SetSimValueContext(SimValueContext());
  EXPECT_FALSE(component.IsEqual(inContext));
  EXPECT_FALSE(TraceComponent(L"x", 0, 0, false, Units::kNoUnits).IsEqual(TextTraceComponent(L"x")));
}

TEST_F(TraceComponentTest, PlainTextIsTheSameAtEveryPointAndNeverEvaluated) {
  TextTraceComponent component(L"2*x");
  EXPECT_FALSE(component.Bind());
  component.AppendPresentValue();
  component.AppendComponentValue(Value::Real(1.0));
  EXPECT_EQ(component.GetEntryText(0), L"2*x");
  EXPECT_EQ(component.GetEntryText(1), L"2*x");
  EXPECT_EQ(component.GetEntryText(2), L"N/A");
  std::unique_ptr<TextTraceComponent> const clone(component.Clone());
  EXPECT_TRUE(clone->IsEqual(component));
  EXPECT_TRUE(clone->GetValues().empty());
  std::unique_ptr<TraceComponent> const read = ThroughABlock(component);
  ASSERT_TRUE(read);
  EXPECT_NE(dynamic_cast<TextTraceComponent const *>(read.get()), nullptr);
  EXPECT_TRUE(read->IsEqual(component));
}

TEST_F(TraceComponentTest, ABlockGivesBackWhatItTook) {
  TraceComponent component(L"S(2,1) \"quoted\" Ω", 12, DecibelID(), true, Units::kDecibel);
  EXPECT_TRUE(ThroughABlock(component)->IsEqual(component));
  component.SetSimValueContext(SimValueContext(4, rep::CalculationType{}, 7, 8, 0.5, 2, 3, -1));
  std::unique_ptr<TraceComponent> const read = ThroughABlock(component);
  ASSERT_TRUE(read);
  EXPECT_TRUE(read->IsEqual(component));
  EXPECT_FALSE(read->IsBound()) << "names may mean something else by now";
}

TEST_F(TraceComponentTest, HostileFunctionsAreRefused) {
  EXPECT_TRUE(FromText(L"Y(\"x\", 1, 0, false, 90)"));
  for (wchar_t const * const text :
       {L"Y()", L"Y(1, 1, 0, false, 90)", L"Y(\"x\", \"1\", 0, false, 90)", L"Y(\"x\", 1, 0, 7, 90)",
        L"Y(\"x\", 1, 0, false)", L"Y(\"x\", 1, 1e300, false, 90)", L"Y(\"x\", 1, 0, false, 90, 3)",
        L"Y(\"x\", 1, 0, false, 90, 3, 0, 2, 0, 1, 1, 0, \"a\")"})
    EXPECT_FALSE(FromText(text)) << text;
}

TEST_F(TraceComponentTest, NumbersOfFunctionsAndUnitsThatAreNoneDoNoHarm) {
  auto const component = FromText(L"Y(\"x\", -5, 2000000000, false, -7)");
  ASSERT_TRUE(component);
  EXPECT_EQ(component->GetExpressionText(), L"x");
  EXPECT_TRUE(component->Bind());
  component->AppendPresentValue();
  EXPECT_TRUE(component->GetValues().IsValid(0));
  EXPECT_FALSE(component->GetEntryText(0).empty());
}
