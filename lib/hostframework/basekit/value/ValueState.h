#pragma once

#include "basekit/value/ParameterType.h"
#include "basekit/value/units/Units.h"

/// What is known of a value before it is evaluated.  The third word is 1 in every state made here.
struct ValueState {
  Units::FullUnitType fullUnit = Units::kNoUnits;
  Units::UnitType unitType = Units::kNoUnitType;
  int thirdWord = 1;
  val::ParameterType parameterType = val::kNotAQuantity;

  /// The state of an unknown quantity.
  ValueState() = default;
  ValueState(Units::FullUnitType unit, Units::UnitType type, int third, val::ParameterType parameter)
      : fullUnit(unit), unitType(type), thirdWord(third), parameterType(parameter) {}

  friend bool operator==(ValueState const & a, ValueState const & b) = default;
};
static_assert(sizeof(ValueState) == 16);
