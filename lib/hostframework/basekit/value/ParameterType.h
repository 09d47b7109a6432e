#pragma once

namespace val {

/// What kind of value a quantity has.  The numbers are written into files and told to products; 14 is this system's own
/// and never leaves it.
enum ParameterType : int {
  kNotAQuantity = 0,
  kReal = 1,
  kComplex = 2,
  kMagnitudeDegrees = 3, ///< a complex number shown as magnitude and angle in degrees
  kMagnitudeRadians = 4, ///< a complex number shown as magnitude and angle in radians
  kDecibelDegrees = 5,   ///< a complex number shown as magnitude in dB and angle in degrees
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

namespace postp {

/// What one sample of a quantity is, real or complex, however it is shown; other types are their own.
inline val::ParameterType GetBasicParamType(val::ParameterType type) {
  switch (type) {
  case val::kInteger:
  case val::kRealArray:
    return val::kReal;
  case val::kMagnitudeDegrees:
  case val::kMagnitudeRadians:
  case val::kDecibelDegrees:
  case val::kComplexArray:
    return val::kComplex;
  default:
    return type;
  }
}

} // namespace postp
