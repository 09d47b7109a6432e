#include "basekit/value/Variable.h"
#include "tests/desktop/support/SessionFixture.h"
#include "tests/support/FaultyFileSystem.h"

using desktop::ErrorKind;

class CreateProject : public support::SessionTest {
protected:
  std::vector<std::string> const m_before = Names();
};

TEST_F(CreateProject, MakesVariablesAndSetupsFromTheSource) {
  auto const session = Create();
  auto const & design = session->GetDesign();
  ASSERT_EQ(design.GetVariables().size(), 2u);
  EXPECT_EQ(TextOf(*session, L"C"), L"1");
  EXPECT_EQ(design.GetVariation(), L"C=1; L=2");
  ASSERT_EQ(session->GetManager().GetSetups().size(), 2u);
  EXPECT_EQ(SolutionOf(*session, L"Sweep").GetGlobalSolutionName(), L"Sweep : Points");
  EXPECT_FALSE(session->HasUnsavedChanges());
  EXPECT_EQ(session->GetProject().GetSourceFile().FilePath(), PathOf("circuit.txt"));
}

TEST_F(CreateProject, LeavesProjectFileAndCommittedLibraryAndNoLock) {
  Create();
  EXPECT_TRUE(Exists("study.sproject"));
  EXPECT_TRUE(Exists("study.results/circuit.qsol"));
  EXPECT_FALSE(Exists("study.results/circuit.qsol_priv"));
  EXPECT_FALSE(Exists("study.sproject.auto"));
  EXPECT_FALSE(Exists("study.sproject.lock"));
}

TEST_F(CreateProject, TakesTheNameWithItsExtension) {
  desktop::Session::Create(PathOf("study.sproject"), PathOf("circuit.txt"), L"fake");
  EXPECT_TRUE(Exists("study.sproject"));
  EXPECT_EQ(Open()->GetProject().GetName(), L"study");
}

TEST_F(CreateProject, RefusesAProjectThatIsThere) {
  Create();
  std::string const before = Read("study.sproject");
  auto const refusal = RefusalOf([&] { Create(); });
  EXPECT_EQ(refusal.kind, ErrorKind::kProject);
  EXPECT_NE(refusal.text.find("study.sproject: there is a project of this name already"), std::string::npos);
  EXPECT_EQ(Read("study.sproject"), before);
}

TEST_F(CreateProject, RefusesResultsThatAnEarlierProjectLeft) {
  std::filesystem::create_directory(m_folder / "study.results");
  Write("study.results/mine", "mine");
  EXPECT_EQ(RefusalOf([&] { Create(); }).kind, ErrorKind::kProject);
  EXPECT_EQ(Read("study.results/mine"), "mine");
}

TEST_F(CreateProject, RefusesAnUnknownProductWithTheKnownOnes) {
  auto const refusal = RefusalOf([&] { desktop::Session::Create(ProjectPath(), PathOf("circuit.txt"), L"other"); });
  EXPECT_EQ(refusal.kind, ErrorKind::kUsage);
  EXPECT_NE(refusal.text.find("fake"), std::string::npos);
  EXPECT_EQ(Names(), m_before);
}

TEST_F(CreateProject, RefusesAFolderThatIsNotThere) {
  auto const refusal = RefusalOf([&] { desktop::Session::Create(PathOf("no/study"), PathOf("circuit.txt"), L"fake"); });
  EXPECT_EQ(refusal.kind, ErrorKind::kProject);
  EXPECT_NE(refusal.text.find("no such folder"), std::string::npos);
}

TEST_F(CreateProject, LeavesNothingBehindWhenTheSourceMakesNoSense) {
  Write("circuit.txt", "param C 1\nnonsense\n");
  auto const refusal = RefusalOf([&] { Create(); });
  EXPECT_EQ(refusal.kind, ErrorKind::kSource);
  EXPECT_NE(refusal.text.find("circuit.txt:2: unknown word 'nonsense'"), std::string::npos);
  EXPECT_EQ(Names(), m_before);
}

TEST_F(CreateProject, LeavesNothingBehindWhenAPartOfTheSourceIsMissing) {
  Write("circuit.txt", "include gone.txt\n");
  auto const refusal = RefusalOf([&] { Create(); });
  EXPECT_EQ(refusal.kind, ErrorKind::kSource);
  EXPECT_NE(refusal.text.find("gone.txt"), std::string::npos);
  EXPECT_EQ(Names(), m_before);
}

TEST_F(CreateProject, LeavesNothingBehindWhenASetupCanNotBeMade) {
  Write("circuit.txt", "setup good\nsetup broken\n");
  auto const refusal = RefusalOf([&] { Create(); });
  EXPECT_EQ(refusal.kind, ErrorKind::kSource);
  EXPECT_NE(refusal.text.find("'broken'"), std::string::npos);
  EXPECT_EQ(Names(), m_before);
}

TEST_F(CreateProject, LeavesNothingBehindInAFolderThatCanNotBeWritten) {
  WithoutRights([&] { EXPECT_EQ(RefusalOf([&] { Create(); }).kind, ErrorKind::kStorage); });
  EXPECT_EQ(Names(), m_before);
}

TEST_F(CreateProject, LeavesNothingBehindWhateverOperationFails) {
  bool failed = true;
  int refusals = 0;
  for (int operation = 1; failed; ++operation) {
    bool refused = false;
    {
      support::FaultyFileSystem files;
      files.FailAt(operation, false);
      refused = RefusalOf([&] { Create(); }).kind.has_value();
      failed = files.HasFailed();
    }
    refusals += refused ? 1 : 0;
    if (!refused) {
      // What failed was not needed: the project is whole.
      EXPECT_FALSE(RefusalOf([&] { Open(); }).kind.has_value()) << "operation " << operation;
      std::filesystem::remove(m_folder / "study.sproject");
      std::filesystem::remove_all(m_folder / "study.results");
    }
    EXPECT_EQ(Names(), m_before) << "operation " << operation;
    ASSERT_LT(operation, 500);
  }
  EXPECT_GT(refusals, 5);
}
