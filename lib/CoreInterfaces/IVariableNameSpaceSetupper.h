#pragma once

class VariableNameSpace;

/// Fills a name space with what expressions may refer to.
class IVariableNameSpaceSetupper {
public:
  virtual ~IVariableNameSpaceSetupper();
  virtual void SetupVariableNameSpace(VariableNameSpace & nameSpace) const = 0;
  /// The default asserts: who takes part in post processing brings its own.
  virtual void SetupVNSForPostProcessing(VariableNameSpace & nameSpace) const;
};
