#pragma once

#include "basekit/value/units/Units.h"

/// A unit as its text shows it.
class UnitDefinition {
public:
  UnitDefinition() = default;
  explicit UnitDefinition(Units::FullUnitType unit) : m_unit(unit) {}

  Units::FullUnitType GetFullUnitType() const { return m_unit; }
  Units::UnitType GetUnitType() const { return Units::GetUnitType(m_unit); }
  /// Empty for no unit.
  AString GetUnitString() const { return Units::GetSymbol(m_unit); }

private:
  Units::FullUnitType m_unit = Units::kNoUnits;
};

namespace Units {

/// Numbers that are no unit give that of no unit.
UnitDefinition GetUnitDef(FullUnitType unit);

} // namespace Units
