#pragma once

#include "desktop/product/IQuantityProduct.h"
#include "products/command/source/Template.h"

#include <vector>

namespace command {

struct SolverFile;

struct RunCosts {
  double seconds = 0.0;
  double cpuSeconds = 0.0;
  double peakBytes = 0.0;
};

/// One run of a solver file's program with values for all holes, in a scratch folder that is gone afterwards.  Throws
/// SourceError for whatever keeps it from giving the quantities; the costs are told all the same, once there are any.
std::vector<desktop::QuantityValues> RunProgram(SolverFile const & file, HoleValues const & values, RunCosts & costs);

} // namespace command
