#pragma once

#include "desktop/study/Study.h"

#include <optional>

class BaseSimulationSetup;
namespace desktop {
class Session;
}

namespace solvedesk {

/// The points of a setup that were solved and are not valid any more, without those of other variables than the design
/// has; nothing when there is none.
std::optional<desktop::Study> StalePointsOf(desktop::Session & session, BaseSimulationSetup const & setup);

} // namespace solvedesk
