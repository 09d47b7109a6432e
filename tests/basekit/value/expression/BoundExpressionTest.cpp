// Expressions over a variable name space and value parsers: what reports and output variables use.

#include "CoreInterfaces/IValueParser.h"
#include "basekit/value/ContextVariable.h"
#include "basekit/value/ExpressionParser.h"
#include "basekit/value/ExpressionValue.h"
#include "basekit/value/Variable.h"
#include "basekit/value/VariableNameSpace.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>

namespace {

/// A solved quantity that takes a message and can be told apart by name.
class Quantity : public ValueBase {
public:
  Quantity(AString const & name, val::ParameterType type) : m_name(name), m_type(type) {}
  ValueState GetValueState() const override { return {Units::kNoUnits, Units::kNoUnitType, 1, m_type}; }
  AString GetText() const override { return m_name; }
  mutable int messages = 0;

private:
  bool DoReceiveMsg(ValueMessage &) const override { return ++messages > 0; }
  ValueBase * CloneValueBase() const override { return new Quantity(m_name, m_type); }

  AString m_name;
  val::ParameterType m_type;
};

class Named : public ContextVariable {
public:
  using ContextVariable::ContextVariable;
  using ContextVariable::SetBoundValue;

private:
  ValueBase * CloneValueBase() const override { return new Named(*this); }
};

/// Knows quantities by their exact name.
class Parser : public IValueParser {
public:
  void Add(wchar_t const * name, val::ParameterType type, std::complex<double> value = 0.0) {
    m_quantities[name] = std::make_unique<Quantity>(name, type);
    m_values[name] = value;
  }
  void Add(ContextVariable & variable) { m_variables[variable.GetName()] = &variable; }
  Quantity & Get(wchar_t const * name) { return *m_quantities.at(name); }
  void Forget(wchar_t const * name) { m_quantities.erase(name); }
  int asked = 0; ///< for words

  ValueBase * ParseText(AString const & text) override {
    ++asked;
    if (auto const variable = m_variables.find(text); variable != m_variables.end())
      return variable->second;
    auto const found = m_quantities.find(text);
    return found != m_quantities.end() ? found->second.get() : nullptr;
  }
  ValueState GetValueStateFromText(AString const & text) override {
    ValueBase const * const value = ParseText(text);
    return value ? value->GetValueState() : ValueState();
  }
  double GetValue(ValueBase const & value) override { return m_values.at(value.GetText()).real(); }
  AComplex<double> GetComplexValue(ValueBase const & value) override { return m_values.at(value.GetText()); }

private:
  std::map<AString, std::unique_ptr<Quantity>> m_quantities;
  std::map<AString, std::complex<double>> m_values;
  std::map<AString, ContextVariable *, AString::NoCaseLess> m_variables;
};

class BoundExpression : public testing::Test {
protected:
  void SetUp() override {
    parser.Add(L"S21", val::kComplex, {3.0, 4.0});
    parser.Add(L"S(2,1)", val::kComplexArray);
    parser.Add(L"Gain", val::kReal, 10.0);
    space.AddVariable(&width);
    space.AddVariable(&double_width);
    space.AddVariable(&substrate);
    former = Value::SetValueParser(&parser);
  }
  void TearDown() override { Value::SetValueParser(former); }

  std::vector<AString> Labels(wchar_t const * text) {
    std::vector<AString> labels = {L"stale"};
    int const count = ExpressionParser::GetAlienLabels(labels, text, parsers);
    EXPECT_EQ(count, static_cast<int>(labels.size()));
    return labels;
  }

  Variable width{L"w", L"2mm"};
  Variable double_width{L"ww", L"2*W"};
  Variable substrate{L"Substrate", L"FR 4"};
  Parser parser;
  std::vector<IValueParser *> parsers{nullptr, &parser};
  VariableNameSpace space{true, true, false};
  IValueParser * former = nullptr;
};

} // namespace

TEST_F(BoundExpression, AlienLabelsAreTheWordsThatAreNoVariables) {
  EXPECT_EQ(Labels(L"dB(S(2,1)) + w*Setup1:Sweep + S21 + S21 + F + pi"),
            (std::vector<AString>{L"S(2,1)", L"Setup1:Sweep", L"S21"}));
  EXPECT_TRUE(Labels(L"").empty());
  EXPECT_TRUE(Labels(L"2*w + sin(3)").empty());
  EXPECT_TRUE(Labels(L"12").empty());
  EXPECT_EQ(Labels(L"a + b"), (std::vector<AString>{L"a", L"b"}));
  EXPECT_EQ(Labels(L" a "), (std::vector<AString>{L"a"}));
  EXPECT_EQ(Labels(L"'my name'"), (std::vector<AString>{L"my name"}));
  EXPECT_EQ(Labels(L"max"), (std::vector<AString>{L"max"}));
  EXPECT_EQ(Labels(L"2*max(max)"), (std::vector<AString>{L"max"}));
}

TEST_F(BoundExpression, TextsThatAreNoExpressionHaveLabelsToo) {
  EXPECT_EQ(Labels(L"a + * b ? )c"), (std::vector<AString>{L"a", L"b", L"c"}));
}

TEST_F(BoundExpression, LabelsAreToldApartByCase) { EXPECT_EQ(Labels(L"a + A"), (std::vector<AString>{L"a", L"A"})); }

TEST_F(BoundExpression, ValidationAsksTheParsersForStatesAndPassesOverNullOnes) {
  Value value(Units::kNoUnits);
  EXPECT_TRUE(ExpressionParser::ValidateExpression(value, L"dB(S21) + 3*ww", parsers));
  EXPECT_EQ(value.GetParameterType(), val::kReal);
  EXPECT_EQ(value.GetUnits(), Units::kNoUnits);
  EXPECT_TRUE(ExpressionParser::ValidateExpression(value, L"dB(S21) + 3", parsers));
  EXPECT_EQ(value.GetUnits(), Units::kDecibel);
  EXPECT_TRUE(ExpressionParser::ValidateExpression(value, L"S21*2", parsers));
  EXPECT_EQ(value.GetParameterType(), val::kComplex);
  EXPECT_TRUE(ExpressionParser::ValidateExpression(value, L"mag(S(2,1))", parsers));
  EXPECT_EQ(value.GetParameterType(), val::kRealArray);
  EXPECT_TRUE(ExpressionParser::ValidateExpression(value, L"bandwidth(S21)", parsers));
  EXPECT_EQ(value.GetParameterType(), val::kReal);
  EXPECT_EQ(value.GetText(), AString(L"bandwidth(S21)"));
  EXPECT_TRUE(ExpressionParser::ValidateExpression(value, L"2.5mm", parsers));
  EXPECT_TRUE(value.IsNumber());
}

TEST_F(BoundExpression, ValidationRefusesWhatIsNoExpressionHere) {
  Value value = Value::Real(7.0);
  for (wchar_t const * const text : {L"", L"S22", L"S21 +", L"Substrate*2", L"\"text\"", L"asin(S21)"})
    EXPECT_FALSE(ExpressionParser::ValidateExpression(value, text, parsers));
  EXPECT_FALSE(ExpressionParser::ValidateExpression(value, L"S21", {}));
  EXPECT_EQ(value.GetSIValue(), 7.0);
  expr::Error error;
  EXPECT_FALSE(ExpressionParser::ValidateExpression(value, L"1 + S22", parsers, error));
  EXPECT_EQ(error.position, 4u);
}

TEST_F(BoundExpression, AnUnknownNameComesWithTheNearestVariableOrConstant) {
  auto const hintOf = [&](wchar_t const * text) {
    expr::Error error;
    EXPECT_EQ(ExpressionValue::Bind(text, &parser, error), nullptr);
    return error.hint;
  };
  EXPECT_EQ(hintOf(L"2*Substrat"), AString(L"did you mean 'Substrate'?"));
  EXPECT_EQ(hintOf(L"2*PI"), AString(L"did you mean 'pi'?"));
  EXPECT_EQ(hintOf(L"2*nothing_like_it"), AString());
  Variable height(L"height", L"1mm");
  VariableNameSpace inner(true, true, false);
  inner.AddVariable(&height);
  EXPECT_EQ(hintOf(L"heigt"), AString(L"did you mean 'height'?"));
  EXPECT_EQ(hintOf(L"Substrat"), AString(L"did you mean 'Substrate'?"));
  inner.SetVariableSearchFlags(VariableSearchFlags());
  EXPECT_EQ(hintOf(L"Substrat"), AString());
}

TEST_F(BoundExpression, DatasetsAreThoseOfTheNameSpaces) {
  std::vector<double> const x = {0.0, 4e-3};
  std::vector<double> const y = {1.0, 2.0};
  expr::Dataset const points{x, y};
  space.AddDataset(L"er", &points);
  VariableNameSpace inner(true, true, false);
  Value value;
  ASSERT_TRUE(value.SetValueText(L"interp(\"ER\", w)"));
  EXPECT_EQ(value.GetSIValue(), 1.5);
  inner.SetVariableSearchFlags(VariableSearchFlags());
  EXPECT_FALSE(value.SetValueText(L"interp(\"er\", 1)"));
  space.ClearVariablesAndServers();
  EXPECT_EQ(space.FindDataset(L"er"), nullptr);
}

TEST_F(BoundExpression, WithoutANameSpaceThereAreNoVariables) {
  space.ClearVariablesAndServers();
  EXPECT_EQ(Labels(L"w + F"), (std::vector<AString>{L"w"}));
  space.SetVariableSearchFlags(VariableSearchFlags());
  EXPECT_EQ(Labels(L"F"), (std::vector<AString>{L"F"}));
}

TEST_F(BoundExpression, ATextThatIsAnExpressionIsOneForAValue) {
  Value value;
  ASSERT_TRUE(value.SetValueText(L"2*ww + 1mm", Units::kNoUnits));
  EXPECT_FALSE(value.IsNumber());
  EXPECT_FALSE(value.IsText());
  ASSERT_NE(value.GetExpression(), nullptr);
  EXPECT_EQ(value.GetText(), AString(L"2*ww + 1mm"));
  EXPECT_DOUBLE_EQ(value.GetSIValue(), 9e-3);
  ASSERT_TRUE(value.SetValueText(L"mag(S21) + Gain"));
  EXPECT_EQ(value.GetSIValue(), 15.0);
  ASSERT_TRUE(value.SetValueText(L"S21*1i"));
  EXPECT_EQ(value.GetComplexSIValue(), AComplex<double>(-4.0, 3.0));
  EXPECT_FALSE(value.SetValueText(L"S21 + nobody"));
  EXPECT_TRUE(value.IsText());
  EXPECT_EQ(value.GetExpression(), nullptr);
}

TEST_F(BoundExpression, ConstantTextsAreNeverExpressions) {
  Value value;
  EXPECT_FALSE(value.SetConstantText(L"2*3"));
  EXPECT_TRUE(value.IsText());
  EXPECT_TRUE(value.SetConstantText(L"3mm"));
  EXPECT_EQ(value.GetSIValue(), 3e-3);
}

TEST_F(BoundExpression, VariablesCountAsTheyAreWhenTheExpressionIsEvaluated) {
  Value value;
  ASSERT_TRUE(value.SetValueText(L"10*ww"));
  EXPECT_DOUBLE_EQ(value.GetSIValue(), 40e-3);
  width.SetValueText(L"3mm");
  EXPECT_DOUBLE_EQ(value.GetSIValue(), 60e-3);
  double_width.SetValueText(L"w + 1mm");
  EXPECT_DOUBLE_EQ(value.GetSIValue(), 40e-3);
  width.SetValueText(L"1 + 1i");
  EXPECT_EQ(value.GetComplexSIValue().imag(), 10.0);
  width.SetValueText(L"ww");
  EXPECT_TRUE(std::isnan(value.GetSIValue()));
}

TEST_F(BoundExpression, AChangedDefinitionIsBoundOnceUntilTheNextChange) {
  Value value;
  ASSERT_TRUE(value.SetValueText(L"Gain*ww"));
  double_width.SetValueText(L"w + Gain*1mm");
  parser.asked = 0;
  EXPECT_DOUBLE_EQ(value.GetSIValue(), 0.12);
  int const once = parser.asked;
  EXPECT_GT(once, 0);
  for (int i = 0; i < 10; ++i)
    EXPECT_DOUBLE_EQ(value.GetSIValue(), 0.12);
  EXPECT_EQ(parser.asked, once);
  double_width.SetValueText(L"w - 1mm");
  EXPECT_DOUBLE_EQ(value.GetSIValue(), 0.01);
  EXPECT_GT(parser.asked, once);
}

TEST_F(BoundExpression, OnceBoundAgainItNeedsNoNameSpace) {
  Value value;
  ASSERT_TRUE(value.SetValueText(L"10*ww"));
  double_width.SetValueText(L"3*w");
  EXPECT_DOUBLE_EQ(value.GetSIValue(), 60e-3);
  VariableNameSpace const none(false, false, false);
  EXPECT_DOUBLE_EQ(value.GetSIValue(), 60e-3);
  double_width.SetValueText(L"4*w");
  EXPECT_TRUE(std::isnan(value.GetSIValue()));
}

TEST_F(BoundExpression, AQuantityThatADefinitionNoLongerNamesMayGo) {
  double_width.SetValueText(L"w*Gain");
  Value value;
  ASSERT_TRUE(value.SetValueText(L"10*ww"));
  double_width.SetValueText(L"w");
  parser.Forget(L"Gain");
  EXPECT_DOUBLE_EQ(value.GetSIValue(), 20e-3);
}

TEST_F(BoundExpression, ANumberTooSmallForADoubleStaysATextAndItsUseTellsWhy) {
  Variable tiny(L"tiny", L"1e-400");
  EXPECT_TRUE(tiny.GetValue().IsText());
  EXPECT_EQ(tiny.GetValueText(), AString(L"1e-400"));
  space.AddVariable(&tiny);
  expr::Error error;
  EXPECT_EQ(ExpressionValue::Bind(L"1 + tiny", &parser, error), nullptr);
  EXPECT_NE(error.problem.find(L"the number is too small"), AString::npos);
}

TEST_F(BoundExpression, OfVariablesWithOneNameTheFirstIsMeant) {
  Variable second(L"W", L"7mm");
  space.AddVariable(&second);
  EXPECT_EQ(space.FindVariable(L"W"), &width);
}

TEST_F(BoundExpression, ExpressionsOfManyNamesAreBoundInAMoment) {
  constexpr int count = 20000;
  std::vector<std::unique_ptr<Variable>> variables;
  std::wstring sum = L"0";
  for (int i = 0; i < count; ++i) {
    variables.push_back(std::make_unique<Variable>(AString::Format(L"v%d", i), L"1"));
    space.AddVariable(variables.back().get());
    sum.append(L"+").append(variables.back()->GetName().View());
  }
  Value value;
  ASSERT_TRUE(value.SetValueText(AString(sum)));
  EXPECT_EQ(value.GetSIValue(), count);
}

TEST_F(BoundExpression, WhatIsGoneHasNoValue) {
  Value value;
  ASSERT_TRUE(value.SetValueText(L"Gain + 1"));
  EXPECT_TRUE(parser.Get(L"Gain").IsReferenced());
  parser.Forget(L"Gain");
  EXPECT_TRUE(std::isnan(value.GetSIValue()));
}

TEST_F(BoundExpression, TheFunctionOfAnExpressionCanBeStripped) {
  Value value;
  AString function;
  ASSERT_TRUE(value.SetValueText(L"dB(S21)"));
  EXPECT_EQ(value.StripFunction(function), &parser.Get(L"S21"));
  EXPECT_EQ(function, AString(L"dB"));
  ASSERT_TRUE(value.SetValueText(L"S(2,1)"));
  EXPECT_EQ(value.StripFunction(function), &parser.Get(L"S(2,1)"));
  EXPECT_EQ(function, AString());
  ASSERT_TRUE(value.SetValueText(L"w"));
  EXPECT_EQ(value.StripFunction(function), &width);
  ASSERT_TRUE(value.SetValueText(L"max( S21 *2)"));
  ValueBase const * const inner = value.StripFunction(function);
  ASSERT_NE(inner, nullptr);
  EXPECT_EQ(inner->GetText(), AString(L"S21*2"));
  EXPECT_EQ(function, AString(L"max"));
  for (wchar_t const * const text : {L"dB(S21) + 1", L"atan2(Gain, 2)", L"2*3"}) {
    ASSERT_TRUE(value.SetValueText(text));
    EXPECT_EQ(value.StripFunction(function), nullptr);
    EXPECT_EQ(function, AString());
  }
}

TEST_F(BoundExpression, IntrinsicVariablesAreQuantitiesWithoutValuesOfTheirOwn) {
  Value value;
  ASSERT_TRUE(value.SetValueText(L"F"));
  EXPECT_EQ(value.GetValueState(), ValueState(Units::kHertz, Units::kFrequency, 1, val::kReal));
  EXPECT_TRUE(std::isnan(value.GetSIValue()));
  ASSERT_TRUE(value.SetValueText(L"Pass"));
  EXPECT_EQ(value.GetParameterType(), val::kInteger);
}

TEST_F(BoundExpression, MessagesReachAllThatAnExpressionRefersTo) {
  Value value;
  ASSERT_TRUE(value.SetValueText(L"S21 + Gain + w"));
  ValueMessage message(1);
  EXPECT_TRUE(value.GetValueBase()->ReceiveMsg(message));
  EXPECT_EQ(parser.Get(L"S21").messages, 1);
  EXPECT_EQ(parser.Get(L"Gain").messages, 1);
}

TEST_F(BoundExpression, UsesTheVariablesThatItsDefinitionsLeadTo) {
  Value value;
  ASSERT_TRUE(value.SetValueText(L"S21*ww"));
  EXPECT_TRUE(value.GetValueBase()->UsesVariable(double_width));
  EXPECT_TRUE(value.GetValueBase()->UsesVariable(width));
  EXPECT_FALSE(value.GetValueBase()->UsesVariable(substrate));
}

TEST_F(BoundExpression, EvaluatesOverATraceFromASource) {
  class Source : public ISampleSource {
  public:
    bool GetSamples(expr::ProgramQuantity const & quantity, expr::Samples & samples) const override {
      if (quantity.name != AString(L"Gain"))
        return false;
      samples = {m_gains.data(), m_gains.size(), false};
      return true;
    }

  private:
    std::vector<double> m_gains = {1, 2, 3};
  };
  Value value;
  ASSERT_TRUE(value.SetValueText(L"Gain*w/1mm"));
  expr::Result result;
  expr::Error error;
  ASSERT_TRUE(value.GetExpression()->Evaluate(Source(), {}, result, error));
  EXPECT_EQ(result.reals, (std::vector<double>{2, 4, 6}));
  ASSERT_TRUE(value.SetValueText(L"S21 + Gain"));
  EXPECT_FALSE(value.GetExpression()->Evaluate(Source(), {}, result, error));
  EXPECT_EQ(error.problem, AString(L"'S21' has no value here"));
  EXPECT_EQ(error.position, 0u);
  ASSERT_TRUE(value.SetValueText(L"Gain + S21"));
  EXPECT_FALSE(value.GetExpression()->Evaluate(Source(), {}, result, error));
  EXPECT_EQ(error.MarkedText(), AString(L"Gain + S21\n       ^^^\nat character 8: 'S21' has no value here"));
  parser.Forget(L"S21");
  EXPECT_FALSE(value.GetExpression()->Evaluate(Source(), {}, result, error));
  EXPECT_EQ(error.Text(), AString(L"at character 8: something that the expression refers to is gone"));
}

TEST_F(BoundExpression, AContextVariableCountsByItsText) {
  Named gainInDb(L"GdB");
  gainInDb.SetValueBaseText(L"dB(Gain)", {Units::kDecibel, Units::kLevel, 1, val::kReal});
  parser.Add(gainInDb);
  {
    Value value;
    ASSERT_TRUE(value.SetValueText(L"gdb + 1"));
    EXPECT_EQ(value.GetSIValue(), 21.0);
    EXPECT_FALSE(gainInDb.OKtoDelete());
    AString function;
    ASSERT_TRUE(value.SetValueText(L"abs(GdB)"));
    EXPECT_EQ(value.StripFunction(function), &gainInDb);
    Value const copy = value;
    value = Value();
    EXPECT_FALSE(gainInDb.OKtoDelete());
  }
  EXPECT_TRUE(gainInDb.OKtoDelete());
}

TEST_F(BoundExpression, AContextVariableCountsByItsTextAtTheTimeOfEvaluation) {
  ValueState const state{Units::kDecibel, Units::kLevel, 1, val::kReal};
  Named gain(L"GdB");
  gain.SetValueBaseText(L"dB(Gain)", state);
  parser.Add(gain);
  Value value;
  ASSERT_TRUE(value.SetValueText(L"gdb + 1"));
  EXPECT_EQ(value.GetSIValue(), 21.0);
  gain.SetValueBaseText(L"Gain", state);
  EXPECT_EQ(value.GetSIValue(), 11.0);
  gain.SetValueBaseText(L"no such word", state);
  EXPECT_TRUE(std::isnan(value.GetSIValue()));
}

TEST_F(BoundExpression, ContextVariablesTellWhomTheyUse) {
  Named a(L"a");
  Named b(L"b");
  Named c(L"c");
  a.SetValueBaseText(L"B + 1", {});
  b.SetValueBaseText(L"2*c", {});
  c.SetValueBaseText(L"Gain", {});
  EXPECT_TRUE(a.UsesContextVariable(&b));
  EXPECT_FALSE(a.UsesContextVariable(&c));
  EXPECT_FALSE(a.UsesContextVariable(nullptr));
  parser.Add(a);
  parser.Add(b);
  parser.Add(c);
  expr::Error error;
  a.SetBoundValue(ExpressionValue::Bind(a.GetValueBaseText(), &parser, error));
  EXPECT_TRUE(a.UsesContextVariable(&b));
  EXPECT_TRUE(a.UsesContextVariable(&c));
  EXPECT_FALSE(a.UsesContextVariable(&a));
  a.SetBoundValue(nullptr);
}

TEST_F(BoundExpression, AChainOfBoundVariablesIsAskedInNoMoreThanItsLength) {
  constexpr int count = 60;
  std::vector<std::unique_ptr<Named>> chain;
  expr::Error error;
  for (int i = 0; i < count; ++i) {
    chain.push_back(std::make_unique<Named>(AString::Format(L"v%d", i)));
    Named & variable = *chain.back();
    variable.SetValueBaseText(i == 0 ? AString(L"Gain") : AString::Format(L"v%d + 1", i - 1), {});
    parser.Add(variable);
    variable.SetBoundValue(ExpressionValue::Bind(variable.GetValueBaseText(), &parser, error));
  }
  Named const other(L"other");
  EXPECT_FALSE(chain.back()->UsesVariable(width));
  EXPECT_FALSE(chain.back()->UsesContextVariable(&other));
  EXPECT_TRUE(chain.back()->UsesContextVariable(chain.front().get()));
  ValueMessage message(1);
  EXPECT_TRUE(chain.back()->ReceiveMsg(message));
  EXPECT_LE(parser.Get(L"Gain").messages, 4 * count); // of three questions
}

TEST_F(BoundExpression, MessagesEndWhereContextVariablesGoRoundInACircle) {
  Named a(L"a");
  Named b(L"b");
  a.SetValueBaseText(L"1", {});
  b.SetValueBaseText(L"a", {});
  parser.Add(a);
  parser.Add(b);
  expr::Error error;
  auto const toB = ExpressionValue::Bind(L"b", &parser, error);
  b.SetBoundValue(ExpressionValue::Bind(L"a + S21", &parser, error));
  a.SetBoundValue(toB);
  ValueMessage message(1);
  EXPECT_TRUE(a.ReceiveMsg(message));
  EXPECT_FALSE(a.UsesVariable(width));
  a.SetBoundValue(nullptr);
  b.SetBoundValue(nullptr);
}
