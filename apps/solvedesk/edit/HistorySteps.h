#pragma once

#include "apps/solvedesk/console/Verbs.h"

namespace solvedesk {

/// A verb that goes one or more steps through the history.
struct HistoryStep {
  char const * verb;
  char const * description;
  char const * nothing; ///< told when there is no such step
  bool isBack;          ///< undo; else redo
};

void AddHistorySteps(CLI::App & program, Action & action, HistoryStep const & step);

} // namespace solvedesk
