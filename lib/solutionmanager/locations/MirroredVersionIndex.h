#pragma once

#include "solutionmanager/address/HashIndex.h"

/// Answers over a map from original to mirrored versions without a walk or a descent: the mirrored number of an
/// original, and the first original, in key order, of a mirrored number.  Must see every insertion; entries are never
/// removed.
class MirroredVersionIndex {
public:
  void Inserted(long original, long mirrored) {
    m_byOriginal.Insert(Hash(original), {original, mirrored});
    Pair * const known = m_byMirrored.Find(Hash(mirrored), [=](Pair const & pair) { return pair.number == mirrored; });
    if (!known)
      m_byMirrored.Insert(Hash(mirrored), {mirrored, original});
    else if (original < known->partner)
      known->partner = original;
  }
  /// Null for a version that is no original.
  long const * FindMirrored(long original) const { return FindPartner(m_byOriginal, original); }
  /// Null when nothing is mirrored to the number.
  long const * FindOriginal(long mirrored) const { return FindPartner(m_byMirrored, mirrored); }

private:
  struct Pair {
    long number = 0;
    long partner = 0;
  };

  static std::uint64_t Hash(long number) { return static_cast<std::uint64_t>(number); }
  static long const * FindPartner(HashIndex<Pair> const & index, long number) {
    Pair const * const found = index.Find(Hash(number), [=](Pair const & pair) { return pair.number == number; });
    return found ? &found->partner : nullptr;
  }

  HashIndex<Pair> m_byOriginal;
  HashIndex<Pair> m_byMirrored;
};
