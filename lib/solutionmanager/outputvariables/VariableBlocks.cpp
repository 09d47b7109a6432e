#include "solutionmanager/outputvariables/VariableBlocks.h"

#include "basekit/io/CBlock.h"
#include "plotkit/outputvariable/OutputVariable.h"
#include "solutionmanager/model/BaseSolutionManager.h"
#include "solutionmanager/outputvariables/OutputVariableMessages.h"

namespace outputvariables {

namespace {

/// One of that name goes.
void Enter(Map & map, std::unique_ptr<OutputVariable> variable) {
  if (auto const former = map.find(variable->GetName()); former != map.end()) {
    delete former->second;
    map.erase(former);
  }
  AString const name = variable->GetName();
  map.emplace(name, variable.release());
}

} // namespace

bool WriteVariables(io::CBlock & variables, Map const & map) {
  bool areAllWritten = true;
  for (auto const & [name, variable] : map) {
    io::CBlock_func func(name);
    if (variable->WriteToFunc(func))
      variables << func;
    else
      areAllWritten = false;
  }
  return areAllWritten;
}

io::ReadError ReadVariables(io::CBlock const & variables, BaseSolutionManager const & manager, Map & map) {
  io::ReadError result = io::kNoError;
  for (auto const & item : variables) {
    io::CBlock_ptr<io::CBlock_func> const func(item);
    if (!func) {
      Tell(kItemIsNoFunction, item->Name());
      result = io::kWarning;
      continue;
    }
    // A name that is there already does not stop loading: the later one counts.
    if (!manager.IsValidOutputVariableName(func->Name(), false)) {
      Tell(kBadNameInDesign, func->Name());
      continue;
    }
    auto variable = std::make_unique<OutputVariable>(func->Name());
    if (variable->ReadFromFunc(*func, func->begin()))
      Enter(map, std::move(variable));
    else
      result = io::kWarning;
  }
  return result;
}

} // namespace outputvariables
