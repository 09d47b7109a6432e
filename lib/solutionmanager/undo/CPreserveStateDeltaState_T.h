#pragma once

#include "basekit/command/CPreserveStateDeltaState.h"

#include <utility>
#include <vector>

/// A change of the state of objects to one new state.  T offers GetState(K &) const and SetState(K const &, bool), the
/// bool telling an undo from a redo.  The objects outlive the record; undo and redo swap states, so that one record
/// goes back and forth.
template <class T, class K> class CPreserveStateDeltaState_T : public CPreserveStateDeltaState {
public:
  explicit CPreserveStateDeltaState_T(K const & newState) : m_newState(newState) {}

  void UndoIt() override {
    CPreserveStateDeltaState::UndoIt();
    Apply(true);
  }
  void RedoIt() override {
    CPreserveStateDeltaState::RedoIt();
    Apply(false);
  }
  virtual int GetCount() const { return static_cast<int>(m_objects.size()); }
  /// Gives the object the new state; null, and an object that holds it already, are not recorded.
  virtual void Add(T * object) {
    if (!object)
      return;
    K oldState{};
    object->GetState(oldState);
    if (oldState == m_newState)
      return;
    object->SetState(m_newState, false);
    m_objects.emplace_back(object, oldState);
  }

private:
  void Apply(bool undo) {
    for (auto & [object, otherState] : m_objects) {
      if (m_useNewState) {
        object->SetState(undo ? otherState : m_newState, undo);
        continue;
      }
      K current{};
      object->GetState(current);
      object->SetState(otherState, undo);
      otherState = current;
    }
  }

  K m_newState;
  std::vector<std::pair<T *, K>> m_objects;
  bool m_useNewState = false;
};
