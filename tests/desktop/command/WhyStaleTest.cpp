#include "tests/desktop/command/EditorFixture.h"

class WhyStale : public support::EditorTest {
protected:
  WhyStale() { Solve(*m_session, L"C=1; L=2", 5); }
};

TEST_F(WhyStale, TellsTheEditAndAllThatMakesTheDataValid) {
  Editor().EditSetup(L"Sweep", L"wide");
  Editor().SetVariables({{L"C", L"3"}});
  auto const reason = Why(L"C=1; L=2", 0);
  ASSERT_TRUE(reason.story);
  EXPECT_EQ(reason.story->command, L"setup edit Sweep wide");
  ASSERT_EQ(reason.story->changes.size(), 1u);
  EXPECT_EQ(reason.story->changes[0].what, L"setup Sweep");
  EXPECT_EQ(reason.story->changes[0].to, L"wide");
  EXPECT_EQ(reason.remedies,
            (std::vector<AString>{L"undo 2", L"setup edit Sweep ", L"solve --setup Sweep --vary C=1"}));
}

TEST_F(WhyStale, IsKnownAfterASaveInAnotherSession) {
  Editor().EditSetup(L"Sweep", L"wide");
  m_session->Save();
  Reopen();
  auto const reason = Why(L"C=1; L=2", 0);
  ASSERT_TRUE(reason.story);
  EXPECT_EQ(reason.story->command, L"setup edit Sweep wide");
  EXPECT_EQ(reason.remedies, (std::vector<AString>{L"setup edit Sweep ", L"solve --setup Sweep"}))
      << "the history is that of another session, so there is nothing to undo";
}

TEST_F(WhyStale, IsKnownFromTheAutosaveToo) {
  Editor().EditSetup(L"Sweep", L"wide");
  Reopen();
  EXPECT_EQ(Why(L"C=1; L=2", 0).story->command, L"setup edit Sweep wide");
}

TEST_F(WhyStale, DataOfAnEditThatWasUndoneNamesTheUndo) {
  Editor().EditSetup(L"Sweep", L"wide");
  long const version = SolutionOf(*m_session).GetVersionID();
  Solve(*m_session, L"C=1; L=2", 6);
  Editor().Undo();
  auto const reason = Why(L"C=1; L=2", version);
  ASSERT_TRUE(reason.story);
  EXPECT_EQ(reason.story->way, desktop::EditStory::Way::kUndone);
  EXPECT_EQ(reason.remedies.front(), L"redo");
}

TEST_F(WhyStale, NamesNoEditThatLeadsBackFromAnInvalidation) {
  Editor().InvalidateSetup(L"Sweep");
  EXPECT_EQ(Why(L"C=1; L=2", 0).remedies, (std::vector<AString>{L"undo", L"solve --setup Sweep"}));
}

TEST_F(WhyStale, APointThatIsNotSolvedKnowsTheOneThatWas) {
  Editor().SetVariables({{L"C", L"3"}});
  m_session->Save();
  Reopen();
  auto const unsolved = desktop::WhyUnsolved(*m_session, SolutionOf(*m_session));
  ASSERT_TRUE(unsolved);
  EXPECT_EQ(unsolved->validVariation, L"C=1; L=2");
  EXPECT_EQ(unsolved->reason.remedies, (std::vector<AString>{L"set C=1", L"solve --setup Sweep"}));
  Editor().SetVariables({{L"C", L"1"}});
  EXPECT_FALSE(desktop::WhyUnsolved(*m_session, SolutionOf(*m_session)));
}

TEST_F(WhyStale, AnEditBeforeThereWasALogIsUnknown) {
  SolutionOf(*m_session).Invalidate(nullptr, -1);
  auto const reason = Why(L"C=1; L=2", 0);
  EXPECT_FALSE(reason.story);
  EXPECT_EQ(reason.remedies, std::vector<AString>{L"solve --setup Sweep"});
}
