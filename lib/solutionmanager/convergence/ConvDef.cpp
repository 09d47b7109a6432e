#include "solutionmanager/convergence/ConvDef.h"

#include "solutionmanager/convergence/ConvValue.h"

#include <memory>

ConvValue * ConvDef::ReadValue(io::CBlock_ptr<io::CBlock_func> const & func) const {
  std::unique_ptr<ConvValue> value(CreateValue(this));
  return value->Read(func) ? value.release() : nullptr;
}

ConvValue * IntConvDef::CreateValue(ConvDef const * def) const { return new IntConvValue(def, IntConvValue::kInvalid); }

ConvValue * DoubleConvDef::CreateValue(ConvDef const * def) const {
  return new DoubleConvValue(def, DoubleConvValue::kInvalid);
}

ConvValue * StringConvDef::CreateValue(ConvDef const * def) const {
  return new StringConvValue(def, StringConvValue::kInvalid);
}
