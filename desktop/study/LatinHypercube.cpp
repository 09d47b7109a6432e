#include "desktop/study/LatinHypercube.h"

#include "basekit/text/NumberText.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <random>
#include <utility>

namespace desktop {
namespace {

constexpr int kDigits = 8;

/// The engine is the same everywhere; the distributions of the standard library are not.
class Dice {
public:
  explicit Dice(std::uint64_t seed) : m_engine(seed) {}

  /// From 0 to below 1.
  double Fraction() { return static_cast<double>(m_engine() >> 11) * 0x1p-53; }
  /// From 0 to below the bound, all equally likely.
  std::uint64_t Below(std::uint64_t bound) {
    std::uint64_t const surplus = std::numeric_limits<std::uint64_t>::max() % bound;
    std::uint64_t number = m_engine();
    while (number > std::numeric_limits<std::uint64_t>::max() - surplus - 1)
      number = m_engine();
    return number % bound;
  }

private:
  std::mt19937_64 m_engine;
};

std::vector<std::size_t> Shuffled(std::size_t count, Dice & dice) {
  std::vector<std::size_t> order(count);
  std::iota(order.begin(), order.end(), std::size_t(0));
  for (std::size_t i = count; i > 1; --i)
    std::swap(order[i - 1], order[dice.Below(i)]);
  return order;
}

double ValueAt(SampledRange const & range, double place) {
  // By both ends, since their distance may be more than a number can hold.
  return std::clamp(range.from * (1.0 - place) + range.to * place, range.from, range.to);
}

// With few digits where these stay within the piece of the range, since people read the values.
double ReadableValue(SampledRange const & range, double place, double low, double high) {
  double const exact = ValueAt(range, place);
  double rounded = exact;
  text::ParseReal(text::RealWithDigits(exact, kDigits), rounded);
  return rounded >= ValueAt(range, low) && rounded < ValueAt(range, high) ? rounded : exact;
}

} // namespace

StudyAxis SampleLatinHypercube(std::vector<std::vector<SampledRange>> const & dimensions, std::size_t count,
                               std::uint64_t seed) {
  Dice dice(seed);
  StudyAxis axis;
  double const pieces = static_cast<double>(count);
  for (auto const & ranges : dimensions) {
    std::size_t const first = axis.names.size();
    for (SampledRange const & range : ranges) {
      axis.names.push_back(range.name);
      axis.places.push_back(L"--vary " + range.name);
      axis.columns.emplace_back().reserve(count);
    }
    for (std::size_t const piece : Shuffled(count, dice)) {
      double const low = static_cast<double>(piece);
      double const place = (low + dice.Fraction()) / pieces;
      for (std::size_t i = 0; i < ranges.size(); ++i)
        axis.columns[first + i].push_back(ReadableValue(ranges[i], place, low / pieces, (low + 1.0) / pieces));
    }
  }
  return axis;
}

} // namespace desktop
