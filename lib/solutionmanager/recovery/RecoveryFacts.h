#pragma once

#include "solutionmanager/recovery/RecoveryReport.h"

#include <map>

class BaseSimulationSetup;

/// How a report of a recovery comes to its figures.
namespace recovery {

/// Fills everything that follows from the names that were taken over; those that were dropped go from them first.
/// After a failure nothing counts as taken over.
void CountTakenOver(RecoveryReport & report, std::map<long, BaseSimulationSetup *> const & setups);

} // namespace recovery
