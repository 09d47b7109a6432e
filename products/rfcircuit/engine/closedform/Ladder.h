#pragma once

#include <complex>
#include <vector>

namespace rf {

/** One rung of a ladder between two resistances; value in SI units. */
struct LadderElement {
  enum class Kind { SeriesResistor, SeriesInductor, SeriesCapacitor, ShuntResistor, ShuntInductor, ShuntCapacitor };
  Kind kind;
  double value;
};

/** S21 of a ladder from source to load, by multiplying chain (ABCD) matrices: an independent check of the nodal
    analysis.  Frequency in Hz; above zero where series capacitors or shunt inductors occur. */
std::complex<double> LadderS21(std::vector<LadderElement> const & ladder, double sourceZ0, double loadZ0,
                               double frequency);

} // namespace rf
