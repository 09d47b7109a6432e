#pragma once

#include "basekit/value/units/Units.h"

/// A number in SI units that may be missing; without one it reads as zero.
template <class T> class UnitValue_T {
public:
  explicit UnitValue_T(Units::FullUnitType units = Units::kNoUnits) : m_units(units) {}
  UnitValue_T(T const & value, Units::FullUnitType units) : m_value(value), m_units(units), m_hasValue(true) {}

  bool HasValue() const { return m_hasValue; }
  T const & GetValue() const { return m_value; }
  void SetValue(T const & value) {
    m_value = value;
    m_hasValue = true;
  }
  void ClearValue() {
    m_value = T();
    m_hasValue = false;
  }
  Units::FullUnitType GetUnits() const { return m_units; }

  friend bool operator==(UnitValue_T const & a, UnitValue_T const & b) = default;

private:
  T m_value = T();
  Units::FullUnitType m_units;
  bool m_hasValue = false;
};
