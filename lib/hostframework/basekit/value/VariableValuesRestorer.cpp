#include "basekit/value/VariableValuesRestorer.h"

#include "basekit/value/Variable.h"

VariableValuesRestorer::VariableValuesRestorer(std::vector<Variable *> const & variables) {
  m_values.reserve(variables.size());
  for (Variable * const variable : variables)
    if (variable)
      m_values.emplace_back(variable, variable->GetValue());
}

VariableValuesRestorer::~VariableValuesRestorer() {
  for (auto const & [variable, value] : m_values)
    variable->SetValue(value);
}
