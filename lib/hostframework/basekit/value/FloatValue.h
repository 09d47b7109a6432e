#pragma once

#include "basekit/value/UnitValue_T.h"

/// A real number with a unit.
class FloatValue : public UnitValue_T<double> {
public:
  using UnitValue_T::UnitValue_T;
};
