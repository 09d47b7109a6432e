#include "products/rfcircuit/engine/sweep/FrequencySweep.h"

#include "products/rfcircuit/engine/netlist/NetlistError.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace rf {
namespace {

constexpr double STOP_TOLERANCE = 1e-3;
constexpr double HIGHEST_FREQUENCY = 1e30; // keeps products with point numbers finite

[[noreturn]] void Refuse(std::string const & message, std::string const & remedy) {
  throw NetlistError({}, "sweep", message, remedy);
}

void CheckFrequency(double frequency) {
  if (!std::isfinite(frequency))
    Refuse("a frequency is not finite", "give frequencies in Hz");
  if (frequency < 0)
    Refuse(fmt::format("the frequency {} Hz is negative", frequency), "give frequencies from 0 Hz");
  if (frequency > HIGHEST_FREQUENCY)
    Refuse(fmt::format("the frequency {} Hz is too high", frequency), "give frequencies up to 1e30 Hz");
}

std::size_t CheckPoints(double points) {
  if (!std::isfinite(points) || points != std::floor(points) || points < 1)
    Refuse(fmt::format("{} is not a number of points", points), "give a whole number from 1");
  if (points > static_cast<double>(FrequencySweep::MOST_POINTS))
    Refuse(fmt::format("{} points are too many", points), fmt::format("give at most {}", FrequencySweep::MOST_POINTS));
  return static_cast<std::size_t>(points);
}

void CheckRange(double start, double stop) {
  CheckFrequency(start);
  CheckFrequency(stop);
  if (start > stop)
    Refuse(fmt::format("it starts at {} Hz, above its end at {} Hz", start, stop), "exchange the two");
}

} // namespace

FrequencySweep::FrequencySweep(Kind kind, std::size_t points, double start, double stop)
    : m_Kind(kind), m_GivenPoints(points), m_Start(start), m_Stop(stop) {}

FrequencySweep FrequencySweep::Linear(double points, double start, double stop) {
  std::size_t const count = CheckPoints(points);
  CheckRange(start, stop);
  return {Kind::Linear, count, start, stop};
}

FrequencySweep FrequencySweep::Decade(double pointsPerDecade, double start, double stop) {
  return Logarithmic(Kind::Decade, pointsPerDecade, start, stop);
}

FrequencySweep FrequencySweep::Octave(double pointsPerOctave, double start, double stop) {
  return Logarithmic(Kind::Octave, pointsPerOctave, start, stop);
}

FrequencySweep FrequencySweep::List(std::vector<double> frequencies) {
  if (frequencies.empty())
    Refuse("the list is empty", "give at least one frequency");
  CheckPoints(static_cast<double>(frequencies.size()));
  std::for_each(frequencies.begin(), frequencies.end(), CheckFrequency);
  std::sort(frequencies.begin(), frequencies.end());
  frequencies.erase(std::unique(frequencies.begin(), frequencies.end()), frequencies.end());
  FrequencySweep sweep(Kind::List, frequencies.size(), frequencies.front(), frequencies.back());
  sweep.m_List = std::move(frequencies);
  return sweep;
}

FrequencySweep FrequencySweep::Logarithmic(Kind kind, double points, double start, double stop) {
  FrequencySweep sweep(kind, CheckPoints(points), start, stop);
  CheckRange(start, stop);
  if (start <= 0)
    Refuse("a logarithmic sweep can't start at 0 Hz", "start above 0 Hz or use lin");
  double const span = kind == Kind::Decade ? std::log10(stop) - std::log10(start) : std::log2(stop) - std::log2(start);
  double const estimate = std::floor(span * points);
  if (estimate + 1 > static_cast<double>(MOST_POINTS))
    Refuse(fmt::format("{} points are too many", estimate + 1), fmt::format("give at most {}", MOST_POINTS));
  auto last = static_cast<std::size_t>(estimate);
  while (last > 0 && !sweep.Reaches(last))
    --last;
  while (sweep.Reaches(last + 1))
    ++last;
  sweep.m_LogarithmicPoints = last + 1;
  return sweep;
}

double FrequencySweep::LogarithmicPoint(std::size_t k) const {
  double const base = m_Kind == Kind::Decade ? 10.0 : 2.0;
  return m_Start * std::pow(base, static_cast<double>(k) / static_cast<double>(m_GivenPoints));
}

bool FrequencySweep::Reaches(std::size_t k) const {
  double const ratio = std::pow(m_Kind == Kind::Decade ? 10.0 : 2.0, 1.0 / static_cast<double>(m_GivenPoints));
  double const tolerance = std::min(ratio * STOP_TOLERANCE, (ratio - 1) / 2);
  return LogarithmicPoint(k) <= m_Stop * (1 + tolerance);
}

std::string FrequencySweep::KindName() const {
  switch (m_Kind) {
  case Kind::Linear:
    return "lin";
  case Kind::Decade:
    return "dec";
  case Kind::Octave:
    return "oct";
  default:
    return "list";
  }
}

std::vector<double> FrequencySweep::LinearPoints() const {
  std::vector<double> points;
  points.reserve(m_GivenPoints);
  for (std::size_t k = 0; k + 1 < m_GivenPoints; ++k)
    points.push_back(m_Start + (m_Stop - m_Start) * static_cast<double>(k) / static_cast<double>(m_GivenPoints - 1));
  points.push_back(m_GivenPoints == 1 ? m_Start : m_Stop);
  return points;
}

std::vector<double> FrequencySweep::Frequencies() const {
  std::vector<double> points;
  if (m_Kind == Kind::List) {
    points = m_List;
  } else if (m_Kind == Kind::Linear) {
    points = LinearPoints();
  } else {
    points.reserve(m_LogarithmicPoints);
    for (std::size_t k = 0; k < m_LogarithmicPoints; ++k)
      points.push_back(LogarithmicPoint(k));
  }
  // A range that is empty or too narrow for its number of points gives equal ones.
  points.erase(std::unique(points.begin(), points.end()), points.end());
  return points;
}

} // namespace rf
