#include "desktop/study/Study.h"

#include "desktop/Error.h"
#include "desktop/study/VaryWord.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>

namespace {

using desktop::Study;

Study Grid(std::vector<AString> const & words) {
  Study study;
  for (AString const & word : words)
    study.Add(desktop::ReadVaryWord(word).axis);
  return study;
}

TEST(Study, WithoutAxesHasOnePointThatChangesNothing) {
  Study const study;
  EXPECT_EQ(study.Size(), 1u);
  EXPECT_TRUE(study.At(0).empty());
}

TEST(Study, IsAGridWhoseLastAxisRunsFastest) {
  Study const study = Grid({L"a=1,2", L"b=3,4,5"});
  ASSERT_EQ(study.Size(), 6u);
  EXPECT_EQ(study.At(0), (Study::Point{{L"a", L"1"}, {L"b", L"3"}}));
  EXPECT_EQ(study.At(1), (Study::Point{{L"a", L"1"}, {L"b", L"4"}}));
  EXPECT_EQ(study.At(5), (Study::Point{{L"a", L"2"}, {L"b", L"5"}}));
}

TEST(Study, LinkedVariablesAreOneAxisOfTheGrid) {
  Study const study = Grid({L"a=1,2,b=10,20", L"c=7,8"});
  ASSERT_EQ(study.Size(), 4u);
  EXPECT_EQ(study.At(2), (Study::Point{{L"a", L"2"}, {L"b", L"20"}, {L"c", L"7"}}));
}

TEST(Study, AVariableOnTwoAxesIsRefused) {
  Study study = Grid({L"a=1,2"});
  EXPECT_THROW(study.Add(desktop::ReadVaryWord(L"b=1,A=2").axis), desktop::Error);
}

TEST(Study, AGridOfATrillionPointsIsRefusedBeforeItIsMade) {
  Study study = Grid({L"a=1:1000000:1"});
  EXPECT_THROW(study.Add(desktop::ReadVaryWord(L"b=1:1000000:1").axis), desktop::Error);
  EXPECT_EQ(study.Size(), 1'000'000u);
}

TEST(Study, TellsTheLineThatAPointComesFrom) {
  Study study = Grid({L"c=1,2"});
  study.Add({{L"a"}, {L"p.csv:1"}, {{5, 6}}, L"p.csv", {2, 4}});
  EXPECT_EQ(study.PlaceOf(0), L"p.csv:2");
  EXPECT_EQ(study.PlaceOf(3), L"p.csv:4");
  EXPECT_EQ(Grid({L"c=1,2"}).PlaceOf(1), L"");
}

} // namespace
