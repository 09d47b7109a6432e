#include "apps/solvedesk/project/EditResult.h"

#include "apps/solvedesk/project/OpenProject.h"
#include "desktop/command/Editor.h"
#include "desktop/product/ProductSolutionManager.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionVariation.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace solvedesk {
namespace {

std::size_t CountValid(desktop::Session & session) {
  std::size_t count = 0;
  for (auto const & [setupID, setup] : session.GetManager().GetSetups())
    for (auto const & [solutionID, solution] : setup->GetSolutions())
      for (auto const & [index, variation] : solution->GetVariations())
        count += variation->IsVariationValid() ? 1 : 0;
  return count;
}

// "3 points were valid, none is".
std::string ValidText(std::size_t before, std::size_t after) {
  if (before == after)
    return std::string();
  return fmt::format("{} valid before, {} now\n", Count(static_cast<long long>(before), "point"), after);
}

// Those of which more curves are to be evaluated again than before.
std::vector<desktop::LiveReports::State> NewlyDirty(std::vector<desktop::LiveReports::State> const & before,
                                                    std::vector<desktop::LiveReports::State> states) {
  std::erase_if(states, [&before](auto const & now) {
    return now.dirty == 0 || std::any_of(before.begin(), before.end(), [&now](auto const & former) {
             return former.report == now.report && former.dirty >= now.dirty;
           });
  });
  return states;
}

} // namespace

EditResult::EditResult(desktop::Session & session)
    : m_session(session), m_validBefore(CountValid(session)), m_reportsBefore(session.GetLiveReports().States()) {}

void EditResult::Print(OutputOptions const & output, std::string const & project, bool isChanged,
                       std::string const & unchanged) const {
  Print(output, project, isChanged, unchanged, nlohmann::ordered_json::object());
}

void EditResult::Print(OutputOptions const & output, std::string const & project, bool isChanged,
                       std::string const & unchanged, nlohmann::ordered_json const & items) const {
  auto const changes = isChanged ? m_session.GetEditor().GetLastChanges() : std::vector<desktop::EditChange>();
  Print(output, project, changes, changes.empty() ? unchanged + "\n" : std::string(), isChanged, items);
}

void EditResult::PrintChanges(OutputOptions const & output, std::string const & project,
                              std::vector<desktop::EditChange> const & changes,
                              nlohmann::ordered_json const & items) const {
  Print(output, project, changes, std::string(), true, items);
}

void EditResult::Print(OutputOptions const & output, std::string const & project,
                       std::vector<desktop::EditChange> const & changes, std::string text, bool isChanged,
                       nlohmann::ordered_json const & items) const {
  std::size_t const validAfter = CountValid(m_session);
  for (desktop::EditChange const & change : changes)
    text += ChangeText(change) + "\n";
  text += ValidText(m_validBefore, validAfter);
  auto const dirty = NewlyDirty(m_reportsBefore, m_session.GetLiveReports().States());
  for (auto const & report : dirty)
    text += fmt::format("report {}: {} of {} to be updated\n", Utf8(report.report), report.dirty,
                        Count(static_cast<long long>(report.all), "trace"));
  nlohmann::ordered_json document{{"project", Utf8(ProjectPath(project))}, {"changed", isChanged}};
  document.update(items);
  document["changes"] = ChangesJson(changes);
  document["valid_points_before"] = m_validBefore;
  document["valid_points"] = validAfter;
  for (auto const & report : dirty)
    document["reports"].push_back(
        {{"report", Utf8(report.report)}, {"to_be_updated", report.dirty}, {"traces", report.all}});
  document["unsaved_changes"] = m_session.HasUnsavedChanges();
  PrintResult(output, text, document);
}

std::string ChangeText(desktop::EditChange const & change) {
  std::string const what = Utf8(change.what);
  if (change.from.empty())
    return fmt::format("{}: added{}", what, change.to.empty() ? "" : ", " + Utf8(change.to));
  if (change.to.empty())
    return fmt::format("{}: removed, was {}", what, Utf8(change.from));
  return fmt::format("{}: {} -> {}", what, Utf8(change.from), Utf8(change.to));
}

nlohmann::ordered_json ChangesJson(std::vector<desktop::EditChange> const & changes) {
  nlohmann::ordered_json json = nlohmann::ordered_json::array();
  for (desktop::EditChange const & change : changes)
    json.push_back({{"what", Utf8(change.what)}, {"from", Utf8(change.from)}, {"to", Utf8(change.to)}});
  return json;
}

} // namespace solvedesk
