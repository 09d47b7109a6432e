#include "products/rfcircuit/engine/network/Renormalize.h"

#include <cmath>
#include <utility>

namespace rf {
namespace {

using Complex = std::complex<double>;

// Solves X A = B by elimination of columns, with the largest pivot of the row; B becomes X.  False when A is singular.
bool DivideFromTheRight(SMatrix & a, SMatrix & b) {
  std::size_t const n = a.Ports();
  auto const addColumn = [n](SMatrix & matrix, std::size_t to, std::size_t from, Complex factor) {
    for (std::size_t row = 0; row < n; ++row)
      matrix(row, to) += factor * matrix(row, from);
  };
  for (std::size_t step = 0; step < n; ++step) {
    std::size_t pivot = step;
    for (std::size_t column = step; column < n; ++column)
      if (std::abs(a(step, column)) > std::abs(a(step, pivot)))
        pivot = column;
    if (a(step, pivot) == 0.0)
      return false;
    for (std::size_t row = 0; row < n; ++row) {
      std::swap(a(row, step), a(row, pivot));
      std::swap(b(row, step), b(row, pivot));
    }
    Complex const scale = 1.0 / a(step, step);
    for (std::size_t row = 0; row < n; ++row) {
      a(row, step) *= scale;
      b(row, step) *= scale;
    }
    for (std::size_t column = 0; column < n; ++column) {
      Complex const factor = -a(step, column);
      if (column == step || factor == 0.0)
        continue;
      addColumn(a, column, step, factor);
      addColumn(b, column, step, factor);
    }
  }
  return true;
}

bool IsFinite(SMatrix const & matrix) {
  for (std::size_t i = 0; i < matrix.Ports() * matrix.Ports(); ++i) {
    Complex const value = matrix(i / matrix.Ports(), i % matrix.Ports());
    if (!std::isfinite(value.real()) || !std::isfinite(value.imag()))
      return false;
  }
  return true;
}

} // namespace

std::optional<SMatrix> Renormalized(SMatrix const & s, std::vector<double> const & from, double to) {
  std::size_t const n = s.Ports();
  SMatrix incoming(n);
  SMatrix outgoing(n);
  for (std::size_t row = 0; row < n; ++row) {
    double const root = 2 * std::sqrt(from[row]) * std::sqrt(to);
    double const plus = from[row] / root + to / root;
    double const minus = from[row] / root - to / root;
    for (std::size_t column = 0; column < n; ++column) {
      double const one = row == column ? 1 : 0;
      incoming(row, column) = plus * one + minus * s(row, column);
      outgoing(row, column) = minus * one + plus * s(row, column);
    }
  }
  if (!DivideFromTheRight(incoming, outgoing) || !IsFinite(outgoing))
    return std::nullopt;
  return outgoing;
}

} // namespace rf
