#include "products/rfcircuit/engine/sweep/SmallestSingularVector.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace rf {
namespace {

using Complex = std::complex<double>;

constexpr int ITERATIONS = 4;

double Norm(Complex const * vector, std::size_t size) {
  double sum = 0;
  for (std::size_t i = 0; i < size; ++i)
    sum += vector[i].real() * vector[i].real() + vector[i].imag() * vector[i].imag();
  return std::sqrt(sum);
}

void Scale(Complex * vector, std::size_t size, double factor) {
  for (std::size_t i = 0; i < size; ++i)
    vector[i] = {vector[i].real() * factor, vector[i].imag() * factor};
}

// Real arithmetic: the operators of complex numbers look for NaN at each step.
Complex InnerProduct(Complex const * left, Complex const * right, std::size_t size) {
  double re = 0;
  double im = 0;
  for (std::size_t i = 0; i < size; ++i) {
    re += left[i].real() * right[i].real() + left[i].imag() * right[i].imag();
    im += left[i].real() * right[i].imag() - left[i].imag() * right[i].real();
  }
  return {re, im};
}

void Subtract(Complex * from, Complex const * vector, Complex factor, std::size_t size) {
  for (std::size_t i = 0; i < size; ++i)
    from[i] = {from[i].real() - factor.real() * vector[i].real() + factor.imag() * vector[i].imag(),
               from[i].imag() - factor.real() * vector[i].imag() - factor.imag() * vector[i].real()};
}

/** Upper triangular, with a diagonal that can be divided by. */
class Triangle {
public:
  Triangle(std::vector<Complex> & matrix, std::size_t columns) : m_Size(columns), m_Entries(columns * columns) {
    std::size_t const rows = matrix.size() / columns;
    for (std::size_t k = 0; k < columns; ++k) {
      Complex * const column = matrix.data() + k * rows;
      double const length = Norm(column, rows);
      At(k, k) = length;
      Scale(column, rows, length > 0 ? 1 / length : 0);
      for (std::size_t j = k + 1; j < columns; ++j) {
        At(k, j) = InnerProduct(column, matrix.data() + j * rows, rows);
        Subtract(matrix.data() + j * rows, column, At(k, j), rows);
      }
    }
    double constexpr smallest = std::numeric_limits<double>::epsilon() * 1e-2; // columns have unit length
    for (std::size_t k = 0; k < columns; ++k)
      At(k, k) = std::max(At(k, k).real(), smallest);
  }

  /** Solves R^H R x = b in place. */
  void SolveSquare(std::vector<Complex> & vector) {
    for (std::size_t i = 0; i < m_Size; ++i) {
      for (std::size_t k = 0; k < i; ++k)
        vector[i] -= std::conj(At(k, i)) * vector[k];
      vector[i] /= At(i, i).real();
    }
    Scale(vector.data(), m_Size, 1 / Norm(vector.data(), m_Size));
    for (std::size_t i = m_Size; i-- > 0;) {
      for (std::size_t k = i + 1; k < m_Size; ++k)
        vector[i] -= At(i, k) * vector[k];
      vector[i] /= At(i, i).real();
    }
  }

private:
  Complex & At(std::size_t row, std::size_t column) { return m_Entries[row * m_Size + column]; }

  std::size_t m_Size;
  std::vector<Complex> m_Entries;
};

} // namespace

std::vector<Complex> SmallestSingularVector(std::vector<Complex> matrix, std::size_t columns) {
  std::size_t const rows = matrix.size() / columns;
  std::vector<double> scales(columns, 1.0);
  for (std::size_t k = 0; k < columns; ++k) {
    double const length = Norm(matrix.data() + k * rows, rows);
    if (length > 0)
      scales[k] = 1 / length;
    Scale(matrix.data() + k * rows, rows, scales[k]);
  }
  Triangle triangle(matrix, columns);
  std::vector<Complex> vector(columns, 1.0);
  for (int i = 0; i < ITERATIONS; ++i) {
    triangle.SolveSquare(vector);
    Scale(vector.data(), columns, 1 / Norm(vector.data(), columns));
  }
  double const largest = *std::max_element(scales.begin(), scales.end());
  for (std::size_t k = 0; k < columns; ++k)
    vector[k] *= scales[k] / largest;
  return vector;
}

} // namespace rf
