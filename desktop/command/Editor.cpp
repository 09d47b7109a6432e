// How an edit runs: as a command, told to the log, autosaved, and all taken back when one of these fails.
#include "desktop/command/Editor.h"

#include "basekit/command/PropertyCommandInfo.h"
#include "basekit/value/Variable.h"
#include "desktop/Error.h"
#include "desktop/command/DesignState.h"
#include "desktop/command/Edit.h"
#include "desktop/command/MisfitVariations.h"
#include "desktop/design/Design.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/project/Project.h"
#include "desktop/project/Session.h"
#include "desktop/report/LiveReports.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"

#include <utility>

namespace desktop {

namespace {

using VariableTexts = std::map<AString, AString, AString::NoCaseLess>;

VariableTexts TextsOf(Design const & design) {
  VariableTexts texts;
  for (Variable const * const variable : design.GetVariables())
    texts[variable->GetName()] = variable->GetValueText();
  return texts;
}

// What listeners of the command want to know.
void TellOfVariables(VariableTexts const & before, VariableTexts const & after, KelvroCommand & command) {
  auto info = std::make_unique<PropertyCommandInfo>();
  constexpr unsigned kVariable = PropertyCommandInfo::kVariableProp;
  for (auto const & [name, text] : before) {
    auto const now = after.find(name);
    if (now == after.end())
      info->AddProperty(name, kVariable | PropertyCommandInfo::kDeleted);
    else if (now->second != text)
      info->AddProperty(now->first, kVariable | PropertyCommandInfo::kEdited);
  }
  for (auto const & [name, text] : after)
    if (before.find(name) == before.end())
      info->AddProperty(name, kVariable | PropertyCommandInfo::kCreated);
  if (!info->GetProperties().empty())
    command.SetInfo(KelvroCommandInfo::kDesignProperties, info.release());
}

void RefuseFailure(DeltaFailure & failure) {
  AString const text = failure.Take();
  if (!text.empty())
    throw Error(ErrorKind::kStorage, text);
}

} // namespace

Editor::Editor(Session & session) : m_session(session) {}

Editor::~Editor() = default;

bool Editor::Run(AString const & name, std::function<void(Edit & edit)> const & work, TextsChanges const & texts) {
  m_session.RefuseWhenReadOnly();
  DesignState const before(m_session);
  VariableTexts const variablesBefore = TextsOf(m_session.GetDesign());
  EditLog const formerLog = m_session.GetEditLog();
  Edit edit(name);
  bool const isFirst = m_session.BeginAutosave(InverseOf(texts));
  try {
    work(edit);
    RefuseFailure(m_failure);
    if (!edit.command->HasDeltaStates()) {
      if (isFirst)
        m_session.EndAutosave();
      return false;
    }
    auto const story =
        std::make_shared<EditStory const>(EditStory{name, EditStory::Way::kDone, edit.changes, m_history.NextSerial()});
    TellLog(before, story, edit.isInvalidation);
    TellOfVariables(variablesBefore, TextsOf(m_session.GetDesign()), *edit.command);
    MarkMisfits(m_session);
    m_session.Autosave();
  } catch (...) {
    edit.command->RollBack();
    m_failure.Take();
    m_session.GetEditLog() = formerLog;
    MarkMisfits(m_session);
    if (isFirst)
      m_session.EndAutosave();
    throw;
  }
  FollowInLiveReports({edit.command.get()}, edit.changesResults);
  Told & told = m_told[m_history.NextSerial()];
  told.changes.insert(told.changes.end(), edit.changes.begin(), edit.changes.end());
  told.isInvalidation = edit.isInvalidation;
  told.changesResults = told.changesResults || edit.changesResults;
  told.texts.insert(told.texts.end(), texts.begin(), texts.end());
  m_lastChanges = told.changes;
  m_history.Push(std::move(edit.command));
  return true;
}

void Editor::RunGroup(AString const & name, std::function<void()> const & edits) {
  long const serial = m_history.NextSerial();
  try {
    CommandGroup const group(m_history, name);
    edits();
  } catch (...) {
    if (m_history.UndosTo(serial) == 1 && !m_history.IsGroupOpen()) {
      Undo();
      m_history.ForgetUndone();
    }
    throw;
  }
}

bool Editor::Undo() {
  if (m_history.Position() == 0)
    return false;
  return Step(&CommandStack::Undo, &CommandStack::Redo, m_history.SerialAt(m_history.Position() - 1),
              EditStory::Way::kUndone);
}

bool Editor::Redo() {
  if (m_history.Position() == m_history.Size())
    return false;
  return Step(&CommandStack::Redo, &CommandStack::Undo, m_history.SerialAt(m_history.Position()),
              EditStory::Way::kRedone);
}

bool Editor::Step(bool (CommandStack::*forward)(), bool (CommandStack::*back)(), long serial, EditStory::Way way) {
  m_session.RefuseWhenReadOnly();
  DesignState const before(m_session);
  EditLog const formerLog = m_session.GetEditLog();
  std::size_t const index = way == EditStory::Way::kUndone ? m_history.Position() - 1 : m_history.Position();
  Told const & told = m_told[serial];
  EditStory story{m_history.NameAt(index), way, told.changes, serial};
  if (way == EditStory::Way::kUndone)
    for (EditChange & change : story.changes)
      std::swap(change.from, change.to);
  bool const isFirst = m_session.BeginAutosave(way == EditStory::Way::kUndone ? told.texts : InverseOf(told.texts));
  if (!(m_history.*forward)()) {
    if (isFirst)
      m_session.EndAutosave();
    return false;
  }
  try {
    RefuseFailure(m_failure);
    TellLog(before, std::make_shared<EditStory const>(story), told.isInvalidation && way == EditStory::Way::kRedone);
    MarkMisfits(m_session);
    m_session.Autosave();
  } catch (...) {
    (m_history.*back)();
    m_failure.Take();
    m_session.GetEditLog() = formerLog;
    MarkMisfits(m_session);
    if (isFirst)
      m_session.EndAutosave();
    throw;
  }
  FollowInLiveReports(m_history.CommandsAt(index), told.changesResults);
  m_lastChanges = story.changes;
  return true;
}

void Editor::FollowInLiveReports(std::vector<KelvroCommand *> const & commands, bool changesResults) {
  LiveReports & reports = m_session.GetLiveReports();
  if (reports.IsEmpty())
    return;
  for (KelvroCommand * const command : commands)
    reports.Follow(*command);
  if (changesResults)
    reports.ResultsChanged();
}

void Editor::TellLog(DesignState const & before, std::shared_ptr<EditStory const> const & story, bool isInvalidation) {
  DesignState const after(m_session);
  EditLog & log = m_session.GetEditLog();
  for (auto const & [object, version] : before.Versions()) {
    auto const now = after.Versions().find(object);
    if (now == after.Versions().end() || now->second == version)
      continue;
    log.Depart({object, version, before.Source(), before.SourceDate(), before.SourceFiles(),
                before.SettingsOf(object.setupID), isInvalidation, story});
    log.Arrive(object, now->second);
  }
  if (after.Variation() == before.Variation())
    return;
  log.DepartPoint({before.Variation(), story});
  log.ArrivePoint(after.Variation());
}

BaseSimulationSetup & Editor::FindSetup(AString const & name) const {
  AString known;
  for (auto const & [id, setup] : m_session.GetManager().GetSetups()) {
    if (AString::MatchNoCase(setup->GetName(), name))
      return *setup;
    known += (known.empty() ? AString() : AString(L", ")) + setup->GetName();
  }
  if (FindImportedSetup(name))
    throw Error(ErrorKind::kUsage, name + L": is imported data, which is not solved; import a file under its name to "
                                          L"replace it, or delete it with `setup delete`");
  throw Error(ErrorKind::kUsage,
              name + L": the project has no setup of that name; it has: " + (known.empty() ? AString(L"none") : known));
}

BaseSimulationSetup & Editor::FindAnySetup(AString const & name) const {
  BaseSimulationSetup * const imported = FindImportedSetup(name);
  return imported ? *imported : FindSetup(name);
}

BaseSolution & Editor::FindSolution(AString const & name) const {
  AString known;
  std::vector<BaseSolution *> found;
  for (auto const & [id, setup] : m_session.GetManager().GetSetups())
    for (auto const & [solutionID, solution] : setup->GetSolutions()) {
      known += (known.empty() ? AString() : AString(L", ")) + solution->GetGlobalSolutionName();
      // The setup's own name will do where it has one solution.
      if (solution->NameIdentifiesSolution(name) || AString::MatchNoCase(setup->GetName(), name))
        found.push_back(solution);
    }
  if (found.size() == 1)
    return *found.front();
  throw Error(ErrorKind::kUsage,
              name +
                  (found.empty() ? AString(L": the project has no solution of that name")
                                 : AString(L": several solutions have that name; write it with its setup's")) +
                  AString(L"; it has: ") + (known.empty() ? AString(L"none") : known));
}

} // namespace desktop
