#pragma once

#include "products/rfcircuit/engine/network/SMatrix.h"

#include <optional>
#include <vector>

namespace rf {

/** The same network seen from other reference impedances z', of power waves: S' = (M* + P* S) (P + M S)^-1, where P and
   M hold (z + z') / (2 sqrt(z Re z')) and (z - z') / (2 sqrt(z Re z')) of each port.  The former impedances are real
   and positive, the others have a positive real part.  Nothing where that has no solution: a network with gain may send
   waves without getting any. */
std::optional<SMatrix> Renormalized(SMatrix const & s, std::vector<double> const & from,
                                    std::vector<std::complex<double>> const & to);
/** From one real, positive impedance at all ports. */
std::optional<SMatrix> Renormalized(SMatrix const & s, std::vector<double> const & from, double to);

} // namespace rf
