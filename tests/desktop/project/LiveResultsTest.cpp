#include "desktop/project/LiveResults.h"

#include "basekit/io/CBlock.h"
#include "desktop/command/Editor.h"
#include "desktop/product/ProductSolutionManager.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "tests/desktop/support/SessionFixture.h"

#include <algorithm>

using desktop::LiveResults;
using desktop::Session;

namespace {

/// A project that one session writes, seen beside it.
class LiveResultsTest : public support::SessionTest {
protected:
  LiveResultsTest() : m_writer(Create()), m_project(ProjectPath()) { m_writer->Save(); }

  LiveResults Beside() const { return LiveResults(m_project, m_writer->GetManager().GetQsolPath()); }
  static std::vector<AString> PointsOf(std::vector<LiveResults::News> const & all) {
    std::vector<AString> points;
    for (auto const & news : all)
      if (news.key.IsValidVariationDataKey())
        points.push_back(news.key.GetDesignVariationKey());
    std::sort(points.begin(), points.end());
    return points;
  }
  void CloseWriter() { m_writer.reset(); }

  std::unique_ptr<Session> m_writer;
  desktop::Project m_project;
};

using Points = std::vector<AString>;

} // namespace

TEST_F(LiveResultsTest, WhatIsNotSavedIsNewsAtTheFirstLookAndEachPointOnceAfterwards) {
  Solve(*m_writer, L"C=1; L=2", 1);
  m_writer->Save();
  Solve(*m_writer, L"C=2; L=2", 2);
  LiveResults live = Beside();
  EXPECT_EQ(PointsOf(live.Look()), (Points{L"C=2; L=2"}));
  EXPECT_EQ(PointsOf(live.Look()), Points());
  Solve(*m_writer, L"C=3; L=2", 3);
  Solve(*m_writer, L"C=4; L=2", 4);
  EXPECT_EQ(PointsOf(live.Look()), (Points{L"C=3; L=2", L"C=4; L=2"}));
}

TEST_F(LiveResultsTest, ASaveIsCountedAndMakesNoPointNewsAgain) {
  LiveResults live = Beside();
  live.Look();
  auto const commits = live.CountCommits();
  Solve(*m_writer, L"C=2; L=2", 2);
  EXPECT_EQ(PointsOf(live.Look()).size(), 1u);
  m_writer->Save();
  EXPECT_EQ(PointsOf(live.Look()), Points());
  EXPECT_GT(live.CountCommits(), commits);
}

TEST_F(LiveResultsTest, APointThatWasSavedBeforeItWasSeenIsNews) {
  LiveResults live = Beside();
  live.Look();
  Solve(*m_writer, L"C=2; L=2", 2);
  m_writer->Save();
  EXPECT_EQ(PointsOf(live.Look()), (Points{L"C=2; L=2"}));
}

TEST_F(LiveResultsTest, APointThatIsSolvedAnewIsNewsAndItsPresentDataIsRead) {
  LiveResults live = Beside();
  Solve(*m_writer, L"C=2; L=2", 2);
  live.Look();
  Solve(*m_writer, L"C=2; L=2", 5);
  auto const all = live.Look();
  auto const news = std::ranges::find_if(all, [](auto const & one) { return one.key.IsValidVariationDataKey(); });
  ASSERT_NE(news, all.end());
  io::CBlock block;
  ASSERT_TRUE(live.Load(*news, block));
  io::CBlock_func data(L"Values");
  block >> data;
  auto place = data.begin();
  double value = 0;
  EXPECT_TRUE(data.QueryUnamedValues(place, value));
  EXPECT_EQ(value, 5.0);
}

TEST_F(LiveResultsTest, TheWriterIsSeenAndHowItLeftTheLibrary) {
  LiveResults live = Beside();
  EXPECT_TRUE(live.HasWriter());
  Solve(*m_writer, L"C=2; L=2", 2);
  EXPECT_EQ(live.HowItEnded(), LiveResults::End::kGoesOn);
  CloseWriter();
  EXPECT_FALSE(live.HasWriter());
  EXPECT_EQ(live.HowItEnded(), LiveResults::End::kUnsaved);
  Crash([](Session & session) { Solve(session, L"C=3; L=2", 3); });
  EXPECT_EQ(live.HowItEnded(), LiveResults::End::kCrashed);
  EXPECT_EQ(PointsOf(live.Look()), (Points{L"C=2; L=2", L"C=3; L=2"}));
}

TEST_F(LiveResultsTest, SetupsAreNamedAlsoBeforeTheyAreSavedAndUnknownOnesByTheirNumber) {
  LiveResults live = Beside();
  long const saved = SolutionOf(*m_writer).GetBaseSimulationSetup().GetID();
  EXPECT_EQ(live.NameOfSetup(saved), L"Sweep");
  m_writer->GetEditor().RenameSetup(L"Sweep", L"Other");
  EXPECT_EQ(Beside().NameOfSetup(saved), L"Other");
  EXPECT_EQ(live.NameOfSetup(987), L"setup 987");
}

TEST_F(LiveResultsTest, LookingLeavesTheFilesAndTheWriterAlone) {
  Solve(*m_writer, L"C=2; L=2", 2);
  auto const names = Names();
  LiveResults live = Beside();
  live.Look();
  EXPECT_EQ(Names(), names);
  EXPECT_EQ(Solve(*m_writer, L"C=3; L=2", 3), CStreamioLibrary::kLibSuccess);
  m_writer->Save();
}

TEST_F(LiveResultsTest, ALibraryThatIsNotThereHasNoNews) {
  LiveResults live(m_project, PathOf("nowhere.qsol"));
  EXPECT_EQ(PointsOf(live.Look()), Points());
  EXPECT_EQ(live.HowItEnded(), LiveResults::End::kSaved);
}
