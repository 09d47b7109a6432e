#include "solutionmanager/model/VariationIdTable.h"

#include "basekit/value/VariableValues.h"
#include "basekit/value/variation/VariationText.h"

void VariationIdTable::Inserted(Map::const_iterator entry) {
  m_byValue.emplace(VariationText(entry->first).Key(), &*entry);
  auto const [at, isNew] = m_byID.emplace(entry->second, &entry->first);
  if (!isNew && AString::NoCaseLess()(entry->first, *at->second))
    at->second = &entry->first;
}

namespace {

bool IsEqual(VariationIdTable::Map::value_type const & entry, AString const & variation) {
  return VariableValues::AreVariationKeysEqual(entry.first, variation);
}

} // namespace

VariationIdTable::Map::value_type const * VariationIdTable::FindEqual(Map const & map,
                                                                      AString const & variation) const {
  std::vector<std::uint64_t> keys;
  if (!VariationText(variation).ProbeKeys(keys)) {
    for (auto const & entry : map)
      if (IsEqual(entry, variation))
        return &entry;
    return nullptr;
  }
  Map::value_type const * first = nullptr;
  for (std::uint64_t const key : keys) {
    auto const [begin, end] = m_byValue.equal_range(key);
    for (auto at = begin; at != end; ++at)
      if (IsEqual(*at->second, variation) && (!first || AString::NoCaseLess()(at->second->first, first->first)))
        first = at->second;
  }
  return first;
}

AString const * VariationIdTable::FindText(long id) const {
  auto const at = m_byID.find(id);
  return at == m_byID.end() ? nullptr : at->second;
}
