#pragma once

#include "desktop/study/StudyAxis.h"

#include <utility>

namespace desktop {

class Design;

/// The points of a study: the grid of all combinations of its axes' rows, the axis added last running fastest.  Points
/// are made one at a time, when they are asked for; without axes there is one, the design's own variables.
class Study {
public:
  using Point = std::vector<std::pair<AString, AString>>;

  /// Throws Error (kUsage) for a variable that another axis has too, and for more than kMostStudyPoints in all.
  void Add(StudyAxis axis);
  /// Names take the design's spelling; one that it does not know is refused with the known ones told.
  void ResolveNames(Design const & design);

  std::size_t Size() const { return m_size; }
  /// Names and plain numbers.
  Point At(std::size_t index) const;
  /// Where the point is written: "points.csv:7"; empty for one that comes from no file.
  AString PlaceOf(std::size_t index) const;

private:
  std::vector<std::size_t> RowsAt(std::size_t index) const;

  std::vector<StudyAxis> m_axes;
  std::size_t m_size = 1;
};

} // namespace desktop
