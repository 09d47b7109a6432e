#pragma once

#include "solutionmanager/extraction/BaseSimDataExtractor.h"

namespace rfcircuit {

/// The report side's door to one S-parameter solution; without it the solution would not count as valid.
class RfExtractor : public BaseSimDataExtractor {
public:
  using BaseSimDataExtractor::BaseSimDataExtractor;
};

} // namespace rfcircuit
