#include "basekit/value/Variable.h"

#include "basekit/value/expression/NameSpaceScope.h"
#include "basekit/value/expression/SyntaxParser.h"

#include <set>

Variable::Variable(AString const & name, AString const & valueText, Units::FullUnitType units)
    : m_name(name), m_value(units) {
  m_value.SetConstantText(valueText, units);
}

Variable::Variable(AString const & name, Value const & value) : m_name(name), m_value(value) {}

bool Variable::UsesVariable(Variable const & variable) const {
  std::set<AString, AString::NoCaseLess> met;
  std::vector<Variable const *> open = {this};
  while (!open.empty()) {
    Variable const & next = *open.back();
    open.pop_back();
    if (!next.m_value.IsText())
      continue;
    for (AString const & name : expr::NamesIn(next.m_value.GetText())) {
      if (AString::MatchNoCase(name, variable.GetName()))
        return true;
      if (!met.insert(name).second)
        continue;
      if (Variable const * const other = expr::FindCurrentVariable(name))
        open.push_back(other);
    }
  }
  return false;
}
