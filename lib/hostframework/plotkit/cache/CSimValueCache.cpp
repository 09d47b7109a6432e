#include "plotkit/cache/CSimValueCache.h"

#include "plotkit/simvalue/SimValue.h"

CSimValueCacheV::Version const * CSimValueCacheV::FindVersion(long version) const {
  auto const found = m_versions.find(version);
  return found != m_versions.end() ? &found->second : nullptr;
}

CSimValueCacheV::Numbers const * CSimValueCacheV::Find(long version, SimValue const & value) const {
  Version const * const kept = FindVersion(version);
  if (!kept)
    return nullptr;
  auto const entries = kept->values.find(value.GetText());
  if (entries == kept->values.end())
    return nullptr;
  for (Entry const & entry : entries->second)
    if (entry.context == value.GetSimValueContext())
      return &entry.numbers;
  return nullptr;
}

CSimValueCacheV::Numbers & CSimValueCacheV::At(long version, AString const & text, SimValueContext const & context) {
  std::vector<Entry> & entries = m_versions[version].values[text];
  for (Entry & entry : entries)
    if (entry.context == context)
      return entry.numbers;
  entries.push_back({context, {}});
  return entries.back().numbers;
}

CSimValueCacheV::Numbers & CSimValueCacheV::ForEdit(long version, SimValue const & value) {
  return At(version, value.GetText(), value.GetSimValueContext());
}

void CSimValueCacheV::Store(long version, SimValue const & value, Numbers numbers) {
  ForEdit(version, value) = std::move(numbers);
}

CSimValueCacheV::Numbers const * CSimValueCacheV::FindAxis(long version, AString const & variable) const {
  Version const * const kept = FindVersion(version);
  if (!kept)
    return nullptr;
  auto const found = kept->axes.find(variable);
  return found != kept->axes.end() ? &found->second : nullptr;
}

CSimValueCacheV::Numbers & CSimValueCacheV::AxisForEdit(long version, AString const & variable) {
  return m_versions[version].axes[variable];
}

void CSimValueCacheV::Invalidate(int version, AString const * text) {
  auto const kept = m_versions.find(version);
  if (kept == m_versions.end())
    return;
  if (text)
    kept->second.values.erase(*text);
  if (!text || kept->second.values.empty())
    m_versions.erase(kept);
}

void CSimValueCacheV::KeepVersion(long version) {
  std::erase_if(m_versions, [version](auto const & kept) { return kept.first != version; });
}

void CSimValueCacheV::Forget(long version, std::function<bool(AString const & variation)> const & isChosen) {
  auto const kept = m_versions.find(version);
  if (kept == m_versions.end())
    return;
  for (auto & [text, entries] : kept->second.values)
    for (Entry & entry : entries)
      entry.numbers.segments.MarkMissing(isChosen);
  for (auto & [variable, numbers] : kept->second.axes)
    numbers.segments.MarkMissing(isChosen);
}

void CSimValueCache::Invalidate(CSimValueCacheV & cache, SimValue const * value) {
  if (!value)
    return;
  for (auto kept = cache.m_versions.begin(); kept != cache.m_versions.end();) {
    auto & values = kept->second.values;
    auto const entries = values.find(value->GetText());
    if (entries != values.end())
      std::erase_if(entries->second, [value](CSimValueCacheV::Entry const & entry) {
        return entry.context == value->GetSimValueContext();
      });
    if (entries != values.end() && entries->second.empty())
      values.erase(entries);
    kept = values.empty() ? cache.m_versions.erase(kept) : std::next(kept);
  }
}
