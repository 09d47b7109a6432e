#pragma once

#include "basekit/text/AString.h"
#include "basekit/value/units/Units.h"

namespace ranged {

/// What a function's result scales with.
enum class Scale { kNone, kX, kY, kYY, kXY, kXYY };

using ScaleOperation = void (*)(double & result, AString & units, double value, Units::FullUnitType xUnits,
                                Units::FullUnitType yUnits);

ScaleOperation ScaleOperationOf(Scale scale);

} // namespace ranged
