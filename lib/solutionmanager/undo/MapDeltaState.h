#pragma once

#include "basekit/command/KelvroDeltaState.h"
#include "solutionmanager/undo/MoveItems.h"

#include <map>

/// Items that were added to and removed from a map whose owner made the change itself.  Removed items wait in the
/// deleted map, whose owner frees them; without a deleted map this record owns what is outside the live map when it
/// dies.  An item whose place in the deleted map another one takes goes to that map's graveyard.  The maps outlive all
/// undo and redo.
template <class K, class V, class Cmp> class MapDeltaState : public KelvroDeltaState {
public:
  using Map = std::map<K, V, Cmp>;

  /// changeDone: the maps hold the change already; otherwise the first RedoIt makes it.
  explicit MapDeltaState(Map * liveMap, Map * deletedMap = nullptr, bool changeDone = true);
  ~MapDeltaState() override;

  void UndoIt() override;
  void RedoIt() override;

  /// Each key once on each side; of a repeated one the later value counts.
  void Record(K const & keyVal, V const & value, bool inserted);

protected:
  Map const & InsertedItems() const { return m_insertedItems; }
  Map const & RemovedItems() const { return m_removedItems; }

private:
  Map * m_srcMap;
  Map * m_deletedMap;
  Map m_insertedItems;
  Map m_removedItems;

  std::shared_ptr<undo::Graveyard<Map>> m_graveyard;
};

// The bodies are not inline, so that an instance that is declared extern is made in one place alone: where the
// items' class is known.

template <class K, class V, class Cmp>
MapDeltaState<K, V, Cmp>::MapDeltaState(Map * liveMap, Map * deletedMap, bool changeDone)
    : KelvroDeltaState(changeDone), m_srcMap(liveMap), m_deletedMap(deletedMap),
      m_graveyard(undo::GraveyardOf(deletedMap ? deletedMap : liveMap)) {}

template <class K, class V, class Cmp> MapDeltaState<K, V, Cmp>::~MapDeltaState() {
  if (m_deletedMap)
    return;
  for (Map const * const items : {&m_insertedItems, &m_removedItems})
    for (auto const & item : *items)
      m_graveyard->Dismiss(item.second);
  if (IsStateChangeDone())
    undo::DeleteOutside(m_removedItems, m_insertedItems, *m_graveyard);
  else
    undo::DeleteOutside(m_insertedItems, m_removedItems, *m_graveyard);
}

template <class K, class V, class Cmp> void MapDeltaState<K, V, Cmp>::UndoIt() {
  KelvroDeltaState::UndoIt();
  undo::MoveItems<undo::KeyChecks>(m_insertedItems, m_removedItems, *m_srcMap, m_deletedMap, *m_graveyard);
}

template <class K, class V, class Cmp> void MapDeltaState<K, V, Cmp>::RedoIt() {
  KelvroDeltaState::RedoIt();
  undo::MoveItems<undo::KeyChecks>(m_removedItems, m_insertedItems, *m_srcMap, m_deletedMap, *m_graveyard);
}

template <class K, class V, class Cmp>
void MapDeltaState<K, V, Cmp>::Record(K const & keyVal, V const & value, bool inserted) {
  if (inserted)
    KVRO_ASSERT(m_insertedItems.find(keyVal) == m_insertedItems.end());
  else
    KVRO_ASSERT(m_removedItems.find(keyVal) == m_removedItems.end());
  V & item = (inserted ? m_insertedItems : m_removedItems)[keyVal];
  if (!m_deletedMap) {
    m_graveyard->Dismiss(item);
    m_graveyard->Mention(value);
  }
  item = value;
}
