#include "solutionmanager/undo/SolutionMapDeltaState.h"

#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"

template class MapDeltaState<long, BaseSolution *, std::less<long>>;
template class MapDeltaState<long, BaseSimulationSetup *, std::less<long>>;
template class SolutionMapDeltaState<long, BaseSolution *>;
template class SolutionMapDeltaState<long, BaseSimulationSetup *>;
