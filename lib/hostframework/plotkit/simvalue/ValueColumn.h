#pragma once

#include "basekit/text/AString.h"
#include "basekit/value/units/Units.h"

#include <complex>
#include <cstddef>
#include <span>
#include <utility>
#include <vector>

class Value;

/// Numbers in SI units, one behind the other, real until the first complex one enters; a missing number is nan.  The
/// numbers lie in one run of memory, which grows by halves.
class ValueColumn {
public:
  /// First place and count.
  using Range = std::pair<std::size_t, std::size_t>;

  std::size_t GetCount() const { return m_isComplex ? m_complexes.size() : m_reals.size(); }
  bool empty() const { return GetCount() == 0; }
  bool IsComplex() const { return m_isComplex; }
  /// Empty for a complex column.
  std::span<double const> GetReals() const { return m_reals; }
  /// Empty for a real column.
  std::span<std::complex<double> const> GetComplexes() const { return m_complexes; }
  /// At a place that is there.
  std::complex<double> GetNumber(std::size_t place) const;
  bool IsValid(std::size_t place) const;
  /// As it reads back, number and unit; "N/A" for a missing number and a place that is not there.
  AString GetText(std::size_t place, Units::FullUnitType units = Units::kNoUnits) const;

  void Clear();
  void Reserve(std::size_t count);
  /// A number, a column, or an expression as it stands now; what is no number is missing.
  void Append(Value const & value);
  void Append(double number) { Append({&number, 1}); }
  void Append(std::complex<double> const & number) { Append({&number, 1}); }
  void Append(std::span<double const> numbers);
  void Append(std::span<std::complex<double> const> numbers);
  /// So many missing ones.
  void AppendInvalid(std::size_t count = 1);
  /// These ranges of the numbers in this order; what lies in none of them is dropped.
  void Arrange(std::vector<Range> const & ranges);

  /// Bit for bit, and of the same kind.
  bool IsSame(ValueColumn const & other) const;
  /// Bytes that the numbers take.
  std::size_t SizeOf() const;

private:
  void MakeComplex();

  std::vector<double> m_reals;
  std::vector<std::complex<double>> m_complexes;
  bool m_isComplex = false;
};
