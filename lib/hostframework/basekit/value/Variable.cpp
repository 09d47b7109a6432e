#include "basekit/value/Variable.h"

#include "basekit/value/expression/SyntaxParser.h"

#include <algorithm>

Variable::Variable(AString const & name, AString const & valueText, Units::FullUnitType units)
    : m_name(name), m_value(units) {
  m_value.SetConstantText(valueText, units);
}

Variable::Variable(AString const & name, Value const & value) : m_name(name), m_value(value) {}

bool Variable::UsesVariable(Variable const & variable) const {
  if (!m_value.IsText())
    return false;
  std::vector<AString> const names = expr::NamesIn(m_value.GetText());
  return std::any_of(names.begin(), names.end(),
                     [&](AString const & name) { return AString::MatchNoCase(name, variable.GetName()); });
}
