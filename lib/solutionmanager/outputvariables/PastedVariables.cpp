#include "solutionmanager/outputvariables/PastedVariables.h"

#include "CoreInterfaces/desktop/IKitDesktop.h"
#include "CoreInterfaces/reportkern/ITracePasteContext.h"
#include "basekit/diag/Assert.h"
#include "basekit/id/LocalNameServer.h"
#include "basekit/io/CBlock.h"
#include "basekit/message/MessageQueueRestorer.h"
#include "plotkit/outputvariable/OutputVariable.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/outputvariables/OutputVariableMessages.h"

#include <memory>

namespace {

wchar_t const * const kOutputVars = L"OutputVars";
constexpr int kMostTries = 1000;

AString TypeText(val::ParameterType type) {
  switch (type) {
  case val::kReal:
    return L"real number";
  case val::kInteger:
    return L"integer";
  case val::kComplex:
  case val::kMagnitudeDegrees:
  case val::kMagnitudeRadians:
  case val::kDecibelDegrees:
    return L"complex number";
  case val::kRealArray:
    return L"array of real numbers";
  case val::kComplexArray:
    return L"array of complex numbers";
  case val::kText:
    return L"text";
  default:
    return L"unknown quantity";
  }
}

/// Adds the variable under the name; false, and it is freed, when the manager does not take it.
bool Add(BaseSolutionManager & manager, IKelvroCommand * command, AString const & name,
         std::unique_ptr<OutputVariable> variable) {
  manager.OnAddOutputVar(command, name, variable.get());
  bool const isTaken = manager.FindOutputVariable(name) == variable.get();
  if (isTaken)
    variable.release();
  return isTaken;
}

AString FreeName(BaseSolutionManager const & manager, AString const & name) {
  BaseSolutionManager::OutputVariableMap existing;
  manager.GetOutputVariables(existing);
  LocalNameServer names;
  for (auto const & [taken, variable] : existing)
    names.AddName(taken);
  // A variable or quantity of the new name would hide the pasted one.
  IKitDesktop * const desktop = GetIKitDesktop();
  MessageQueueRestorer const silence(desktop ? &desktop->GetMessageManager() : nullptr);
  AString unique = names.GetUniqueName(name, LocalNameServer::kNumbered);
  for (int i = 0; i < kMostTries && !manager.IsValidOutputVariableName(unique, true); ++i)
    unique = names.GetUniqueName(name, LocalNameServer::kNumbered);
  return unique;
}

void AddRenamed(BaseSolutionManager & manager, IKelvroCommand * command, ITracePasteContext * context,
                OutputVariable const & existing, std::unique_ptr<OutputVariable> pasted) {
  AString const oldName = pasted->GetName();
  AString const newName = FreeName(manager, oldName);
  AString const newType = TypeText(pasted->GetParameterType());
  KVRO_ASSERT(0);
  pasted->SetName(newName);
  // The traces go on meaning the old name where there is no variable of the new one.
  if (!Add(manager, command, newName, std::move(pasted)))
    return;
  if (context)
    context->OutputVariableNameChanged(oldName, newName);
  outputvariables::Tell(outputvariables::kPastedUnderNewName,
                        {TypeText(existing.GetParameterType()), oldName, newType, newName}, KelvroMessage::kInfo);
}

void ReadOne(io::CBlock_func const & func, BaseSolutionManager & manager, IKelvroCommand * command,
             ITracePasteContext * context) {
  auto pasted = std::make_unique<OutputVariable>(func.Name());
  if (!pasted->ReadFromFuncForPaste(func, func.begin())) {
    KVRO_ASSERT(0);
    return;
  }
  OutputVariable const * const existing = manager.FindOutputVariable(func.Name());
  if (!existing)
    Add(manager, command, func.Name(), std::move(pasted));
  else if (existing->GetParameterType() != pasted->GetParameterType())
    AddRenamed(manager, command, context, *existing, std::move(pasted));
}

} // namespace

void pastedvariables::Write(io::CBlock & block, BaseSolutionManager const & manager, std::set<AString> const & names) {
  io::CBlock_ptr<io::CBlock> const written(new io::CBlock(kOutputVars));
  for (AString const & name : names) {
    OutputVariable const * const variable = manager.FindOutputVariable(name);
    if (!variable) {
      KVRO_ASSERT(0);
      continue;
    }
    io::CBlock_ptr<io::CBlock_func> const func(new io::CBlock_func(variable->GetName()));
    if (variable->WriteToFuncForCopy(*func))
      *written << func;
  }
  block << written;
}

void pastedvariables::Read(io::CBlock const & block, BaseSolutionManager & manager, IKelvroCommand * command,
                           ITracePasteContext * context) {
  io::CBlock const * const variables = block.FindBlock(kOutputVars);
  if (!variables) {
    KVRO_ASSERT(0);
    block.ResetFound(true);
    return;
  }
  for (auto const & item : *variables)
    if (item->IsFunc())
      ReadOne(static_cast<io::CBlock_func const &>(*item), manager, command, context);
}
