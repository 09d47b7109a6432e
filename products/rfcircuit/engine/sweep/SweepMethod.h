#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace rf {

/** How the points of a sweep are got: each one solved, or few of them, with a rational function through these for all
    others. */
struct SweepMethod {
  /** The change of the last pass bounds the error well where the fit converges, and that goes fast: from 1e-3 to 1e-5
      it takes a handful of points.  1e-5 keeps stop-bands true down to about -90 dB. */
  static constexpr double DEFAULT_TARGET = 1e-5;
  static constexpr int DEFAULT_PASSES = 2;
  static constexpr int MOST_PASSES_IN_A_ROW = 100;
  static constexpr int MOST_PASSES = 100;
  static constexpr std::size_t FEWEST_POINTS = 4;

  bool isAdaptive = false;
  double target = DEFAULT_TARGET; ///< largest change of any S-parameter from one pass to the next
  int passes = DEFAULT_PASSES;    ///< in a row that must meet the target
  std::size_t mostPoints = 0;     ///< to be solved; 0: all of the sweep if need be

  bool operator==(SweepMethod const &) const = default;

  static SweepMethod Direct() { return {}; }
  static SweepMethod Adaptive() { return {.isAdaptive = true}; }
  /** What may be set, by the names that users write: target, passes, most.  Throws NetlistError for other names and for
      numbers that make no sense. */
  void Set(std::string const & name, double value);
};

} // namespace rf
