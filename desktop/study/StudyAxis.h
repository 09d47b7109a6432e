#pragma once

#include "basekit/text/AString.h"

#include <cstddef>
#include <vector>

namespace desktop {

/// Variables that run together: in each row every one of them takes a value.  Values are in SI units.
struct StudyAxis {
  std::vector<AString> names;
  std::vector<AString> places;              ///< where each name was given, for errors: "--vary res", "points.csv:1"
  std::vector<std::vector<double>> columns; ///< one for each name, equally long
  AString file;                             ///< that the rows come from; empty without one
  std::vector<long> lines;                  ///< of that file, one for each row

  std::size_t Rows() const { return columns.empty() ? 0 : columns.front().size(); }
};

/// The most points that a study may have: what is queued takes some 6 kB of memory a point, so this many take 13 GB.
inline constexpr std::size_t kMostStudyPoints = 2'000'000;
/// "asks for 4000000 points, and at most 2000000 can be held".
AString TooManyPoints(double points);

} // namespace desktop
