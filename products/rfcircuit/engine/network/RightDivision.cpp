#include "products/rfcircuit/engine/network/RightDivision.h"

#include <cmath>
#include <utility>

namespace rf {
namespace {

using Complex = std::complex<double>;

} // namespace

bool DivideFromTheRight(SMatrix & a, SMatrix & b, double smallestPivot) {
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
    if (!(std::abs(a(step, pivot)) > smallestPivot))
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

} // namespace rf
