#include "tests/desktop/command/EditorFixture.h"

using desktop::ErrorKind;

class DeleteData : public support::EditorTest {};

TEST_F(DeleteData, UndoBringsAVariationBackWithItsBlocksOfAllVersions) {
  Solve(*m_session, L"C=1; L=2", 5);
  Editor().EditSetup(L"Sweep", L"wide");
  Solve(*m_session, L"C=1; L=2", 6);
  Solve(*m_session, L"C=9; L=2", 7);
  AString const before = StateOf(*m_session);
  EXPECT_EQ(Editor().DeleteVariation(L"L=2.0; c=1", AString()), 2);
  EXPECT_EQ(ValueOf(*m_session, L"C=1; L=2"), std::nullopt);
  EXPECT_EQ(SolutionOf(*m_session).size(), 1);
  Editor().Undo();
  EXPECT_EQ(StateOf(*m_session), before);
  m_session->Save();
  Reopen();
  EXPECT_EQ(StateOf(*m_session), before);
}

TEST_F(DeleteData, ADeletionThatWasSavedIsUndoneAllTheSame) {
  Solve(*m_session, L"C=1; L=2", 5);
  m_session->Save();
  Editor().DeleteVariation(L"C=1; L=2", L"Sweep");
  m_session->Save();
  Editor().Undo();
  EXPECT_EQ(ValueOf(*m_session, L"C=1; L=2"), 5);
}

TEST_F(DeleteData, UndoKeepsWhatWasSolvedAfterTheDeletion) {
  Solve(*m_session, L"C=1; L=2", 5);
  Editor().DeleteVariation(L"C=1; L=2", AString());
  Solve(*m_session, L"C=1; L=2", 6);
  Editor().Undo();
  EXPECT_EQ(ValueOf(*m_session, L"C=1; L=2"), 6);
  Editor().Redo();
  EXPECT_EQ(ValueOf(*m_session, L"C=1; L=2"), std::nullopt);
  Editor().Undo();
  EXPECT_EQ(ValueOf(*m_session, L"C=1; L=2"), 6);
}

TEST_F(DeleteData, RefusesAVariationThatNobodySolved) {
  EXPECT_EQ(RefusalOf([&] { Editor().DeleteVariation(L"C=1; L=2", AString()); }).kind, ErrorKind::kUsage);
  EXPECT_EQ(Editor().GetHistory().Size(), 0u);
}

TEST_F(DeleteData, UndoBringsASolutionBackWithItsData) {
  Solve(*m_session, L"C=1; L=2", 5);
  AString const before = StateOf(*m_session);
  Editor().DeleteSolution(L"Sweep : Points");
  EXPECT_TRUE(SetupOf(*m_session, L"Sweep").GetSolutions().empty());
  Editor().Undo();
  EXPECT_EQ(StateOf(*m_session), before);
}

TEST_F(DeleteData, NothingOfAnOlderVersionComesBackInTheNextSession) {
  Solve(*m_session, L"C=1; L=2", 5);
  m_session->Save();
  Editor().EditSetup(L"Sweep", L"wide");
  Editor().DeleteVariation(L"C=1; L=2", AString());
  m_session->Save();
  Reopen();
  EXPECT_EQ(SolutionOf(*m_session).size(), 0);
}
