#include "desktop/command/StaleReason.h"

#include "basekit/value/Variable.h"
#include "basekit/value/VariableValues.h"
#include "desktop/command/DesignState.h"
#include "desktop/command/Editor.h"
#include "desktop/design/Design.h"
#include "desktop/project/Project.h"
#include "desktop/project/Session.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionVariation.h"

#include <set>

namespace desktop {

namespace {

// As one word of a command line.
AString Word(AString const & text) { return text.find(L' ') == AString::npos ? text : AString(L"'") + text + L"'"; }

AString Counted(AString const & verb, std::size_t count) {
  return count == 1 ? verb : verb + AString::Format(L" %lu", static_cast<unsigned long>(count));
}

// Of this session's history.
void AddSteps(Session & session, EditStory const & story, std::vector<AString> & remedies) {
  CommandStack const & history = session.GetEditor().GetHistory();
  bool const isUndone = story.way == EditStory::Way::kUndone;
  std::size_t const steps = isUndone ? history.RedosTo(story.serial) : history.UndosTo(story.serial);
  if (story.serial > 0 && steps > 0)
    remedies.push_back(Counted(isUndone ? L"redo" : L"undo", steps));
}

// The words that solve a point again; the design's own values need not be told.
AString SolveWords(Session & session, BaseSimulationSetup const & setup, AString const & variation) {
  AString words = AString(L"solve --setup ") + Word(setup.GetName());
  VariableValues values;
  if (!VariableValues::ResolveVariationKey(variation, nullptr, values, nullptr, true))
    return words;
  for (auto const & entry : values) {
    Variable const * const variable = session.GetDesign().FindVariable(entry.name);
    if (!variable)
      return AString(); // A point of variables that the design has no more can't be solved.
    if (variable->GetValueText() != entry.value.GetText())
      words += AString(L" --vary ") + entry.name + L"=" + entry.value.GetText();
  }
  return words;
}

// An edit that makes settings and source what they were.
void AddEditBack(Session & session, BaseSimulationSetup const & setup, Departure const & departure,
                 std::vector<AString> & remedies) {
  if (departure.isInvalidation)
    return;
  bool const isOtherSource = departure.source != session.GetProject().GetSourceBase().fingerprint;
  bool const isEdited = departure.settings != SettingsWords(session, setup);
  AString words;
  if (isOtherSource)
    words = AString(L"put the former ") + session.GetProject().GetSourceFile().NameAndExtension() + L" back and reload";
  if (isEdited)
    words += (isOtherSource ? AString(L", and ") : AString()) + L"setup edit " + Word(setup.GetName()) + L" " +
             departure.settings;
  if (!words.empty())
    remedies.push_back(words);
}

void AddSetBack(Session & session, AString const & variation, std::vector<AString> & remedies) {
  VariableValues values;
  AString words;
  VariableValues::ResolveVariationKey(variation, nullptr, values, nullptr, true);
  for (auto const & entry : values) {
    Variable const * const variable = session.GetDesign().FindVariable(entry.name);
    if (variable && variable->GetValueText() != entry.value.GetText())
      words += AString(L" ") + variable->GetName() + L"=" + entry.value.GetText();
  }
  if (!words.empty())
    remedies.push_back(AString(L"set") + words);
}

} // namespace

StaleReason WhyStale(Session & session, BaseSolutionVariation const & variation) {
  StaleReason reason;
  BaseSolution const & solution = *variation.GetBaseSolution();
  BaseSimulationSetup const & setup = solution.GetBaseSimulationSetup();
  Departure const * const departure =
      session.GetEditLog().Find({setup.GetID(), solution.GetID()}, variation.GetVersionID());
  if (departure) {
    reason.story = departure->story;
    AddSteps(session, *departure->story, reason.remedies);
    AddEditBack(session, setup, *departure, reason.remedies);
  }
  AString const words = SolveWords(session, setup, variation.GetDesignVariationKey());
  if (!words.empty())
    reason.remedies.push_back(words);
  return reason;
}

// A look-up by text may enter a new one into the library, so the variations are walked.
std::optional<UnsolvedPoint> WhyUnsolved(Session & session, BaseSolution const & solution) {
  std::set<AString> valid;
  for (auto const & [index, variation] : solution.GetVariations())
    if (variation->IsVariationValid())
      valid.insert(variation->GetDesignVariationKey());
  AString const present = session.GetDesign().GetVariation();
  if (!solution.IsValid() || valid.count(present))
    return std::nullopt;
  for (PointDeparture const & point : session.GetEditLog().Points()) {
    if (!valid.count(point.variation))
      continue;
    UnsolvedPoint unsolved{{point.story, {}}, point.variation};
    AddSteps(session, *point.story, unsolved.reason.remedies);
    AddSetBack(session, point.variation, unsolved.reason.remedies);
    unsolved.reason.remedies.push_back(SolveWords(session, solution.GetBaseSimulationSetup(), present));
    return unsolved;
  }
  return std::nullopt;
}

} // namespace desktop
