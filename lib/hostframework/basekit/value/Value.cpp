#include "basekit/value/Value.h"

#include "basekit/value/ColumnValue.h"
#include "basekit/value/ExpressionValue.h"
#include "basekit/value/units/QuantityText.h"
#include "basekit/value/units/Tolerance.h"

namespace {
IValueParser * installedParser = nullptr;
}

Value Value::Real(double si, Units::FullUnitType units) {
  Value value(units);
  value.m_type = val::kReal;
  value.m_number = si;
  return value;
}

Value Value::Integer(long number) {
  Value value = Real(static_cast<double>(number));
  value.m_type = val::kInteger;
  value.m_text = AString::Format(L"%ld", number);
  return value;
}

Value Value::Complex(AComplex<double> const & si, Units::FullUnitType units) {
  Value value(units);
  value.m_type = val::kComplex;
  value.m_number = si;
  return value;
}

Value Value::Text(AString const & text) {
  Value value;
  value.m_type = val::kText;
  value.m_text = text;
  return value;
}

Value Value::Column(ColumnValue && samples) {
  Value value(samples.GetUnits());
  value.m_type = samples.GetParameterType();
  value.m_base = std::make_shared<ColumnValue const>(std::move(samples));
  return value;
}

ColumnValue const * Value::GetColumn() const { return dynamic_cast<ColumnValue const *>(m_base.get()); }

ExpressionValue const * Value::GetExpression() const { return dynamic_cast<ExpressionValue const *>(m_base.get()); }

ValueBase const * Value::StripFunction(AString & functionName) const {
  functionName.clear();
  ExpressionValue const * const expression = GetExpression();
  return expression ? expression->StripFunction(functionName) : nullptr;
}

AComplex<double> Value::GetComplexSIValue() const {
  ExpressionValue const * const expression = m_base ? GetExpression() : nullptr;
  return expression ? expression->GetNumber() : m_number;
}

bool Value::SetValueText(AString const & text, Units::FullUnitType units) {
  if (SetConstantText(text, units))
    return true;
  expr::Error error;
  auto expression = ExpressionValue::Bind(text, installedParser, error);
  if (!expression)
    return false;
  SetExpression(std::move(expression));
  return true;
}

void Value::SetExpression(std::shared_ptr<ExpressionValue const> expression) {
  ValueState const state = expression->GetValueState();
  m_text = expression->GetText();
  m_number = {};
  m_units = state.fullUnit;
  m_type = state.parameterType;
  m_base = std::move(expression);
}

bool Value::SetConstantText(AString const & text, Units::FullUnitType units) {
  val::Quantity quantity;
  bool const isNumber = val::ParseQuantity(text.View(), quantity, units);
  m_text = text;
  m_base.reset();
  m_number = {quantity.real, quantity.imaginary};
  m_units = quantity.unit != Units::kNoUnits ? quantity.unit : units;
  m_type = !isNumber ? val::kText : quantity.isComplex ? val::kComplex : val::kReal;
  return isNumber;
}

AString Value::GetText() const {
  if (!m_text.empty() || !IsNumber())
    return m_text;
  return val::QuantityText({m_number.real(), m_number.imag(), m_type == val::kComplex, m_units});
}

ValueState Value::GetValueState() const { return {m_units, Units::GetUnitType(m_units), 1, m_type}; }

int Value::Compare(Value const & a, Value const & b, AComplex<double> const & relative,
                   AComplex<double> const & absolute) {
  return val::CompareWithin({a.IsNumber(), a.m_number, a.m_text.View()}, {b.IsNumber(), b.m_number, b.m_text.View()},
                            relative, absolute);
}

IValueParser * Value::SetValueParser(IValueParser * parser) {
  IValueParser * const former = installedParser;
  installedParser = parser;
  return former;
}

IValueParser * Value::GetValueParser() { return installedParser; }
