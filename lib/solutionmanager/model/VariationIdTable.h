#pragma once

#include "basekit/text/AString.h"
#include "solutionmanager/address/HashIndex.h"

#include <map>

/// Answers over a map from variation texts to IDs without a walk or a descent: the entry of a text, the entry that a
/// text equals by value, the text of an ID.  Holds references to the map's entries, so it must see every insertion;
/// entries are never removed.
class VariationIdTable {
public:
  using Map = std::map<AString, long, AString::NoCaseLess>;
  using Entry = Map::value_type;

  void Inserted(Map::const_iterator entry);
  /// The entry of that text without case; null when there is none.
  Entry const * Find(AString const & variation) const;
  /// The first entry in key order that equals the text by value; null when none does.
  Entry const * FindEqual(Map const & map, AString const & variation) const;
  /// The text that comes first in key order of those with the ID; null for an unknown ID.
  AString const * FindText(long id) const;

private:
  HashIndex<Entry const *> m_byText;
  HashIndex<Entry const *> m_byValue;
  HashIndex<Entry const *> m_byID;
};
