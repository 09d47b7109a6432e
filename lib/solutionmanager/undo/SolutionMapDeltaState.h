#pragma once

#include "solutionmanager/undo/MapDeltaState.h"

#include <functional>

class BaseSimulationSetup;
class BaseSolution;

/// Solutions of a setup, or setups of a manager, that were added or deleted; what is derived from their data learns of
/// each move.
template <class K, class V> class SolutionMapDeltaState : public MapDeltaState<K, V, std::less<K>> {
public:
  using MapDeltaState<K, V, std::less<K>>::MapDeltaState;

  void UndoIt() override;
  void RedoIt() override;

private:
  void UpdatePostProcessing() const;
};

template <class K, class V> void SolutionMapDeltaState<K, V>::UndoIt() {
  MapDeltaState<K, V, std::less<K>>::UndoIt();
  UpdatePostProcessing();
}

template <class K, class V> void SolutionMapDeltaState<K, V>::RedoIt() {
  MapDeltaState<K, V, std::less<K>>::RedoIt();
  UpdatePostProcessing();
}

template <class K, class V> void SolutionMapDeltaState<K, V>::UpdatePostProcessing() const {
  for (auto const & item : this->InsertedItems())
    item.second->UpdatePostProcessingItems(false);
  for (auto const & item : this->RemovedItems())
    item.second->UpdatePostProcessingItems(false);
}

extern template class MapDeltaState<long, BaseSolution *, std::less<long>>;
extern template class MapDeltaState<long, BaseSimulationSetup *, std::less<long>>;
extern template class SolutionMapDeltaState<long, BaseSolution *>;
extern template class SolutionMapDeltaState<long, BaseSimulationSetup *>;
