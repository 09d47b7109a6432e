#pragma once

#include "plotkit/cache/CSimValueCache.h"
#include "plotkit/simvalue/ISolvedColumns.h"

#include <unordered_map>

/// The data of a variation as a point set's cache kept it at one version.  The cache must not change meanwhile.
class CachedColumns : public ISolvedColumns {
public:
  CachedColumns(CSimValueCacheV const & cache, long version) : m_cache(cache), m_version(version) {}

  /// False unless the cache has all of it, with equally many samples, at the variation.
  bool GoTo(AString const & variation, std::vector<SimValue const *> const & values, std::vector<AString> const & axes);

  std::size_t GetSampleCount() const override { return m_count; }
  bool GetVariableColumn(AString const & variable, std::vector<double> & values) const override;
  bool GetSimValueColumn(SimValue const & value, std::vector<double> & numbers) const override;
  bool GetSimValueColumn(SimValue const & value, std::vector<AComplex<double>> & numbers) const override;

private:
  using Numbers = CSimValueCacheV::Numbers;
  using Segment = SampleSegments::Segment;

  /// Null when there is nothing of the variation.
  Segment const * Find(Numbers const * numbers) const;
  template <class Number, class Convert>
  bool Copy(Numbers const * numbers, std::vector<Number> & copied, Convert convert) const;

  CSimValueCacheV const & m_cache;
  long m_version;
  AString m_variation;
  std::size_t m_count = 0;
  mutable std::unordered_map<Numbers const *, std::unordered_map<AString, Segment const *>> m_segments;
};
