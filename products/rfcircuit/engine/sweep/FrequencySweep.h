#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace rf {

/** A set of frequencies in Hz, always ascending and without duplicates.

    Linear: n points from f1 to f2, both included; n = 1 is f1 alone.
    Decade, Octave: f1 * 10^(k/n) or f1 * 2^(k/n) for k = 0, 1, ... as long as the point is not above
    f2 * (1 + r / 1000), where r is the ratio of neighbours (but never half a step above f2).  That is what SPICE
   simulators do: the last point may miss f2 from below by nearly a step, or from above by the small tolerance. List:
   any numbers; they are sorted, equal ones count once.

    Points are computed from their number, never by adding up steps.  Senseless sweeps (no point, more than 10,000,000,
    f1 above f2, negative or not finite frequencies, a logarithmic sweep from zero) throw NetlistError. */
class FrequencySweep {
public:
  enum class Kind { Linear, Decade, Octave, List };
  static constexpr std::size_t MOST_POINTS = 10'000'000;

  static FrequencySweep Linear(double points, double start, double stop);
  static FrequencySweep Decade(double pointsPerDecade, double start, double stop);
  static FrequencySweep Octave(double pointsPerOctave, double start, double stop);
  static FrequencySweep List(std::vector<double> frequencies);

  Kind GetKind() const { return m_Kind; }
  /** `lin`, `dec`, `oct` or `list`. */
  std::string KindName() const;
  /** As given: the count, or points per decade or octave; of a list its length. */
  std::size_t GivenPoints() const { return m_GivenPoints; }
  double Start() const { return m_Start; }
  double Stop() const { return m_Stop; }

  std::vector<double> Frequencies() const;

private:
  FrequencySweep(Kind kind, std::size_t points, double start, double stop);
  static FrequencySweep Logarithmic(Kind kind, double points, double start, double stop);
  std::vector<double> LinearPoints() const;
  double LogarithmicPoint(std::size_t k) const;
  bool Reaches(std::size_t k) const;

  Kind m_Kind;
  std::size_t m_GivenPoints;
  double m_Start;
  double m_Stop;
  std::size_t m_LogarithmicPoints = 0;
  std::vector<double> m_List;
};

} // namespace rf
