#pragma once

#include "desktop/product/IQuantityProduct.h"

#include <vector>

namespace command {

struct OutputLine;
struct QuantityLine;

/// The quantity of values that were found for it: all of them, or the one that it wants.  Throws SourceError when there
/// are none, or more than one where one was meant.
desktop::QuantityValues TakeValues(OutputLine const & output, QuantityLine const & quantity,
                                   std::vector<double> values);

} // namespace command
