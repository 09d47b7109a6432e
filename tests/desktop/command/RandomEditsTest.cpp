#include "tests/desktop/command/EditorFixture.h"

#include "basekit/value/Variable.h"

#include <random>
#include <set>

/// Commands by chance, with undo and redo between them, against the states that were seen on the way: the state after
/// n commands is the same whenever n of them stand.
class RandomEdits : public support::EditorTest, public testing::WithParamInterface<unsigned> {
protected:
  int Any(int count) { return std::uniform_int_distribution<int>(0, count - 1)(m_random); }
  AString AnySetup() {
    auto const & setups = m_session->GetManager().GetSetups();
    auto at = setups.begin();
    std::advance(at, Any(static_cast<int>(setups.size())));
    return at->second->GetName();
  }
  AString AnyVariable() {
    auto const variables = m_session->GetDesign().GetVariables();
    // Without any the name is an unknown one, which is refused.
    return variables.empty() ? AString(L"none")
                             : variables[static_cast<std::size_t>(Any(static_cast<int>(variables.size())))]->GetName();
  }
  AString AnyWords() { return AString::Format(L"words%d", Any(3)); }
  AString NewName() { return AString::Format(L"n%d", ++m_names); }
  AString AnyPoint() {
    std::set<AString> texts;
    for (auto const & [id, setup] : m_session->GetManager().GetSetups())
      for (auto const & [solutionID, solution] : setup->GetSolutions())
        for (auto const & [index, variation] : solution->GetVariations())
          texts.insert(variation->GetDesignVariationKey());
    return texts.empty() ? AString() : *std::next(texts.begin(), Any(static_cast<int>(texts.size())));
  }

  // One command at most; one that is refused changes nothing.
  void DoAny() {
    bool const hasSetups = !m_session->GetManager().GetSetups().empty();
    switch (hasSetups ? Any(12) : 0) {
    case 0:
      return Editor().AddSetup(NewName(), AnyWords());
    case 1:
    case 2:
      return static_cast<void>(Editor().EditSetup(AnySetup(), AnyWords()));
    case 3:
      return static_cast<void>(Editor().RenameSetup(AnySetup(), NewName()));
    case 4:
      return Any(3) == 0 ? Editor().DeleteSetup(AnySetup()) : Editor().InvalidateSetup(AnySetup());
    case 5:
      return Editor().DeleteSolution(AnySetup() + L" : Points");
    case 6:
      return static_cast<void>(Editor().DeleteVariation(AnyPoint(), AString()));
    case 7:
      return Editor().AddVariable(NewName(), AString::Format(L"%d", Any(3)));
    case 8:
      return static_cast<void>(Editor().RenameVariable(AnyVariable(), NewName()));
    case 9:
      return m_session->GetDesign().GetVariables().size() > 1 ? Editor().RemoveVariable(AnyVariable()) : void();
    case 10:
      Write("circuit.txt",
            "param C 1\nbody " + std::to_string(Any(3)) + "\nsetup Sweep s" + std::to_string(Any(2)) + "\n");
      return static_cast<void>(Editor().Reload(m_notices));
    default:
      return static_cast<void>(Editor().SetVariables({{AnyVariable(), AString::Format(L"%d", Any(4))}}));
    }
  }

  std::mt19937 m_random{GetParam()};
  std::vector<AString> m_notices;
  int m_names = 0;
};

TEST_P(RandomEdits, EachNumberOfCommandsHasOneState) {
  for (int c = 0; c < 4; ++c)
    Solve(*m_session, AString::Format(L"C=%d; L=2", c), c);
  std::vector<AString> states{StateOf(*m_session)};
  for (int step = 0; step < 60; ++step) {
    int const kind = Any(5);
    std::size_t const before = Editor().GetHistory().Position();
    if (kind == 0) {
      EXPECT_EQ(Editor().Undo(), before > 0);
    } else if (kind == 1) {
      Editor().Redo();
    } else {
      try {
        DoAny();
      } catch (desktop::Error const & error) {
        ASSERT_EQ(error.Kind(), desktop::ErrorKind::kUsage) << error.what();
      }
      std::size_t const now = Editor().GetHistory().Position();
      if (now > before) {
        states.resize(now);
        states.push_back(StateOf(*m_session));
      }
    }
    std::size_t const position = Editor().GetHistory().Position();
    ASSERT_EQ(StateOf(*m_session), states[position]) << "step " << step << ", command " << position;
    if (Any(10) == 0)
      m_session->Save();
  }
  while (Editor().Undo())
    ASSERT_EQ(StateOf(*m_session), states[Editor().GetHistory().Position()]);
  while (Editor().Redo())
    ASSERT_EQ(StateOf(*m_session), states[Editor().GetHistory().Position()]);
  // What the files say is what is in memory, unless objects were deleted, whose data goes with the next session.
  AString const last = StateOf(*m_session);
  m_session->Save();
  Reopen();
  EXPECT_EQ(StateOf(*m_session), last);
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomEdits, testing::Range(1u, 21u));
