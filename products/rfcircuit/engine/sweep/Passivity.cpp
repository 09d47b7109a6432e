#include "products/rfcircuit/engine/sweep/Passivity.h"

#include <cmath>

namespace rf {

Passivity::Passivity(std::size_t ports, double tolerance)
    : m_Ports(ports), m_Bound((1 + tolerance) * (1 + tolerance)), m_Rest(ports * ports) {}

// bound - S^H S is positive definite exactly when it has a Cholesky factor.
bool Passivity::Holds(std::complex<double> const * matrix) {
  std::size_t const n = m_Ports;
  for (std::size_t row = 0; row < n; ++row) {
    for (std::size_t column = 0; column <= row; ++column) {
      double re = row == column ? m_Bound : 0;
      double im = 0;
      for (std::size_t k = 0; k < n; ++k) {
        auto const & left = matrix[k * n + row];
        auto const & right = matrix[k * n + column];
        re -= left.real() * right.real() + left.imag() * right.imag();
        im -= left.real() * right.imag() - left.imag() * right.real();
      }
      for (std::size_t k = 0; k < column; ++k) {
        auto const & left = m_Rest[row * n + k];
        auto const & right = m_Rest[column * n + k];
        re -= left.real() * right.real() + left.imag() * right.imag();
        im -= left.imag() * right.real() - left.real() * right.imag();
      }
      if (row == column) {
        if (!(re > 0))
          return false;
        m_Rest[row * n + row] = std::sqrt(re);
      } else {
        double const pivot = m_Rest[column * n + column].real();
        m_Rest[row * n + column] = {re / pivot, im / pivot};
      }
    }
  }
  return true;
}

} // namespace rf
