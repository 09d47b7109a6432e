#include "solutionmanager/undo/SolutionVariationMapDeltaState.h"

#include "basekit/diag/Assert.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionVariation.h"
#include "solutionmanager/undo/MoveItems.h"

namespace {

/// As undo::KeyChecks; a variation's key is its index.
struct IndexChecks {
  using Map = SolutionVariationMapDeltaState::Map;
  static void IsThere(Map const & m_srcMap, VariationIDIndex const & index) {
    KVRO_ASSERT(m_srcMap.find(index) != m_srcMap.end());
  }
  static void IsFree(Map const & m_srcMap, VariationIDIndex const & index) {
    KVRO_ASSERT(m_srcMap.find(index) == m_srcMap.end());
  }
};

} // namespace

SolutionVariationMapDeltaState::SolutionVariationMapDeltaState(Map * liveMap, Map * deletedMap, bool changeDone)
    : KelvroDeltaState(changeDone), m_srcMap(liveMap), m_deletedMap(deletedMap),
      m_graveyard(undo::GraveyardOf(deletedMap ? deletedMap : liveMap)) {}

SolutionVariationMapDeltaState::~SolutionVariationMapDeltaState() {
  if (m_deletedMap)
    return;
  if (IsStateChangeDone())
    undo::DeleteOutside(m_removedItems, m_insertedItems, *m_graveyard);
  else
    undo::DeleteOutside(m_insertedItems, m_removedItems, *m_graveyard);
}

void SolutionVariationMapDeltaState::UndoIt() {
  KelvroDeltaState::UndoIt();
  Apply(m_insertedItems, m_removedItems);
}

void SolutionVariationMapDeltaState::RedoIt() {
  KelvroDeltaState::RedoIt();
  Apply(m_removedItems, m_insertedItems);
}

void SolutionVariationMapDeltaState::Record(BaseSolutionVariation * variation, bool inserted) {
  VariationIDIndex const index(variation->GetDesignVariationKey(), variation->GetVersionID(),
                               variation->GetBaseSolution()->GetSolutionMgr());
  if (inserted) {
    KVRO_ASSERT(m_insertedItems.find(index) == m_insertedItems.end());
    m_insertedItems.insert_or_assign(index, variation);
  } else {
    KVRO_ASSERT(m_removedItems.find(index) == m_removedItems.end());
    m_removedItems.insert_or_assign(index, variation);
  }
}

void SolutionVariationMapDeltaState::Apply(Map const & leaving, Map const & arriving) {
  undo::MoveItems<IndexChecks>(leaving, arriving, *m_srcMap, m_deletedMap, *m_graveyard);
  for (Map const * moved : {&leaving, &arriving})
    for (auto const & item : *moved)
      item.second->GetBaseSolution()->UpdatePostProcessingItems(false);
}
