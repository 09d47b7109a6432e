// Widths of the pulses and periods of a stream.  The threshold is a level in y units, used as it is: no part of the
// amplitude, no hysteresis.

#include "basekit/value/ranged/Crossings.h"
#include "basekit/value/ranged/Distances.h"
#include "basekit/value/ranged/RangedTables.h"
#include "basekit/value/ranged/SteppedTrace.h"

namespace val::ranged {

namespace {

using Told = double (Distances::*)() const;

/// From each crossing of one direction to the next of the other; a pulse cut off by an end of the trace is none
template <bool isPositive, Told told> double Width(RangedTrace const & trace, double const * parameters) {
  SteppedTrace const stepped(trace, parameters[1]);
  Distances widths;
  double start = kNoValue;
  WalkLevel(stepped.X(), stepped.Y(), parameters[0], [&](double x, bool isRising) {
    if (isRising == isPositive)
      start = x;
    else if (!std::isnan(start))
      widths.Add(x - start);
    return true;
  });
  return (widths.*told)();
}

/// From each rising crossing to the next
template <Told told> double Period(RangedTrace const & trace, double const * parameters) {
  SteppedTrace const stepped(trace, parameters[1]);
  Distances periods;
  double start = kNoValue;
  WalkLevel(stepped.X(), stepped.Y(), parameters[0], [&](double x, bool isRising) {
    if (!isRising)
      return true;
    if (!std::isnan(start))
      periods.Add(x - start);
    start = x;
    return true;
  });
  return (periods.*told)();
}

constexpr RangedParameter kStream[] = {{L"Threshold", 0.0}, {L"Number of Points", 0.0}};

constexpr RangedInput kReal = RangedInput::kRealTrace;
constexpr RangedFunction kWidths[] = {
    {L"pw_plus", kReal, kStream, false, Width<true, &Distances::First>},
    {L"pw_minus", kReal, kStream, false, Width<false, &Distances::First>},
    {L"pw_plus_avg", kReal, kStream, false, Width<true, &Distances::Mean>},
    {L"pw_minus_avg", kReal, kStream, false, Width<false, &Distances::Mean>},
    {L"pw_plus_max", kReal, kStream, false, Width<true, &Distances::Greatest>},
    {L"pw_minus_max", kReal, kStream, false, Width<false, &Distances::Greatest>},
    {L"pw_plus_min", kReal, kStream, false, Width<true, &Distances::Least>},
    {L"pw_minus_min", kReal, kStream, false, Width<false, &Distances::Least>},
    {L"pw_plus_rms", kReal, kStream, false, Width<true, &Distances::Rms>},
    {L"pw_minus_rms", kReal, kStream, false, Width<false, &Distances::Rms>},
};
constexpr RangedFunction kPeriods[] = {
    {L"per", kReal, kStream, false, Period<&Distances::Mean>},
    {L"pmax", kReal, kStream, false, Period<&Distances::Greatest>},
    {L"pmin", kReal, kStream, false, Period<&Distances::Least>},
    {L"prms", kReal, kStream, false, Period<&Distances::Rms>},
};

} // namespace

std::span<RangedFunction const> PulseStreamFunctions() { return kWidths; }
std::span<RangedFunction const> PeriodFunctions() { return kPeriods; }

} // namespace val::ranged
