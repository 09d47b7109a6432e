#pragma once

/// One change that a command made and can take back.  UndoIt and RedoIt of a derived class call those of this class
/// first.
class KelvroDeltaState {
public:
  /// changeDone: the change was made before the record of it.
  explicit KelvroDeltaState(bool changeDone) : m_changeDone(changeDone) {}
  virtual ~KelvroDeltaState();
  KelvroDeltaState(KelvroDeltaState const &) = delete;
  KelvroDeltaState & operator=(KelvroDeltaState const &) = delete;

  virtual void UndoIt();
  virtual void RedoIt();
  /// True when the other one records the same change; the default knows only identity.
  virtual bool IsEquivalent(KelvroDeltaState const & other) const;

  /// True while the change stands: after the start with true and after RedoIt, not after UndoIt.
  bool IsStateChangeDone() const { return m_changeDone; }

private:
  bool m_changeDone;
};
