#include "products/rfcircuit/engine/netlist/Expression.h"

#include "products/rfcircuit/engine/netlist/ExpressionFunctions.h"
#include "products/rfcircuit/engine/netlist/NetlistError.h"

#include <cmath>

namespace rf {
namespace {

using Kind = Expression::Step::Kind;

double Combine(Kind kind, double left, double right) {
  switch (kind) {
  case Kind::Add:
    return left + right;
  case Kind::Subtract:
    return left - right;
  case Kind::Multiply:
    return left * right;
  case Kind::Divide:
    return left / right;
  default:
    return std::pow(left, right);
  }
}

double Pop(std::vector<double> & stack) {
  double const top = stack.back();
  stack.pop_back();
  return top;
}

void Apply(Expression::Step const & step, std::vector<double> & stack) {
  double const last = Pop(stack);
  if (step.kind == Kind::Negate) {
    stack.push_back(-last);
  } else if (step.kind == Kind::Call) {
    ExpressionFunction const & function = ExpressionFunctionAt(step.at);
    stack.push_back(function.unary ? function.unary(last) : function.binary(Pop(stack), last));
  } else {
    stack.push_back(Combine(step.kind, Pop(stack), last));
  }
}

} // namespace

double Expression::Evaluate(Names & names, std::string const & thing) const {
  std::vector<double> stack;
  for (Step const & step : m_Steps) {
    if (step.kind == Kind::Number) {
      stack.push_back(step.number);
      continue;
    }
    if (step.kind == Kind::Name) {
      stack.push_back(names.ValueOf(m_Names[step.at], m_Where, thing));
      continue;
    }
    if (step.kind == Kind::Divide && stack.back() == 0)
      throw NetlistError(m_Where, thing, "division by zero in '" + m_Text + "'", "check the values it is made of");
    Apply(step, stack);
    if (!std::isfinite(stack.back()))
      throw NetlistError(m_Where, thing, "'" + m_Text + "' is not a finite number",
                         "check the arguments of its functions and powers, and the size of its values");
  }
  return stack.back();
}

std::optional<double> Expression::PlainNumber() const {
  if (m_Steps.empty() || m_Steps.front().kind != Kind::Number)
    return std::nullopt;
  double value = m_Steps.front().number;
  for (std::size_t i = 1; i < m_Steps.size(); ++i) {
    if (m_Steps[i].kind != Kind::Negate)
      return std::nullopt;
    value = -value;
  }
  return value;
}

} // namespace rf
