#pragma once

#include "basekit/command/KelvroDeltaState.h"
#include "basekit/id/Id.h"

#include <map>

class BaseSimulationSetup;
class BaseSolution;

/// A change of all solutions of a setup, deleted ones too, to one new state.  A solution that appeared after the change
/// and is still there at undo gets a number of its own, which no data is filed under.
class CAllSolutionsDeltaState : public KelvroDeltaState {
public:
  /// Without a setup nothing happens at all.
  CAllSolutionsDeltaState(BaseSimulationSetup * setup, long newState, long otherState = id::invalidID);
  ~CAllSolutionsDeltaState() override;

  void UndoIt() override;
  void RedoIt() override;
  /// Invalidates every solution that does not hold the new state and remembers what it held.
  virtual void Capture();

private:
  void Apply(bool undo);
  void SwapRecorded(bool undo);
  void TakeInNewcomers(bool undo);
  long StateForNewcomers(bool undo);
  template <class Function> void ForEachSolution(Function const & function) const;

  BaseSimulationSetup * m_setup;
  long m_newState;
  long m_otherState;
  std::map<BaseSolution *, long> m_solutions;
};
