#pragma once

#include <string>

namespace bench {

/// What one frequency costs in the solver, and what refactoring and solving the same matrix for as many right-hand
/// sides costs with calls of the sparse library alone.
struct OneFrequencyCost {
  int unknowns = 0;
  double seconds = 0;
  double librarySeconds = 0;
  /// Between the solutions of the two.
  double difference = 0;
};

/// The middle of so many measurements, both taken in turn.  Lines of a netlist with two ports.
OneFrequencyCost MeasureOneFrequency(std::string const & lines, int repeats);

} // namespace bench
