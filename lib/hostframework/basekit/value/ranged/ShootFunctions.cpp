// Overshoot and undershoot, in per cent of the value that the trace should have settled at: the percent overshoot of
// control engineering.  Only what comes after the trace first got there counts, so that the undershoot of a step
// response is its first swing back and not the way up from 0.

#include "basekit/value/ranged/RangedTables.h"
#include "basekit/value/ranged/SteppedTrace.h"

#include <algorithm>

namespace val::ranged {

namespace {

/// The first sample on the reference, or the first behind a piece that passes it.
std::size_t Arrival(Column y, double reference) {
  for (std::size_t i = 0; i < y.size(); ++i) {
    if (y[i] == reference || (i > 0 && (y[i - 1] < reference) != (y[i] < reference)))
      return i;
  }
  return kNowhere;
}

/// 100 * max(0, sign * (y - T) at its greatest) / |T|; a trace wholly on the near side never shot over
template <int sign> double Shoot(RangedTrace const & trace, double const * parameters) {
  double const reference = parameters[0];
  SteppedTrace const stepped(trace, parameters[1]);
  if (reference == 0.0 || !stepped.IsValid())
    return kNoValue;
  Column const y = stepped.Y();
  std::size_t const arrival = Arrival(y, reference);
  if (arrival == kNowhere)
    return sign * (y[0] - reference) < 0 ? 0.0 : kNoValue;
  double furthest = 0.0;
  for (std::size_t i = arrival; i < y.size(); ++i)
    furthest = std::max(furthest, sign * (y[i] - reference));
  return 100 * furthest / std::fabs(reference);
}

constexpr RangedParameter kReference[] = {{L"Threshold", 0.0}, {L"Number of Points", 0.0}};

constexpr RangedFunction kShoot[] = {
    {L"overshoot", RangedInput::kRealTrace, kReference, true, Shoot<1>},
    {L"undershoot", RangedInput::kRealTrace, kReference, true, Shoot<-1>},
};

} // namespace

std::span<RangedFunction const> ShootFunctions() { return kShoot; }

} // namespace val::ranged
