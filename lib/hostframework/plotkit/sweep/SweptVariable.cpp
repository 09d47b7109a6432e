#include "plotkit/sweep/SweptVariable.h"

#include "CoreInterfaces/IVariableServer.h"
#include "CoreInterfaces/desktop/IDesignEditor.h"
#include "basekit/value/Variable.h"
#include "basekit/value/VariableNameSpace.h"

SweptVariable::SweptVariable(Variable * variable) : m_reference(variable), m_variable(variable) {}

Variable * SweptVariable::Find(AString const & name, IDesignEditor const * editor) {
  IVariableServer const * const server = editor ? editor->GetVariableServer() : nullptr;
  Variable * found = server ? server->ResolveVariable(name) : nullptr;
  if (VariableNameSpace const * const current = VariableNameSpace::Current(); !found && current)
    found = current->FindVariable(name);
  return found ? found : Value::GetIntrinsicVariable(name);
}
