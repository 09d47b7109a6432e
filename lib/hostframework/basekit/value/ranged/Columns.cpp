#include "basekit/value/ranged/Columns.h"

#include <algorithm>

namespace val::ranged {

Columns EvenSteps(Column x, Column y, std::size_t count) {
  Columns steps;
  steps.x.reserve(count);
  steps.y.reserve(count);
  double const span = x.back() - x.front();
  std::size_t first = 0;
  for (std::size_t k = 0; k < count; ++k) {
    double const step = x.front() + static_cast<double>(k) * span / static_cast<double>(count - 1);
    double const at = k + 1 == count ? x.back() : std::min(step, x.back());
    while (x[first] < at)
      ++first;
    steps.x.push_back(at);
    steps.y.push_back(ValueBefore(x, y, first, at));
  }
  return steps;
}

Columns StartingAt(Column x, Column y, double from) {
  auto const behind = std::upper_bound(x.begin(), x.end(), from) - x.begin();
  Columns window{{from}, {ValueAt(x, y, from)}};
  window.x.insert(window.x.end(), x.begin() + behind, x.end());
  window.y.insert(window.y.end(), y.begin() + behind, y.end());
  return window;
}

Columns Cut(Column x, Column y, double from, double to) {
  auto const behind = std::upper_bound(x.begin(), x.end(), from) - x.begin();
  auto const end = std::max(behind, std::lower_bound(x.begin(), x.end(), to) - x.begin());
  Columns piece{{from}, {ValueAt(x, y, from)}};
  piece.x.insert(piece.x.end(), x.begin() + behind, x.begin() + end);
  piece.y.insert(piece.y.end(), y.begin() + behind, y.begin() + end);
  piece.x.push_back(to);
  piece.y.push_back(ValueAt(x, y, to));
  return piece;
}

} // namespace val::ranged
