#pragma once

#include "desktop/product/IQuantityProduct.h"

#include <vector>

namespace io {
class CBlock;
}

namespace command {

/// Quantities as items of a variation's data block: docs/formats/command-data.md.  All values are finite; names differ
/// without case; a scalar has one value, a run at least one, and one that runs over another as many as that.
void WriteQuantities(std::vector<desktop::QuantityValues> const & quantities, io::CBlock & block);
/// False for a block whose items are missing or don't fit each other; the quantities are none then.
bool ReadQuantities(io::CBlock const & block, std::vector<desktop::QuantityValues> & quantities);

/// Empty, or what breaks the rules above: "height: runs over t, which has 5 values and not 4".
AString ProblemOfQuantities(std::vector<desktop::QuantityValues> const & quantities);

} // namespace command
