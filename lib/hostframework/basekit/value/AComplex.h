#pragma once

#include <complex>

/// A complex number as interfaces pass it: two plain parts, the real one first.
template <class T> class AComplex {
public:
  AComplex() = default;
  AComplex(T realPart, T imaginaryPart = T()) : m_parts{realPart, imaginaryPart} {}
  AComplex(std::complex<T> const & other) : m_parts{other.real(), other.imag()} {}

  T real() const { return m_parts[0]; }
  T imag() const { return m_parts[1]; }
  /// Both parts, the real one first.
  T const * GetParts() const { return m_parts; }
  operator std::complex<T>() const { return {m_parts[0], m_parts[1]}; }

  friend bool operator==(AComplex const & a, AComplex const & b) = default;

private:
  T m_parts[2] = {T(), T()};
};
