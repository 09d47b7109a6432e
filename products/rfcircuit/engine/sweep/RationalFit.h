#pragma once

#include <complex>
#include <cstddef>
#include <vector>

namespace rf {

/** Values of several functions at the same real points: a row for each point. */
struct FitSamples {
  std::size_t functions = 0;
  std::vector<double> points; ///< all different
  std::vector<std::complex<double>> values;

  std::size_t Count() const { return points.size(); }
  std::complex<double> const * Row(std::size_t sample) const { return values.data() + sample * functions; }
  void Add(double point, std::complex<double> const * row) {
    points.push_back(point);
    values.insert(values.end(), row, row + functions);
  }
};

/** Rational functions with one common denominator, in barycentric form:
    r(z) = sum(w_j F_j / (z - z_j)) / sum(w_j / (z - z_j)) over support points z_j out of the samples.

    Made by the AAA algorithm (Y. Nakatsukasa, O. Sete, L. N. Trefethen, "The AAA Algorithm for Rational Approximation",
    SIAM J. Sci. Comput. 40 (2018), A1494-A1522) in its set-valued form, with common support points and weights
    (P. Lietaert, K. Meerbergen, J. Perez, B. Vandereycken, "Automatic rational approximation and linearization of
    nonlinear eigenvalue problems", IMA J. Numer. Anal. 42 (2022), 1087-1115).  Many functions give their weights
    through a few fixed combinations of them (S. Guettel, D. Kressner, B. Vandereycken, "Randomized sketching of
    nonlinear eigenvalue problems", SIAM J. Sci. Comput. 46 (2024), A3022-A3043).

    Deterministic; values are to be finite. */
class RationalFit {
public:
  RationalFit() = default;
  /** Needs a sample; uses at most half of them, and at most `mostSupports`, as support points.  Of the fits on the way
      the one of lowest degree is kept that is nearly as good as the best. */
  RationalFit(FitSamples const & samples, std::size_t mostSupports);

  /** False, and nothing sensible in the row, where the fit has no finite value. */
  [[nodiscard]] bool At(double point, std::complex<double> * row) const;
  /** The largest difference at a sample. */
  double Residual() const { return m_Residual; }
  std::size_t Supports() const { return m_Points.size(); }

private:
  std::size_t m_Functions = 0;
  std::vector<double> m_Points;
  std::vector<std::complex<double>> m_Values; ///< for each support point a row of values
  std::vector<std::complex<double>> m_Terms;  ///< for each support point its weight, and its weight times its values
  double m_Residual = 0;
};

} // namespace rf
