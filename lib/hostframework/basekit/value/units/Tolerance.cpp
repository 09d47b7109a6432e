#include "basekit/value/units/Tolerance.h"

#include "basekit/text/CaseFolding.h"

#include <algorithm>
#include <cmath>

namespace val {

bool EqualWithin(double a, double b, double relative, double absolute) {
  if (!std::isfinite(a) || !std::isfinite(b))
    return a == b;
  double const larger = std::max(std::fabs(a), std::fabs(b));
  double const distance = std::fabs(a - b);
  if (absolute >= larger || absolute >= distance)
    return true;
  return relative != 0.0 && larger * relative >= distance;
}

int CompareWithin(double a, double b, double relative, double absolute) {
  if (std::isnan(a) || std::isnan(b))
    return std::isnan(a) == std::isnan(b) ? 0 : std::isnan(b) ? 1 : 2;
  if (EqualWithin(a, b, relative, absolute))
    return 0;
  return a < b ? 1 : 2;
}

int CompareWithin(ComparedValue const & a, ComparedValue const & b, AComplex<double> const & relative,
                  AComplex<double> const & absolute) {
  if (a.isNumber != b.isNumber)
    return a.isNumber ? 1 : 2;
  if (!a.isNumber) {
    int const order = text::CompareNoCase(a.text, b.text);
    return order == 0 ? 0 : order < 0 ? 1 : 2;
  }
  int const real = CompareWithin(a.number.real(), b.number.real(), relative.real(), absolute.real());
  return real != 0 ? real : CompareWithin(a.number.imag(), b.number.imag(), relative.imag(), absolute.imag());
}

} // namespace val
