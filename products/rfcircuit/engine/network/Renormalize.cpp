#include "products/rfcircuit/engine/network/Renormalize.h"

#include "products/rfcircuit/engine/network/RightDivision.h"

#include <cmath>

namespace rf {

std::optional<SMatrix> Renormalized(SMatrix const & s, std::vector<double> const & from,
                                    std::vector<std::complex<double>> const & to) {
  std::size_t const n = s.Ports();
  SMatrix incoming(n);
  SMatrix outgoing(n);
  for (std::size_t row = 0; row < n; ++row) {
    double const root = 2 * std::sqrt(from[row]) * std::sqrt(to[row].real());
    std::complex<double> const plus = from[row] / root + to[row] / root;
    std::complex<double> const minus = from[row] / root - to[row] / root;
    for (std::size_t column = 0; column < n; ++column) {
      double const one = row == column ? 1 : 0;
      incoming(row, column) = plus * one + minus * s(row, column);
      outgoing(row, column) = std::conj(minus) * one + std::conj(plus) * s(row, column);
    }
  }
  if (!DivideFromTheRight(incoming, outgoing) || !IsFinite(outgoing))
    return std::nullopt;
  return outgoing;
}

std::optional<SMatrix> Renormalized(SMatrix const & s, std::vector<double> const & from, double to) {
  return Renormalized(s, from, std::vector<std::complex<double>>(from.size(), to));
}

} // namespace rf
