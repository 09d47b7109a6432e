#pragma once

#include <complex>

/// A complex number as interfaces pass it: two plain parts, the real one first.
template <class T> class AComplex {
public:
  AComplex() = default;
  AComplex(T realPart, T imaginaryPart = T()) : m_real(realPart), m_imaginary(imaginaryPart) {}
  AComplex(std::complex<T> const & other) : m_real(other.real()), m_imaginary(other.imag()) {}

  T real() const { return m_real; }
  T imag() const { return m_imaginary; }
  operator std::complex<T>() const { return {m_real, m_imaginary}; }

  friend bool operator==(AComplex const & a, AComplex const & b) = default;

private:
  T m_real = T();
  T m_imaginary = T();
};
