#pragma once

#include "basekit/value/ValueState.h"

#include <vector>

namespace desktop {
struct QuantityValues;
}

namespace command {

/// What a quantity's unit says where it is one that is known; otherwise the numbers count as they are.
ValueState StateOf(desktop::QuantityValues const & quantity);
/// The values in SI units, where the unit is known.
std::vector<double> ValuesInSI(desktop::QuantityValues const & quantity);

} // namespace command
