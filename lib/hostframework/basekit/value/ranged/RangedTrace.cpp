#include "basekit/value/ranged/RangedTrace.h"

#include <algorithm>
#include <cmath>

namespace val {

namespace {

bool IsFinite(double value) { return std::isfinite(value); }
bool IsFinite(std::complex<double> const & value) { return std::isfinite(value.real()) && std::isfinite(value.imag()); }

/// Looks at whole columns where they are; columns with holes are copied without them.
template <class Number>
void WithoutHoles(std::span<double const> & x, std::span<Number const> & y, std::vector<double> & ownX,
                  std::vector<Number> & ownY) {
  std::size_t whole = 0;
  while (whole < x.size() && IsFinite(x[whole]) && IsFinite(y[whole]))
    ++whole;
  if (whole == x.size())
    return;
  ownX.assign(x.begin(), x.begin() + static_cast<std::ptrdiff_t>(whole));
  ownY.assign(y.begin(), y.begin() + static_cast<std::ptrdiff_t>(whole));
  for (std::size_t i = whole + 1; i < x.size(); ++i) {
    if (IsFinite(x[i]) && IsFinite(y[i])) {
      ownX.push_back(x[i]);
      ownY.push_back(y[i]);
    }
  }
  x = ownX;
  y = ownY;
}

} // namespace

RangedTrace::RangedTrace(std::span<double const> x, std::span<double const> y) {
  if (x.size() == y.size()) {
    m_x = x;
    m_y = y;
    WithoutHoles(m_x, m_y, m_ownX, m_ownY);
  }
  CheckOrder();
}

RangedTrace::RangedTrace(std::span<double const> x, std::span<std::complex<double> const> y) {
  if (x.size() == y.size()) {
    m_x = x;
    m_complex = y;
    WithoutHoles(m_x, m_complex, m_ownX, m_ownComplex);
    m_ownY.reserve(m_complex.size());
    for (std::complex<double> const & value : m_complex)
      m_ownY.push_back(std::abs(value));
    m_y = m_ownY;
  }
  CheckOrder();
}

void RangedTrace::CheckOrder() { m_isInOrder = !m_x.empty() && std::is_sorted(m_x.begin(), m_x.end()); }

} // namespace val
