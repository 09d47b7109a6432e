#pragma once

#include "basekit/text/AString.h"

#include <cstdint>
#include <map>
#include <unordered_map>
#include <vector>

/// Answers over a map from variation texts to IDs without a walk of the map: the entry that a text equals by value, and
/// the text of an ID.  Holds references to the map's keys, so it must see every insertion; entries are never removed.
class VariationIdTable {
public:
  using Map = std::map<AString, long, AString::NoCaseLess>;

  void Inserted(Map::const_iterator entry);
  /// The first entry in key order that equals the text by value; null when none does.
  Map::value_type const * FindEqual(Map const & map, AString const & variation) const;
  /// The text that comes first in key order of those with the ID; null for an unknown ID.
  AString const * FindText(long id) const;

private:
  std::unordered_multimap<std::uint64_t, Map::value_type const *> m_byValue;
  std::unordered_map<long, AString const *> m_byID;
};
