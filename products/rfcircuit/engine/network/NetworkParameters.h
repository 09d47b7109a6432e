#pragma once

#include "products/rfcircuit/engine/network/SMatrix.h"

#include <optional>
#include <vector>

namespace rf {

/** What the S-parameters of real, positive reference impedances say of the network itself: voltages of the ports for
   currents into them, in ohm, Z = sqrt(z) (1 + S) (1 - S)^-1 sqrt(z).  Nothing where the network has none, such as a
   series element without a way to ground. */
std::optional<SMatrix> ImpedanceMatrix(SMatrix const & s, std::vector<double> const & z0);

/** Currents into the ports for voltages, in siemens: Y = (1 / sqrt(z)) (1 - S) (1 + S)^-1 (1 / sqrt(z)). */
std::optional<SMatrix> AdmittanceMatrix(SMatrix const & s, std::vector<double> const & z0);

} // namespace rf
