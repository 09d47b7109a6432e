#include "basekit/command/MUndoableObject.h"

MUndoableObject::~MUndoableObject() {
  if (m_link)
    *m_link = nullptr;
}
