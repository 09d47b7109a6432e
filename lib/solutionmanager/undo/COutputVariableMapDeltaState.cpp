#include "solutionmanager/undo/COutputVariableMapDeltaState.h"

#include "plotkit/outputvariable/OutputVariable.h"

template class MapDeltaState<AString, OutputVariable *, AString::NoCaseLess>;

COutputVariableMapDeltaState::COutputVariableMapDeltaState(Map * outputVariables, bool changeDone)
    : MapDeltaState(outputVariables, nullptr, changeDone) {}

COutputVariableMapDeltaState::~COutputVariableMapDeltaState() = default;
