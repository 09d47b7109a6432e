#pragma once

#include <complex>
#include <cstddef>
#include <vector>

namespace rf {

/** A square complex matrix; rows and columns count from zero, so S21 is s(1, 0). */
class SMatrix {
public:
  SMatrix() = default;
  explicit SMatrix(std::size_t ports) : m_Ports(ports), m_Values(ports * ports) {}

  std::size_t Ports() const { return m_Ports; }
  std::complex<double> & operator()(std::size_t row, std::size_t column) { return m_Values[row * m_Ports + column]; }
  std::complex<double> const & operator()(std::size_t row, std::size_t column) const {
    return m_Values[row * m_Ports + column];
  }

private:
  std::size_t m_Ports = 0;
  std::vector<std::complex<double>> m_Values;
};

} // namespace rf
