#pragma once

#include "basekit/value/Value.h"

#include <utility>
#include <vector>

class Variable;

/// Gives the variables back, at its end, the values that they had at its start.  The variables must outlive it.
class VariableValuesRestorer {
public:
  explicit VariableValuesRestorer(std::vector<Variable *> const & variables);
  ~VariableValuesRestorer();
  VariableValuesRestorer(VariableValuesRestorer const &) = delete;
  VariableValuesRestorer & operator=(VariableValuesRestorer const &) = delete;

private:
  std::vector<std::pair<Variable *, Value>> m_values;
};
