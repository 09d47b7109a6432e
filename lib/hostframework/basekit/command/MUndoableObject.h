#pragma once

#include <memory>

/// An object whose contents a command can keep and give back.
class MUndoableObject {
public:
  virtual ~MUndoableObject();
  /// Takes over the other one's contents; one of another class is ignored.
  virtual void Assign(MUndoableObject const & other) = 0;
  /// The caller owns the copy.
  virtual MUndoableObject * Clone() const = 0;

protected:
  MUndoableObject() = default;
  /// Nobody remembers a copy yet.
  MUndoableObject(MUndoableObject const &) {}
  MUndoableObject & operator=(MUndoableObject const &) { return *this; }

private:
  friend class CUndoableObjectDeltaState;

  /// Null behind the link once the object is gone; made by the first record.
  std::shared_ptr<MUndoableObject *> m_link;
};
