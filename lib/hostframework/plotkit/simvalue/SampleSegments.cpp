#include "plotkit/simvalue/SampleSegments.h"

#include <algorithm>

SampleSegments::Segment const * SampleSegments::Find(AString const & variation) const {
  auto const found = std::find_if(m_segments.rbegin(), m_segments.rend(),
                                  [&variation](Segment const & segment) { return segment.variation == variation; });
  return found != m_segments.rend() ? &*found : nullptr;
}

void SampleSegments::Add(std::size_t point, AString const & variation, std::size_t count, bool isMissing) {
  m_segments.push_back({point, variation, m_sampleCount, count, isMissing});
  m_sampleCount += count;
}

void SampleSegments::MarkMissing(std::function<bool(AString const & variation)> const & isChosen) {
  for (Segment & segment : m_segments)
    segment.isMissing = segment.isMissing || isChosen(segment.variation);
}

bool SampleSegments::Arrange(std::vector<ValueColumn::Range> & ranges) {
  ranges.clear();
  auto const isBefore = [](Segment const & a, Segment const & b) { return a.point < b.point; };
  if (std::adjacent_find(m_segments.begin(), m_segments.end(), std::not_fn(isBefore)) == m_segments.end())
    return false;
  std::stable_sort(m_segments.begin(), m_segments.end(), isBefore);
  std::vector<Segment> kept;
  for (Segment & segment : m_segments)
    if (!kept.empty() && kept.back().point == segment.point)
      kept.back() = std::move(segment);
    else
      kept.push_back(std::move(segment));
  m_segments = std::move(kept);
  m_sampleCount = 0;
  for (Segment & segment : m_segments) {
    ranges.emplace_back(segment.first, segment.count);
    segment.first = m_sampleCount;
    m_sampleCount += segment.count;
  }
  return true;
}
