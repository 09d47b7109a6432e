// Changes of the manager's output variables.  The map owns what it holds, the records on commands what is outside.

#include "CoreInterfaces/reportkern/IOutputVariableMgr.h"
#include "basekit/command/KelvroCommand.h"
#include "basekit/diag/Assert.h"
#include "plotkit/OutputVariable.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/outputvariables/OutputVariableMessages.h"
#include "solutionmanager/outputvariables/VariableEdits.h"
#include "solutionmanager/undo/COutputVariableMapDeltaState.h"

namespace {

/// A change of the map with its record.
class MapChange {
public:
  using Map = BaseSolutionManager::OutputVariableMap;

  explicit MapChange(Map & map) : m_map(map), m_record(std::make_unique<COutputVariableMapDeltaState>(&map)) {}

  void Remove(Map::iterator at) {
    m_record->Record(at->first, at->second, false);
    m_map.erase(at);
  }
  /// The removal of one of that name is recorded with the addition: the record is then its only owner, and brings it
  /// back on undo, where it would be lost.
  void Insert(std::unique_ptr<OutputVariable> variable) {
    AString const name = variable->GetName();
    if (auto const former = m_map.find(name); former != m_map.end())
      Remove(former);
    m_record->Record(name, variable.get(), true);
    m_map.emplace(name, variable.release());
  }
  /// Without a command the record ends here and the change stands.
  void HandOver(KelvroCommand * command) {
    if (command)
      command->AddDeltaState(m_record.release());
  }

private:
  Map & m_map;
  std::unique_ptr<COutputVariableMapDeltaState> m_record;
};

} // namespace

OutputVariable * BaseSolutionManager::CreateOutputVariable(AString const & name, AString const & expression,
                                                           KelvroCommand * command) {
  if (!AreOldReportStructuresSupported()) {
    KVRO_ASSERT(!"Use OutputVariablesModule instead");
    return nullptr;
  }
  std::unique_ptr<OutputVariable> made = VariableEdits(*this).Make(name, expression);
  OutputVariable * const variable = made.get();
  if (!variable)
    return nullptr;
  MapChange change(m_OutputVariableMap);
  change.Insert(std::move(made));
  change.HandOver(command);
  return variable;
}

bool BaseSolutionManager::EditOutputVariable(OutputVariable * var, AString const & expression,
                                             KelvroCommand * command) {
  if (!AreOldReportStructuresSupported()) {
    KVRO_ASSERT(!"Use OutputVariableModule instead");
    return false;
  }
  KVRO_ASSERT(var);
  if (!var)
    return false;
  KVRO_ASSERT(FindOutputVariable(var->GetName()) == var);
  return VariableEdits(*this).Edit(*var, expression, command);
}

bool BaseSolutionManager::DeleteOutputVariable(OutputVariable * var, KelvroCommand * command) {
  if (!AreOldReportStructuresSupported()) {
    KVRO_ASSERT(!"Use OutputVariableModule instead");
    return false;
  }
  // Another manager's variable stays where it is, whatever it is called; the answer says so, as a record of the removal
  // would give it two owners.
  auto const at = var ? m_OutputVariableMap.find(var->GetName()) : m_OutputVariableMap.end();
  bool const isHere = at != m_OutputVariableMap.end() && at->second == var;
  KVRO_ASSERT(isHere);
  if (!isHere)
    return false;
  MapChange change(m_OutputVariableMap);
  change.Remove(at);
  change.HandOver(command);
  return true;
}

void BaseSolutionManager::OnAddOutputVar(IKelvroCommand * command, AString const & name, OutputVariable * variable) {
  if (!command || !variable) {
    KVRO_ASSERT(0);
    return;
  }
  variable->SetName(name);
  auto record = std::make_unique<COutputVariableMapDeltaState>(&m_OutputVariableMap, false);
  record->Record(name, variable, true);
  record->RedoIt();
  if (auto * const recording = dynamic_cast<KelvroCommand *>(command))
    recording->AddDeltaState(record.release());
}

void BaseSolutionManager::UpdateOutputVariables(KelvroCommand * command) {
  if (!AreOldReportStructuresSupported()) {
    KVRO_ASSERT(!"OutputVariableModule should be handling this independently");
    return;
  }
  std::vector<OutputVariable *> variables;
  GetOutputVariables(variables);
  for (OutputVariable * const variable : variables)
    if (!IsValidOutputVariableExpression(variable->GetValueBaseText(), nullptr, nullptr)) {
      // The user is told without a command, too, though nothing is reset then.
      EditOutputVariable(variable, L"0", command);
      outputvariables::Tell(outputvariables::kWasReset, variable->GetName(), KelvroMessage::kInfo);
    }
}

void BaseSolutionManager::TranslateLegacyOutputVariablesIntoGivenOutputVariableMgr(IOutputVariableMgr * target) {
  KVRO_ASSERT(target);
  if (!target)
    return;
  for (auto const & [name, variable] : m_OutputVariableMap)
    if (!target->AdoptOutputVariable(variable)) {
      KVRO_ASSERT(!"Why did the OutputVariableMgr not take ownership?!");
      delete variable;
    }
  m_OutputVariableMap.clear();
}
