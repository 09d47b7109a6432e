#include "products/rfcircuit/engine/network/NetworkParameters.h"

#include "products/rfcircuit/engine/network/RightDivision.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace rf {
namespace {

// What rounding leaves of differences between one and S-parameters that should be zero.
double Rounding(SMatrix const & s) {
  double largest = 1.0;
  for (std::size_t row = 0; row < s.Ports(); ++row)
    for (std::size_t column = 0; column < s.Ports(); ++column)
      largest = std::max(largest, std::abs(s(row, column)));
  return 8.0 * static_cast<double>(s.Ports()) * largest * std::numeric_limits<double>::epsilon();
}

// (1 + sign S) (1 - sign S)^-1
std::optional<SMatrix> Quotient(SMatrix const & s, double sign) {
  std::size_t const n = s.Ports();
  SMatrix dividend(n);
  SMatrix divisor(n);
  for (std::size_t row = 0; row < n; ++row)
    for (std::size_t column = 0; column < n; ++column) {
      double const one = row == column ? 1.0 : 0.0;
      dividend(row, column) = one + sign * s(row, column);
      divisor(row, column) = one - sign * s(row, column);
    }
  if (!DivideFromTheRight(divisor, dividend, Rounding(s)) || !IsFinite(dividend))
    return std::nullopt;
  return dividend;
}

std::optional<SMatrix> Scaled(std::optional<SMatrix> matrix, std::vector<double> const & factors) {
  if (matrix)
    for (std::size_t row = 0; row < factors.size(); ++row)
      for (std::size_t column = 0; column < factors.size(); ++column)
        (*matrix)(row, column) *= std::sqrt(factors[row]) * std::sqrt(factors[column]);
  return matrix;
}

} // namespace

std::optional<SMatrix> ImpedanceMatrix(SMatrix const & s, std::vector<double> const & z0) {
  return Scaled(Quotient(s, 1.0), z0);
}

std::optional<SMatrix> AdmittanceMatrix(SMatrix const & s, std::vector<double> const & z0) {
  std::vector<double> inverse;
  for (double const z : z0)
    inverse.push_back(1.0 / z);
  return Scaled(Quotient(s, -1.0), inverse);
}

} // namespace rf
