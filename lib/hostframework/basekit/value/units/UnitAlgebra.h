#pragma once

#include "basekit/value/units/Units.h"

namespace Units {

/// A unit with an offset, such as degrees Celsius, is for values alone: what is computed of them, differences first of
/// all, is in the plain unit of their kind.
FullUnitType WithoutOffset(FullUnitType unit);
/// The unit that a sum of two is shown in: that of the one that has one; none when they measure different things.
FullUnitType UnitOfSum(FullUnitType a, FullUnitType b);
/// The unit of a product or quotient; none when no unit in the table measures it.
FullUnitType UnitOfProduct(FullUnitType a, FullUnitType b);
FullUnitType UnitOfQuotient(FullUnitType a, FullUnitType b);
FullUnitType UnitOfRoot(FullUnitType a);

} // namespace Units
