#pragma once

#include "basekit/diag/Assert.h"
#include "solutionmanager/undo/Graveyard.h"

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

template <class Map> bool HoldsObject(Map const & map, typename Map::mapped_type value) {
  return std::any_of(map.begin(), map.end(), [value](auto const & item) { return item.second == value; });
}

/// The one routine of undo and redo: one list leaves the live map for the deleted map, the other comes back.  Without
/// a deleted map the lists alone know what is outside.  An object that only changes its key was never deleted.
template <class Checks, class Map>
void MoveItems(Map const & leaving, Map const & arriving, Map & liveMap, Map * deletedMap, Graveyard<Map> & graveyard) {
  for (auto const & [key, value] : leaving) {
    Checks::IsThere(liveMap, key);
    liveMap.erase(key);
    if (deletedMap && !HoldsObject(arriving, value))
      graveyard.Enter(*deletedMap, key, value);
  }
  for (auto const & [key, value] : arriving) {
    Checks::IsFree(liveMap, key);
    auto const [at, isFree] = liveMap.emplace(key, value);
    if (!isFree && at->second != value) {
      graveyard.Keep(key, at->second);
      at->second = value;
    }
    if (deletedMap)
      graveyard.Leave(*deletedMap, key, value);
    else
      graveyard.Forget(value);
  }
}

/// Frees what a record without a deleted map has outside the live map when it dies, but for what another record may
/// bring back: that waits for the last of them.
template <class Map> void DeleteOutside(Map const & outside, Map const & inside, Graveyard<Map> & graveyard) {
  std::map<typename Map::mapped_type, typename Map::key_type> doomed;
  for (auto const & [key, object] : outside)
    doomed.emplace(object, key);
  for (auto const & item : inside)
    doomed.erase(item.second);
  for (auto const & [object, key] : doomed) {
    graveyard.Forget(object);
    if (graveyard.IsMentioned(object))
      graveyard.Keep(key, object);
    else
      delete object;
  }
}

} // namespace undo
