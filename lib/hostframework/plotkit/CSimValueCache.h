#pragma once

#include "basekit/text/AString.h"
#include "basekit/value/AComplex.h"

#include <map>
#include <vector>

class SimValue;

/// What sim values gave at the points of one solution point set, by solution version.  The numbers stand in the order
/// of the points.
class CSimValueCacheV {
public:
  using Numbers = std::vector<AComplex<double>>;

  /// Null when nothing is kept.
  Numbers const * Find(long version, SimValue const & value) const;
  void Store(long version, SimValue const & value, Numbers numbers);
  /// Drops what one text gave at a version in every context; null means all that was kept of the version.
  void Invalidate(int version, AString const * text);
  void Clear() { m_versions.clear(); }
  bool empty() const { return m_versions.empty(); }

private:
  friend class CSimValueCache;
  using ByValue = std::map<SimValue const *, Numbers>;

  std::map<long, ByValue> m_versions;
};

/// How the data of a point set is given up.
class CSimValueCache {
public:
  /// All that was kept of a version.
  static void Invalidate(CSimValueCacheV & cache, int version) { cache.Invalidate(version, nullptr); }
  /// One value at every version.
  static void Invalidate(CSimValueCacheV & cache, SimValue const * value);
};
