#pragma once

#include "plotkit/cache/CSimValueCache.h"

class ISolvedColumns;
class VariationSamples;

/// Gathers what an update reads of the solved data, and gives it to the point set's cache at the end.
class SolvedValueKeeper {
public:
  /// Keeps the sim values that were asked for at one variation, with the axes of these names.  So many variations, this
  /// one among them, are still to come.
  void Keep(std::size_t point, AString const & variation, ISolvedColumns const & columns,
            VariationSamples const & samples, std::vector<AString> const & axes, std::size_t pointsToCome);
  /// In the order of the points, in the place of what the cache has of the same values.
  void StoreIn(CSimValueCacheV & cache, long version);

private:
  std::map<SimValue const *, CSimValueCacheV::Numbers> m_values;
  std::map<AString, CSimValueCacheV::Numbers, AString::NoCaseLess> m_axes;
};
