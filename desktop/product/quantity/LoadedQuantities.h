#pragma once

#include "basekit/text/AString.h"
#include "desktop/product/quantity/ISolvedQuantities.h"

#include <memory>
#include <vector>

class BaseSolutionVariation;

namespace desktop {

/// Keeps a variation's data in memory; what was there before stays when this goes.
class VariationInMemory {
public:
  VariationInMemory(BaseSolutionVariation & variation, bool wasThere) : m_variation(variation), m_wasThere(wasThere) {}
  ~VariationInMemory();
  VariationInMemory(VariationInMemory const &) = delete;
  VariationInMemory & operator=(VariationInMemory const &) = delete;

  BaseSolutionVariation & Get() const { return m_variation; }
  /// The variation goes away by itself, and may be gone already.
  void Abandon() { m_wasThere = true; }

private:
  BaseSolutionVariation & m_variation;
  bool m_wasThere;
};

/// What an extractor has loaded: a variation, and the samples of one report type that count.
struct LoadedQuantities {
  AString variation;
  std::unique_ptr<VariationInMemory> memory;
  std::unique_ptr<ISolvedQuantities> quantities; ///< refers to the memory
  unsigned reportType = 0;
  std::vector<double> axis; ///< of the samples that count; empty for single numbers
  /// Which samples count where not all do.
  bool isNarrowed = false;
  std::vector<std::size_t> places;
};

} // namespace desktop
