#pragma once

#include "products/rfcircuit/engine/network/SMatrix.h"

#include <vector>

namespace rf {

/** S-parameters over frequency: one matrix for each frequency, with respect to one real, positive reference impedance
    for each port.  Frequencies are in Hz and ascend, impedances in ohm. */
struct SParameterTable {
  std::vector<double> frequencies;
  std::vector<SMatrix> matrices;
  std::vector<double> z0;

  std::size_t Ports() const { return z0.size(); }
};

} // namespace rf
