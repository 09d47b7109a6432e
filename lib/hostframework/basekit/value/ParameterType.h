#pragma once

namespace val {

/// What kind of value a quantity has.  The numbers are written into files and told to products.
enum ParameterType : int {
  kNotAQuantity = 0,
  kReal = 1,
  kComplex = 2,
  kComplexArray = 11,
  kRealArray = 12,
  kInteger = 13,
  kText = 14,
};

} // namespace val

namespace ValueParamTypes {

inline bool IsParameterTypeArray(val::ParameterType type) {
  return type == val::kComplexArray || type == val::kRealArray;
}

} // namespace ValueParamTypes
