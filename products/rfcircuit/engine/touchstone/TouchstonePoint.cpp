#include "products/rfcircuit/engine/touchstone/TouchstonePoint.h"

#include "products/rfcircuit/engine/network/RightDivision.h"

#include <cmath>
#include <limits>
#include <numbers>

namespace rf {
namespace {

using Layout = TouchstoneFacts::Layout;
constexpr double RADIANS = std::numbers::pi / 180;

std::complex<double> Polar(double magnitude, double degrees) {
  double const angle = degrees * RADIANS;
  return {magnitude * std::cos(angle), magnitude * std::sin(angle)};
}

bool TellsVoltage(char parameters, std::size_t port) {
  return parameters == 'Z' || (parameters == 'H' && port == 0) || (parameters == 'G' && port == 1);
}

} // namespace

TouchstonePointMaker::TouchstonePointMaker(TouchstoneHead const & head) : m_Head(head) {
  std::size_t const n = head.ports;
  m_Numbers = head.facts.layout == Layout::Full ? 2 * n * n : n * (n + 1);
  if (head.facts.parameters == 'S')
    return;
  for (std::size_t port = 0; port < n; ++port) {
    bool const isVoltage = TellsVoltage(head.facts.parameters, port);
    double const root = head.HasKeywords() ? std::sqrt(head.z0[port]) : 1; // version 1 has them normalised
    m_Signs.push_back(isVoltage ? 1 : -1);
    m_Factors.push_back(isVoltage ? 1 / root : root);
  }
}

std::optional<SMatrix> TouchstonePointMaker::Make(std::vector<double> const & numbers) const {
  SMatrix matrix = Placed(numbers);
  if (m_Head.facts.parameters != 'S')
    return Scattering(std::move(matrix));
  bool const mayOverflow = m_Head.facts.format == TouchstoneFacts::Format::DecibelDegrees;
  if (mayOverflow && !IsFinite(matrix))
    return std::nullopt;
  return matrix;
}

SMatrix TouchstonePointMaker::Placed(std::vector<double> const & numbers) const {
  switch (m_Head.facts.format) {
  case TouchstoneFacts::Format::MagnitudeDegrees:
    return Placed(numbers, Polar);
  case TouchstoneFacts::Format::DecibelDegrees:
    return Placed(numbers, [](double decibels, double degrees) { return Polar(std::pow(10, decibels / 20), degrees); });
  default:
    return Placed(numbers, [](double real, double imaginary) { return std::complex<double>(real, imaginary); });
  }
}

template <class ToValue>
SMatrix TouchstonePointMaker::Placed(std::vector<double> const & numbers, ToValue const & toValue) const {
  std::size_t const n = m_Head.ports;
  Layout const layout = m_Head.facts.layout;
  bool const isByColumn = n == 2 && layout == Layout::Full && m_Head.facts.isTwoPortOrder21First;
  SMatrix matrix(n);
  double const * number = numbers.data();
  for (std::size_t row = 0; row < n; ++row) {
    std::size_t const first = layout == Layout::Upper ? row : 0;
    std::size_t const last = layout == Layout::Lower ? row + 1 : n;
    for (std::size_t column = first; column < last; ++column, number += 2) {
      std::complex<double> const value = toValue(number[0], number[1]);
      (isByColumn ? matrix(column, row) : matrix(row, column)) = value;
      if (layout != Layout::Full)
        matrix(column, row) = value;
    }
  }
  return matrix;
}

// Normalised voltages and currents are v = a + b and i = a - b.  Where X gives v for i at some ports and i for v at
// the others, with b' = b at the first and -b at the second, a + b' = X (a - b'), so b' = (X - 1) (X + 1)^-1 a.
std::optional<SMatrix> TouchstonePointMaker::Scattering(SMatrix parameters) const {
  std::size_t const n = m_Head.ports;
  double largest = 1;
  for (std::size_t row = 0; row < n; ++row)
    for (std::size_t column = 0; column < n; ++column) {
      parameters(row, column) *= m_Factors[row] * m_Factors[column];
      largest = std::max(largest, std::abs(parameters(row, column)));
    }
  SMatrix divisor = parameters;
  for (std::size_t port = 0; port < n; ++port) {
    parameters(port, port) -= 1;
    divisor(port, port) += 1;
  }
  double const rounding = 8 * static_cast<double>(n) * std::numeric_limits<double>::epsilon();
  if (!std::isfinite(largest) || !DivideFromTheRight(divisor, parameters, rounding) || !IsFinite(parameters))
    return std::nullopt;
  for (std::size_t row = 0; row < n; ++row)
    for (std::size_t column = 0; column < n; ++column)
      parameters(row, column) *= m_Signs[row];
  return parameters;
}

} // namespace rf
