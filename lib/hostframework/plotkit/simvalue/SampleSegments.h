#pragma once

#include "basekit/text/AString.h"
#include "plotkit/simvalue/ValueColumn.h"

#include <functional>
#include <vector>

/// Which samples of a column belong to which major point of a point set, as points may differ in the number of their
/// samples or have none.
class SampleSegments {
public:
  struct Segment {
    std::size_t point = 0; ///< the major point's place among those of the set
    AString variation;     ///< its variation text
    std::size_t first = 0; ///< place of its first sample
    std::size_t count = 0;
    bool isMissing = false; ///< there are no data: its samples, if any, are missing ones

    friend bool operator==(Segment const & a, Segment const & b) = default;
  };

  bool empty() const { return m_segments.empty(); }
  std::vector<Segment> const & Get() const { return m_segments; }
  /// Null when there is none of that text; of several the last one added.
  Segment const * Find(AString const & variation) const;

  void Clear() { *this = SampleSegments(); }
  /// The next count samples of the column, behind those of all segments added before.
  void Add(std::size_t point, AString const & variation, std::size_t count, bool isMissing = false);
  /// Puts the segments in the order of their points, of equal points the last one added standing for all.  The ranges
  /// are what ValueColumn::Arrange needs for each column of these segments; false, and no ranges, when nothing moves.
  bool Arrange(std::vector<ValueColumn::Range> & ranges);
  /// What there was at the variations that are chosen counts as missing from now on.
  void MarkMissing(std::function<bool(AString const & variation)> const & isChosen);
  /// Of all segments added.
  std::size_t GetSampleCount() const { return m_sampleCount; }

private:
  std::vector<Segment> m_segments;
  std::size_t m_sampleCount = 0;
};
