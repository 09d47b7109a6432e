// What was saved, what is unsaved, and that neither becomes the other behind the user's back.
#include "basekit/id/Id.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "basekit/value/Variable.h"
#include "desktop/command/Editor.h"
#include "tests/desktop/support/SessionFixture.h"
#include "tests/support/FaultyFileSystem.h"

#include <csignal>

using LeftWork = desktop::Session::LeftWork;

namespace {

constexpr wchar_t kFirst[] = L"C=1; L=2";
constexpr wchar_t kSecond[] = L"C=3; L=2";
constexpr wchar_t kRenamed[] = L"capacity=1; L=2";

} // namespace

class SavedState : public support::SessionTest {
protected:
  // A project with one saved point of "Sweep".
  void SetUp() override {
    auto const session = Create();
    ASSERT_EQ(Solve(*session, kFirst, 0.1), 0);
    session->Save();
    m_library = Read(kLibrary);
    m_project = Read("study.sproject");
  }

  static long Store(desktop::Session & session, AString const & setup, AString const & variation) {
    BaseSolution & solution = SolutionOf(session, setup);
    io::CBlock block(SolutionVariationKey(solution.GetBaseSimulationSetup().GetID(), variation, solution.GetID(),
                                          solution.GetVersionID())
                         .Pack());
    io::CBlock_func data(L"Values");
    data << 0.5;
    block << data;
    return session.GetManager().SaveSingleBlock(block);
  }

  static bool HasPoint(desktop::Session & session, AString const & setup, AString const & variation) {
    if (!session.GetManager().GetISimulationSetup(setup, false, false))
      return false;
    return SolutionOf(session, setup).HasValidSolutionData(variation, id::invalidID);
  }

  static std::string Told(desktop::Session & session) {
    std::string told;
    for (AString const & notice : session.GetNotices())
      told += text::ToUtf8(notice) + "\n";
    return told;
  }

  std::unique_ptr<desktop::Session> Discard() const {
    return desktop::Session::Open(ProjectPath(), Access::kWrite, LeftWork::kDiscard);
  }

  // The library is byte for byte what it was, so that whatever a session wrote there is gone.
  void ExpectSavedState(desktop::Session & session) {
    EXPECT_FALSE(session.HasUnsavedChanges());
    EXPECT_EQ(Read(kLibrary), m_library);
    EXPECT_EQ(Read("study.sproject"), m_project);
    EXPECT_FALSE(Exists("study.sproject.auto"));
    EXPECT_FALSE(Exists("study.results/circuit.qsol_saved"));
    EXPECT_EQ(ValueOf(session, kFirst), 0.1);
    EXPECT_TRUE(HasPoint(session, L"Sweep", kFirst));
  }

  void DamageAutosave() {
    std::string autosave = Read("study.sproject.auto");
    ASSERT_FALSE(autosave.empty());
    autosave[autosave.size() / 2] = static_cast<char>(autosave[autosave.size() / 2] ^ 4);
    Write("study.sproject.auto", autosave);
  }

  static void AddAndSolve(desktop::Session & session) {
    session.GetEditor().AddSetup(L"Added", L"words");
    Store(session, L"Added", kFirst);
    Solve(session, kSecond, 0.3);
  }

  static constexpr char kLibrary[] = "study.results/circuit.qsol";
  std::string m_library;
  std::string m_project;
};

TEST_F(SavedState, PointsOfASetupThatALostAutosaveAloneKnewStayAndAreToldAsUnsaved) {
  AddAndSolve(*Open());
  DamageAutosave();
  {
    auto const session = Open();
    EXPECT_NE(Told(*session).find("holds the setup 'Added'"), std::string::npos) << Told(*session);
    EXPECT_TRUE(HasPoint(*session, L"Added", kFirst));
    EXPECT_EQ(ValueOf(*session, kSecond), 0.3);
    EXPECT_TRUE(session->HasUnsavedChanges());
    EXPECT_EQ(Read(kLibrary), m_library) << "opening commits nothing";
  }
  {
    auto const session = Open();
    EXPECT_TRUE(HasPoint(*session, L"Added", kFirst));
    session->Save();
  }
  auto const session = Open();
  EXPECT_EQ(Told(*session), "");
  EXPECT_TRUE(HasPoint(*session, L"Added", kFirst));
  EXPECT_FALSE(session->HasUnsavedChanges());
}

TEST_F(SavedState, ComesBackByDiscardAfterAnAutosaveWasLost) {
  AddAndSolve(*Open());
  DamageAutosave();
  Open();
  auto const session = Discard();
  EXPECT_EQ(session->GetDropped().points, 2);
  ExpectSavedState(*session);
  EXPECT_FALSE(HasPoint(*session, L"Added", kFirst));
}

TEST_F(SavedState, PointsOfASetupThatALostAutosaveAloneKnewAreTakenOverAfterACrash) {
  Crash(AddAndSolve);
  DamageAutosave();
  {
    auto const session = Open();
    EXPECT_NE(Told(*session).find("recovered 2 points after a crash\n"), std::string::npos) << Told(*session);
    EXPECT_TRUE(HasPoint(*session, L"Added", kFirst));
    EXPECT_EQ(ValueOf(*session, kSecond), 0.3);
  }
  ExpectSavedState(*Discard());
}

TEST_F(SavedState, AnOlderCopyOfTheProjectFileCostsNoPointOfSetupsThatItLacks) {
  {
    auto const session = Open();
    AddAndSolve(*session);
    session->Save();
  }
  std::string const library = Read(kLibrary);
  Write("study.sproject", m_project);
  for (bool const isSecondTime : {false, true}) {
    SCOPED_TRACE(isSecondTime);
    auto const session = Open();
    EXPECT_NE(Told(*session).find("holds the setup 'Added'"), std::string::npos) << Told(*session);
    session->SetVariables({{L"C", isSecondTime ? L"7" : L"8"}});
    EXPECT_TRUE(HasPoint(*session, L"Added", kFirst));
    EXPECT_EQ(Read(kLibrary), library);
    std::filesystem::remove(m_folder / "study.sproject.auto");
  }
}

TEST_F(SavedState, ASetupThatNoDesignKnowsAndNothingWasSolvedOfDoesNotComeBack) {
  Open()->GetEditor().AddSetup(L"Added", L"words");
  std::filesystem::remove(m_folder / "study.sproject.auto");
  {
    auto const session = Open();
    EXPECT_EQ(Told(*session), "");
    EXPECT_EQ(session->GetManager().GetISimulationSetup(L"Added", false, false), nullptr);
    Solve(*session, kSecond, 0.3);
    session->Save();
  }
  EXPECT_EQ(Open()->GetManager().GetISimulationSetup(L"Added", false, false), nullptr);
}

TEST_F(SavedState, ASetupThatComesBackTakesNoNameThatIsTaken) {
  AddAndSolve(*Open());
  std::filesystem::remove(m_folder / "study.sproject.auto");
  std::filesystem::rename(m_folder / "study.results/circuit.qsol_priv", m_folder / "elsewhere");
  {
    auto const session = Open();
    session->GetEditor().RenameSetup(L"Fine", L"Added");
  }
  std::filesystem::remove(m_folder / "study.results/circuit.qsol_priv");
  std::filesystem::rename(m_folder / "elsewhere", m_folder / "study.results/circuit.qsol_priv");
  auto const session = Open();
  EXPECT_EQ(session->GetManager().GetSetups().size(), 3u);
  EXPECT_TRUE(HasPoint(*session, L"Added_2", kFirst));
  EXPECT_FALSE(HasPoint(*session, L"Added", kFirst));
}

TEST_F(SavedState, PointsOfASetupWhoseSavedDeletionWasUndoneStayWhenTheAutosaveIsLost) {
  {
    auto const session = Open();
    session->GetEditor().DeleteSetup(L"Fine");
    session->Save();
    session->GetEditor().Undo();
    ASSERT_EQ(Store(*session, L"Fine", kSecond), 0);
  }
  DamageAutosave();
  for (bool const isSecondTime : {false, true}) {
    auto const session = Open();
    EXPECT_EQ(Told(*session).find("holds the setup 'Fine'") != std::string::npos, !isSecondTime) << Told(*session);
    EXPECT_TRUE(HasPoint(*session, L"Fine", kSecond));
    EXPECT_TRUE(session->HasUnsavedChanges());
    if (isSecondTime)
      session->Save();
  }
  EXPECT_TRUE(HasPoint(*Open(), L"Fine", kSecond));
}

TEST_F(SavedState, UnsavedPointsStayUnsavedWhereASavedDeletionIsStillToBeCarriedOut) {
  {
    auto const session = Open();
    ASSERT_EQ(Store(*session, L"Fine", kFirst), 0);
    session->GetEditor().DeleteSetup(L"Fine");
    session->Save();
    ASSERT_EQ(Solve(*session, kSecond, 0.3), 0); // Nobody wrote an autosave.
  }
  std::string const library = Read(kLibrary);
  auto const blocksOf = [](desktop::Session & session) { return session.GetCommittedBlocks().size(); };
  std::size_t blocks = 0;
  {
    auto const session = Open();
    EXPECT_TRUE(session->HasUnsavedChanges());
    EXPECT_EQ(Read(kLibrary), library);
    blocks = blocksOf(*session);
    session->Discard();
    EXPECT_EQ(session->GetDropped().points, 1);
    EXPECT_EQ(ValueOf(*session, kSecond), std::nullopt);
    EXPECT_EQ(session->GetManager().GetSetups().size(), 1u);
  }
  auto const session = Open();
  session->SetVariables({{L"C", L"9"}});
  session->Save();
  EXPECT_LT(blocksOf(*session), blocks) << "the save carries the deletion out";
}

TEST_F(SavedState, ComesBackByDiscardAfterARenameOfAVariableACrashAndItsTakeover) {
  Crash([](desktop::Session & session) { session.GetEditor().RenameVariable(L"C", L"capacity"); });
  {
    auto const session = Open();
    EXPECT_EQ(Told(*session), "study: the last session ended in a crash; no solved point was unsaved\n");
    EXPECT_EQ(ValueOf(*session, kRenamed), 0.1);
    EXPECT_TRUE(session->HasUnsavedChanges());
    EXPECT_NE(Read(kLibrary), m_library);
  }
  auto const session = Discard();
  EXPECT_TRUE(session->GetDropped().design);
  EXPECT_EQ(session->GetDropped().points, 0);
  ExpectSavedState(*session);
}

TEST_F(SavedState, ComesBackByDiscardAfterVariablesCameOrWentBeforeACrash) {
  for (bool const isAdded : {false, true}) {
    SCOPED_TRACE(isAdded);
    Crash([isAdded](desktop::Session & session) {
      session.GetEditor().RemoveVariable(L"C");
      if (isAdded)
        session.GetEditor().AddVariable(L"C", L"5");
    });
    EXPECT_EQ(ValueOf(*Open(), isAdded ? L"C=1; L=2" : L"L=2"), 0.1);
    ExpectSavedState(*Discard());
  }
}

TEST_F(SavedState, ComesBackByDiscardAfterADeletionOfAVariationACrashAndItsTakeover) {
  Crash([](desktop::Session & session) { session.GetEditor().DeleteVariation(kFirst, AString()); });
  {
    auto const session = Open();
    EXPECT_EQ(Told(*session), "study: the last session ended in a crash; no solved point was unsaved\n");
    EXPECT_FALSE(HasPoint(*session, L"Sweep", kFirst));
    EXPECT_TRUE(session->HasUnsavedChanges());
  }
  auto const session = Open();
  session->Discard();
  ExpectSavedState(*session);
}

TEST_F(SavedState, ComesBackByDiscardAfterAnyNumberOfCrashes) {
  Crash([](desktop::Session & session) { session.GetEditor().RenameVariable(L"C", L"capacity"); });
  Crash([](desktop::Session & session) {
    session.BeginAutosave();
    Solve(session, L"capacity=3; L=2", 0.3);
  });
  Crash([](desktop::Session & session) { session.GetEditor().DeleteVariation(kRenamed, AString()); });
  {
    auto const session = Open();
    EXPECT_EQ(ValueOf(*session, L"capacity=3; L=2"), 0.3);
    EXPECT_FALSE(HasPoint(*session, L"Sweep", kRenamed));
  }
  auto const session = Discard();
  EXPECT_EQ(session->GetDropped().points, 1);
  ExpectSavedState(*session);
}

TEST_F(SavedState, IsWhatASaveBringsAboutAlsoAfterATakeover) {
  Crash([](desktop::Session & session) { session.GetEditor().RenameVariable(L"C", L"capacity"); });
  Open()->Save();
  EXPECT_FALSE(Exists("study.results/circuit.qsol_saved"));
  auto const session = Discard();
  EXPECT_FALSE(session->GetDropped().results);
  EXPECT_EQ(ValueOf(*session, kRenamed), 0.1);
}

TEST_F(SavedState, IsWhatAReaderSeesAfterATakeover) {
  Crash([](desktop::Session & session) {
    session.GetEditor().RenameVariable(L"C", L"capacity");
    Solve(session, L"capacity=3; L=2", 0.3);
  });
  auto const writer = Open();
  auto const reader = Open(Access::kReadOnly);
  EXPECT_EQ(SolutionOf(*reader).size(), 1);
  EXPECT_EQ(ValueOf(*reader, kFirst), 0.1);
  std::string const point = "C=1; L=2";
  for (auto const * const session : {reader.get(), writer.get()})
    for (AString const & name : session->GetCommittedBlocks())
      EXPECT_EQ(text::ToUtf8(name).find("capacity"), std::string::npos);
}

TEST_F(SavedState, ComesBackByDiscardWhereverASaveWasCutOff) {
  std::filesystem::path const kept = m_folder.Path().string() + "-kept";
  Open()->GetEditor().RenameVariable(L"C", L"capacity");
  std::filesystem::copy(m_folder.Path(), kept, std::filesystem::copy_options::recursive);
  bool failed = true;
  int refusals = 0;
  for (int operation = 1; failed; ++operation) {
    SCOPED_TRACE(operation);
    std::filesystem::remove_all(m_folder.Path());
    std::filesystem::copy(kept, m_folder.Path(), std::filesystem::copy_options::recursive);
    bool isRefused = false;
    {
      auto const session = Open();
      support::FaultyFileSystem files;
      files.FailAt(operation, true);
      isRefused = RefusalOf([&] { session->Save(); }).kind.has_value();
      failed = files.HasFailed();
    }
    refusals += isRefused ? 1 : 0;
    EXPECT_EQ(ValueOf(*Open(), kRenamed), 0.1);
    if (Read("study.sproject") == m_project)
      ExpectSavedState(*Discard());
    ASSERT_LT(operation, 500);
  }
  EXPECT_GT(refusals, 5);
  std::filesystem::remove_all(kept);
}

TEST_F(SavedState, IsGoneOnFromWithATakeoversLibraryKeptAsideWhereThatIsAskedFor) {
  Crash([](desktop::Session & session) {
    session.GetEditor().RenameVariable(L"C", L"capacity");
    Solve(session, L"capacity=3; L=2", 0.3);
  });
  Open();
  std::string const ahead = Read(kLibrary);
  auto const session = desktop::Session::Open(ProjectPath(), Access::kWrite, LeftWork::kSetAside);
  ExpectSavedState(*session);
  EXPECT_EQ(Read("study.results/circuit.qsol.set-aside-1"), ahead);
}

TEST_F(SavedState, ALibraryOfAnotherLifeIsNeverCutBack) {
  Crash([](desktop::Session & session) { session.GetEditor().RenameVariable(L"C", L"capacity"); });
  Open();
  ASSERT_TRUE(Exists("study.results/circuit.qsol_saved"));
  std::string other = Read(kLibrary);
  other[m_library.size() - 20] = static_cast<char>(other[m_library.size() - 20] ^ 1);
  Write(kLibrary, other);
  Discard();
  EXPECT_EQ(Read(kLibrary), other);
}

TEST_F(SavedState, ARenameOfASetupIsInItsDefinitionBlockAtOnce) {
  auto const session = Open();
  auto const stored = [&session] {
    auto const & setup = SolutionOf(*session, L"Named").GetBaseSimulationSetup();
    io::CBlock block(setup.GetBlockDefinitionName());
    AString name;
    EXPECT_EQ(session->GetManager().LoadSingleBlock(block), 0);
    block >> io::named(L"SimSetupName", name);
    return name;
  };
  session->GetEditor().RenameSetup(L"Sweep", L"Named");
  EXPECT_EQ(stored(), L"Named");
  session->GetEditor().RenameSetup(L"Named", L"Other");
  session->GetEditor().Undo();
  EXPECT_EQ(stored(), L"Named");
  EXPECT_TRUE(Exists("study.results/circuit.qsol_priv"));
}

TEST_F(SavedState, TheAutosaveStandsBeforeAnythingUnsavedReachesTheLibrary) {
  auto const session = Open();
  session->GetEditor().DeleteVariation(kFirst, AString()); // Changes nothing that the autosave tells of.
  EXPECT_TRUE(Exists("study.sproject.auto"));
  session->Save();
  EXPECT_FALSE(Exists("study.sproject.auto"));
  session->GetEditor().Undo();
  EXPECT_TRUE(Exists("study.sproject.auto"));
}

TEST_F(SavedState, AnEditThatComesToNothingLeavesNoAutosave) {
  auto const session = Open();
  EXPECT_FALSE(session->GetEditor().EditSetup(L"Sweep", L""));
  EXPECT_FALSE(Exists("study.sproject.auto"));
  EXPECT_TRUE(RefusalOf([&] { session->GetEditor().AddSetup(L"broken", L"x"); }).kind.has_value());
  EXPECT_FALSE(Exists("study.sproject.auto"));
  EXPECT_FALSE(session->HasUnsavedChanges());
}

TEST_F(SavedState, NoPointIsLostWhereverAnEditOfVariablesDied) {
  std::filesystem::path const kept = m_folder.Path().string() + "-kept";
  {
    auto const session = Open();
    session->BeginAutosave();
    for (int number = 2; number < 6; ++number)
      ASSERT_EQ(Solve(*session, AString::Format(L"C=%d; L=2", number), number), 0);
  }
  std::filesystem::copy(m_folder.Path(), kept, std::filesystem::copy_options::recursive);
  using Work = std::function<void(desktop::Editor &)>;
  std::vector<Work> const edits{[](auto & editor) { editor.RenameVariable(L"C", L"capacity"); },
                                [](auto & editor) {
                                  editor.RemoveVariable(L"L");
                                  editor.AddVariable(L"L", L"2");
                                },
                                [](auto & editor) { editor.RemoveVariable(L"L"); },
                                [](auto & editor) {
                                  editor.RenameVariable(L"C", L"capacity");
                                  editor.Undo();
                                  editor.Redo();
                                }};
  int taken[2] = {0, 0};
  for (std::size_t kind = 0; kind < edits.size(); ++kind) {
    bool failed = true;
    for (int operation = 1; failed; ++operation) {
      SCOPED_TRACE(testing::Message() << "edit " << kind << ", operation " << operation);
      std::filesystem::remove_all(m_folder.Path());
      std::filesystem::copy(kept, m_folder.Path(), std::filesystem::copy_options::recursive);
      Crash([&](desktop::Session & session) {
        support::FaultyFileSystem files;
        files.FailAt(operation, true);
        RefusalOf([&] { edits[kind](session.GetEditor()); });
        Write("failed", files.HasFailed() ? "yes" : "no");
        std::raise(SIGKILL); // Nothing reaches the disk behind the failure.
      });
      failed = Read("failed") == "yes";
      auto const session = Open();
      for (int number = 1; number < 6; ++number) {
        AString key;
        for (Variable const * const variable : session->GetDesign().GetVariables()) {
          AString const name = variable->GetName();
          bool const isFirst = name == L"C" || name == L"capacity";
          key += (key.empty() ? AString() : AString(L"; ")) + name + L"=" +
                 (isFirst ? AString::Format(L"%d", number) : variable->GetValueText());
        }
        EXPECT_EQ(ValueOf(*session, key), number == 1 ? 0.1 : number) << testing::PrintToString(key);
      }
      EXPECT_EQ(SolutionOf(*session).size(), 5);
      ++taken[session->GetDesign().GetVariation() == AString(kFirst) ? 0 : 1];
      ASSERT_LT(operation, 300);
    }
  }
  EXPECT_GT(taken[0], 10);
  EXPECT_GT(taken[1], 4);
  std::filesystem::remove_all(kept);
}
