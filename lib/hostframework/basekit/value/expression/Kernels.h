#pragma once

#include <cmath>
#include <complex>
#include <cstddef>
#include <limits>
#include <numbers>

/// The arithmetic of single samples, real and complex, and the loops that run it over chunks.
namespace expr {

using Complex = std::complex<double>;

namespace math {

inline constexpr double missing = std::numeric_limits<double>::quiet_NaN();
inline constexpr double degreesPerRadian = 180.0 / std::numbers::pi;

inline double Same(double x) { return x; }
inline double Zero(double x) { return std::isnan(x) ? x : 0.0; }
inline double RealPart(Complex z) { return z.real(); }
inline double ImaginaryPart(Complex z) { return z.imag(); }
inline Complex Conjugate(Complex z) { return std::conj(z); }
inline double Magnitude(double x) { return std::fabs(x); }
inline double Magnitude(Complex z) { return std::abs(z); }
inline double Decibel(double x) { return 20.0 * std::log10(std::fabs(x)); }
inline double Decibel(Complex z) { return 20.0 * std::log10(std::abs(z)); }
inline double Decibel10(double x) { return 10.0 * std::log10(std::fabs(x)); }
inline double Decibel10(Complex z) { return 10.0 * std::log10(std::abs(z)); }
inline double DecibelMilliwatt(double x) { return 30.0 + Decibel10(x); }
inline double DecibelMilliwatt(Complex z) { return 30.0 + Decibel10(z); }
inline double Angle(double x) { return std::isnan(x) ? x : x < 0.0 ? std::numbers::pi : 0.0; }
inline double Angle(Complex z) { return std::arg(z); }
inline double AngleDegrees(double x) { return Angle(x) * degreesPerRadian; }
inline double AngleDegrees(Complex z) { return Angle(z) * degreesPerRadian; }
inline double StandingWaveRatio(double x) {
  double const m = std::fabs(x);
  return m >= 1.0 ? std::numeric_limits<double>::infinity() : (1.0 + m) / (1.0 - m);
}
inline double StandingWaveRatio(Complex z) { return StandingWaveRatio(std::abs(z)); }
inline double SquareRoot(double x) { return std::sqrt(x); }
inline Complex SquareRoot(Complex z) { return std::sqrt(z); }
inline double Exponential(double x) { return std::exp(x); }
inline Complex Exponential(Complex z) { return std::exp(z); }
inline double Logarithm(double x) { return std::log(x); }
inline Complex Logarithm(Complex z) { return std::log(z); }
inline double Logarithm10(double x) { return std::log10(x); }
inline Complex Logarithm10(Complex z) { return std::log10(z); }
inline double Logarithm2(double x) { return std::log2(x); }
inline double Sine(double x) { return std::sin(x); }
inline Complex Sine(Complex z) { return std::sin(z); }
inline double Cosine(double x) { return std::cos(x); }
inline Complex Cosine(Complex z) { return std::cos(z); }
inline double Tangent(double x) { return std::tan(x); }
inline Complex Tangent(Complex z) { return std::tan(z); }
inline double ArcSine(double x) { return std::asin(x); }
inline double ArcCosine(double x) { return std::acos(x); }
inline double ArcTangent(double x) { return std::atan(x); }
inline double ArcTangent2(double y, double x) { return std::atan2(y, x); }
inline double HyperbolicSine(double x) { return std::sinh(x); }
inline Complex HyperbolicSine(Complex z) { return std::sinh(z); }
inline double HyperbolicCosine(double x) { return std::cosh(x); }
inline Complex HyperbolicCosine(Complex z) { return std::cosh(z); }
inline double HyperbolicTangent(double x) { return std::tanh(x); }
inline Complex HyperbolicTangent(Complex z) { return std::tanh(z); }
inline double Lesser(double x, double y) { return std::isnan(x) || x < y ? x : y; }
inline double Greater(double x, double y) { return std::isnan(x) || x > y ? x : y; }
inline double Limit(double x, double low, double high) { return Lesser(Greater(x, low), high); }
inline double Hypotenuse(double x, double y) { return std::hypot(x, y); }
inline double Remainder(double x, double y) { return x - y * std::floor(x / y); }
inline double Floor(double x) { return std::floor(x); }
inline double Ceiling(double x) { return std::ceil(x); }
inline double Rounded(double x) { return std::round(x); }
inline double Sign(double x) { return std::isnan(x) ? x : x > 0.0 ? 1.0 : x < 0.0 ? -1.0 : 0.0; }
inline double IsMissing(double x) { return std::isnan(x) ? 1.0 : 0.0; }
inline double IsMissing(Complex z) { return std::isnan(z.real()) || std::isnan(z.imag()) ? 1.0 : 0.0; }

inline double Add(double x, double y) { return x + y; }
inline Complex Add(Complex x, Complex y) { return x + y; }
inline double Subtract(double x, double y) { return x - y; }
inline Complex Subtract(Complex x, Complex y) { return x - y; }
inline double Multiply(double x, double y) { return x * y; }
// The plain formula: the standard's own repairs infinities at the price of a branch and a call for each product.
inline Complex Multiply(Complex x, Complex y) {
  return {x.real() * y.real() - x.imag() * y.imag(), x.real() * y.imag() + x.imag() * y.real()};
}
inline double Divide(double x, double y) { return x / y; }
inline Complex Divide(Complex x, Complex y) { return x / y; }
inline double Negate(double x) { return -x; }
inline Complex Negate(Complex z) { return -z; }
inline double Square(double x) { return x * x; }
inline Complex Square(Complex z) { return Multiply(z, z); }
inline double Power(double x, double y) { return std::pow(x, y); }
inline Complex Power(Complex x, Complex y) {
  if (y == Complex(0.0))
    return 1.0;
  if (x == Complex(0.0) && y.imag() == 0.0)
    return std::pow(0.0, y.real());
  return std::pow(x, y);
}
inline double Less(double x, double y) { return x < y ? 1.0 : 0.0; }
inline double LessOrEqual(double x, double y) { return x <= y ? 1.0 : 0.0; }
inline double MoreThan(double x, double y) { return x > y ? 1.0 : 0.0; }
inline double MoreOrEqual(double x, double y) { return x >= y ? 1.0 : 0.0; }
inline double Equal(double x, double y) { return x == y ? 1.0 : 0.0; }
inline double Equal(Complex x, Complex y) { return x == y ? 1.0 : 0.0; }
inline double Unequal(double x, double y) { return x != y ? 1.0 : 0.0; }
inline double Unequal(Complex x, Complex y) { return x != y ? 1.0 : 0.0; }
// No value is neither true nor false: it decides nothing, and what it leaves open has no value.
inline double And(double x, double y) {
  if (x == 0.0 || y == 0.0)
    return 0.0;
  return std::isnan(x) || std::isnan(y) ? missing : 1.0;
}
inline double Or(double x, double y) {
  bool const one = (x != 0.0 && !std::isnan(x)) || (y != 0.0 && !std::isnan(y));
  return one ? 1.0 : std::isnan(x) || std::isnan(y) ? missing : 0.0;
}
inline double Not(double x) { return std::isnan(x) ? x : x == 0.0 ? 1.0 : 0.0; }

} // namespace math

inline Complex ComplexAt(double const * samples, std::size_t i) { return {samples[2 * i], samples[2 * i + 1]}; }

inline void Store(double * out, std::size_t i, Complex z) {
  out[2 * i] = z.real();
  out[2 * i + 1] = z.imag();
}

template <double (*function)(double)> void Map(double const * const * a, double * out, std::size_t count) {
  double const * const x = a[0];
  for (std::size_t i = 0; i < count; ++i)
    out[i] = function(x[i]);
}

template <double (*function)(Complex)> void MapToReal(double const * const * a, double * out, std::size_t count) {
  double const * const x = a[0];
  for (std::size_t i = 0; i < count; ++i)
    out[i] = function(ComplexAt(x, i));
}

template <Complex (*function)(Complex)> void MapComplex(double const * const * a, double * out, std::size_t count) {
  double const * const x = a[0];
  for (std::size_t i = 0; i < count; ++i)
    Store(out, i, function(ComplexAt(x, i)));
}

template <double (*function)(double, double)> void MapTwo(double const * const * a, double * out, std::size_t count) {
  double const * const x = a[0];
  double const * const y = a[1];
  for (std::size_t i = 0; i < count; ++i)
    out[i] = function(x[i], y[i]);
}

template <Complex (*function)(Complex, Complex)>
void MapTwoComplex(double const * const * a, double * out, std::size_t count) {
  double const * const x = a[0];
  double const * const y = a[1];
  for (std::size_t i = 0; i < count; ++i)
    Store(out, i, function(ComplexAt(x, i), ComplexAt(y, i)));
}

template <double (*function)(Complex, Complex)>
void MapTwoToReal(double const * const * a, double * out, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i)
    out[i] = function(ComplexAt(a[0], i), ComplexAt(a[1], i));
}

template <double (*function)(double, double, double)>
void MapThree(double const * const * a, double * out, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i)
    out[i] = function(a[0][i], a[1][i], a[2][i]);
}

/// A complex number and a real one: no part of the real one is made up, so infinities stay what they are.
template <double (*function)(double, double)> void MapParts(double const * const * a, double * out, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i)
    Store(out, i, {function(a[0][2 * i], a[1][i]), function(a[0][2 * i + 1], a[1][i])});
}

/// if(condition, x, y) over samples of so many doubles; where the condition has no value, neither has the result.
template <std::size_t width> void Choose(double const * const * a, double * out, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i)
    for (std::size_t part = 0; part < width; ++part) {
      double const condition = a[0][i];
      std::size_t const at = i * width + part;
      out[at] = std::isnan(condition) ? math::missing : condition != 0.0 ? a[1][at] : a[2][at];
    }
}

void MakeComplex(double const * const * arguments, double * out, std::size_t count);
void MakePolar(double const * const * arguments, double * out, std::size_t count);
void CopyComplex(double const * const * arguments, double * out, std::size_t count);
/// Reals as complex numbers.
void Widen(double const * const * arguments, double * out, std::size_t count);

} // namespace expr
