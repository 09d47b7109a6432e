#include "products/rfcircuit/engine/sweep/AdaptiveSweep.h"

#include "products/rfcircuit/engine/netlist/NetlistError.h"
#include "products/rfcircuit/engine/sweep/Passivity.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace rf {
namespace {

constexpr std::size_t FIRST_POINTS = 17;
constexpr std::size_t FEWEST_OF_A_PASS = 4;
constexpr std::size_t FEWEST_PART = 8;     // a pass adds at least this part of what is solved,
constexpr std::size_t MOST_PART = 2;       // at most this one, where fits disagree at as many places
constexpr std::size_t MOST_SUPPORTS = 100; // beyond, fits cost more than they save
constexpr std::size_t MOST_FITTED_POINTS = 400;
constexpr double PART_OF_TARGET = 0.1; // disagreement that is worth a point
constexpr double INFINITE = std::numeric_limits<double>::infinity();

std::complex<double> Finite(std::complex<double> value, double frequency) {
  if (!std::isfinite(value.real()) || !std::isfinite(value.imag()))
    throw NetlistError({}, fmt::format("circuit at {} Hz", frequency), "an S-parameter is not finite",
                       "look for values of elements beyond all measure");
  return value;
}

} // namespace

AdaptiveSweep::AdaptiveSweep(std::vector<double> const & frequencies, SweepMethod const & method, SolveAt solveAt)
    : m_Frequencies(frequencies), m_Method(method), m_SolveAt(std::move(solveAt)) {
  std::size_t const total = frequencies.size();
  m_Result.isSolved.assign(total, 0);
  m_Result.last.total = total;
  m_State.disagreement.assign(total, INFINITE);
  m_State.steps.assign(total, 0);
}

SweepResult AdaptiveSweep::Run(OnPass const & onPass) {
  std::vector<std::size_t> points = SpreadPoints(std::min(FIRST_POINTS, Budget()), m_Frequencies.size());
  while (!points.empty() && !m_Result.isConverged && m_Result.last.number < SweepMethod::MOST_PASSES) {
    m_Change = 0;
    Solve(points);
    Fit();
    FinishPass();
    if (onPass)
      onPass(m_Result.last);
    points = NextPoints();
  }
  FillHoles();
  return std::move(m_Result);
}

std::size_t AdaptiveSweep::Budget() const {
  return m_Method.mostPoints == 0 ? m_Frequencies.size() : std::min(m_Method.mostPoints, m_Frequencies.size());
}

void AdaptiveSweep::Solve(std::vector<std::size_t> const & points) {
  for (std::size_t const point : points)
    Enter(point, m_SolveAt(m_Frequencies[point]));
}

void AdaptiveSweep::Enter(std::size_t point, SMatrix const & matrix) {
  if (m_Result.values.empty()) {
    m_Result.ports = matrix.Ports();
    m_Samples.functions = matrix.Ports() * matrix.Ports();
    m_Row.resize(m_Samples.functions);
    m_Result.values.resize(m_Frequencies.size() * m_Samples.functions);
  }
  for (std::size_t row = 0; row < m_Result.ports; ++row)
    for (std::size_t column = 0; column < m_Result.ports; ++column)
      m_Row[row * m_Result.ports + column] = Finite(matrix(row, column), m_Frequencies[point]);
  m_Change = std::max(m_Change, Distance(point, m_Row.data()));
  std::copy(m_Row.begin(), m_Row.end(), m_Result.values.begin() + static_cast<std::ptrdiff_t>(point * m_Row.size()));
  m_Result.isSolved[point] = 1;
  m_State.disagreement[point] = 0;
  ++m_Result.last.solved;
  // Inductors are shorts and capacitors open there, which need not be the limit of low frequencies.
  if (m_Frequencies[point] > 0)
    m_Samples.Add(m_Frequencies[point], m_Row.data());
}

double AdaptiveSweep::Distance(std::size_t point, std::complex<double> const * row) const {
  std::complex<double> const * const present = m_Result.At(point);
  double largest = 0;
  for (std::size_t e = 0; e < m_Samples.functions; ++e) {
    double const re = row[e].real() - present[e].real();
    double const im = row[e].imag() - present[e].imag();
    largest = std::max(largest, re * re + im * im);
  }
  return std::sqrt(largest);
}

void AdaptiveSweep::Fit() {
  if (m_Samples.Count() == 0 || m_Result.last.solved == m_Frequencies.size())
    return;
  m_Fit = RationalFit(m_Samples, MOST_SUPPORTS);
  for (std::size_t point = 0; point < m_Frequencies.size(); ++point)
    if (!m_Result.isSolved[point])
      TakeFitted(point, m_Fit.At(m_Frequencies[point], m_Row.data()));
  m_Change = std::max(m_Change, m_Fit.Residual());
  if (m_Result.last.number == 0)
    CompareWithLowerDegree();
}

void AdaptiveSweep::TakeFitted(std::size_t point, bool isFinite) {
  if (isFinite) {
    m_State.disagreement[point] = Distance(point, m_Row.data());
    std::copy(m_Row.begin(), m_Row.end(), m_Result.values.begin() + static_cast<std::ptrdiff_t>(point * m_Row.size()));
  } else {
    m_State.disagreement[point] = INFINITE; // the value of the pass before stays
  }
  m_Change = std::max(m_Change, m_State.disagreement[point]);
}

// The first fit has none before it.
void AdaptiveSweep::CompareWithLowerDegree() {
  std::size_t const supports = m_Fit.Supports();
  RationalFit const lower(m_Samples, std::max<std::size_t>(1, supports - supports / 4 - 1));
  for (std::size_t point = 0; point < m_Frequencies.size(); ++point)
    if (!m_Result.isSolved[point] && std::isfinite(m_State.disagreement[point]))
      m_State.disagreement[point] =
          lower.At(m_Frequencies[point], m_Row.data()) ? Distance(point, m_Row.data()) : INFINITE;
}

void AdaptiveSweep::FinishPass() {
  SweepPass & pass = m_Result.last;
  bool const isAllSolved = pass.solved == pass.total;
  if (++pass.number > 1)
    pass.largestChange = m_Change;
  pass.inARow = pass.number > 1 && m_Change <= m_Method.target ? pass.inARow + 1 : 0;
  pass.isPassive = IsPassive();
  m_Result.isConverged = isAllSolved || pass.inARow >= m_Method.passes;
}

// Where the last fit has no finite value, and no point was left to solve: a straight line between the solved ones.
void AdaptiveSweep::FillHoles() {
  for (std::size_t point = 0; point < m_Frequencies.size(); ++point) {
    if (std::isfinite(m_State.disagreement[point]))
      continue;
    std::size_t below = point;
    std::size_t above = point;
    while (below > 0 && !m_Result.isSolved[below])
      --below;
    while (above + 1 < m_Frequencies.size() && !m_Result.isSolved[above])
      ++above;
    double const part = (m_Frequencies[point] - m_Frequencies[below]) / (m_Frequencies[above] - m_Frequencies[below]);
    for (std::size_t e = 0; e < m_Samples.functions; ++e)
      m_Row[e] = m_Result.At(below)[e] * (1 - part) + m_Result.At(above)[e] * part;
    std::copy(m_Row.begin(), m_Row.end(), m_Result.values.begin() + static_cast<std::ptrdiff_t>(point * m_Row.size()));
  }
}

bool AdaptiveSweep::IsPassive() const {
  Passivity passivity(m_Result.ports, m_Method.target);
  for (std::size_t point = 0; point < m_Frequencies.size(); ++point)
    if (!passivity.Holds(m_Result.At(point)))
      return false;
  return true;
}

void AdaptiveSweep::MeasureSteps() {
  for (std::size_t point = 1; point < m_Frequencies.size(); ++point)
    m_State.steps[point] = Distance(point, m_Result.At(point - 1));
}

std::vector<std::size_t> AdaptiveSweep::NextPoints() {
  std::size_t const solved = m_Result.last.solved;
  std::size_t const total = m_Frequencies.size();
  std::size_t const left = Budget() - std::min(Budget(), solved);
  m_State.isSolved = m_Result.isSolved;
  MeasureSteps();
  PointBounds bounds{std::max(FEWEST_OF_A_PASS, solved / FEWEST_PART), solved / MOST_PART};
  bool const isHopeless = m_Result.last.inARow == 0 && (solved >= MOST_FITTED_POINTS || solved >= total / 2);
  if (isHopeless && Budget() == total)
    bounds = {total, total};
  return ChoosePoints(m_State, {std::min(bounds.fewest, left), std::min(bounds.most, left)},
                      m_Method.target * PART_OF_TARGET);
}

} // namespace rf
