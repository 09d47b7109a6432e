#include "solutionmanager/model/VariationIdTable.h"

#include "basekit/text/CaseFolding.h"
#include "basekit/value/VariableValues.h"
#include "basekit/value/variation/VariationText.h"

namespace {

using Entry = VariationIdTable::Entry;

std::uint64_t HashOfID(long id) { return static_cast<std::uint64_t>(id); }

bool ComesBefore(Entry const & a, Entry const & b) { return AString::NoCaseLess()(a.first, b.first); }

bool IsEqual(Entry const & entry, AString const & variation) {
  return VariableValues::AreVariationKeysEqual(entry.first, variation);
}

} // namespace

void VariationIdTable::Inserted(Map::const_iterator entry) {
  Entry const * const added = &*entry;
  m_byText.Insert(text::HashNoCase(added->first.View()), {added->first, added->second});
  if (m_hasByValue)
    InsertByValue(m_byValue, *added);
  auto const hasSameID = [added](Entry const * other) { return other->second == added->second; };
  Entry const ** const sameID = m_byID.Find(HashOfID(added->second), hasSameID);
  if (!sameID)
    m_byID.Insert(HashOfID(added->second), added);
  else if (ComesBefore(*added, **sameID))
    *sameID = added;
}

long const * VariationIdTable::Find(AString const & variation) const {
  auto const hasText = [&variation](TextAndID const & entry) { return AString::MatchNoCase(entry.text, variation); };
  TextAndID const * const found = m_byText.Find(text::HashNoCase(variation.View()), hasText);
  return found ? &found->id : nullptr;
}

void VariationIdTable::InsertByValue(HashIndex<Entry const *> & table, Entry const & entry) {
  table.Insert(VariationText(entry.first).Key(), &entry);
}

HashIndex<Entry const *> const & VariationIdTable::ByValue(Map const & map) const {
  if (!m_hasByValue) {
    m_byValue.Reserve(map.size());
    for (auto const & entry : map)
      InsertByValue(m_byValue, entry);
    m_hasByValue = true;
  }
  return m_byValue;
}

Entry const * VariationIdTable::FindEqual(Map const & map, AString const & variation) const {
  std::vector<std::uint64_t> keys;
  if (!VariationText(variation).ProbeKeys(keys)) {
    for (auto const & entry : map)
      if (IsEqual(entry, variation))
        return &entry;
    return nullptr;
  }
  Entry const * first = nullptr;
  for (std::uint64_t const key : keys)
    ByValue(map).Find(key, [&](Entry const * entry) {
      if ((!first || ComesBefore(*entry, *first)) && IsEqual(*entry, variation))
        first = entry;
      return false; // all of them are looked at
    });
  return first;
}

AString const * VariationIdTable::FindText(long id) const {
  Entry const * const * const found =
      m_byID.Find(HashOfID(id), [id](Entry const * entry) { return entry->second == id; });
  return found ? &(*found)->first : nullptr;
}
