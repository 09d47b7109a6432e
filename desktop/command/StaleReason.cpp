#include "desktop/command/StaleReason.h"

#include "basekit/value/Variable.h"
#include "basekit/value/VariableValues.h"
#include "desktop/command/DesignState.h"
#include "desktop/command/Editor.h"
#include "desktop/command/MisfitVariations.h"
#include "desktop/command/SolvedSource.h"
#include "desktop/command/WordOfCommand.h"
#include "desktop/design/Design.h"
#include "desktop/project/Project.h"
#include "desktop/project/Session.h"
#include "desktop/project/SourceFilesText.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionVariation.h"

#include <algorithm>
#include <set>

namespace desktop {

namespace {

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

AString Listed(std::vector<AString> const & names) {
  AString text;
  for (AString const & name : names)
    text += (text.empty() ? AString() : AString(L", ")) + name;
  return text;
}

AString TextOfMisfit(NameDifference const & difference) {
  AString text;
  if (!difference.ofVariation.empty())
    text = AString(L"the design has no variable ") + Listed(difference.ofVariation);
  if (!difference.ofDesign.empty())
    text += (text.empty() ? AString() : AString(L"; ")) + L"it was solved without " + Listed(difference.ofDesign);
  return text;
}

// Those of the source alone: what it does not know comes back with a former source.
AString WordsThatFit(Session & session, AString const & variation, NameDifference const & difference) {
  AString words;
  for (AString const & name : difference.ofVariation) {
    AString value;
    if (ValueInSource(session.GetProject().GetSourceBase(), name) &&
        VariableValues::GetValueString(variation, name, value))
      words += AString(L" --add ") + name + L"=" + value;
  }
  for (AString const & name : difference.ofDesign)
    words += AString(L" --remove ") + name;
  return words.empty() ? words : AString(L"set") + words;
}

// The words that solve a point again; the design's own values need not be told.
AString SolveWords(Session & session, BaseSimulationSetup const & setup, AString const & variation) {
  AString words = AString(L"solve --setup ") + WordOfCommand(setup.GetName());
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

void Append(AString & words, AString const & more) {
  if (!more.empty())
    words += (words.empty() ? AString() : AString(L", and ")) + more;
}

AString SourceBack(Session & session, Departure const & departure) {
  AString const read = departure.sourceDate.empty() ? AString() : AString(L" (read ") + departure.sourceDate + L")";
  auto const changed = ChangedFiles(departure.sourceFiles, session.GetProject().GetSourceFiles());
  AString const names = changed.empty() ? session.GetProject().GetSourceFile().NameAndExtension() : Listed(changed);
  return AString(L"put the former ") + names + read + L" back and reload";
}

// A reload that edited the setup takes its edit back too, when the former source comes back.
bool ComesWithTheSource(Departure const & departure, BaseSimulationSetup const & setup, AString const & words) {
  AString const what = AString(L"setup ") + setup.GetName();
  auto const & changes = departure.story->changes;
  return departure.story->way == EditStory::Way::kDone && departure.story->command.StartsWith(L"reload ") &&
         std::any_of(changes.begin(), changes.end(), [&](EditChange const & change) {
           return change.what == what && change.from == departure.settings && change.to == words;
         });
}

// An edit that makes settings and source what they were, and the variation one of the design.
void AddEditBack(Session & session, BaseSimulationSetup const & setup, Departure const & departure,
                 AString const & wordsThatFit, std::vector<AString> & remedies) {
  if (departure.isInvalidation || departure.source.empty())
    return;
  bool const isOtherSource = departure.source != SolvedSourceOf(session);
  AString const present = SettingsWords(session, setup);
  bool const isEdited = departure.settings != present;
  AString words;
  if (isOtherSource)
    words = SourceBack(session, departure);
  if (isEdited && !(isOtherSource && ComesWithTheSource(departure, setup, present)))
    Append(words, AString(L"setup edit ") + WordOfCommand(setup.GetName()) + L" " + departure.settings);
  Append(words, wordsThatFit);
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
  AString const & text = variation.GetDesignVariationKey();
  NameDifference const difference = DifferenceOfNames(session.GetDesign(), text);
  AString const wordsThatFit = WordsThatFit(session, text, difference);
  reason.misfit = TextOfMisfit(difference);
  if (departure) {
    reason.story = departure->story;
    AddSteps(session, *departure->story, reason.remedies);
    AddEditBack(session, setup, *departure, wordsThatFit, reason.remedies);
  } else if (variation.GetVersionID() == solution.GetVersionID() && !wordsThatFit.empty()) {
    reason.remedies.push_back(wordsThatFit);
  }
  AString const words = difference.IsEmpty() ? SolveWords(session, setup, text) : AString();
  reason.canSolve = !words.empty();
  if (reason.canSolve)
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
    UnsolvedPoint unsolved;
    unsolved.reason.story = point.story;
    unsolved.validVariation = point.variation;
    AddSteps(session, *point.story, unsolved.reason.remedies);
    AddSetBack(session, point.variation, unsolved.reason.remedies);
    unsolved.reason.remedies.push_back(SolveWords(session, solution.GetBaseSimulationSetup(), present));
    unsolved.reason.canSolve = true;
    return unsolved;
  }
  return std::nullopt;
}

} // namespace desktop
