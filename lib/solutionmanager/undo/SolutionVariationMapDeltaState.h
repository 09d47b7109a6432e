#pragma once

#include "basekit/command/KelvroDeltaState.h"
#include "solutionmanager/address/VariationIDIndex.h"
#include "solutionmanager/undo/Graveyard.h"

#include <map>

class BaseSolutionVariation;

/// Variations that were added to and removed from a solution, for a caller that wants that undone.  Ownership is that
/// of MapDeltaState.  For maps of the caller's own: a solution's live map has tables beside it that hear of no change
/// made here.
class SolutionVariationMapDeltaState : public KelvroDeltaState {
public:
  using Map = std::map<VariationIDIndex, BaseSolutionVariation *>;

  SolutionVariationMapDeltaState(Map * liveMap, Map * deletedMap, bool changeDone);
  ~SolutionVariationMapDeltaState() override;

  void UndoIt() override;
  void RedoIt() override;

  /// The key is the variation's own: its text and version, with the ID that the manager knows.
  void Record(BaseSolutionVariation * variation, bool inserted);

private:
  void Apply(Map const & leaving, Map const & arriving);

  Map * m_srcMap;
  Map * m_deletedMap;
  Map m_insertedItems;
  Map m_removedItems;

  std::shared_ptr<undo::Graveyard<Map>> m_graveyard;
};
