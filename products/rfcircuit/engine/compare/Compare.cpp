#include "products/rfcircuit/engine/compare/Compare.h"

#include "products/rfcircuit/engine/network/Renormalize.h"
#include "products/rfcircuit/engine/network/RightDivision.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace rf {
namespace {

constexpr double SAME_FREQUENCY = 1e-12;

bool IsSame(double left, double right) { return std::abs(left - right) <= SAME_FREQUENCY * std::max(left, right); }

void Check(SParameterTable const & network, char const * which) {
  auto const refuse = [which](std::string const & message, char const * remedy) {
    throw CompareError(fmt::format("the {} network {}; {}", which, message, remedy));
  };
  if (network.frequencies.empty() || network.z0.empty())
    refuse("has no points", "give solved or measured data");
  if (network.frequencies.size() != network.matrices.size())
    refuse(fmt::format("has {} frequencies and {} matrices", network.frequencies.size(), network.matrices.size()),
           "give one matrix for each frequency");
  for (double const z0 : network.z0)
    if (!(z0 > 0) || !std::isfinite(z0))
      refuse(fmt::format("has a reference impedance of {} ohm", z0), "give impedances above zero");
  for (std::size_t i = 0; i < network.frequencies.size(); ++i) {
    double const frequency = network.frequencies[i];
    if (!std::isfinite(frequency) || frequency < 0 || (i > 0 && frequency <= network.frequencies[i - 1]))
      refuse(fmt::format("has the frequency {} Hz out of order", frequency), "give frequencies that ascend from zero");
    if (network.matrices[i].Ports() != network.Ports())
      refuse(fmt::format("has {} ports at {} Hz and {} impedances", network.matrices[i].Ports(), frequency,
                         network.Ports()),
             "give one impedance for each port");
    if (!IsFinite(network.matrices[i]))
      refuse(fmt::format("has a value at {} Hz that is not finite", frequency), "give finite values");
  }
}

/** The second network at any frequency of its range, seen from the first's impedances. */
class SecondNetwork {
public:
  SecondNetwork(SParameterTable const & network, std::vector<double> const & z0)
      : m_Network(network), m_Z0(z0.begin(), z0.end()), m_IsOther(network.z0 != z0) {}

  bool IsRenormalized() const { return m_IsOther; }
  bool Covers(double frequency) const {
    double const first = m_Network.frequencies.front();
    double const last = m_Network.frequencies.back();
    return (frequency >= first || IsSame(frequency, first)) && (frequency <= last || IsSame(frequency, last));
  }

  /** Frequencies may not fall from one call to the next. */
  SMatrix At(double frequency, bool & isInterpolated) {
    std::vector<double> const & own = m_Network.frequencies;
    while (m_Upper < own.size() && own[m_Upper] < frequency && !IsSame(own[m_Upper], frequency))
      ++m_Upper;
    isInterpolated = false;
    if (m_Upper > 0 && IsSame(own[m_Upper - 1], frequency))
      return Own(m_Upper - 1);
    if (IsSame(own[m_Upper], frequency))
      return Own(m_Upper);
    isInterpolated = true;
    double const weight = (frequency - own[m_Upper - 1]) / (own[m_Upper] - own[m_Upper - 1]);
    return Between(Own(m_Upper - 1), Own(m_Upper), weight);
  }

private:
  static SMatrix Between(SMatrix lower, SMatrix const & upper, double weight) {
    for (std::size_t row = 0; row < lower.Ports(); ++row)
      for (std::size_t column = 0; column < lower.Ports(); ++column)
        lower(row, column) = (1 - weight) * lower(row, column) + weight * upper(row, column);
    return lower;
  }

  SMatrix Own(std::size_t index) {
    if (!m_IsOther)
      return m_Network.matrices[index];
    for (Seen const & seen : m_Seen)
      if (seen.index == index)
        return seen.matrix;
    auto matrix = Renormalized(m_Network.matrices[index], m_Network.z0, m_Z0);
    if (!matrix)
      throw CompareError(fmt::format("the second network has no S-parameters for the first's impedances at {} Hz; "
                                     "give both for the same ones",
                                     m_Network.frequencies[index]));
    std::swap(m_Seen[0], m_Seen[1]);
    m_Seen[1] = {index, std::move(*matrix)};
    return m_Seen[1].matrix;
  }

  struct Seen {
    std::size_t index = static_cast<std::size_t>(-1);
    SMatrix matrix;
  };

  SParameterTable const & m_Network;
  std::vector<std::complex<double>> m_Z0;
  bool m_IsOther;
  std::size_t m_Upper = 0; ///< the first of its frequencies that is not below the last one asked for
  Seen m_Seen[2];          ///< those that were renormalized last
};

void Summarize(NetworkDifference & result) {
  std::size_t const n = result.differences.Ports();
  result.parameters.resize(n * n);
  std::vector<double> squares(n * n);
  for (std::size_t i = 0; i < n * n; ++i) {
    DifferenceSummary & summary = result.parameters[i];
    summary.row = i / n;
    summary.column = i % n;
    summary.frequency = result.differences.frequencies.front();
    for (std::size_t k = 0; k < result.differences.matrices.size(); ++k) {
      double const magnitude = std::abs(result.differences.matrices[k](summary.row, summary.column));
      squares[i] += magnitude * magnitude;
      if (magnitude > summary.largest) {
        summary.largest = magnitude;
        summary.frequency = result.differences.frequencies[k];
      }
    }
    summary.rms = std::sqrt(squares[i] / static_cast<double>(result.differences.matrices.size()));
  }
  result.all = *std::ranges::max_element(result.parameters, [](auto const & left, auto const & right) {
    return left.largest != right.largest ? left.largest < right.largest : left.frequency > right.frequency;
  });
  double sum = 0;
  for (double const square : squares)
    sum += square;
  result.all.rms = std::sqrt(sum / static_cast<double>(n * n * result.differences.matrices.size()));
}

} // namespace

NetworkDifference Compare(SParameterTable const & first, SParameterTable const & second) {
  Check(first, "first");
  Check(second, "second");
  if (first.Ports() != second.Ports())
    throw CompareError(fmt::format("one network has {} ports, the other {}; compare networks of as many ports",
                                   first.Ports(), second.Ports()));
  SecondNetwork other(second, first.z0);
  NetworkDifference result;
  result.isRenormalized = other.IsRenormalized();
  result.differences.z0 = first.z0;
  for (std::size_t k = 0; k < first.frequencies.size(); ++k) {
    double const frequency = first.frequencies[k];
    if (!other.Covers(frequency)) {
      ++result.outsideRange;
      continue;
    }
    bool isInterpolated = false;
    SMatrix const value = other.At(frequency, isInterpolated);
    SMatrix difference = first.matrices[k];
    for (std::size_t i = 0; i < first.Ports() * first.Ports(); ++i)
      difference(i / first.Ports(), i % first.Ports()) -= value(i / first.Ports(), i % first.Ports());
    result.interpolated += isInterpolated ? 1 : 0;
    result.differences.frequencies.push_back(frequency);
    result.differences.matrices.push_back(std::move(difference));
  }
  if (result.differences.frequencies.empty())
    throw CompareError(fmt::format("no frequency of the first network, {} to {} Hz, lies in the range of the second, "
                                   "{} to {} Hz; compare networks whose ranges meet",
                                   first.frequencies.front(), first.frequencies.back(), second.frequencies.front(),
                                   second.frequencies.back()));
  Summarize(result);
  return result;
}

} // namespace rf
