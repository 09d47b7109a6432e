#include "desktop/message/NearestNames.h"

#include <algorithm>
#include <numeric>

namespace desktop {
namespace {

constexpr std::size_t kMost = 5;

// Letters to put in, take out or replace, by rows of the table of all heads of both words.
std::size_t Distance(AString const & a, AString const & b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t(0));
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i + 1;
    for (std::size_t j = 0; j < b.size(); ++j) {
      std::size_t const replaced = diagonal + (a[i] == b[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({row[j] + 1, row[j + 1] + 1, replaced});
    }
  }
  return row.back();
}

} // namespace

std::vector<AString> NearestNames(AString const & word, std::vector<AString> const & names) {
  constexpr std::size_t kLongest = 100; // no name is so long
  AString const sought = word.substr(0, kLongest).ToLower();
  std::vector<std::pair<std::size_t, AString>> ranked;
  for (AString const & name : names) {
    AString const known = name.ToLower();
    std::size_t const distance = Distance(sought, known);
    bool const beginsAlike = sought.size() >= 2 && (known.StartsWith(sought) || sought.StartsWith(known));
    if (beginsAlike || distance <= 1 + sought.size() / 4)
      ranked.emplace_back(distance, name);
  }
  std::stable_sort(ranked.begin(), ranked.end(), [](auto const & a, auto const & b) { return a.first < b.first; });
  std::vector<AString> nearest;
  for (std::size_t i = 0; i < std::min(kMost, ranked.size()); ++i)
    nearest.push_back(ranked[i].second);
  return nearest;
}

} // namespace desktop
