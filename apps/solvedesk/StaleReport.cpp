#include "apps/solvedesk/StaleReport.h"

#include "apps/solvedesk/EditResult.h"
#include "desktop/command/StaleReason.h"
#include "desktop/design/Design.h"
#include "desktop/project/Session.h"
#include "solutionmanager/model/BaseSolutionVariation.h"

#include <fmt/format.h>

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
  json["remedies"] = Json::array();
  for (AString const & remedy : reason.remedies)
    json["remedies"].push_back(Utf8(remedy));
  return json;
}

std::string StoryText(desktop::StaleReason const & reason) {
  if (!reason.story)
    return "an edit that is not known any more";
  bool const isUndone = reason.story->way == EditStory::Way::kUndone;
  std::string text = fmt::format("{}'{}'", isUndone ? "undo of " : "", Utf8(reason.story->command));
  for (desktop::EditChange const & change : reason.story->changes)
    text += fmt::format("\n          {}", ChangeText(change));
  return text;
}

std::string RemediesText(std::vector<AString> const & remedies) {
  std::string text;
  for (AString const & remedy : remedies)
    text += (text.empty() ? "" : "; or ") + Utf8(remedy);
  return text;
}

} // namespace

Json StaleReport::Why(BaseSolutionVariation const & variation) {
  desktop::StaleReason const reason = desktop::WhyStale(m_session, variation);
  Group & group = m_groups[variation.GetVersionID()];
  if (group.count++ == 0) {
    group.reason = StoryText(reason);
    group.remedies = RemediesText(reason.remedies);
  } else {
    // Those of one point alone would mislead: what brings all of them back stays.
    group.remedies = RemediesText(std::vector<AString>(
        reason.remedies.begin(), reason.remedies.empty() ? reason.remedies.end() : reason.remedies.end() - 1));
    group.remedies += (group.remedies.empty() ? "" : "; or ") + std::string("solve them again");
  }
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

std::string StaleReport::Text() {
  std::string text;
  for (auto const & [version, group] : m_groups)
    text +=
        fmt::format("      {} stale since {}\n        valid again by: {}\n",
                    Count(group.count, "point") + (group.count == 1 ? " is" : " are"), group.reason, group.remedies);
  if (auto const unsolved = desktop::WhyUnsolved(m_session, m_solution))
    text += fmt::format("      {} is not solved, since {}\n        valid again by: {}\n",
                        Utf8(m_session.GetDesign().GetVariation()), StoryText(unsolved->reason),
                        RemediesText(unsolved->reason.remedies));
  return text;
}

} // namespace solvedesk
