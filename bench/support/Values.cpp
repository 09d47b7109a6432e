#include "bench/support/Values.h"

namespace bench {

namespace {

// A step of SplitMix64: small, and the same on every machine.
std::uint64_t Next(std::uint64_t & state) {
  std::uint64_t mixed = state += 0x9E3779B97F4A7C15;
  mixed = (mixed ^ mixed >> 30) * 0xBF58476D1CE4E5B9;
  mixed = (mixed ^ mixed >> 27) * 0x94D049BB133111EB;
  return mixed ^ mixed >> 31;
}

} // namespace

std::vector<double> ValuesOf(std::uint64_t block, std::size_t count, std::uint64_t version) {
  std::uint64_t state = block * 1000003 + version;
  std::vector<double> values(count);
  for (auto & value : values)
    value = static_cast<double>(Next(state) >> 11) * 0x1p-52 - 1;
  return values;
}

} // namespace bench
