#include "plotkit/simvalue/DatasetValue.h"

#include "basekit/value/Variable.h"

#include <initializer_list>

ValueState DatasetValue::StateOf(ValueState const & first, ValueState const & second) {
  val::ParameterType const basic = postp::GetBasicParamType(second.parameterType);
  bool const isDataset =
      postp::GetBasicParamType(first.parameterType) == val::kReal && (basic == val::kReal || basic == val::kComplex);
  if (!isDataset)
    return {};
  return {second.fullUnit, second.unitType, 1, basic == val::kReal ? val::kRealArray : val::kComplexArray};
}

bool DatasetValue::UsesVariable(Variable const & variable) const {
  auto const uses = [&variable](ValueBase const * value) {
    return value && (value == &variable || value->UsesVariable(variable));
  };
  return uses(GetFirst()) || uses(GetSecond());
}

bool DatasetValue::DoReceiveMsg(ValueMessage & message) const {
  bool isTaken = false;
  for (ValueBase const * const value : {GetFirst(), GetSecond()})
    if (value)
      isTaken = value->ReceiveMsg(message) || isTaken;
  return isTaken;
}
