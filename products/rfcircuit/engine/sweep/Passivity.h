#pragma once

#include <complex>
#include <cstddef>
#include <vector>

namespace rf {

/** Whether no wave that enters comes out with more power: the largest singular value of a square matrix, row by row, is
    at most 1 + tolerance.  False for a matrix that is not finite.  Keeps its scratch memory. */
class Passivity {
public:
  Passivity(std::size_t ports, double tolerance);
  bool Holds(std::complex<double> const * matrix);

private:
  std::size_t m_Ports;
  double m_Bound;
  std::vector<std::complex<double>> m_Rest; ///< bound^2 - S^H S, then its Cholesky factor
};

} // namespace rf
