#include "basekit/command/CUndoableObjectDeltaState.h"

#include "basekit/command/MUndoableObject.h"

CUndoableObjectDeltaState::CUndoableObjectDeltaState(MUndoableObject & object)
    : KelvroDeltaState(true), m_otherContents(object.Clone()) {
  if (!object.m_link)
    object.m_link = std::make_shared<MUndoableObject *>(&object);
  m_object = object.m_link;
}

CUndoableObjectDeltaState::~CUndoableObjectDeltaState() = default;

void CUndoableObjectDeltaState::UndoIt() {
  KelvroDeltaState::UndoIt();
  Exchange();
}

void CUndoableObjectDeltaState::RedoIt() {
  KelvroDeltaState::RedoIt();
  Exchange();
}

void CUndoableObjectDeltaState::Exchange() {
  MUndoableObject * const object = *m_object;
  if (!object)
    return;
  std::unique_ptr<MUndoableObject> former(object->Clone());
  object->Assign(*m_otherContents);
  m_otherContents = std::move(former);
}
