#pragma once

#include "basekit/command/KelvroDeltaState.h"

/// A change that keeps, for each object, the state that the object does not hold now.
class CPreserveStateDeltaState : public KelvroDeltaState {
public:
  CPreserveStateDeltaState() : KelvroDeltaState(true) {}
};
