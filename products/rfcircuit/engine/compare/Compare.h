#pragma once

#include "products/rfcircuit/engine/network/SParameterTable.h"

#include <cstddef>
#include <stdexcept>
#include <vector>

namespace rf {

/** Two networks that can't be compared; what() is `what is wrong; remedy`. */
class CompareError : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

/** How far one or all parameters are apart: magnitudes of complex differences of S-parameters. */
struct DifferenceSummary {
  double largest = 0;
  double frequency = 0; ///< in Hz, the lowest at which the largest difference stands
  std::size_t row = 0;  ///< of the parameter with the largest difference, from zero: S21 is row 1, column 0
  std::size_t column = 0;
  double rms = 0; ///< root of the mean square over frequencies, and over all parameters where it is of all
};

/** First minus second, at those frequencies of the first that lie in the range of the second. */
struct NetworkDifference {
  SParameterTable differences;               ///< z0 is the first's
  std::vector<DifferenceSummary> parameters; ///< by row, then column
  DifferenceSummary all;
  std::size_t outsideRange = 0; ///< frequencies of the first at which nothing could be compared
  std::size_t interpolated = 0; ///< frequencies that the second does not have itself
  bool isRenormalized = false;  ///< whether the second was seen from the first's impedances
};

/** The second's values between its frequencies are interpolated linearly, real and imaginary part each for itself;
    nothing is extrapolated.  A frequency within 1e-12 of one of the second's, relatively, counts as that one.  Where
    reference impedances differ the second is seen from those of the first, at its own frequencies, before it is
    interpolated.

    Throws CompareError: no points, other numbers of ports, no common range, frequencies that don't ascend, values that
    are not finite, impedances that aren't positive, a network that has no S-parameters for the other impedances. */
NetworkDifference Compare(SParameterTable const & first, SParameterTable const & second);

} // namespace rf
