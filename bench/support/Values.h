#pragma once

#include <cstdint>
#include <vector>

namespace bench {

/// Numbers that look like results of a simulation and are the same in every run: `count` of them for the number of a
/// block and its version.
std::vector<double> ValuesOf(std::uint64_t block, std::size_t count, std::uint64_t version = 0);

} // namespace bench
