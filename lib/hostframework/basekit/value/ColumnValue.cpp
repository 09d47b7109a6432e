#include "basekit/value/ColumnValue.h"

ColumnValue::ColumnValue(std::vector<double> samples, Units::FullUnitType units)
    : m_real(std::move(samples)), m_units(units), m_isComplex(false) {}

ColumnValue::ColumnValue(std::vector<std::complex<double>> samples, Units::FullUnitType units)
    : m_complex(std::move(samples)), m_units(units), m_isComplex(true) {}

ValueState ColumnValue::GetValueState() const {
  return {m_units, Units::GetUnitType(m_units), 1, m_isComplex ? val::kComplexArray : val::kRealArray};
}
