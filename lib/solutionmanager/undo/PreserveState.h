#pragma once

#include "basekit/command/KelvroCommand.h"
#include "solutionmanager/undo/CPreserveStateDeltaState_T.h"

/// Gives an object a new version: undoable with a command, which gets a delta state only when something changed;
/// directly without one.
template <class T> void PreserveState(T & object, long version, KelvroCommand * command, long & current) {
  if (!command) {
    current = version;
    return;
  }
  auto * delta = new CPreserveStateDeltaState_T<T, long>(version);
  delta->Add(&object);
  if (delta->GetCount() > 0)
    command->AddDeltaState(delta);
  else
    delete delta;
}
