#pragma once

#include "basekit/value/ranged/RangedFunction.h"

/// The functions of each category, in the order of the catalogue.
namespace val::ranged {

std::span<RangedFunction const> MathFunctions();
std::span<RangedFunction const> PulseFunctions();
std::span<RangedFunction const> PulseStreamFunctions();
std::span<RangedFunction const> ShootFunctions();
std::span<RangedFunction const> ResponseFunctions();
std::span<RangedFunction const> ErrorFunctions();
std::span<RangedFunction const> PeriodFunctions();
std::span<RangedFunction const> GainFunctions();
std::span<RangedFunction const> LobeFunctions();
std::span<RangedFunction const> EyeFunctions();

} // namespace val::ranged
