#pragma once

#include "plotkit/pointset/SolutionPointSet.h"

#include <complex>
#include <cstddef>
#include <span>
#include <vector>

class Trace;

namespace bench {

/// Two vectors that take the numbers of variation after variation, with room for all of them from the beginning.
class Copy {
public:
  explicit Copy(std::size_t samples);
  /// The numbers are pairs.
  void Add(std::span<double const> axis, std::span<double const> numbers);
  /// Throws when another number of samples came.
  void Finish() const;

private:
  std::size_t m_samples;
  std::vector<double> m_x;
  std::vector<std::complex<double>> m_y;
};

Trace & TraceOf(SolutionPointSet & pointSet);
/// Throws when the trace has not so many samples, or the last one is another number, or one in decibels.
void CheckTrace(Trace const & trace, std::size_t samples, std::complex<double> last, bool isComplex);

} // namespace bench
