#include "plotkit/simvalue/ValueColumn.h"

#include "basekit/value/ColumnValue.h"
#include "basekit/value/Value.h"
#include "basekit/value/units/QuantityText.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr double kMissing = std::numeric_limits<double>::quiet_NaN();
wchar_t const * const kNoText = L"N/A";

template <class Number>
std::vector<Number> Arranged(std::vector<Number> const & numbers, std::vector<ValueColumn::Range> const & ranges) {
  std::size_t count = 0;
  for (auto const & [first, length] : ranges)
    count += length;
  std::vector<Number> arranged;
  arranged.reserve(count);
  for (auto const & [first, length] : ranges) {
    auto const from = numbers.begin() + static_cast<std::ptrdiff_t>(first);
    arranged.insert(arranged.end(), from, from + static_cast<std::ptrdiff_t>(length));
  }
  return arranged;
}

/// A nan is a missing number, whatever its bits.
bool IsSameNumber(double a, double b) {
  return std::isnan(a) ? std::isnan(b) : a == b && std::signbit(a) == std::signbit(b);
}

} // namespace

std::complex<double> ValueColumn::GetNumber(std::size_t place) const {
  return m_isComplex ? m_complexes[place] : std::complex<double>(m_reals[place]);
}

bool ValueColumn::IsValid(std::size_t place) const {
  if (place >= GetCount())
    return false;
  std::complex<double> const number = GetNumber(place);
  return !std::isnan(number.real()) && !std::isnan(number.imag());
}

AString ValueColumn::GetText(std::size_t place, Units::FullUnitType units) const {
  if (!IsValid(place))
    return kNoText;
  std::complex<double> const number = GetNumber(place);
  return val::QuantityText({number.real(), number.imag(), m_isComplex, units});
}

void ValueColumn::Clear() {
  m_reals.clear();
  m_complexes.clear();
  m_isComplex = false;
}

void ValueColumn::Reserve(std::size_t count) {
  if (m_isComplex)
    m_complexes.reserve(count);
  else
    m_reals.reserve(count);
}

void ValueColumn::MakeComplex() {
  if (m_isComplex)
    return;
  m_complexes.reserve(std::max(m_reals.capacity(), m_reals.size()));
  m_complexes.assign(m_reals.begin(), m_reals.end());
  m_reals = {};
  m_isComplex = true;
}

void ValueColumn::Append(Value const & value) {
  if (ColumnValue const * const column = value.GetColumn()) {
    if (column->IsComplex())
      Append(column->GetComplexes());
    else
      Append(column->GetReals());
  } else if (!value.IsNumber() && !value.GetExpression()) {
    AppendInvalid();
  } else if (postp::GetBasicParamType(value.GetParameterType()) == val::kComplex) {
    Append(std::complex<double>(value.GetComplexSIValue()));
  } else {
    Append(value.GetSIValue());
  }
}

void ValueColumn::Append(std::span<double const> numbers) {
  if (m_isComplex)
    m_complexes.insert(m_complexes.end(), numbers.begin(), numbers.end());
  else
    m_reals.insert(m_reals.end(), numbers.begin(), numbers.end());
}

void ValueColumn::Append(std::span<std::complex<double> const> numbers) {
  if (numbers.empty())
    return;
  MakeComplex();
  m_complexes.insert(m_complexes.end(), numbers.begin(), numbers.end());
}

void ValueColumn::AppendInvalid(std::size_t count) {
  if (m_isComplex)
    m_complexes.insert(m_complexes.end(), count, {kMissing, kMissing});
  else
    m_reals.insert(m_reals.end(), count, kMissing);
}

void ValueColumn::Arrange(std::vector<Range> const & ranges) {
  if (m_isComplex)
    m_complexes = Arranged(m_complexes, ranges);
  else
    m_reals = Arranged(m_reals, ranges);
}

bool ValueColumn::IsSame(ValueColumn const & other) const {
  return m_isComplex == other.m_isComplex &&
         std::equal(m_reals.begin(), m_reals.end(), other.m_reals.begin(), other.m_reals.end(), IsSameNumber) &&
         std::equal(m_complexes.begin(), m_complexes.end(), other.m_complexes.begin(), other.m_complexes.end(),
                    [](auto const & a, auto const & b) {
                      return IsSameNumber(a.real(), b.real()) && IsSameNumber(a.imag(), b.imag());
                    });
}

std::size_t ValueColumn::SizeOf() const {
  return m_reals.capacity() * sizeof(double) + m_complexes.capacity() * sizeof(std::complex<double>);
}
