#include "products/rfcircuit/engine/sweep/SweepMethod.h"

#include "products/rfcircuit/engine/netlist/NetlistError.h"
#include "products/rfcircuit/engine/sweep/FrequencySweep.h"

#include <fmt/format.h>

#include <cmath>

namespace rf {
namespace {

[[noreturn]] void Refuse(std::string const & name, double value, std::string const & remedy) {
  throw NetlistError({}, "sweep", fmt::format("{}={} makes no sense", name, value), remedy);
}

bool IsWholeBetween(double value, double least, double most) {
  return value >= least && value <= most && value == std::floor(value);
}

} // namespace

void SweepMethod::Set(std::string const & name, double value) {
  if (name == "target") {
    if (!(value > 0 && value < 1))
      Refuse(name, value, "give the largest change of an S-parameter, between 0 and 1, such as 1e-5");
    target = value;
  } else if (name == "passes") {
    if (!IsWholeBetween(value, 1, MOST_PASSES_IN_A_ROW))
      Refuse(name, value, fmt::format("give a whole number from 1 to {}", MOST_PASSES_IN_A_ROW));
    passes = static_cast<int>(value);
  } else if (name == "most") {
    if (value != 0 && !IsWholeBetween(value, FEWEST_POINTS, static_cast<double>(FrequencySweep::MOST_POINTS)))
      Refuse(name, value,
             fmt::format("give a whole number of points from {} to {}, or 0 for no bound", FEWEST_POINTS,
                         FrequencySweep::MOST_POINTS));
    mostPoints = static_cast<std::size_t>(value);
  } else {
    throw NetlistError({}, "sweep", "an adaptive sweep has no setting '" + name + "'", "use target, passes or most");
  }
}

} // namespace rf
