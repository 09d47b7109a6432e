// Values made of hostile texts over a name space: the first line is a value, the next three are the variables a, b and
// c, the fifth an output variable.  Whatever is bound evaluates, before and after a definition changes; nothing else is
// taken.

#include "fuzz/Entry.h"

#include "CoreInterfaces/IValueParser.h"
#include "basekit/text/Utf8.h"
#include "basekit/value/ContextVariable.h"
#include "basekit/value/ExpressionParser.h"
#include "basekit/value/ExpressionValue.h"
#include "basekit/value/Variable.h"
#include "basekit/value/VariableNameSpace.h"

#include <array>
#include <cstdlib>
#include <string_view>

namespace {

double const axis[] = {-1.5e308, -1.0, 0.0, 1.0, 1.5e308};
double const reals[] = {1.0, -1.0, 1e308, 0.0, 2.0};
std::complex<double> const complexes[] = {{1.0, 2.0}, {0.0, 0.0}, {-1.0, 0.0}, {-3.0, 0.5}, {1e300, -1e300}};

void Demand(bool holds) {
  if (!holds)
    std::abort();
}

class Quantity : public ValueBase {
public:
  Quantity(AString const & name, val::ParameterType type) : m_name(name), m_type(type) {}
  ValueState GetValueState() const override { return {Units::kNoUnits, Units::kNoUnitType, 1, m_type}; }
  AString GetText() const override { return m_name; }

private:
  ValueBase * CloneValueBase() const override { return new Quantity(*this); }

  AString m_name;
  val::ParameterType m_type;
};

class OutputText : public ContextVariable {
public:
  using ContextVariable::ContextVariable;
  using ContextVariable::SetBoundValue;

private:
  ValueBase * CloneValueBase() const override { return new OutputText(*this); }
};

class Words : public IValueParser {
public:
  ValueBase * ParseText(AString const & text) override {
    for (Quantity * const quantity : {&m_real, &m_complex, &m_column, &m_complexColumn})
      if (quantity->GetText() == text)
        return quantity;
    return text == AString(L"out") ? &output : nullptr;
  }
  ValueState GetValueStateFromText(AString const & text) override {
    ValueBase const * const value = ParseText(text);
    return value ? value->GetValueState() : ValueState();
  }
  double GetValue(ValueBase const &) override { return -2.0; }
  AComplex<double> GetComplexValue(ValueBase const &) override { return {3.0, 4.0}; }

  OutputText output{L"out"};

private:
  Quantity m_real{L"Gain", val::kReal};
  Quantity m_complex{L"S11", val::kComplex};
  Quantity m_column{L"y", val::kRealArray};
  Quantity m_complexColumn{L"S(2,1)", val::kComplexArray};
};

class Columns : public ISampleSource {
public:
  bool GetSamples(expr::ProgramQuantity const & quantity, expr::Samples & samples) const override {
    bool const isComplex = postp::GetBasicParamType(quantity.state.parameterType) == val::kComplex;
    if (!dynamic_cast<Quantity const *>(quantity.base))
      return false;
    bool const isScalar = !ValueParamTypes::IsParameterTypeArray(quantity.state.parameterType);
    samples = {isComplex ? reinterpret_cast<double const *>(complexes) : reals, isScalar ? 1u : 5u, isScalar};
    return true;
  }
};

std::array<AString, 5> LinesOf(AString const & text) {
  std::array<AString, 5> lines;
  std::wstring_view rest = text.View();
  for (AString & line : lines) {
    std::size_t const end = std::min(rest.find(L'\n'), rest.size());
    line = AString(std::wstring(rest.substr(0, end)));
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return lines;
}

void CheckEvaluation(Value const & value) {
  value.GetSIValue();
  value.GetValueState();
  AString function;
  value.StripFunction(function);
  ExpressionValue const * const expression = value.GetExpression();
  if (!expression)
    return;
  expr::Result result;
  expr::Error error;
  bool const isDone = expression->Evaluate(Columns(), axis, result, error);
  Demand(isDone || (!error.problem.empty() && error.position + error.length <= error.source.size()));
  Demand(!isDone || (result.isComplex ? result.complexes.size() : result.reals.size()) == (result.isScalar ? 1u : 5u));
}

void CheckWords(AString const & text, Words & words) {
  std::vector<AString> labels;
  Demand(ExpressionParser::GetAlienLabels(labels, text, {&words}) == static_cast<int>(labels.size()));
  Value validated;
  expr::Error error;
  bool const isValid = ExpressionParser::ValidateExpression(validated, text, {nullptr, &words}, error);
  Demand(isValid || (!error.problem.empty() && error.position + error.length <= error.source.size()));
  Demand(!isValid || validated.GetText() == text);
}

/// Bound and asked, with all that it refers to.
void CheckValue(std::array<AString, 5> const & lines, Words & words) {
  Variable a(L"a", lines[1]);
  Variable b(L"b", lines[2], Units::kDegree);
  Variable c(L"c", lines[3], Units::kMillimetre);
  VariableNameSpace space(true, false, false);
  for (Variable * const variable : {&a, &b, &c})
    space.AddVariable(variable);
  CheckWords(lines[0], words);

  expr::Error error;
  words.output.SetValueBaseText(lines[4], ValueState());
  words.output.SetBoundValue(ExpressionValue::Bind(lines[4], &words, error));
  Value value(Units::kMillimetre);
  Demand(value.SetValueText(lines[0]) != value.IsText());
  Demand(value.GetText() == lines[0]);
  CheckEvaluation(value);
  if (ValueBase const * const base = value.GetValueBase()) {
    base->UsesVariable(a);
    base->UsesVariable(c);
  }
  a.UsesVariable(b);
  words.output.UsesVariable(a);
  words.output.UsesContextVariable(&words.output);

  Value const copy = value;
  a.SetValueText(lines[3]);
  b.SetValueText(L"2*c");
  words.output.SetValueBaseText(lines[0], ValueState());
  CheckEvaluation(copy);
  CheckEvaluation(value);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const * data, std::size_t size) {
  AString const text = text::FromUtf8(std::string_view(reinterpret_cast<char const *>(data), size));
  Words words;
  IValueParser * const former = Value::SetValueParser(&words);
  CheckValue(LinesOf(text), words);
  Value::SetValueParser(former);
  return 0;
}
