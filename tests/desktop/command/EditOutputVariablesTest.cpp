#include "plotkit/outputvariable/OutputVariable.h"
#include "tests/desktop/command/EditorFixture.h"

using desktop::ErrorKind;

class EditOutputVariables : public support::EditorTest {
protected:
  EditOutputVariables() { Solve(*m_session, L"C=1; L=2", {10, 20, 30}); }

  AString ExpressionOf(AString const & name) {
    OutputVariable const * const variable = m_session->GetManager().FindOutputVariable(name);
    return variable ? variable->GetValueBaseText() : AString(L"none");
  }
  Refusal RefusalOfAdding(AString const & name, AString const & expression) {
    return RefusalOf([&] { Editor().AddOutputVariable(name, expression); });
  }
};

TEST_F(EditOutputVariables, EachEditIsUndoneAndRedone) {
  Editor().AddOutputVariable(L"gain", L"2*V");
  Editor().EditOutputVariable(L"GAIN", L"3*V");
  Editor().DeleteOutputVariable(L"gain");
  std::vector<AString> const states{L"none", L"2*V", L"3*V", L"none"};
  for (std::size_t i = 3; i-- > 0;) {
    Editor().Undo();
    EXPECT_EQ(ExpressionOf(L"gain"), states[i]);
  }
  for (std::size_t i = 1; i < 4; ++i) {
    Editor().Redo();
    EXPECT_EQ(ExpressionOf(L"gain"), states[i]);
  }
}

TEST_F(EditOutputVariables, AreThereInTheNextSessionAndAfterASave) {
  Editor().AddOutputVariable(L"gain", L"2*V");
  Reopen();
  EXPECT_EQ(ExpressionOf(L"gain"), L"2*V");
  m_session->Save();
  Reopen();
  EXPECT_EQ(ExpressionOf(L"gain"), L"2*V");
}

TEST_F(EditOutputVariables, RefusalsTellWhatIsWrongInTheWordsOfTheCatalogue) {
  Editor().AddOutputVariable(L"gain", L"2*V");
  EXPECT_NE(RefusalOfAdding(L"Gain", L"V").text.find("already"), std::string::npos);
  EXPECT_NE(RefusalOfAdding(L"V", L"1").text.find("quantity"), std::string::npos);
  EXPECT_NE(RefusalOfAdding(L"a b", L"V").text.find("one single word"), std::string::npos);
  EXPECT_NE(RefusalOfAdding(L"2", L"V").text.find("that is a number"), std::string::npos);
  EXPECT_NE(RefusalOfAdding(L"DB", L"V").text.find("a function of that name"), std::string::npos);
  EXPECT_NE(RefusalOfAdding(L"bandwidth", L"V").text.find("a function of that name"), std::string::npos);
  EXPECT_NE(RefusalOfAdding(L"x", L"V+Nothing").text.find("Nothing"), std::string::npos);
  EXPECT_EQ(RefusalOfAdding(L"x", L"V+").kind, ErrorKind::kUsage);
  EXPECT_EQ(Editor().GetHistory().Size(), 1u);
}

TEST_F(EditOutputVariables, OneThatAnotherOneRefersToCantBeDeletedNorLeadBackToItself) {
  Editor().AddOutputVariable(L"gain", L"2*V");
  Editor().AddOutputVariable(L"more", L"gain+1");
  EXPECT_EQ(RefusalOf([&] { Editor().DeleteOutputVariable(L"gain"); }).kind, ErrorKind::kUsage);
  EXPECT_EQ(RefusalOf([&] { Editor().EditOutputVariable(L"gain", L"more*2"); }).kind, ErrorKind::kUsage);
  EXPECT_EQ(ExpressionOf(L"gain"), L"2*V");
  EXPECT_EQ(RefusalOf([&] { Editor().DeleteOutputVariable(L"none"); }).text.find("it has: gain, more") !=
                std::string::npos,
            true);
}

TEST_F(EditOutputVariables, FollowAVariablesNewName) {
  Editor().AddOutputVariable(L"gain", L"C*V+c");
  Editor().RenameVariable(L"C", L"Cap");
  EXPECT_EQ(ExpressionOf(L"gain"), L"Cap*V+Cap");
  Editor().Undo();
  EXPECT_EQ(ExpressionOf(L"gain"), L"C*V+c");
}

TEST_F(EditOutputVariables, BecomeZeroWhereAVariableGoesAwayAndComeBackWithUndo) {
  Editor().AddOutputVariable(L"gain", L"C*V");
  Editor().RemoveVariable(L"C");
  EXPECT_EQ(ExpressionOf(L"gain"), L"0");
  Editor().Undo();
  EXPECT_EQ(ExpressionOf(L"gain"), L"C*V");
}
