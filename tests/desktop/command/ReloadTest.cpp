#include "desktop/project/SourceBase.h"
#include "tests/desktop/command/EditorFixture.h"

using desktop::ErrorKind;

class Reload : public support::EditorTest {
protected:
  Reload() {
    m_session.reset();
    std::filesystem::remove_all(m_folder / "study.results");
    std::filesystem::remove(m_folder / "study.sproject");
    Source("param C 1\nparam L 2\nbody ladder\nsetup Sweep lin\nsetup Fine dec\n");
    m_session = Create();
    Solve(*m_session, L"C=1; L=2", 5);
  }

  void Source(std::string const & text) { Write("circuit.txt", text); }
  bool Again() { return Editor().Reload(m_notices); }

  std::vector<AString> m_notices;
};

TEST_F(Reload, ANetlistThatDidNotChangeIsNoCommand) {
  EXPECT_FALSE(Again());
  EXPECT_EQ(Editor().GetHistory().Size(), 0u);
}

TEST_F(Reload, AChangedCircuitMakesAllDataStaleAndUndoMakesItValid) {
  Source("param C 1\nparam L 2\nbody filter\nsetup Sweep lin\nsetup Fine dec\n");
  EXPECT_TRUE(Again());
  EXPECT_FALSE(IsValid(L"C=1; L=2"));
  EXPECT_NO_THROW(m_session->CheckSourceUnchanged());
  Editor().Undo();
  EXPECT_TRUE(IsValid(L"C=1; L=2"));
  EXPECT_EQ(RefusalOf([&] { m_session->CheckSourceUnchanged(); }).kind, ErrorKind::kSource);
}

TEST_F(Reload, TheFormerCircuitPutBackMakesItsDataValidAgain) {
  std::string const former = Read("circuit.txt");
  Source("param C 1\nparam L 2\nbody filter\nsetup Sweep lin\nsetup Fine dec\n");
  Again();
  m_session->Save();
  Reopen();
  Source(former);
  EXPECT_TRUE(Again());
  EXPECT_TRUE(IsValid(L"C=1; L=2"));
}

TEST_F(Reload, ChangedValuesAndSetupsAloneLeaveOtherDataValid) {
  Source("param C 4\nparam L 2\nbody ladder\nsetup Sweep lin\nsetup Fine oct\nsetup More list\n");
  AString const before = StateOf(*m_session);
  EXPECT_TRUE(Again());
  EXPECT_EQ(m_session->GetDesign().GetVariation(), L"C=4; L=2");
  EXPECT_TRUE(IsValid(L"C=1; L=2"));
  EXPECT_EQ(WordsOf(L"Fine"), L"oct");
  EXPECT_EQ(WordsOf(L"More"), L"list");
  Editor().Undo();
  EXPECT_EQ(StateOf(*m_session), before);
}

TEST_F(Reload, ANewVariableOfTheSourceLeavesNoPointWithoutIt) {
  Source("param C 1\nparam L 2\nparam R 50\nbody ladder\nsetup Sweep lin\nsetup Fine dec\n");
  Again();
  EXPECT_EQ(m_session->GetDesign().GetVariation(), L"C=1; L=2; R=50");
  EXPECT_FALSE(IsValid(L"C=1; L=2"));
  Editor().Undo();
  EXPECT_TRUE(IsValid(L"C=1; L=2"));
}

TEST_F(Reload, WhatTheSourceDropsGoesAndComesBackWithUndo) {
  AString const before = StateOf(*m_session);
  Source("param C 1\nbody ladder\nsetup Fine dec\n");
  Again();
  EXPECT_EQ(m_session->GetDesign().GetVariation(), L"C=1");
  EXPECT_EQ(m_session->GetManager().GetSetups().size(), 1u);
  Editor().Undo();
  EXPECT_EQ(StateOf(*m_session), before);
}

TEST_F(Reload, WhatTheUserChangedTooStaysAndIsTold) {
  Editor().SetVariables({{L"C", L"3"}});
  Editor().EditSetup(L"Fine", L"mine");
  Source("param C 4\nparam L 2\nbody ladder\nsetup Sweep lin\nsetup Fine oct\n");
  Again();
  EXPECT_EQ(m_session->GetDesign().GetVariation(), L"C=3; L=2");
  EXPECT_EQ(WordsOf(L"Fine"), L"mine");
  ASSERT_EQ(m_notices.size(), 2u);
  EXPECT_NE(m_notices[0].find(L"it stays 3"), AString::npos);
  EXPECT_NE(m_notices[1].find(L"setup Fine: edited here"), AString::npos);
}

TEST_F(Reload, ARenamedSetupIsStillTheSourcesOwn) {
  Editor().RenameSetup(L"Fine", L"Main");
  Source("param C 1\nparam L 2\nbody ladder\nsetup Sweep lin\nsetup Fine oct\n");
  Again();
  EXPECT_EQ(WordsOf(L"Main"), L"oct");
  EXPECT_EQ(m_session->GetManager().GetSetups().size(), 2u);
}

TEST_F(Reload, ASetupThatTheUserDeletedStaysAway) {
  Editor().DeleteSetup(L"Fine");
  Source("param C 1\nparam L 2\nbody ladder\nsetup Sweep lin\nsetup Fine oct\n");
  Again();
  EXPECT_EQ(m_session->GetManager().GetSetups().size(), 1u);
}

TEST_F(Reload, ANetlistThatCanNotBeReadChangesNothing) {
  AString const before = StateOf(*m_session);
  Source("nonsense\n");
  EXPECT_EQ(RefusalOf([&] { Again(); }).kind, ErrorKind::kSource);
  Source("param C 1\nparam L 2\nbody other\nsetup Sweep lin\nsetup Fine dec\nsetup broken x\n");
  EXPECT_EQ(RefusalOf([&] { Again(); }).kind, ErrorKind::kUsage);
  EXPECT_EQ(StateOf(*m_session), before);
}
