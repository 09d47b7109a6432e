#pragma once

#include "products/rfcircuit/engine/network/SParameterTable.h"

#include <cstdint>

namespace rf {

/** Whether a frequency lies between the first and the last one of a table, both included. */
bool Covers(SParameterTable const & table, double frequency);

/** S-parameters at a frequency that the table covers: those of the table at its own frequencies, bit for bit, and
    between two of them a straight line in real and imaginary part.  Frequencies that differ by less than 1e-12 of
    themselves are one, as sums of steps are. */
SMatrix ParametersAt(SParameterTable const & table, double frequency);

/** Equal for tables of equal numbers.  (FNV-1a, 64 bits.) */
std::uint64_t Checksum(SParameterTable const & table);

} // namespace rf
