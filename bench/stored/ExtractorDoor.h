#pragma once

#include "solutionmanager/model/BaseSolution.h"

namespace bench {

/// A solution takes its extractor from its own product alone; this is the way in for a measurement.
class ExtractorDoor : public BaseSolution {
public:
  /// The solution owns it from then on.
  static void Enter(BaseSolution & solution, BaseSimDataExtractor * extractor) {
    (solution.*&ExtractorDoor::SetExtractor)(extractor);
  }
};

} // namespace bench
