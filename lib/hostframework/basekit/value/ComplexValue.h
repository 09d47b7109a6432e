#pragma once

#include "basekit/value/AComplex.h"
#include "basekit/value/UnitValue_T.h"

/// A complex number with a unit.
class ComplexValue : public UnitValue_T<AComplex<double>> {
public:
  using UnitValue_T::UnitValue_T;
};
