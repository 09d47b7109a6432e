#include "apps/solvedesk/solve/SolveResult.h"

#include "apps/solvedesk/console/Console.h"
#include "desktop/Error.h"

#include <fmt/format.h>

namespace solvedesk {

nlohmann::ordered_json SolveResult::Numbers() const {
  return {{"points", requested.points},         {"already_valid", requested.alreadyValid},
          {"repeated", requested.repeated},     {"stored", outcome.stored},
          {"failed", outcome.failed},           {"not_converged", outcome.notConverged},
          {"interrupted", outcome.interrupted}, {"saved", isSaved}};
}

nlohmann::ordered_json SolveResult::FinishedEvent() const {
  nlohmann::ordered_json event{{"event", "finished"}};
  event.update(Numbers());
  return event;
}

std::string SolveResult::Summary() const {
  std::string text =
      fmt::format("{}: {} solved, {} valid already", Count(static_cast<long long>(requested.points), "point"),
                  outcome.stored, requested.alreadyValid);
  if (outcome.failed > 0)
    text += fmt::format(", {} failed", outcome.failed);
  if (outcome.notConverged > 0)
    text += fmt::format(", {} not converged (`solvedesk convergence` tells more)", outcome.notConverged);
  if (requested.repeated > 0)
    text += fmt::format(", {} given more than once", requested.repeated);
  if (outcome.interrupted)
    text += ", stopped before the end";
  if (outcome.stored == 0)
    return text + (hadUnsaved ? "; nothing to save, and what was unsaved stays so" : "");
  if (!isSaved)
    return text + "; not saved";
  return text + (hadUnsaved ? "; saved, with what was unsaved before" : "; saved");
}

int SolveResult::ExitCode() const {
  if (outcome.interrupted)
    return static_cast<int>(desktop::ErrorKind::kInterrupted);
  return outcome.failed > 0 ? static_cast<int>(desktop::ErrorKind::kSolve) : 0;
}

} // namespace solvedesk
