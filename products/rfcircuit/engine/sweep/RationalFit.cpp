#include "products/rfcircuit/engine/sweep/RationalFit.h"

#include "products/rfcircuit/engine/sweep/SmallestSingularVector.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>
#include <utility>

namespace rf {
namespace {

using Complex = std::complex<double>;

constexpr std::size_t MOST_COMBINATIONS = 8;
constexpr double ROUNDING = 1e-14; // a fit this close fits what rounding left
constexpr double NEARLY_AS_GOOD = 10;
constexpr double NOISE_AT_MOST = 1e-9; // below this, digits that a higher degree wins are rather noise than shape

/** The functions themselves, or combinations of them with fixed factors where there are many. */
std::vector<std::vector<Complex>> Combined(FitSamples const & samples) {
  std::size_t const count = std::min(samples.functions, MOST_COMBINATIONS);
  std::vector<std::vector<Complex>> columns(count, std::vector<Complex>(samples.Count()));
  std::mt19937 random(20180619);
  auto const number = [&random] { return static_cast<double>(random()) / 2147483648.0 - 1.0; };
  double const scale = 1 / std::sqrt(static_cast<double>(samples.functions));
  for (std::size_t c = 0; c < count; ++c) {
    for (std::size_t e = 0; e < samples.functions; ++e) {
      Complex const factor = samples.functions <= MOST_COMBINATIONS ? Complex(e == c ? 1 : 0)
                                                                    : Complex(number() * scale, number() * scale);
      for (std::size_t i = 0; i < samples.Count() && factor != Complex(); ++i)
        columns[c][i] += factor * samples.Row(i)[e];
    }
  }
  return columns;
}

/** The greedy choice of support points; after each step weights and residual are known. */
class Greedy {
public:
  explicit Greedy(FitSamples const & samples)
      : m_Samples(samples), m_Combined(Combined(samples)), m_IsSupport(samples.Count()), m_Errors(samples.Count()) {
    std::vector<Complex> mean(samples.functions);
    for (std::size_t i = 0; i < samples.values.size(); ++i)
      mean[i % samples.functions] += samples.values[i] / static_cast<double>(samples.Count());
    for (std::size_t i = 0; i < samples.Count(); ++i)
      m_Errors[i] = Difference(samples.Row(i), mean.data());
  }

  std::vector<std::size_t> const & Supports() const { return m_Supports; }
  std::vector<Complex> const & Weights() const { return m_Weights; }
  double Residual() const { return *std::max_element(m_Errors.begin(), m_Errors.end()); }

  void Step(std::size_t points) {
    for (std::size_t i = 0; i < points; ++i) {
      auto const worst =
          static_cast<std::size_t>(std::max_element(m_Errors.begin(), m_Errors.end()) - m_Errors.begin());
      if (m_IsSupport[worst])
        break; // there is no error left
      m_Supports.push_back(worst);
      m_IsSupport[worst] = true;
      m_Errors[worst] = 0;
    }
    m_Weights = SmallestSingularVector(LoewnerMatrix(), m_Supports.size());
    UpdateErrors();
  }

private:
  double Difference(Complex const * left, Complex const * right) const {
    double largest = 0;
    for (std::size_t e = 0; e < m_Samples.functions; ++e)
      largest = std::max(largest, std::norm(left[e] - right[e]));
    return std::sqrt(largest);
  }

  std::vector<Complex> LoewnerMatrix() const {
    std::vector<Complex> matrix;
    matrix.reserve((m_Samples.Count() - m_Supports.size()) * m_Combined.size() * m_Supports.size());
    for (std::size_t const support : m_Supports)
      for (auto const & column : m_Combined)
        for (std::size_t i = 0; i < m_Samples.Count(); ++i)
          if (!m_IsSupport[i])
            matrix.push_back((column[i] - column[support]) / (m_Samples.points[i] - m_Samples.points[support]));
    return matrix;
  }

  void UpdateErrors() {
    std::vector<Complex> row(m_Samples.functions);
    for (std::size_t i = 0; i < m_Samples.Count(); ++i) {
      if (m_IsSupport[i])
        continue;
      Complex denominator = 0;
      std::fill(row.begin(), row.end(), Complex());
      for (std::size_t j = 0; j < m_Supports.size(); ++j) {
        Complex const factor = m_Weights[j] / (m_Samples.points[i] - m_Samples.points[m_Supports[j]]);
        denominator += factor;
        for (std::size_t e = 0; e < row.size(); ++e)
          row[e] += factor * m_Samples.Row(m_Supports[j])[e];
      }
      for (Complex & value : row)
        value /= denominator;
      double const error = Difference(m_Samples.Row(i), row.data());
      m_Errors[i] = std::isfinite(error) ? error : std::numeric_limits<double>::max();
    }
  }

  FitSamples const & m_Samples;
  std::vector<std::vector<Complex>> m_Combined;
  std::vector<std::size_t> m_Supports;
  std::vector<Complex> m_Weights;
  std::vector<bool> m_IsSupport;
  std::vector<double> m_Errors;
};

struct Candidate {
  std::size_t supports = 0;
  std::vector<Complex> weights;
  double residual = 0;
};

Candidate const & Chosen(std::vector<Candidate> const & candidates) {
  auto const byResidual = [](Candidate const & a, Candidate const & b) { return a.residual < b.residual; };
  auto const best = std::min_element(candidates.begin(), candidates.end(), byResidual);
  if (best->residual > NOISE_AT_MOST)
    return *best;
  double const enough = std::max(NEARLY_AS_GOOD * best->residual, ROUNDING);
  return *std::find_if(candidates.begin(), candidates.end(),
                       [enough](Candidate const & candidate) { return candidate.residual <= enough; });
}

} // namespace

RationalFit::RationalFit(FitSamples const & samples, std::size_t mostSupports) : m_Functions(samples.functions) {
  std::size_t const most = std::max<std::size_t>(1, std::min(mostSupports, samples.Count() / 2));
  Greedy greedy(samples);
  std::vector<Candidate> candidates;
  do {
    std::size_t const present = greedy.Supports().size();
    greedy.Step(std::min(1 + present / 10, most - present));
    candidates.push_back({greedy.Supports().size(), greedy.Weights(), greedy.Residual()});
    if (greedy.Supports().size() == present)
      break;
  } while (candidates.back().residual > ROUNDING && greedy.Supports().size() < most);
  Candidate const & chosen = Chosen(candidates);
  m_Residual = chosen.residual;
  for (std::size_t j = 0; j < chosen.supports; ++j) {
    std::size_t const support = greedy.Supports()[j];
    m_Points.push_back(samples.points[support]);
    m_Values.insert(m_Values.end(), samples.Row(support), samples.Row(support) + m_Functions);
    m_Terms.push_back(chosen.weights[j]);
    for (std::size_t e = 0; e < m_Functions; ++e)
      m_Terms.push_back(chosen.weights[j] * samples.Row(support)[e]);
  }
}

// All sums are real multiples of complex rows, so they run over plain doubles.
bool RationalFit::At(double point, Complex * row) const {
  std::size_t const width = 2 * m_Functions;
  auto const * term = reinterpret_cast<double const *>(m_Terms.data());
  auto * const sums = reinterpret_cast<double *>(row);
  double re = 0;
  double im = 0;
  std::fill(sums, sums + width, 0.0);
  for (std::size_t j = 0; j < m_Points.size(); ++j) {
    double const distance = point - m_Points[j];
    if (distance == 0) {
      std::copy_n(m_Values.data() + j * m_Functions, m_Functions, row);
      return true;
    }
    double const factor = 1 / distance;
    re += factor * term[0];
    im += factor * term[1];
    term += 2;
    for (std::size_t k = 0; k < width; ++k)
      sums[k] += factor * term[k];
    term += width;
  }
  Complex const inverse = 1.0 / Complex(re, im);
  bool isFinite = true;
  for (std::size_t e = 0; e < m_Functions; ++e) {
    row[e] *= inverse;
    isFinite = isFinite && std::isfinite(row[e].real()) && std::isfinite(row[e].imag());
  }
  return isFinite;
}

} // namespace rf
