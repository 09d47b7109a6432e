#include "basekit/value/units/UnitAlgebra.h"

#include <array>
#include <iterator>

namespace Units {

namespace {

// Powers of metre, kilogram, second, ampere and kelvin.
using Powers = std::array<int, 5>;

struct TypeRow {
  UnitType type;
  Powers powers;
};

// Angles, ratios and levels are pure numbers: they bring nothing to a product.
constexpr TypeRow typeRows[] = {
    {kFrequency, {0, 0, -1, 0, 0}},   {kTime, {0, 0, 1, 0, 0}},          {kLength, {1, 0, 0, 0, 0}},
    {kResistance, {2, 1, -3, -2, 0}}, {kCapacitance, {-2, -1, 4, 2, 0}}, {kInductance, {2, 1, -2, -2, 0}},
    {kVoltage, {2, 1, -3, -1, 0}},    {kCurrent, {0, 0, 0, 1, 0}},       {kPower, {2, 1, -3, 0, 0}},
    {kCharge, {0, 0, 1, 1, 0}},       {kTemperature, {0, 0, 0, 0, 1}},   {kConductance, {-2, -1, 3, 2, 0}},
};

Powers PowersOf(FullUnitType unit) {
  UnitType const type = GetUnitType(unit);
  for (TypeRow const & row : typeRows)
    if (row.type == type)
      return row.powers;
  return {};
}

bool IsPure(FullUnitType unit) { return PowersOf(unit) == Powers{}; }

FullUnitType UnitOf(Powers const & powers) {
  for (TypeRow const & row : typeRows)
    if (row.powers == powers)
      return GetDefaultUnits(row.type);
  return kNoUnits;
}

Powers Combined(Powers a, Powers const & b, int sign) {
  for (std::size_t i = 0; i < a.size(); ++i)
    a[i] += sign * b[i];
  return a;
}

} // namespace

FullUnitType WithoutOffset(FullUnitType unit) {
  Scale scale;
  return GetScale(unit, scale) && scale.offset != 0.0 ? GetDefaultUnits(GetUnitType(unit)) : unit;
}

FullUnitType UnitOfSum(FullUnitType a, FullUnitType b) {
  a = WithoutOffset(a);
  b = WithoutOffset(b);
  if (a == kNoUnits || b == kNoUnits)
    return a == kNoUnits ? b : a;
  return GetUnitType(a) == GetUnitType(b) ? a : kNoUnits;
}

FullUnitType UnitOfProduct(FullUnitType a, FullUnitType b) {
  a = WithoutOffset(a);
  b = WithoutOffset(b);
  if (a == kNoUnits || b == kNoUnits)
    return a == kNoUnits ? b : a;
  if (IsPure(a) || IsPure(b))
    return !IsPure(a) ? a : IsPure(b) ? kNoUnits : b;
  return UnitOf(Combined(PowersOf(a), PowersOf(b), 1));
}

FullUnitType UnitOfQuotient(FullUnitType a, FullUnitType b) {
  a = WithoutOffset(a);
  return b == kNoUnits || (IsPure(b) && !IsPure(a)) ? a : UnitOf(Combined(PowersOf(a), PowersOf(b), -1));
}

FullUnitType UnitOfRoot(FullUnitType a) {
  Powers powers = PowersOf(a);
  for (int & power : powers) {
    if (power % 2 != 0)
      return kNoUnits;
    power /= 2;
  }
  return UnitOf(powers);
}

} // namespace Units
