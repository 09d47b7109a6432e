#pragma once

#include <algorithm>
#include <map>
#include <memory>
#include <utility>
#include <vector>

namespace undo {

/// What a deleted map has no room for: objects whose place another object of the same key took.  They stay alive, since
/// an older record may bring them back, and take their place again when it is free.  All records over one map and the
/// map's owner share one; it frees what it still holds when the last of them is gone, or the owner takes it before.
template <class Map> class Graveyard {
public:
  using Key = typename Map::key_type;
  using Value = typename Map::mapped_type;

  Graveyard() = default;
  Graveyard(Graveyard const &) = delete;
  Graveyard & operator=(Graveyard const &) = delete;
  ~Graveyard() {
    for (Value const value : TakeAll())
      delete value;
  }

  void Enter(Map & deleted, Key const & key, Value value) {
    Forget(value);
    auto const [at, isNew] = deleted.emplace(key, value);
    if (isNew || at->second == value)
      return;
    m_displaced.emplace_back(key, at->second);
    at->second = value;
  }
  /// Another object that stands under the key keeps its place.
  void Leave(Map & deleted, Key const & key, Value value) {
    Forget(value);
    auto const at = deleted.find(key);
    if (at == deleted.end() || at->second != value)
      return;
    auto const isSameKey = [&](auto const & item) {
      return !deleted.key_comp()(item.first, key) && !deleted.key_comp()(key, item.first);
    };
    auto const youngest = std::find_if(m_displaced.rbegin(), m_displaced.rend(), isSameKey);
    if (youngest == m_displaced.rend()) {
      deleted.erase(at);
      return;
    }
    at->second = youngest->second;
    m_displaced.erase(std::next(youngest).base());
  }
  /// Of an object that has no place in any map.
  void Keep(Key const & key, Value value) {
    Forget(value);
    m_displaced.emplace_back(key, value);
  }
  /// Of an object that got a place again, or is freed by another.
  void Forget(Value value) {
    std::erase_if(m_displaced, [value](auto const & item) { return item.second == value; });
  }
  /// A record mentions the object and may need it yet; each mention ends by a Dismiss.
  void Mention(Value value) { ++m_mentions[value]; }
  void Dismiss(Value value) {
    if (auto const at = m_mentions.find(value); at != m_mentions.end() && --at->second == 0)
      m_mentions.erase(at);
  }
  bool IsMentioned(Value value) const { return m_mentions.count(value) != 0; }
  template <class Do> void ForEach(Do act) const {
    for (auto const & item : m_displaced)
      act(item.second);
  }
  /// The caller owns them from now on.
  std::vector<Value> TakeAll() {
    std::vector<Value> values;
    for (auto const & item : m_displaced)
      values.push_back(item.second);
    m_displaced.clear();
    return values;
  }

private:
  /// The youngest last.
  std::vector<std::pair<Key, Value>> m_displaced;
  std::map<Value, int> m_mentions; ///< by records that own what is outside
};

/// The one that belongs to a map.
template <class Map> std::shared_ptr<Graveyard<Map>> GraveyardOf(Map const * map) {
  static std::map<Map const *, std::weak_ptr<Graveyard<Map>>> graveyards;
  auto & entry = graveyards[map];
  auto graveyard = entry.lock();
  if (graveyard)
    return graveyard;
  graveyard.reset(new Graveyard<Map>, [map](Graveyard<Map> * ending) {
    graveyards.erase(map);
    delete ending;
  });
  entry = graveyard;
  return graveyard;
}

} // namespace undo
