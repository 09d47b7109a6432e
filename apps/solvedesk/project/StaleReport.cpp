#include "apps/solvedesk/project/StaleReport.h"

#include "apps/solvedesk/project/EditResult.h"
#include "desktop/command/StaleReason.h"
#include "desktop/command/WordOfCommand.h"
#include "desktop/design/Design.h"
#include "desktop/project/Session.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionVariation.h"

#include <fmt/format.h>

#include <algorithm>

namespace solvedesk {
namespace {

using Json = nlohmann::ordered_json;
using desktop::EditStory;

char const * WayName(EditStory::Way way) {
  switch (way) {
  case EditStory::Way::kUndone:
    return "undone";
  case EditStory::Way::kRedone:
    return "redone";
  default:
    return "done";
  }
}

Json StoryJson(desktop::StaleReason const & reason) {
  Json json = Json::object();
  json["command"] = reason.story ? Json(Utf8(reason.story->command)) : Json();
  if (reason.story) {
    json["way"] = WayName(reason.story->way);
    json["changes"] = ChangesJson(reason.story->changes);
  }
  if (!reason.misfit.empty())
    json["misfit"] = Utf8(reason.misfit);
  json["remedies"] = Json::array();
  for (AString const & remedy : reason.remedies)
    json["remedies"].push_back(Utf8(remedy));
  return json;
}

std::string StoryText(desktop::StaleReason const & reason, std::string const & apart = "\n          ") {
  if (!reason.misfit.empty() && !reason.story)
    return Utf8(reason.misfit);
  if (!reason.story)
    return "an edit that is not known any more";
  bool const isUndone = reason.story->way == EditStory::Way::kUndone;
  std::string text = fmt::format("{}'{}'", isUndone ? "undo of " : "", Utf8(reason.story->command));
  for (desktop::EditChange const & change : reason.story->changes)
    text += apart + ChangeText(change);
  if (!reason.misfit.empty())
    text += apart + Utf8(reason.misfit);
  return text;
}

std::string RemediesText(std::vector<AString> const & remedies, std::string const & solve = std::string()) {
  std::string text;
  for (AString const & remedy : remedies)
    text += (text.empty() ? "" : "; or ") + Utf8(remedy);
  if (!solve.empty())
    text += (text.empty() ? "" : "; or ") + solve;
  return text.empty() ? "nothing that is known here" : text;
}

} // namespace

std::string ReasonLine(desktop::StaleReason const & reason) { return StoryText(reason, "; "); }

std::string RemedyLine(desktop::StaleReason const & reason) { return RemediesText(reason.remedies); }

Json StaleReport::Why(BaseSolutionVariation const & variation) {
  desktop::StaleReason const reason = desktop::WhyStale(m_session, variation);
  auto const end = reason.remedies.end() - (reason.canSolve ? 1 : 0);
  std::vector<AString> const shared(reason.remedies.begin(), end);
  Group & group = m_groups[{variation.GetVersionID(), reason.misfit}];
  if (group.count++ == 0) {
    group.reason = StoryText(reason);
    group.shared = shared;
  } else {
    // Those of one point alone would mislead.
    std::erase_if(group.shared, [&shared](AString const & remedy) {
      return std::find(shared.begin(), shared.end(), remedy) == shared.end();
    });
  }
  if (reason.canSolve && ++group.solvable == 1)
    group.solve = Utf8(reason.remedies.back());
  return StoryJson(reason);
}

Json StaleReport::PresentPoint() {
  auto const unsolved = desktop::WhyUnsolved(m_session, m_solution);
  if (!unsolved)
    return Json();
  Json json{{"variation", Utf8(m_session.GetDesign().GetVariation())},
            {"valid_before", Utf8(unsolved->validVariation)}};
  json["why"] = StoryJson(unsolved->reason);
  return json;
}

std::string StaleReport::SetupWord() const {
  return Utf8(desktop::WordOfCommand(m_solution.GetBaseSimulationSetup().GetName()));
}

std::string StaleReport::Text() {
  std::string text;
  for (auto const & [version, group] : m_groups) {
    // With others of its kind a point is solved by the verb that finds all of them.
    bool const isOne = group.count == 1 && m_groups.size() == 1;
    std::string const solve = group.solvable == 0 ? std::string()
                              : isOne             ? group.solve
                                                  : "solve --stale --setup " + SetupWord();
    text += fmt::format("      {} stale since {}\n        valid again by: {}\n",
                        Count(group.count, "point") + (group.count == 1 ? " is" : " are"), group.reason,
                        RemediesText(group.shared, solve));
  }
  if (auto const unsolved = desktop::WhyUnsolved(m_session, m_solution))
    text += fmt::format("      {} is not solved, since {}\n        valid again by: {}\n",
                        Utf8(m_session.GetDesign().GetVariation()), StoryText(unsolved->reason),
                        RemediesText(unsolved->reason.remedies));
  return text;
}

} // namespace solvedesk
