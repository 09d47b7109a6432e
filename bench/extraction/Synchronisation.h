#pragma once

#include <cstddef>
#include <string>

namespace bench {

/// What it costs to ask so many traces, ten to a report, whether an edit reaches them.
struct SynchronisationCost {
  std::size_t texts = 0;          ///< different ones: one ordinate for each trace, and the abscissa of all
  std::size_t analyses = 0;       ///< of texts, in one synchronisation
  double seconds = 0.0;           ///< of one synchronisation with an edit that reaches none
  double secondsOfAnalyses = 0.0; ///< of analysing each of the texts once, and nothing else
};

/// Throws when the edit reaches a trace, or one that reaches all misses one.
SynchronisationCost MeasureSynchronisation(std::string const & folder, std::size_t traces, int repeats);

} // namespace bench
