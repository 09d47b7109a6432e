#include "basekit/value/Variable.h"

namespace val {
wchar_t const * const kIntrinsicFrequency = L"F";
wchar_t const * const kIntrinsicTime = L"Time";
wchar_t const * const kIntrinsicPass = L"Pass";
} // namespace val

Variable * Value::GetIntrinsicVariable(AString const & name) {
  static Variable variables[] = {
      {val::kIntrinsicFrequency, Value(Units::GetDefaultUnits(Units::kFrequency))},
      {val::kIntrinsicTime, Value(Units::GetDefaultUnits(Units::kTime))},
      {val::kIntrinsicPass, Value()},
  };
  for (Variable & variable : variables)
    if (AString::MatchNoCase(variable.GetName(), name))
      return &variable;
  return nullptr;
}
