#pragma once

#include "basekit/value/ranged/RangedTrace.h"
#include "basekit/value/units/Units.h"

#include <span>
#include <string_view>

namespace val {

/// A number that a ranged function takes besides its trace, in SI units unless a unit is told.
struct RangedParameter {
  std::wstring_view name;
  double defaultValue = 0.0;
  Units::FullUnitType unit = Units::kNoUnits;
};

/// What a ranged function reads of a trace.
enum class RangedInput {
  kRealTrace, ///< a response over time: offered for real traces, a complex one counts by its magnitude
  kAnyTrace,  ///< offered for real and complex traces, a complex one counts by its magnitude
  kGain       ///< a response over frequency: offered for complex traces; real ones too are used as they are
};

/// A measurement that turns a trace into one number.  The table is fixed and needs no set-up; entries live for ever.
/// Everything is in SI units.  No value is NaN: nothing here throws or reports.
struct RangedFunction {
  std::wstring_view name;
  RangedInput input = RangedInput::kRealTrace;
  std::span<RangedParameter const> parameters;
  bool needsSpan =
      false; ///< no value for fewer than two samples, when they share one x, or when their span is no number
  /// The arithmetic alone, for a trace in order and as many parameters as told, none of them NaN; see Measure.
  double (*formula)(RangedTrace const & trace, double const * parameters) = nullptr;
};

/// All 87, in the order of the catalogue.
std::span<RangedFunction const> RangedFunctions();

/// By name without case; null when there is none.
RangedFunction const * FindRangedFunction(std::wstring_view name);

/// The place of a parameter by name without case, or -1.
int FindRangedParameter(RangedFunction const & function, std::wstring_view parameter);

/// What the function says of the trace; NaN when it has nothing to say.  Parameters count in the order of the
/// function's own; those not given have their defaults.  A NaN among them, or more of them than the function
/// takes, is no value.  One trace may be measured by many functions.
double Measure(RangedFunction const & function, RangedTrace const & trace, std::span<double const> parameters = {});

} // namespace val
