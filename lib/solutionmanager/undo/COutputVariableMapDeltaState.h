#pragma once

#include "basekit/text/AString.h"
#include "solutionmanager/undo/MapDeltaState.h"

class OutputVariable;

/// Output variables that were added to or removed from a manager's map.  There is no deleted map: the record keeps a
/// removed variable for undo, and frees it when it dies without one.
class COutputVariableMapDeltaState : public MapDeltaState<AString, OutputVariable *, AString::NoCaseLess> {
public:
  explicit COutputVariableMapDeltaState(Map * outputVariables, bool changeDone = true);
  ~COutputVariableMapDeltaState() override;
};

extern template class MapDeltaState<AString, OutputVariable *, AString::NoCaseLess>;
