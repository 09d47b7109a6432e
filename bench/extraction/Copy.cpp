#include "bench/extraction/Copy.h"

#include "bench/support/Measure.h"
#include "plotkit/trace/Trace.h"
#include "plotkit/trace/TraceComponent.h"

#include <cmath>
#include <list>

namespace bench {

Copy::Copy(std::size_t samples) : m_samples(samples) {
  m_x.reserve(samples);
  m_y.reserve(samples);
}

void Copy::Add(std::span<double const> axis, std::span<double const> numbers) {
  m_x.insert(m_x.end(), axis.begin(), axis.end());
  auto const * const first = reinterpret_cast<std::complex<double> const *>(numbers.data());
  m_y.insert(m_y.end(), first, first + numbers.size() / 2);
}

void Copy::Finish() const {
  Require(m_x.size() == m_samples && m_y.size() == m_samples, "not all was copied");
  asm volatile("" : : "r"(m_x.data()), "r"(m_y.data()) : "memory");
}

Trace & TraceOf(SolutionPointSet & pointSet) {
  std::list<Trace *> traces;
  pointSet.GetAvailableTraces(traces);
  return *traces.front();
}

void CheckTrace(Trace const & trace, std::size_t samples, std::complex<double> last, bool isComplex) {
  Require(trace.GetValueCount() == samples, "the trace is not whole");
  std::complex<double> const expected = isComplex ? last : 20.0 * std::log10(std::abs(last));
  std::complex<double> const got = trace.GetOrdinate()->GetValues().GetNumber(samples - 1);
  Require(std::abs(got - expected) <= 1e-12 * std::abs(expected), "the numbers differ");
}

} // namespace bench
