#include "solutionmanager/outputvariables/VariableEdits.h"

#include "basekit/command/CUndoableObjectDeltaState.h"
#include "basekit/command/KelvroCommand.h"
#include "basekit/diag/Assert.h"
#include "plotkit/COutputVarKvroCmdInfo.h"
#include "plotkit/OutputVariable.h"
#include "plotkit/OutputVariableLegacyUpdater.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/outputvariables/DesignExpressions.h"
#include "solutionmanager/outputvariables/OutputVariableMessages.h"

#include <new>

namespace {

COutputVarKvroCmdInfo & EditedVariablesOf(KelvroCommand & command) {
  auto * info = dynamic_cast<COutputVarKvroCmdInfo *>(command.GetInfo(KelvroCommandInfo::kOutputVariables));
  if (!info) {
    info = new COutputVarKvroCmdInfo;
    command.SetInfo(KelvroCommandInfo::kOutputVariables, info);
  }
  return *info;
}

std::unique_ptr<OutputVariable> NewVariable(AString const & name) {
  try {
    return std::make_unique<OutputVariable>(name);
  } catch (std::bad_alloc const &) {
    outputvariables::Tell(outputvariables::kNoMemory, name, KelvroMessage::kFatal);
    return nullptr;
  }
}

} // namespace

void VariableEdits::SetText(OutputVariable & variable, AString const & expression,
                            DesignExpressions const & expressions) {
  variable.SetValueBaseText(expression, expressions.GetState());
  outputvariables::Silence const silence;
  OutputVariableLegacyUpdater::UpdateLegacyText(variable, expressions.GetParsers());
}

std::unique_ptr<OutputVariable> VariableEdits::Make(AString const & name, AString const & expression) const {
  std::unique_ptr<OutputVariable> variable = NewVariable(name);
  if (!variable)
    return nullptr;
  DesignExpressions expressions(m_manager);
  if (!expressions.Validate(expression))
    return nullptr;
  SetText(*variable, expression, expressions);
  return variable;
}

bool VariableEdits::Edit(OutputVariable & variable, AString const & expression, KelvroCommand * command) const {
  DesignExpressions expressions(m_manager);
  bool const Ret = expressions.Validate(expression);
  KVRO_ASSERT(Ret);
  if (!command)
    return false;
  command->AddDeltaState(new CUndoableObjectDeltaState(variable));
  SetText(variable, expression, expressions);
  EditedVariablesOf(*command).AddEditedOutputVar(&variable);
  return true;
}
