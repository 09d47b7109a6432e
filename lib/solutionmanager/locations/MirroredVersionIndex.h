#pragma once

#include <unordered_map>

/// Answers over a map from original to mirrored versions without a walk: the first original, in key order, of a
/// mirrored number.  Must see every insertion; entries are never removed.
class MirroredVersionIndex {
public:
  void Inserted(long original, long mirrored) {
    auto const [place, isNew] = m_originals.try_emplace(mirrored, original);
    if (!isNew && original < place->second)
      place->second = original;
  }
  /// Null when nothing is mirrored to the number.
  long const * FindOriginal(long mirrored) const {
    auto const found = m_originals.find(mirrored);
    return found == m_originals.end() ? nullptr : &found->second;
  }

private:
  std::unordered_map<long, long> m_originals;
};
