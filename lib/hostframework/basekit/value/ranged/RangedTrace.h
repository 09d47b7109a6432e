#pragma once

#include <complex>
#include <cstddef>
#include <span>
#include <vector>

namespace val {

/// A trace made ready for ranged functions, once for as many of them as wanted: samples with a NaN or infinite part
/// are left out, and a complex y has its magnitude beside it.  Columns without holes are looked at where they are, so
/// they must outlive the trace; only what has to be made is held here.  Columns of different length make an empty
/// trace.
class RangedTrace {
public:
  RangedTrace(std::span<double const> x, std::span<double const> y);
  RangedTrace(std::span<double const> x, std::span<std::complex<double> const> y);
  RangedTrace(RangedTrace const &) = delete;
  RangedTrace & operator=(RangedTrace const &) = delete;

  /// False for no samples and for an x that steps backwards anywhere: no function has anything to say then.
  bool IsInOrder() const { return m_isInOrder; }
  std::size_t Count() const { return m_x.size(); }
  double Span() const { return m_x.empty() ? 0.0 : m_x.back() - m_x.front(); }

  std::span<double const> X() const { return m_x; }
  /// Real values, or the magnitudes of complex ones.
  std::span<double const> Y() const { return m_y; }
  /// Empty for a real trace.
  std::span<std::complex<double> const> Complex() const { return m_complex; }

private:
  void CheckOrder();

  std::span<double const> m_x;
  std::span<double const> m_y;
  std::span<std::complex<double> const> m_complex;
  std::vector<double> m_ownX;
  std::vector<double> m_ownY;
  std::vector<std::complex<double>> m_ownComplex;
  bool m_isInOrder = false;
};

} // namespace val
