#include "basekit/value/ExpressionValue.h"

#include "CoreInterfaces/IValueParser.h"
#include "basekit/value/ColumnValue.h"
#include "basekit/value/ContextVariable.h"
#include "basekit/value/Variable.h"
#include "basekit/value/expression/NameSpaceScope.h"
#include "basekit/value/expression/SyntaxParser.h"

#include <algorithm>
#include <limits>

namespace {

/// What the installed parser says of each value, one number at a time.
class PresentNumbers : public ISampleSource {
public:
  bool GetSamples(expr::ProgramQuantity const & quantity, expr::Samples & samples) const override {
    IValueParser * const parser = Value::GetValueParser();
    if (!parser || !quantity.base || dynamic_cast<Variable const *>(quantity.base))
      return false;
    bool const isComplex = postp::GetBasicParamType(quantity.state.parameterType) == val::kComplex;
    m_numbers.push_back(std::make_unique<std::complex<double>>(
        isComplex ? std::complex<double>(parser->GetComplexValue(*quantity.base)) : parser->GetValue(*quantity.base)));
    samples = {reinterpret_cast<double const *>(m_numbers.back().get()), 1, true};
    return true;
  }

private:
  mutable std::vector<std::unique_ptr<std::complex<double>>> m_numbers;
};

/// What a program holds of a value that it was compiled with; empty for what it reads at each evaluation.
AString DefinitionOf(ValueBase const & value) {
  if (auto const * const variable = dynamic_cast<Variable const *>(&value))
    return variable->GetValue().IsText() ? variable->GetValueText() : AString();
  auto const * const context = dynamic_cast<ContextVariable const *>(&value);
  return context ? context->GetValueBaseText() : AString();
}

/// A context variable counts by its text alone: its state is what was known when that was set.
val::ParameterType BasicTypeOf(ValueBase const & value) {
  bool const isVariable = dynamic_cast<Variable const *>(&value) != nullptr;
  return isVariable ? postp::GetBasicParamType(value.GetParameterType()) : val::kReal;
}

bool HasDefinition(ValueBase const * value) {
  return dynamic_cast<Variable const *>(value) || dynamic_cast<ContextVariable const *>(value);
}

} // namespace

ISampleSource::~ISampleSource() = default;

ExpressionValue::ExpressionValue(AString const & text, expr::Program && program)
    : m_text(text), m_program(std::move(program)) {
  for (ValueBase const * const base : m_program.GetBases()) {
    m_references.emplace_back(base);
    if (HasDefinition(base))
      m_definitions.push_back({m_references.back(), BasicTypeOf(*base), DefinitionOf(*base)});
  }
}

std::shared_ptr<ExpressionValue const> ExpressionValue::Bind(AString const & text, IValueParser * parser,
                                                             expr::Error & error) {
  auto value = Make(text, expr::BindingScope(parser), error);
  if (value)
    value->FindInner(parser);
  return value;
}

std::shared_ptr<ExpressionValue> ExpressionValue::Make(AString const & text, expr::IScope const & scope,
                                                       expr::Error & error) {
  expr::Program program;
  if (!expr::Program::Compile(text, scope, program, error))
    return nullptr;
  return std::shared_ptr<ExpressionValue>(new ExpressionValue(text, std::move(program)));
}

std::shared_ptr<ExpressionValue const>
ExpressionValue::Validate(AString const & text, std::vector<IValueParser *> const & parsers, expr::Error & error) {
  return Make(text, expr::ValidationScope(parsers), error);
}

void ExpressionValue::FindInner(IValueParser * parser) {
  expr::SyntaxTree tree;
  expr::Error error;
  if (!expr::ReadSyntax(m_text, tree, error))
    return;
  expr::Node const * inner = &tree.nodes.back();
  bool const isFunction = inner->kind == expr::Node::Kind::kCall && inner->argumentCount == 1;
  if (isFunction) {
    m_functionName = AString(tree.names[inner->payload]);
    inner = &tree.nodes[tree.nodes.size() - 2];
  }
  if (inner->kind == expr::Node::Kind::kName)
    m_innerWord = ValueReference(expr::BindingScope(parser).Find(AString(tree.names[inner->payload])).base);
  else if (isFunction)
    m_inner = Make(tree.PrintFrom(tree.nodes.size() - 2), expr::BindingScope(parser), error);
}

ValueBase const * ExpressionValue::StripFunction(AString & functionName) const {
  ValueBase const * const inner = m_inner ? m_inner.get() : m_innerWord.Get();
  functionName = inner ? m_functionName : AString();
  return inner;
}

bool ExpressionValue::UsesVariable(Variable const & variable) const {
  return std::any_of(m_references.begin(), m_references.end(), [&](ValueReference const & reference) {
    ValueBase const * const value = reference.Get();
    return value && (value == &variable || value->UsesVariable(variable));
  });
}

bool ExpressionValue::DoReceiveMsg(ValueMessage & message) const {
  bool isTaken = false;
  for (ValueReference const & reference : m_references)
    if (ValueBase const * const value = reference.Get())
      isTaken = value->ReceiveMsg(message) || isTaken;
  return isTaken;
}

bool ExpressionValue::IsStale() const {
  return std::any_of(m_definitions.begin(), m_definitions.end(), [](KnownDefinition const & known) {
    ValueBase const * const value = known.value.Get();
    return value && (BasicTypeOf(*value) != known.type || DefinitionOf(*value) != known.text);
  });
}

bool ExpressionValue::IsCurrent() const {
  return !IsStale() && std::all_of(m_references.begin(), m_references.end(),
                                   [](ValueReference const & reference) { return reference.Get() != nullptr; });
}

bool ExpressionValue::GetSamples(expr::ProgramQuantity const & quantity, ISampleSource const & source,
                                 expr::Samples & samples) const {
  if (source.GetSamples(quantity, samples))
    return true;
  auto const * const variable = dynamic_cast<Variable const *>(quantity.base);
  if (!variable)
    return false;
  Value const & value = variable->GetValue();
  if (ColumnValue const * const column = value.GetColumn()) {
    bool const isComplex = column->IsComplex();
    samples = {isComplex ? reinterpret_cast<double const *>(column->GetComplexes().data()) : column->GetReals().data(),
               column->GetCount(), false};
    return true;
  }
  samples = {value.GetNumberParts(), 1, true};
  return value.IsNumber();
}

void ExpressionValue::SetPlace(expr::Error & error, ValueBase const * base) const {
  for (expr::ProgramQuantity const & quantity : m_program.GetQuantities())
    if (quantity.base == base) {
      error.source = quantity.source;
      error.position = quantity.position;
      error.length = quantity.length;
      return;
    }
}

bool ExpressionValue::Renew(expr::Error & error) const {
  if (!m_renewed || m_renewed->IsStale())
    m_renewed = Bind(m_text, Value::GetValueParser(), error);
  return m_renewed != nullptr;
}

bool ExpressionValue::Evaluate(ISampleSource const & source, std::span<double const> axis, expr::Result & result,
                               expr::Error & error) const {
  if (IsStale())
    return Renew(error) && m_renewed->Evaluate(source, axis, result, error);
  error = expr::Error();
  error.source = m_text;
  for (std::size_t i = 0; i < m_references.size(); ++i)
    if (!m_references[i].Get()) {
      SetPlace(error, m_program.GetBases()[i]);
      error.problem = L"something that the expression refers to is gone";
      return false;
    }
  expr::TraceData data;
  data.axis = axis;
  for (expr::ProgramQuantity const & quantity : m_program.GetQuantities()) {
    expr::Samples samples;
    if (!GetSamples(quantity, source, samples)) {
      SetPlace(error, quantity.base);
      error.problem = L"'" + quantity.name + L"' has no value here";
      return false;
    }
    data.quantities.push_back(samples);
  }
  return m_program.Evaluate(data, result, error);
}

AComplex<double> ExpressionValue::GetNumber() const {
  expr::Result result;
  expr::Error error;
  if (!Evaluate(PresentNumbers(), {}, result, error) || !result.isScalar)
    return std::numeric_limits<double>::quiet_NaN();
  return result.Number();
}
