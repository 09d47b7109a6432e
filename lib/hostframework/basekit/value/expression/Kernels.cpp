#include "basekit/value/expression/Kernels.h"

#include <algorithm>

namespace expr {

void MakeComplex(double const * const * a, double * out, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i)
    Store(out, i, {a[0][i], a[1][i]});
}

void MakePolar(double const * const * a, double * out, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    double const angle = a[1][i] / math::degreesPerRadian;
    Store(out, i, {a[0][i] * std::cos(angle), a[0][i] * std::sin(angle)});
  }
}

void CopyComplex(double const * const * a, double * out, std::size_t count) {
  if (a[0] != out)
    std::copy(a[0], a[0] + 2 * count, out);
}

void Widen(double const * const * a, double * out, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i)
    Store(out, i, a[0][i]);
}

} // namespace expr
