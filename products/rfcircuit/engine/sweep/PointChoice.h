#pragma once

#include <cstddef>
#include <vector>

namespace rf {

/** What is known along a sweep, by the number of the frequency. */
struct SweepState {
  std::vector<char> isSolved;
  std::vector<double> disagreement; ///< of two fits; 0 where solved, infinite where there is no value
  std::vector<double> steps;        ///< how far the S-parameters move from the point before
};

/** As many points in equal steps, the ends included; all where there are not more. */
std::vector<std::size_t> SpreadPoints(std::size_t count, std::size_t total);

struct PointBounds {
  std::size_t fewest = 0;
  std::size_t most = 0;
};

/** Which points to solve next: first where the fits disagree by more than the threshold, one on each peak of the
    disagreement, as many as are allowed; then a few, up to the fewest that are wanted, between the solved points where
    the response moves most and where they are farthest apart, since a fit may miss what lies between its points.
    Ascending, none solved. */
std::vector<std::size_t> ChoosePoints(SweepState const & state, PointBounds const & bounds, double threshold);

} // namespace rf
