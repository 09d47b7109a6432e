#pragma once

#include "products/rfcircuit/engine/network/SMatrix.h"

#include <optional>
#include <vector>

namespace rf {

/** The same network seen from other real, positive reference impedances: S' = (M + P S) (P + M S)^-1, where P and M
   hold (z + z') / (2 sqrt(z z')) and (z - z') / (2 sqrt(z z')) of each port.  Nothing where that has no solution: a
   network with gain may send waves without getting any. */
std::optional<SMatrix> Renormalized(SMatrix const & s, std::vector<double> const & from, double to);

} // namespace rf
