#pragma once

#include "basekit/value/ValueBase.h"

#include <complex>
#include <span>
#include <vector>

/// Samples of a quantity in SI units, real or complex; never changed after it is made.
class ColumnValue : public ValueBase {
public:
  ColumnValue(std::vector<double> samples, Units::FullUnitType units);
  ColumnValue(std::vector<std::complex<double>> samples, Units::FullUnitType units);

  ValueState GetValueState() const override;
  bool IsComplex() const { return m_isComplex; }
  std::size_t GetCount() const { return m_isComplex ? m_complex.size() : m_real.size(); }
  /// Empty for a complex column.
  std::span<double const> GetReals() const { return m_real; }
  /// Empty for a real column.
  std::span<std::complex<double> const> GetComplexes() const { return m_complex; }

private:
  ValueBase * CloneValueBase() const override { return new ColumnValue(*this); }

  std::vector<double> m_real;
  std::vector<std::complex<double>> m_complex;
  Units::FullUnitType m_units;
  bool m_isComplex;
};
