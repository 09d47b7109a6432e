#include "basekit/value/ranged/Levels.h"

#include <algorithm>

namespace val::ranged {

std::size_t PlaceOfMaximum(Column y) {
  return static_cast<std::size_t>(std::max_element(y.begin(), y.end()) - y.begin());
}

std::size_t PlaceOfMinimum(Column y) {
  return static_cast<std::size_t>(std::min_element(y.begin(), y.end()) - y.begin());
}

double GreatestMagnitude(Column y) {
  double greatest = 0.0;
  for (double const value : y)
    greatest = std::max(greatest, std::fabs(value));
  return greatest;
}

double ValueAt(Column x, Column y, double at) {
  return ValueBefore(x, y, static_cast<std::size_t>(std::lower_bound(x.begin(), x.end(), at) - x.begin()), at);
}

double ValueBefore(Column x, Column y, std::size_t first, double at) {
  if (x[first] == at)
    return y[first];
  return Between(y[first - 1], y[first], PartOfWay(x[first - 1], x[first], at));
}

} // namespace val::ranged
