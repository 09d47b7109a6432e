#pragma once

#include "basekit/value/ranged/RangedFunction.h"

#include <cstddef>
#include <vector>

namespace bench {

/// A trace on which a ranged function has work to do over its whole length, and parameters that make it do so.
struct RangedTrial {
  std::vector<double> x;
  std::vector<double> y;
  std::vector<std::complex<double>> complex; ///< instead of y where it isn't empty
  std::vector<double> parameters;
};

RangedTrial TrialOf(val::RangedFunction const & function, std::size_t samples);

} // namespace bench
