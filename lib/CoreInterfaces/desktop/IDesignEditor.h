#pragma once

class IVariableServer;

/// What the desktop edits a design by, as far as solved data and reports need it.  Owned by the desktop.
class IDesignEditor {
public:
  virtual ~IDesignEditor() = default;
  /// The variables that the design knows; null when it has none.
  virtual IVariableServer * GetVariableServer() const = 0;
};
