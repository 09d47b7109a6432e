#pragma once

#include "desktop/study/VaryWord.h"

#include <cstdint>

namespace desktop {

/// A Latin hypercube: `count` rows, of which each dimension has one in each `count`th of its range.  A dimension is one
/// range, or several that take the same place in each.  The same seed gives the same rows on every machine.
StudyAxis SampleLatinHypercube(std::vector<std::vector<SampledRange>> const & dimensions, std::size_t count,
                               std::uint64_t seed);

} // namespace desktop
