#include "products/rfcircuit/engine/sweep/SweepFiles.h"

#include "products/rfcircuit/engine/netlist/NetlistError.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace rf {
namespace {

// Closer ones are one frequency to whoever stores files by it.
constexpr double APART = 1e-9;
constexpr double HIGHEST = 1e30;

} // namespace

void SweepFiles::Check() {
  if (z0 && !(*z0 > 0 && std::isfinite(*z0)))
    throw NetlistError({}, "sweep", fmt::format("z0={} makes no sense", *z0), "give an impedance in ohm, such as 50");
  if (z0 && !touchstone)
    throw NetlistError({}, "sweep", "z0 is that of the Touchstone file, and none is asked for",
                       "write touchstone in front of it");
  for (double const frequency : voltages)
    if (!(frequency >= 0 && frequency <= HIGHEST))
      throw NetlistError({}, "sweep", fmt::format("voltages={} makes no sense", frequency),
                         "give frequencies in hertz, from 0");
  std::sort(voltages.begin(), voltages.end());
  auto const isSame = [](double a, double b) { return b - a <= APART * b; };
  voltages.erase(std::unique(voltages.begin(), voltages.end(), isSame), voltages.end());
  if (voltages.size() > MOST_VOLTAGES)
    throw NetlistError({}, "sweep", fmt::format("voltages are asked for at {} frequencies", voltages.size()),
                       fmt::format("ask for {} at most", MOST_VOLTAGES));
}

} // namespace rf
