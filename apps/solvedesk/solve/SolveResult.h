#pragma once

#include "desktop/solve/SolveQueue.h"
#include "desktop/study/StudyRequest.h"

#include <nlohmann/json.hpp>

#include <string>

namespace solvedesk {

/// How a solve ended, in the forms in which it is told.
struct SolveResult {
  desktop::RequestedPoints requested;
  desktop::SolveOutcome outcome;
  bool isSaved = false;
  bool hadUnsaved = false; ///< edits or results of before

  nlohmann::ordered_json Numbers() const;
  /// The last line of the events.
  nlohmann::ordered_json FinishedEvent() const;
  /// One line for people, without a line end.
  std::string Summary() const;
  int ExitCode() const;
};

} // namespace solvedesk
