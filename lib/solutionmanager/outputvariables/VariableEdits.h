#pragma once

#include "basekit/text/AString.h"

#include <map>
#include <vector>

class BaseSolutionManager;
class DesignExpressions;
class IKelvroCommand;
class KelvroCommand;
class OutputVariable;

/// Changes of a manager's output variables, each recorded on the command; without one it can't be undone.  The map owns
/// what it holds, the records what is outside of it.
class VariableEdits {
public:
  using Map = std::map<AString, OutputVariable *, AString::NoCaseLess>;

  VariableEdits(BaseSolutionManager const & manager, Map & variables) : m_manager(manager), m_variables(variables) {}

  /// A variable of that name makes room.  Null when the expression does not parse.
  OutputVariable * Create(AString const & name, AString const & expression, KelvroCommand * command);
  /// False, and nothing changed, without a command.
  bool Edit(OutputVariable & variable, AString const & expression, KelvroCommand * command);
  void Delete(Map::iterator at, KelvroCommand * command);
  /// Takes the variable over, under that name.
  void Add(IKelvroCommand & command, AString const & name, OutputVariable * variable);
  /// A variable of that name is freed.
  void Enter(OutputVariable * variable);

private:
  void SetText(OutputVariable & variable, AString const & expression, DesignExpressions const & expressions) const;

  BaseSolutionManager const & m_manager;
  Map & m_variables;
};
