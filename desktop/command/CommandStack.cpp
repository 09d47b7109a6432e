#include "desktop/command/CommandStack.h"

#include "basekit/command/KelvroCommand.h"

#include <limits>
#include <utility>

namespace desktop {

namespace {

constexpr std::size_t kNowhere = std::numeric_limits<std::size_t>::max();

} // namespace

struct CommandStack::Entry {
  AString name;
  long serial = 0;
  std::vector<std::unique_ptr<KelvroCommand>> steps;
};

CommandStack::CommandStack() = default;
CommandStack::~CommandStack() { Clear(); }

void CommandStack::Push(std::unique_ptr<KelvroCommand> command) {
  if (m_groupHasEntry) {
    m_entries.back()->steps.push_back(std::move(command));
    return;
  }
  ForgetUndone();
  auto entry = std::make_unique<Entry>();
  entry->name = IsGroupOpen() ? m_groupName : command->GetName();
  entry->serial = ++m_lastSerial;
  entry->steps.push_back(std::move(command));
  m_entries.push_back(std::move(entry));
  m_position = m_entries.size();
  m_groupHasEntry = IsGroupOpen();
}

void CommandStack::ForgetUndone() {
  if (m_cleanPosition > m_position)
    m_cleanPosition = kNowhere;
  // The youngest first: it may refer to what an older one holds.
  while (m_entries.size() > m_position)
    m_entries.pop_back();
}

void CommandStack::BeginGroup(AString const & name) {
  if (m_openGroups++ == 0)
    m_groupName = name;
}

void CommandStack::EndGroup() {
  if (--m_openGroups == 0)
    m_groupHasEntry = false;
}

bool CommandStack::Undo() {
  if (m_position == 0 || IsGroupOpen())
    return false;
  auto & steps = m_entries[--m_position]->steps;
  for (auto step = steps.rbegin(); step != steps.rend(); ++step)
    (*step)->Undo();
  return true;
}

bool CommandStack::Redo() {
  if (m_position == m_entries.size() || IsGroupOpen())
    return false;
  for (auto const & step : m_entries[m_position++]->steps)
    step->Redo();
  return true;
}

void CommandStack::Clear() {
  m_position = 0;
  ForgetUndone();
  m_cleanPosition = 0;
  m_groupHasEntry = false;
}

std::vector<KelvroCommand *> CommandStack::CommandsAt(std::size_t index) const {
  std::vector<KelvroCommand *> commands;
  for (auto const & step : m_entries[index]->steps)
    commands.push_back(step.get());
  return commands;
}

AString const & CommandStack::NameAt(std::size_t index) const { return m_entries.at(index)->name; }

long CommandStack::SerialAt(std::size_t index) const { return m_entries.at(index)->serial; }

long CommandStack::NextSerial() const { return m_groupHasEntry ? m_lastSerial : m_lastSerial + 1; }

std::size_t CommandStack::UndosTo(long serial) const {
  for (std::size_t i = m_position; i > 0; --i)
    if (m_entries[i - 1]->serial == serial)
      return m_position - i + 1;
  return 0;
}

std::size_t CommandStack::RedosTo(long serial) const {
  for (std::size_t i = m_position; i < m_entries.size(); ++i)
    if (m_entries[i]->serial == serial)
      return i - m_position + 1;
  return 0;
}

void CommandStack::MarkClean() { m_cleanPosition = m_position; }

} // namespace desktop
