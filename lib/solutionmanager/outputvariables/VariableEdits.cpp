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
#include "solutionmanager/undo/COutputVariableMapDeltaState.h"

#include <new>

namespace {

void HandOver(COutputVariableMapDeltaState * delta, KelvroCommand * command) {
  if (command)
    command->AddDeltaState(delta);
  else
    delete delta;
}

COutputVarKvroCmdInfo & EditedVariablesOf(KelvroCommand & command) {
  auto * info = dynamic_cast<COutputVarKvroCmdInfo *>(command.GetInfo(KelvroCommandInfo::kOutputVariables));
  if (!info) {
    info = new COutputVarKvroCmdInfo;
    command.SetInfo(KelvroCommandInfo::kOutputVariables, info);
  }
  return *info;
}

OutputVariable * NewVariable(AString const & name) {
  try {
    return new OutputVariable(name);
  } catch (std::bad_alloc const &) {
    outputvariables::Tell(outputvariables::kNoMemory, name, KelvroMessage::kFatal);
    return nullptr;
  }
}

} // namespace

void VariableEdits::SetText(OutputVariable & variable, AString const & expression,
                            DesignExpressions const & expressions) const {
  variable.SetValueBaseText(expression, expressions.GetState());
  outputvariables::Silence const silence;
  OutputVariableLegacyUpdater::UpdateLegacyText(variable, expressions.GetParsers());
}

OutputVariable * VariableEdits::Create(AString const & name, AString const & expression, KelvroCommand * command) {
  DesignExpressions expressions(m_manager);
  if (!expressions.Validate(expression))
    return nullptr;
  OutputVariable * const variable = NewVariable(name);
  if (!variable)
    return nullptr;
  SetText(*variable, expression, expressions);
  auto * const delta = new COutputVariableMapDeltaState(&m_variables);
  // One of that name has no other owner: undo brings it back.
  if (auto const former = m_variables.find(name); former != m_variables.end()) {
    delta->Record(former->first, former->second, false);
    m_variables.erase(former);
  }
  m_variables.emplace(name, variable);
  delta->Record(name, variable, true);
  HandOver(delta, command);
  return variable;
}

bool VariableEdits::Edit(OutputVariable & variable, AString const & expression, KelvroCommand * command) {
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

void VariableEdits::Delete(Map::iterator at, KelvroCommand * command) {
  auto * const delta = new COutputVariableMapDeltaState(&m_variables);
  delta->Record(at->first, at->second, false);
  m_variables.erase(at);
  HandOver(delta, command);
}

void VariableEdits::Add(IKelvroCommand & command, AString const & name, OutputVariable * variable) {
  variable->SetName(name);
  auto * const delta = new COutputVariableMapDeltaState(&m_variables, false);
  delta->Record(name, variable, true);
  delta->RedoIt();
  HandOver(delta, dynamic_cast<KelvroCommand *>(&command));
}

void VariableEdits::Enter(OutputVariable * variable) {
  if (auto const former = m_variables.find(variable->GetName()); former != m_variables.end()) {
    delete former->second;
    m_variables.erase(former);
  }
  m_variables.emplace(variable->GetName(), variable);
}
