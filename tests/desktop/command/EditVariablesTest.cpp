#include "tests/desktop/command/EditorFixture.h"

using desktop::ErrorKind;

class EditVariables : public support::EditorTest {};

TEST_F(EditVariables, SettingOneLeavesDataValidAndIsUndone) {
  Solve(*m_session, L"C=1; L=2", 5);
  Editor().SetVariables({{L"C", L"3"}});
  EXPECT_TRUE(IsValid(L"C=1; L=2"));
  EXPECT_EQ(m_session->GetDesign().GetVariation(), L"C=3; L=2");
  Editor().Undo();
  EXPECT_EQ(m_session->GetDesign().GetVariation(), L"C=1; L=2");
  Editor().Redo();
  EXPECT_EQ(m_session->GetDesign().GetVariation(), L"C=3; L=2");
}

TEST_F(EditVariables, WhatIsSolvedFollowsARename) {
  Solve(*m_session, L"C=1; L=2", 5);
  Editor().RenameVariable(L"c", L"Cap");
  EXPECT_EQ(m_session->GetDesign().GetVariation(), L"Cap=1; L=2");
  EXPECT_TRUE(IsValid(L"Cap=1; L=2"));
  EXPECT_EQ(ValueOf(*m_session, L"Cap=1; L=2"), 5);
  m_session->Save();
  Reopen();
  EXPECT_EQ(ValueOf(*m_session, L"Cap=1; L=2"), 5);
  EXPECT_EQ(SolutionOf(*m_session).size(), 1);
}

TEST_F(EditVariables, WhatWasSolvedAfterARenameFollowsItsUndo) {
  Editor().RenameVariable(L"C", L"Cap");
  Solve(*m_session, L"Cap=7; L=2", 9);
  Editor().Undo();
  EXPECT_EQ(ValueOf(*m_session, L"C=7; L=2"), 9);
  Editor().Redo();
  EXPECT_EQ(ValueOf(*m_session, L"Cap=7; L=2"), 9);
}

TEST_F(EditVariables, ARemovedVariableLeavesWhatWasSolvedAtTheSourcesValue) {
  Solve(*m_session, L"C=1; L=2", 5);
  Solve(*m_session, L"C=1; L=3", 6);
  AString const before = StateOf(*m_session);
  Editor().RemoveVariable(L"L");
  EXPECT_EQ(ValueOf(*m_session, L"C=1"), 5);
  EXPECT_EQ(ValueOf(*m_session, L"C=1; L=3"), 6) << "solved at another value: it belongs to no point any more";
  EXPECT_FALSE(IsValid(L"C=1; L=3"));
  Editor().Undo();
  EXPECT_EQ(StateOf(*m_session), before);
}

TEST_F(EditVariables, RefusesSenselessNames) {
  for (wchar_t const * const name : {L"", L"c", L"1a", L"a b", L"a=b", L"a;b"})
    EXPECT_EQ(RefusalOf([&] { Editor().AddVariable(name, L"1"); }).kind, ErrorKind::kUsage);
  EXPECT_EQ(RefusalOf([&] { Editor().AddVariable(L"R", L"two"); }).kind, ErrorKind::kUsage);
  EXPECT_EQ(RefusalOf([&] { Editor().RenameVariable(L"C", L"l"); }).kind, ErrorKind::kUsage);
  EXPECT_EQ(RefusalOf([&] { Editor().RemoveVariable(L"X"); }).kind, ErrorKind::kUsage);
  EXPECT_EQ(m_session->GetDesign().GetVariation(), L"C=1; L=2");
}

TEST_F(EditVariables, AGroupIsOneStepAndAllOrNothing) {
  Editor().RunGroup(L"both", [&] {
    Editor().SetVariables({{L"C", L"3"}});
    Editor().AddVariable(L"R", L"1");
  });
  EXPECT_EQ(Editor().GetHistory().Size(), 1u);
  EXPECT_THROW(Editor().RunGroup(L"half",
                                 [&] {
                                   Editor().SetVariables({{L"C", L"4"}});
                                   Editor().RemoveVariable(L"X");
                                 }),
               desktop::Error);
  EXPECT_EQ(m_session->GetDesign().GetVariation(), L"C=3; L=2; R=1");
  EXPECT_FALSE(Editor().Redo());
  Editor().Undo();
  EXPECT_EQ(m_session->GetDesign().GetVariation(), L"C=1; L=2");
}

TEST_F(EditVariables, ARenameReachesDataOfOlderVersions) {
  Solve(*m_session, L"C=1; L=2", 5);
  m_session->Save();
  Editor().EditSetup(L"Sweep", L"wide");
  Editor().RenameVariable(L"C", L"Cap");
  m_session->Save();
  Reopen();
  EXPECT_EQ(SolutionOf(*m_session).size(), 1);
  Editor().EditSetup(L"Sweep", L"");
  EXPECT_EQ(ValueOf(*m_session, L"Cap=1; L=2"), 5);
}

TEST_F(EditVariables, ARenameThatIsNotSavedLeavesNoFormerVariationToTheNextSession) {
  Solve(*m_session, L"C=1; L=2", 5);
  m_session->Save();
  Editor().RenameVariable(L"C", L"Cap");
  AString const renamed = StateOf(*m_session);
  Reopen();
  EXPECT_EQ(StateOf(*m_session), renamed);
}
