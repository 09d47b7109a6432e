#pragma once

#include <memory>

class AString;
class BaseSolutionManager;
class DesignExpressions;
class KelvroCommand;
class OutputVariable;

/// Gives output variables their texts, as expressions of a manager's design.
class VariableEdits {
public:
  explicit VariableEdits(BaseSolutionManager const & manager) : m_manager(manager) {}

  /// Null when the expression does not parse.
  std::unique_ptr<OutputVariable> Make(AString const & name, AString const & expression) const;
  /// Undoable, and told in the command's info.  False, and nothing changed, without a command.
  bool Edit(OutputVariable & variable, AString const & expression, KelvroCommand * command) const;

private:
  static void SetText(OutputVariable & variable, AString const & expression, DesignExpressions const & expressions);

  BaseSolutionManager const & m_manager;
};
