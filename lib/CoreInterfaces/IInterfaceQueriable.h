#pragma once

/// Root of interfaces that can be asked for another interface of the same object.
class IInterfaceQueriable {
public:
  virtual ~IInterfaceQueriable() = default;
  /// The interface of that identifier, not owned by the caller; null when the object does not have it.
  virtual void * GetInterface(int interfaceID) {
    (void)interfaceID;
    return nullptr;
  }
};
