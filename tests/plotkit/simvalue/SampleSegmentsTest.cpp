#include "plotkit/simvalue/SampleSegments.h"

#include "tests/support/Printers.h"

#include <gtest/gtest.h>

namespace {

using Ranges = std::vector<ValueColumn::Range>;

} // namespace

TEST(SampleSegments, StandOneBehindTheOther) {
  SampleSegments segments;
  segments.Add(0, L"x=1", 3);
  segments.Add(1, L"x=2", 0, true);
  segments.Add(2, L"x=3", 2);
  EXPECT_EQ(segments.GetSampleCount(), 5u);
  EXPECT_EQ(segments.Get()[2].first, 3u);
  ASSERT_NE(segments.Find(L"x=2"), nullptr);
  EXPECT_TRUE(segments.Find(L"x=2")->isMissing);
  EXPECT_EQ(segments.Find(L"x=4"), nullptr);
  Ranges ranges;
  EXPECT_FALSE(segments.Arrange(ranges)) << "they are in order";
  EXPECT_TRUE(ranges.empty());
  segments.Clear();
  EXPECT_TRUE(segments.empty());
  EXPECT_EQ(segments.GetSampleCount(), 0u);
}

TEST(SampleSegments, ComeIntoTheOrderOfThePoints) {
  SampleSegments segments;
  segments.Add(2, L"x=3", 2);
  segments.Add(0, L"x=1", 3);
  segments.Add(1, L"x=2", 1);
  Ranges ranges;
  ASSERT_TRUE(segments.Arrange(ranges));
  EXPECT_EQ(ranges, (Ranges{{2, 3}, {5, 1}, {0, 2}}));
  EXPECT_EQ(segments.Get()[0], (SampleSegments::Segment{0, L"x=1", 0, 3, false}));
  EXPECT_EQ(segments.Get()[1], (SampleSegments::Segment{1, L"x=2", 3, 1, false}));
  EXPECT_EQ(segments.Get()[2], (SampleSegments::Segment{2, L"x=3", 4, 2, false}));
  EXPECT_FALSE(segments.Arrange(ranges));
}

TEST(SampleSegments, TheLastOneAddedStandsForItsPoint) {
  SampleSegments segments;
  segments.Add(0, L"x=1", 2);
  segments.Add(1, L"x=2", 2);
  segments.Add(0, L"x=1", 1);
  EXPECT_EQ(segments.Find(L"x=1")->first, 4u);
  Ranges ranges;
  ASSERT_TRUE(segments.Arrange(ranges));
  EXPECT_EQ(ranges, (Ranges{{4, 1}, {2, 2}}));
  EXPECT_EQ(segments.GetSampleCount(), 3u);
}
