#pragma once

#include "basekit/command/IKelvroCommand.h"
#include "basekit/text/AString.h"

#include <map>
#include <memory>
#include <vector>

class KelvroDeltaState;

/// An edit that can be undone: the changes it made, in order, and what it tells about them.  Owns both.
class KelvroCommand : public IKelvroCommand {
public:
  explicit KelvroCommand(AString const & name);
  ~KelvroCommand() override;
  KelvroCommand(KelvroCommand const &) = delete;
  KelvroCommand & operator=(KelvroCommand const &) = delete;

  bool IsUndoing() const override { return m_run == Run::Undo; }
  bool IsRedoing() const override { return m_run == Run::Redo; }
  bool IsRollingBack() const override { return m_run == Run::RollBack; }
  AString const & GetName() const override { return m_name; }
  KelvroCommandInfo * GetInfo(int number) const override;
  void SetInfo(int number, KelvroCommandInfo * info) override;

  /// Takes ownership; null is ignored.
  void AddDeltaState(KelvroDeltaState * deltaState);
  bool HasDeltaStates() const { return !m_deltaStates.empty(); }

  /// Takes the changes back, last first.  Nothing happens when they are taken back already or a run is under way.
  void Undo() { TakeBack(Run::Undo); }
  /// Makes the changes again, first first.  Nothing happens while they stand or a run is under way.
  void Redo();
  /// As Undo, told to listeners as a roll back.
  void RollBack() { TakeBack(Run::RollBack); }

private:
  enum class Run { None, Undo, Redo, RollBack };
  void TakeBack(Run run);

  AString m_name;
  std::vector<std::unique_ptr<KelvroDeltaState>> m_deltaStates;
  std::map<int, std::unique_ptr<KelvroCommandInfo>> m_infos;
  Run m_run = Run::None;
  bool m_takenBack = false;
};
