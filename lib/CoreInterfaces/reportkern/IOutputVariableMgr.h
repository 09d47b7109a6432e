#pragma once

class OutputVariable;

/// The module that owns output variables under the reporter rewrite.
class IOutputVariableMgr {
public:
  virtual ~IOutputVariableMgr() = default;
  /// True when the module owns the variable from now on; otherwise it stays the caller's.
  virtual bool AdoptOutputVariable(OutputVariable * variable) = 0;
};
