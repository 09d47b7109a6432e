#include "products/rfcircuit/engine/network/SParameterLookup.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>

namespace rf {
namespace {

constexpr double SAME_FREQUENCY = 1e-12;

bool IsSame(double left, double right) { return std::fabs(left - right) <= SAME_FREQUENCY * std::fabs(right); }

SMatrix Between(SMatrix const & below, SMatrix const & above, double weight) {
  SMatrix result(below.Ports());
  for (std::size_t row = 0; row < below.Ports(); ++row)
    for (std::size_t column = 0; column < below.Ports(); ++column)
      result(row, column) = (1 - weight) * below(row, column) + weight * above(row, column);
  return result;
}

class Hash {
public:
  void Add(double number) {
    unsigned char bytes[sizeof number];
    std::memcpy(bytes, &number, sizeof number);
    for (unsigned char const byte : bytes)
      m_Value = (m_Value ^ byte) * 0x100000001b3u;
  }
  std::uint64_t Value() const { return m_Value; }

private:
  std::uint64_t m_Value = 0xcbf29ce484222325u;
};

} // namespace

bool Covers(SParameterTable const & table, double frequency) {
  auto const & frequencies = table.frequencies;
  return !frequencies.empty() && (frequency >= frequencies.front() || IsSame(frequency, frequencies.front())) &&
         (frequency <= frequencies.back() || IsSame(frequency, frequencies.back()));
}

SMatrix ParametersAt(SParameterTable const & table, double frequency) {
  auto const & frequencies = table.frequencies;
  auto const above = std::lower_bound(frequencies.begin(), frequencies.end(), frequency);
  auto const index = static_cast<std::size_t>(above - frequencies.begin());
  if (above != frequencies.end() && IsSame(frequency, *above))
    return table.matrices[index];
  if (above != frequencies.begin() && IsSame(frequency, *std::prev(above)))
    return table.matrices[index - 1];
  double const below = frequencies[index - 1];
  return Between(table.matrices[index - 1], table.matrices[index], (frequency - below) / (*above - below));
}

std::uint64_t Checksum(SParameterTable const & table) {
  Hash hash;
  for (double const z0 : table.z0)
    hash.Add(z0);
  for (double const frequency : table.frequencies)
    hash.Add(frequency);
  for (SMatrix const & matrix : table.matrices)
    for (std::size_t row = 0; row < matrix.Ports(); ++row)
      for (std::size_t column = 0; column < matrix.Ports(); ++column) {
        hash.Add(matrix(row, column).real());
        hash.Add(matrix(row, column).imag());
      }
  return hash.Value();
}

} // namespace rf
