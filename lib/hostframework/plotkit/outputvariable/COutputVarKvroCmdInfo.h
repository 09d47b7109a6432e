#pragma once

#include "basekit/command/KelvroCommandInfo.h"

#include <set>
#include <vector>

class OutputVariable;

/// Which output variables a command edited.  It sits on the command under KelvroCommandInfo::kOutputVariables and owns
/// none of them.
class COutputVarKvroCmdInfo : public KelvroCommandInfo {
public:
  COutputVarKvroCmdInfo() : KelvroCommandInfo(kOutputVariableInfo, kEditedOutputVariables) {}

  /// Each is listed once, in the order of the first edit.
  void AddEditedOutputVar(OutputVariable const * variable);
  std::vector<OutputVariable const *> const & GetEditedOutputVars() const { return m_variables; }
  bool IsEdited(OutputVariable const * variable) const { return m_known.count(variable) != 0; }

private:
  std::vector<OutputVariable const *> m_variables;
  std::set<OutputVariable const *> m_known;
};
