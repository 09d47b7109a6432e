#pragma once

#include "desktop/command/CommandStack.h"
#include "desktop/command/Deltas.h"
#include "desktop/command/EditLog.h"
#include "desktop/command/TextsChange.h"

#include <functional>
#include <map>
#include <optional>
#include <utility>
#include <vector>

class BaseSimulationSetup;
class BaseSolution;
class LongFileName;
class OutputVariable;
namespace io {
class CBlock;
}

namespace desktop {

class DesignState;
class FileExchange;
class Session;
struct Connection;
struct ReportDefinition;
struct SourceBase;
struct SourceFile;
struct SourceMerge;
struct SourceSetup;

/// The door for all edits of an open project.  Each is one command: carried out whole or not at all, autosaved before
/// the operation returns, and undone and redone by the model's own records.  Undo brings back the versions of setups
/// and solutions, and so makes solved data valid again without a solve.  An edit that leads back to what was solved
/// before does the same.  Failures are desktop::Error, with everything as it was; names are found without case.
/// Operations that answer bool tell whether anything changed; an edit that changes nothing is no command.
class Editor {
public:
  explicit Editor(Session & session);
  ~Editor();
  Editor(Editor const &) = delete;
  Editor & operator=(Editor const &) = delete;

  // Design variables.  A change of a value makes no data stale: it leads to another variation.
  bool SetVariables(std::vector<std::pair<AString, AString>> const & assignments);
  /// What is solved was solved with the value that the source gives to the name: its variations get that into their
  /// texts.  Of a name that the source doesn't know they can't tell, so nothing that is solved is a point any more.
  void AddVariable(AString const & name, AString const & value);
  bool RenameVariable(AString const & name, AString const & newName);
  /// What the source says counts from then on: variations of that value are points without it.  Others keep theirs in
  /// their texts, and so belong to no point any more.
  void RemoveVariable(AString const & name);

  // Setups
  void AddSetup(AString const & name, AString const & words);
  bool EditSetup(AString const & name, AString const & words);
  /// Also of imported setups.
  bool RenameSetup(AString const & name, AString const & newName);
  void DeleteSetup(AString const & name);
  /// Data is stale from then on, whatever it was solved with.
  void InvalidateSetup(AString const & name);

  /// Reads a file of measured data as an imported setup of the name; one of that name that was imported before is
  /// replaced.  Undo brings that one back with its data.  Gives what is to be told of the file, one line each.
  std::vector<AString> Import(LongFileName const & file, AString const & name);

  // Solutions, by their own name or "setup : solution"
  void InvalidateSolution(AString const & name);
  void DeleteSolution(AString const & name);
  /// Deletes all data of a variation in the solutions of the named setup, or of all setups without a name.  Gives
  /// the number of blocks of data that went.
  int DeleteVariation(AString const & variation, AString const & setupName);

  // Reports, by name.  A setup or variable that is renamed takes its new name into them.
  void AddReport(ReportDefinition const & report);
  /// The definition takes the place of the named one.
  bool EditReport(AString const & name, ReportDefinition const & report);
  void RemoveReport(AString const & name);

  /// Ports by name, with the impedance in ohm that results are told with from now on; without one that which they were
  /// solved with.  Nothing becomes stale.
  bool ShowPorts(std::vector<std::pair<AString, std::optional<double>>> const & impedances);

  // Output variables: named expressions, by the rules that the solution manager has for them
  void AddOutputVariable(AString const & name, AString const & expression);
  bool EditOutputVariable(AString const & name, AString const & expression);
  void DeleteOutputVariable(AString const & name);

  /// Reads the source again when its files have changed: one edit.  What the source changes is taken over, save where
  /// the user changed the same thing here; then that stands, and a notice tells.
  bool Reload(std::vector<AString> & notices);

  /// For the hub: the project's connections become these, a file of theirs is exchanged where one is given, and the
  /// source is read again when its files have changed by that: one edit.
  bool ChangeConnections(AString const & command, std::vector<Connection> const & connections,
                         std::shared_ptr<FileExchange> const & file, EditChange const & told,
                         std::vector<AString> & notices);

  /// Carries out several edits as one: all of them or none.
  void RunGroup(AString const & name, std::function<void()> const & edits);

  /// False when there is nothing to undo (redo).
  bool Undo();
  bool Redo();
  /// What the last edit, undo or redo changed, for people.
  std::vector<EditChange> const & GetLastChanges() const { return m_lastChanges; }
  CommandStack & GetHistory() { return m_history; }
  CommandStack const & GetHistory() const { return m_history; }
  void WasSaved() { m_history.MarkClean(); }

private:
  class Edit;
  /// What undo and redo tell the log of a command.
  struct Told {
    std::vector<EditChange> changes;
    bool isInvalidation = false;
    bool changesResults = false;
    TextsChanges texts;
  };

  /// The changes of variations' texts are told beforehand, as nothing but the autosave can tell how to take back a part
  /// of them after a crash.
  bool Run(AString const & name, std::function<void(Edit & edit)> const & work, TextsChanges const & texts = {});
  bool Step(bool (CommandStack::*forward)(), bool (CommandStack::*back)(), long serial, EditStory::Way way);
  void TellLog(DesignState const & before, std::shared_ptr<EditStory const> const & story, bool isInvalidation);

  void FollowInLiveReports(std::vector<KelvroCommand *> const & commands, bool changesResults);

  void ChangeVariables(Edit & edit, std::vector<std::pair<AString, AString>> const & variables);
  bool RunWithTexts(AString const & command, std::vector<std::pair<AString, AString>> const & variables,
                    TextsChanges const & changes, std::vector<EditChange> const & told,
                    std::function<void(Edit & edit)> const & follow);
  struct SourceChange {
    AString from; ///< what was solved from; see SolvedSource
    AString to;
  };
  void Revise(Edit & edit, BaseSimulationSetup & setup, SourceChange const & source, io::CBlock const & settings);
  void AddMissingSolutions(Edit & edit, BaseSimulationSetup & setup);
  bool IsAnySolutionMissing() const;
  void FollowInLog(Edit & edit, AString const & name, AString const & value, bool isReleased);
  void NewVersions(Edit & edit, BaseSimulationSetup & setup, AString const & source, AString const & words);
  BaseSimulationSetup & MakeSetup(Edit & edit, SourceSetup const & said);
  struct SourceReading;
  /// Null when nothing is to be taken over.
  std::unique_ptr<SourceReading> ReadSourceAgain() const;
  void TakeOver(Edit & edit, SourceMerge const & merge, SourceBase base, std::vector<SourceFile> const & files);

  void ChangeReports(Edit & edit, std::vector<ReportDefinition> const & reports);
  /// A change of the definitions by one of their texts.
  void FollowInReports(Edit & edit, std::function<void(ReportDefinition & report)> const & change);
  /// Also in those of output variables.
  void RenameInExpressions(Edit & edit, AString const & name, AString const & newName);
  /// Those that make no sense after a change of the design's names become 0, which the user is told.
  void SettleOutputVariables(Edit & edit);
  OutputVariable & FindOutputVariable(AString const & name) const;

  BaseSimulationSetup & FindSetup(AString const & name) const;
  BaseSimulationSetup * FindImportedSetup(AString const & name) const;
  BaseSimulationSetup & FindAnySetup(AString const & name) const;
  BaseSolution & FindSolution(AString const & name) const;
  void RefuseTakenSetupName(AString const & name) const;

  Session & m_session;
  DeltaFailure m_failure;
  CommandStack m_history;
  /// By the serial of the command in the history.
  std::map<long, Told> m_told;
  std::vector<EditChange> m_lastChanges;
};

} // namespace desktop
