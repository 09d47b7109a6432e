#pragma once

#include "products/rfcircuit/engine/netlist/Expression.h"
#include "products/rfcircuit/engine/netlist/SourcePosition.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace rf {

struct SParameterTable;

/** A name with the text it is to be found by: names are equal without case. */
struct NameAndExpression {
  std::string name; ///< as written
  std::string folded;
  Expression expression;
};

/** One element line, not yet evaluated.  `kind` is its folded first letter; `values` hold the number that stands at a
    fixed place (under an empty name) and all that are given as NAME=VALUE or, for sources, as NAME VALUE. */
struct ElementStatement {
  char kind = '\0';
  std::string name;
  SourcePosition where;
  std::vector<std::string> nodes;      ///< as written
  /** Of K the inductors, of F and H the controlling source, of X the subcircuit, of N the file. */
  std::vector<std::string> references;
  std::vector<NameAndExpression> values;
  std::shared_ptr<SParameterTable const> data; ///< of N: what the file holds

  Expression const * Find(std::string const & foldedName) const;
};

struct SubcircuitDefinition;

/** What stands at one level: the main file's top or a subcircuit's body.  Order doesn't matter to anybody. */
struct StatementBlock {
  std::vector<NameAndExpression> parameters;
  std::vector<ElementStatement> elements;
  std::map<std::string, std::unique_ptr<SubcircuitDefinition>> subcircuits; ///< by folded name
};

struct SubcircuitDefinition {
  std::string name;
  SourcePosition where;
  std::vector<std::string> nodes; ///< folded
  std::vector<NameAndExpression> defaults;
  StatementBlock body;
};

/** `.sp`: the kind's word with its numbers, then `adaptive` with its settings, or nothing or `direct`, and which files
    are asked for: `touchstone`, `z0=`, `voltages=`. */
struct SweepStatement {
  SourcePosition where;
  std::string text;
  std::string kind; ///< folded: lin, dec, oct or list
  std::vector<Expression> numbers;
  bool isAdaptive = false;
  std::vector<NameAndExpression> settings;
  bool isTouchstone = false;
  std::vector<Expression> z0; ///< one at most
  std::vector<Expression> voltages;
};

} // namespace rf
