#pragma once

#include "basekit/text/AString.h"

#include <cstddef>
#include <vector>

class BaseSimulationSetup;

namespace desktop {

class Session;
class SolveQueue;
class Study;

/// What became of the points of a study, counted for each setup.
struct RequestedPoints {
  std::size_t points = 0;       ///< that differ
  std::size_t alreadyValid = 0; ///< of these, not solved again
  std::size_t repeated = 0;     ///< that equal an earlier one
  bool isStopped = false;       ///< by SolveQueue::RequestStop, before all were asked for
  std::vector<AString> notes;   ///< on repeated points, one line each, the first few
};

/// Throws Error (kUsage) for more than kMostStudyPoints in so many setups together.
void CheckStudySize(Study const & study, std::size_t setups);

/// Asks for all points of a study in all setups, each point once, over the design's simulation service.  With a queue
/// points that are valid already are solved anew, by that queue.  A request to stop ends it; the next run of the queue
/// follows that too.  Throws Error (kUsage) for more than kMostStudyPoints
/// in all setups together, (kFailed) for a point that can't be queued.
RequestedPoints RequestStudy(Session & session, std::vector<BaseSimulationSetup *> const & setups, Study const & study,
                             SolveQueue * anew);

} // namespace desktop
