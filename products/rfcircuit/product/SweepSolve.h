#pragma once

#include "products/rfcircuit/product/NetworkData.h"

namespace desktop {
class IJobProgress;
}
namespace rf {
class Circuit;
}

namespace rfcircuit {

struct SweepPlan;

/// The set of convergence and profile records that a setup has.
constexpr int kRecordSet = -1;

/// The S-parameters of a circuit at all frequencies of a sweep, got as the plan says.  Tells progress, the passes of an
/// adaptive sweep and what the tasks cost.  Throws rf::NetlistError.
NetworkData SolveSweep(SweepPlan const & plan, rf::Circuit const & circuit, desktop::IJobProgress & progress);

} // namespace rfcircuit
