#pragma once

#include "basekit/text/AString.h"
#include "basekit/value/VariableValues.h"
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

/// A question under way: what it brought into memory stays until its end.
struct QuestionUnderWay {
  VariableValues variation;                  ///< of design variables; empty for none in particular
  std::unique_ptr<VariationInMemory> memory; ///< the one that was brought last
  bool hasOwnCatalogue = false;              ///< which holds for the question alone
};

} // namespace desktop
