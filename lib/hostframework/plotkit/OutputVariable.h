#pragma once

#include "basekit/value/ContextVariable.h"

/// A named expression over solved quantities, made by the user.  Managers own theirs.
class OutputVariable : public ContextVariable {
public:
  explicit OutputVariable(AString const & name) : ContextVariable(name) {}
  ~OutputVariable() override;

private:
  ValueBase * CloneValueBase() const override;
};
