#pragma once

class AString;

/// Told while traces are pasted.
class ITracePasteContext {
public:
  /// A pasted output variable got another name: expressions of the pasted traces mean the new one.
  virtual void OutputVariableNameChanged(AString const & oldName, AString const & newName) = 0;

protected:
  ~ITracePasteContext() = default;
};
