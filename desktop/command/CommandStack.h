#pragma once

#include "basekit/text/AString.h"

#include <memory>
#include <vector>

class KelvroCommand;

namespace desktop {

/// The commands of a session in order: those that stand, and behind them those that were undone and can be redone.
/// Owns them.  A group is one entry made of several commands, and so one step of undo.  The clean mark remembers the
/// place at which the project was last saved.
class CommandStack {
public:
  CommandStack();
  ~CommandStack();
  CommandStack(CommandStack const &) = delete;
  CommandStack & operator=(CommandStack const &) = delete;

  /// Takes a command that was carried out; whatever could be redone is forgotten.  With a group open it joins that.
  void Push(std::unique_ptr<KelvroCommand> command);
  /// Groups nest: the outermost one gives the name.  A group that nothing joined leaves no entry.
  void BeginGroup(AString const & name);
  void EndGroup();
  bool IsGroupOpen() const { return m_openGroups > 0; }

  /// False, and nothing done, when there is none or a group is open.
  bool Undo();
  bool Redo();
  /// Then there is nothing to redo.
  void ForgetUndone();
  void Clear();

  std::size_t Size() const { return m_entries.size(); }
  /// How many of the entries stand.
  std::size_t Position() const { return m_position; }
  AString const & NameAt(std::size_t index) const;
  /// In the order in which they were carried out.
  std::vector<KelvroCommand *> CommandsAt(std::size_t index) const;
  /// Tells the entry from all others of this stack; above 0.
  long SerialAt(std::size_t index) const;
  /// Of the entry that the next command will be, or joins.
  long NextSerial() const;
  /// How many undos take the entry back; 0 when it is undone or unknown.
  std::size_t UndosTo(long serial) const;
  /// How many redos make it stand again; 0 when it stands or is unknown.
  std::size_t RedosTo(long serial) const;

  void MarkClean();
  bool IsClean() const { return m_position == m_cleanPosition; }
  /// The clean place is out of reach once another command took the place of the one that stood there.
  bool HasCleanPosition() const { return m_cleanPosition <= m_entries.size(); }
  std::size_t CleanPosition() const { return m_cleanPosition; }

private:
  struct Entry;

  std::vector<std::unique_ptr<Entry>> m_entries;
  std::size_t m_position = 0;
  std::size_t m_cleanPosition = 0;
  long m_lastSerial = 0;
  int m_openGroups = 0;
  bool m_groupHasEntry = false;
  AString m_groupName;
};

/// Makes one entry of all commands of a span.
class CommandGroup {
public:
  CommandGroup(CommandStack & stack, AString const & name) : m_stack(stack) { m_stack.BeginGroup(name); }
  ~CommandGroup() { m_stack.EndGroup(); }
  CommandGroup(CommandGroup const &) = delete;
  CommandGroup & operator=(CommandGroup const &) = delete;

private:
  CommandStack & m_stack;
};

} // namespace desktop
