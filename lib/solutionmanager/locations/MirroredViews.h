#pragma once

#include "solutionmanager/locations/CMirroredDataMap.h"

#include <map>
#include <vector>

/// What all families of stores ask of a view, whatever an entry holds.
namespace mirrored {

template <class View> bool HasOriginalVersion(CMirroredDataMap const & store, View const & working, long version) {
  for (auto const & entry : working)
    if (store.GetOriginalVersion(entry.first.GetVersionID()) == version)
      return true;
  return false;
}

template <class View> void CountVariations(View const & working, std::map<AString, int> & variations) {
  for (auto const & entry : working)
    ++variations[entry.first.GetVariation()];
}

/// Calls `remove`, which gives the next entry, on every entry that `isMeant` takes.
template <class View, class IsMeant, class Remove> void RemoveWhere(View & view, IsMeant isMeant, Remove remove) {
  for (auto entry = view.begin(); entry != view.end();)
    entry = isMeant(entry->first) ? remove(entry) : std::next(entry);
}

inline auto IsOf(AString const & variation) {
  return [&variation](VariationIDIndex const & key) { return key.GetVariation() == variation; };
}

} // namespace mirrored
