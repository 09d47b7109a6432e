#pragma once

#include "basekit/diag/Assert.h"

namespace undo {

/// What a key must find in the live map, under the name that reports give it.
struct KeyChecks {
  template <class Map, class Key> static void IsThere(Map const & m_srcMap, Key const & k) {
    KVRO_ASSERT(m_srcMap.find(k) != m_srcMap.end());
  }
  template <class Map, class Key> static void IsFree(Map const & m_srcMap, Key const & k) {
    KVRO_ASSERT(m_srcMap.find(k) == m_srcMap.end());
  }
};

/// The one routine of undo and redo: one list leaves the live map for the deleted map, the other comes back.  Without
/// a deleted map the lists alone know what is outside.
template <class Checks, class Map>
void MoveItems(Map const & leaving, Map const & arriving, Map & liveMap, Map * deletedMap) {
  for (auto const & [key, value] : leaving) {
    Checks::IsThere(liveMap, key);
    liveMap.erase(key);
    if (deletedMap)
      deletedMap->insert_or_assign(key, value);
  }
  for (auto const & [key, value] : arriving) {
    Checks::IsFree(liveMap, key);
    liveMap.insert_or_assign(key, value);
    if (deletedMap)
      deletedMap->erase(key);
  }
}

} // namespace undo
