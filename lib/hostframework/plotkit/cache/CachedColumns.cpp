#include "plotkit/cache/CachedColumns.h"

#include "basekit/value/AComplex.h"

bool CachedColumns::GoTo(AString const & variation, std::vector<SimValue const *> const & values,
                         std::vector<AString> const & axes) {
  m_variation = variation;
  bool isFirst = true;
  auto const takes = [&](Numbers const * numbers) {
    Segment const * const segment = Find(numbers);
    if (!segment || segment->isMissing || (!isFirst && segment->count != m_count))
      return false;
    m_count = segment->count;
    isFirst = false;
    return true;
  };
  for (SimValue const * const value : values)
    if (!takes(m_cache.Find(m_version, *value)))
      return false;
  for (AString const & axis : axes)
    if (!takes(m_cache.FindAxis(m_version, axis)))
      return false;
  return !isFirst;
}

CachedColumns::Segment const * CachedColumns::Find(Numbers const * numbers) const {
  if (!numbers)
    return nullptr;
  auto const [entry, isNew] = m_segments.try_emplace(numbers);
  if (isNew)
    for (Segment const & segment : numbers->segments.Get())
      entry->second[segment.variation] = &segment;
  auto const found = entry->second.find(m_variation);
  if (found == entry->second.end())
    return nullptr;
  Segment const & segment = *found->second;
  bool const isInside =
      segment.first <= numbers->column.GetCount() && segment.count <= numbers->column.GetCount() - segment.first;
  return isInside ? &segment : nullptr;
}

template <class Number, class Convert>
bool CachedColumns::Copy(Numbers const * numbers, std::vector<Number> & copied, Convert convert) const {
  Segment const * const segment = Find(numbers);
  if (!segment || segment->isMissing || segment->count != m_count)
    return false;
  copied.resize(m_count);
  for (std::size_t i = 0; i < m_count; ++i)
    copied[i] = convert(numbers->column.GetNumber(segment->first + i));
  return true;
}

bool CachedColumns::GetVariableColumn(AString const & variable, std::vector<double> & values) const {
  return Copy(m_cache.FindAxis(m_version, variable), values, [](std::complex<double> const & z) { return z.real(); });
}

bool CachedColumns::GetSimValueColumn(SimValue const & value, std::vector<double> & numbers) const {
  return Copy(m_cache.Find(m_version, value), numbers, [](std::complex<double> const & z) { return z.real(); });
}

bool CachedColumns::GetSimValueColumn(SimValue const & value, std::vector<AComplex<double>> & numbers) const {
  return Copy(m_cache.Find(m_version, value), numbers,
              [](std::complex<double> const & z) { return AComplex<double>(z); });
}
