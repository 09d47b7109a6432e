#pragma once

#include "solutionmanager/extraction/BaseSimDataExtractor.h"

namespace command {

/// The report side's door to one result; without it the solution would not count as valid.
class CommandExtractor : public BaseSimDataExtractor {
public:
  using BaseSimDataExtractor::BaseSimDataExtractor;
};

} // namespace command
