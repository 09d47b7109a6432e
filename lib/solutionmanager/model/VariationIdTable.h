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
  /// The ID of that text without case; null when there is none.
  long const * Find(AString const & variation) const;
  /// The first entry in key order that equals the text by value; null when none does.
  Entry const * FindEqual(Map const & map, AString const & variation) const;
  /// The text that comes first in key order of those with the ID; null for an unknown ID.
  AString const * FindText(long id) const;

private:
  static void InsertByValue(HashIndex<Entry const *> & table, Entry const & entry);
  HashIndex<Entry const *> const & ByValue(Map const & map) const;

  // What a look-up compares stands in the table itself.
  struct TextAndID {
    AString text;
    long id = 0;
  };

  HashIndex<TextAndID> m_byText;
  /// Texts must be parsed for it, so it is built when a text that is not there is looked up first.
  mutable HashIndex<Entry const *> m_byValue;
  mutable bool m_hasByValue = false;
  HashIndex<Entry const *, Slots::kRunsOf8> m_byID;
};
