#include "basekit/value/Variable.h"
#include "basekit/value/VariableValues.h"
#include "desktop/project/SourceBase.h"
#include "tests/desktop/command/EditorFixture.h"

#include <algorithm>
#include <random>

/// The value that the source itself gives to a variable counts where the design does not have that variable.
class ValuesOfSource : public support::EditorTest {
protected:
  void Source(int c, int l, int body = 0) {
    Write("circuit.txt", "param C " + std::to_string(c) + "\nparam L " + std::to_string(l) + "\nbody " +
                             std::to_string(body) + "\nsetup Sweep\nsetup Fine\n");
  }
  void Reload() {
    m_notices.clear();
    Editor().Reload(m_notices);
  }
  bool IsToldAsChanged(AString const & what) {
    auto const & changes = Editor().GetLastChanges();
    return std::any_of(changes.begin(), changes.end(), [&](auto const & change) { return change.what == what; });
  }

  std::vector<AString> m_notices;
};

TEST_F(ValuesOfSource, DataOfAnotherValueIsNoDataOfTheDesignWithoutTheVariable) {
  Editor().SetVariables({{L"L", L"3"}});
  Solve(*m_session, L"C=1; L=3", 6);
  AString const before = StateOf(*m_session);
  Editor().RemoveVariable(L"L");
  EXPECT_TRUE(IsToldAsChanged(L"value of L"));
  EXPECT_FALSE(ValueOf(*m_session, L"C=1"));
  EXPECT_FALSE(IsValid(L"C=1; L=3")) << "it names a variable that the design lacks";
  m_session->Save();
  Reopen();
  EXPECT_FALSE(IsValid(L"C=1; L=3"));
  EXPECT_EQ(ValueOf(*m_session, L"C=1; L=3"), 6) << "stale, and there";
  Editor().AddVariable(L"L", L"3");
  EXPECT_TRUE(IsValid(L"C=1; L=3"));
  EXPECT_EQ(StateOf(*m_session), before);
}

TEST_F(ValuesOfSource, AnAddedVariableEntersWhatIsSolvedWithTheSourcesValue) {
  Editor().RemoveVariable(L"L");
  Solve(*m_session, L"C=1", 5);
  AString const before = StateOf(*m_session);
  Editor().AddVariable(L"L", L"7");
  EXPECT_TRUE(IsValid(L"C=1; L=2"));
  EXPECT_EQ(ValueOf(*m_session, L"C=1; L=2"), 5);
  EXPECT_FALSE(IsValid(L"C=1; L=7"));
  Editor().Undo();
  EXPECT_EQ(StateOf(*m_session), before);
}

TEST_F(ValuesOfSource, WhatIsSolvedIsNoPointOfAVariableThatTheSourceDoesNotKnow) {
  Solve(*m_session, L"C=1; L=2", 5);
  Editor().AddVariable(L"R", L"50");
  EXPECT_FALSE(IsValid(L"C=1; L=2"));
  EXPECT_EQ(SolutionOf(*m_session).size(), 1);
  Editor().Undo();
  EXPECT_TRUE(IsValid(L"C=1; L=2"));
}

TEST_F(ValuesOfSource, AChangeOfSuchAValueMakesDataStaleAndIsTold) {
  Source(1, 2);
  Reload();
  Editor().RemoveVariable(L"L");
  Solve(*m_session, L"C=1", 5);
  Source(1, 3);
  Reload();
  EXPECT_TRUE(IsToldAsChanged(L"value of L in circuit.txt"));
  EXPECT_FALSE(IsValid(L"C=1"));
  Solve(*m_session, L"C=1", 6);
  m_session->Save();
  Reopen();
  Source(1, 2);
  Reload();
  EXPECT_TRUE(IsValid(L"C=1"));
  EXPECT_EQ(ValueOf(*m_session, L"C=1"), 5) << "put back, it makes what was solved with it valid";
}

TEST_F(ValuesOfSource, AnEditBackFindsDataOverARemovedVariable) {
  Solve(*m_session, L"C=1; L=2", 5);
  Solve(*m_session, L"C=1; L=3", 6);
  Editor().EditSetup(L"Sweep", L"wide");
  Editor().RemoveVariable(L"L");
  Editor().EditSetup(L"Sweep", L"");
  EXPECT_TRUE(IsValid(L"C=1"));
  EXPECT_EQ(ValueOf(*m_session, L"C=1"), 5);
  EXPECT_FALSE(IsValid(L"C=1; L=3"));
}

TEST_F(ValuesOfSource, ANameOfAnotherVariableOfTheSourceIsRefused) {
  Editor().RemoveVariable(L"L");
  EXPECT_EQ(RefusalOf([&] { Editor().RenameVariable(L"C", L"L"); }).kind, desktop::ErrorKind::kUsage);
  Editor().RenameVariable(L"C", L"X");
  EXPECT_NO_THROW(Editor().RenameVariable(L"X", L"C"));
}

/// Edits by chance.  Each point is solved to a number that tells what it was solved with, so that one that is shown as
/// valid can be asked whether it is.
class SolvedWithTheSource : public ValuesOfSource, public testing::WithParamInterface<unsigned> {
protected:
  int Any(int count) { return std::uniform_int_distribution<int>(0, count - 1)(m_random); }

  int ValueIn(AString const & variation, AString const & name) {
    AString text;
    if (VariableValues::GetValueString(variation, name, text) ||
        (name == L"C" && VariableValues::GetValueString(variation, L"X", text)))
      return std::stoi(text::ToUtf8(text));
    for (desktop::SourceVariable const & variable : m_session->GetProject().GetSourceBase().variables)
      if (variable.name == name)
        return std::stoi(text::ToUtf8(variable.value));
    return -1;
  }
  double SolvedNow(AString const & variation) {
    AString const words = WordsOf(L"Sweep");
    AString const & fingerprint = m_session->GetProject().GetSourceBase().fingerprint;
    int const body = fingerprint == L"body 0;" ? 0 : fingerprint == L"body 1;" ? 1 : 2;
    return 1000 * body + 100 * (words == L"wide" ? 1 : 0) + 10 * ValueIn(variation, L"C") + ValueIn(variation, L"L");
  }
  bool Has(AString const & name) { return m_session->GetDesign().FindVariable(name) != nullptr; }

  void DoAny() {
    AString const name = Any(2) == 0 ? L"C" : L"L";
    AString const value = AString::Format(L"%d", 1 + Any(3));
    switch (Any(8)) {
    case 0:
      return Source(1 + Any(3), 1 + Any(3), Any(2)), Reload();
    case 1:
      return static_cast<void>(Editor().EditSetup(L"Sweep", Any(2) == 0 ? L"wide" : L""));
    case 2:
      return Editor().RemoveVariable(name);
    case 3:
      return Has(L"X") ? void() : Editor().AddVariable(name, value);
    case 4:
      return static_cast<void>(Any(2) == 0 ? Editor().RenameVariable(L"C", L"X") : Editor().RenameVariable(L"X", L"C"));
    case 5:
      return static_cast<void>(Editor().Undo());
    case 6:
      return static_cast<void>(Editor().Redo());
    default:
      return static_cast<void>(Editor().SetVariables({{name, value}}));
    }
  }

  std::mt19937 m_random{GetParam()};
};

TEST_P(SolvedWithTheSource, WhatIsValidIsWhatASolveWouldGive) {
  Source(1, 2);
  Reload();
  int valid = 0;
  for (int step = 0; step < 60; ++step) {
    try {
      DoAny();
    } catch (desktop::Error const & error) {
      ASSERT_EQ(error.Kind(), desktop::ErrorKind::kUsage) << error.what();
    }
    AString const present = m_session->GetDesign().GetVariation();
    if (!Has(L"X") && !IsValid(present))
      Solve(*m_session, present, SolvedNow(present));
    if (Any(12) == 0)
      m_session->Save();
    if (Any(12) == 0)
      Reopen();
    for (auto const & [index, variation] : SolutionOf(*m_session).GetVariations()) {
      AString const text = variation->GetDesignVariationKey();
      if (!IsValid(text) || !variation->IsVariationValid())
        continue;
      ++valid;
      ASSERT_EQ(ValueOf(*m_session, text), SolvedNow(text)) << "step " << step << ", " << text::ToUtf8(text);
    }
  }
  EXPECT_GT(valid, 10);
}

INSTANTIATE_TEST_SUITE_P(Seeds, SolvedWithTheSource, testing::Range(0u, 10u));
