#include "basekit/value/ranged/Columns.h"

#include <algorithm>

namespace val::ranged {

namespace {

void Reserve(Columns & columns, std::size_t count) {
  columns.x.reserve(count);
  columns.y.reserve(count);
}

void Add(Columns & columns, double x, double y) {
  columns.x.push_back(x);
  columns.y.push_back(y);
}

void AddSamples(Columns & columns, Column x, Column y, std::size_t from, std::size_t end) {
  if (from >= end)
    return;
  Column const newX = x.subspan(from, end - from);
  Column const newY = y.subspan(from, end - from);
  columns.x.insert(columns.x.end(), newX.begin(), newX.end());
  columns.y.insert(columns.y.end(), newY.begin(), newY.end());
}

} // namespace

Columns EvenSteps(Column x, Column y, std::size_t count) {
  Columns steps;
  Reserve(steps, count);
  double const span = x.back() - x.front();
  std::size_t first = 0;
  for (std::size_t k = 0; k < count; ++k) {
    double const step = x.front() + static_cast<double>(k) * span / static_cast<double>(count - 1);
    double const at = k + 1 == count ? x.back() : std::min(step, x.back());
    while (x[first] < at)
      ++first;
    Add(steps, at, ValueBefore(x, y, first, at));
  }
  return steps;
}

Columns StartingAt(Column x, Column y, double from) {
  auto const behind = static_cast<std::size_t>(std::upper_bound(x.begin(), x.end(), from) - x.begin());
  Columns window;
  Reserve(window, x.size() - behind + 1);
  Add(window, from, ValueAt(x, y, from));
  AddSamples(window, x, y, behind, x.size());
  return window;
}

Columns Cut(Column x, Column y, double from, double to) {
  auto const behind = static_cast<std::size_t>(std::upper_bound(x.begin(), x.end(), from) - x.begin());
  auto const end = static_cast<std::size_t>(std::lower_bound(x.begin(), x.end(), to) - x.begin());
  Columns piece;
  Reserve(piece, end - std::min(behind, end) + 2);
  Add(piece, from, ValueAt(x, y, from));
  AddSamples(piece, x, y, behind, end);
  Add(piece, to, ValueAt(x, y, to));
  return piece;
}

} // namespace val::ranged
