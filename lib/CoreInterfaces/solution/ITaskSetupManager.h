#pragma once

#include <vector>

class ITaskSetup;

/// The setups of a design as the desktop's task service sees them.
class ITaskSetupManager {
public:
  /// Appends the active setups and returns the vector's size.
  virtual int GetITaskSetupList(std::vector<ITaskSetup *> & list) const = 0;
  virtual ITaskSetup * GetITaskSetupByID(long id) const = 0;

protected:
  ~ITaskSetupManager() = default;
};
