#pragma once

#include "basekit/command/KelvroDeltaState.h"

#include <memory>

class MUndoableObject;

/// Keeps the contents that an object does not hold now.  Made before the change; an object that is gone when the change
/// is taken back or made again is passed over.
class CUndoableObjectDeltaState : public KelvroDeltaState {
public:
  explicit CUndoableObjectDeltaState(MUndoableObject & object);
  ~CUndoableObjectDeltaState() override;

  void UndoIt() override;
  void RedoIt() override;

private:
  void Exchange();

  std::shared_ptr<MUndoableObject *> m_object;
  std::unique_ptr<MUndoableObject> m_otherContents;
};
