#include "plotkit/CSimValueCache.h"

#include "plotkit/SimValue.h"

CSimValueCacheV::Numbers const * CSimValueCacheV::Find(long version, SimValue const & value) const {
  auto const values = m_versions.find(version);
  if (values == m_versions.end())
    return nullptr;
  auto const found = values->second.find(&value);
  return found != values->second.end() ? &found->second : nullptr;
}

void CSimValueCacheV::Store(long version, SimValue const & value, Numbers numbers) {
  m_versions[version][&value] = std::move(numbers);
}

void CSimValueCacheV::Invalidate(int version, AString const * text) {
  auto const values = m_versions.find(version);
  if (values == m_versions.end())
    return;
  std::erase_if(values->second, [text](auto const & entry) { return !text || entry.first->GetText() == *text; });
  if (values->second.empty())
    m_versions.erase(values);
}

void CSimValueCache::Invalidate(CSimValueCacheV & cache, SimValue const * value) {
  for (auto & [version, values] : cache.m_versions)
    values.erase(value);
  std::erase_if(cache.m_versions, [](auto const & entry) { return entry.second.empty(); });
}
