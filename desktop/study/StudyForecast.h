#pragma once

#include "desktop/study/StudyRequest.h"

namespace desktop {

/// What RequestStudy would count, without asking for anything: no ID is given out and nothing is written.  Throws Error
/// (kUsage) for more than kMostStudyPoints in all setups together.
RequestedPoints ForecastStudy(Session & session, std::vector<BaseSimulationSetup *> const & setups,
                              Study const & study);

} // namespace desktop
