#include "basekit/command/KelvroCommand.h"

#include "basekit/command/KelvroCommandInfo.h"
#include "basekit/command/KelvroDeltaState.h"

IKelvroCommand::~IKelvroCommand() = default;

KelvroCommand::KelvroCommand(AString const & name) : m_name(name) {}

KelvroCommand::~KelvroCommand() {
  // Later changes may refer to what earlier ones keep.
  while (!m_deltaStates.empty())
    m_deltaStates.pop_back();
}

KelvroCommandInfo * KelvroCommand::GetInfo(int number) const {
  auto const found = m_infos.find(number);
  return found == m_infos.end() ? nullptr : found->second.get();
}

void KelvroCommand::SetInfo(int number, KelvroCommandInfo * info) {
  if (!info)
    m_infos.erase(number);
  else if (info != GetInfo(number))
    m_infos[number].reset(info);
}

void KelvroCommand::AddDeltaState(KelvroDeltaState * deltaState) {
  if (deltaState)
    m_deltaStates.emplace_back(deltaState);
}

// Indices, since a change that is taken back or made again may add another one.
void KelvroCommand::TakeBack(Run run) {
  if (m_takenBack || m_run != Run::None)
    return;
  m_run = run;
  for (std::size_t count = m_deltaStates.size(); count > 0; --count)
    m_deltaStates[count - 1]->UndoIt();
  m_takenBack = true;
  m_run = Run::None;
}

void KelvroCommand::Redo() {
  if (!m_takenBack || m_run != Run::None)
    return;
  m_run = Run::Redo;
  std::size_t const count = m_deltaStates.size();
  for (std::size_t index = 0; index < count; ++index)
    m_deltaStates[index]->RedoIt();
  m_takenBack = false;
  m_run = Run::None;
}
