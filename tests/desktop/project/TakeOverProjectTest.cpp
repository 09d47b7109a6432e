#include "basekit/id/Id.h"
#include "basekit/io/CBlock.h"
#include "desktop/project/CommittedLibrary.h"
#include "desktop/project/ProjectCopy.h"
#include "desktop/project/RecoveryFailed.h"
#include "solutionmanager/recovery/RecoveryReport.h"
#include "tests/desktop/support/SessionFixture.h"
#include "tests/support/FaultyFileSystem.h"
#include "viewkit/library/CStreamioLibWritePrivate.h"

namespace {

constexpr wchar_t kFirst[] = L"C=1; L=2";
constexpr wchar_t kSecond[] = L"C=2; L=2";

} // namespace

/// What opening does with the private library file that a crash left.
class TakeOverProject : public support::SessionTest {
protected:
  // A point that is saved, an edit that makes it stale, and a point of the edited design.
  void CrashWithAStalePoint() {
    {
      auto const session = Create();
      ASSERT_EQ(Solve(*session, kFirst, 0.1), 0);
      session->Save();
    }
    Crash([](desktop::Session & session) {
      session.GetManager().Invalidate(nullptr, 7);
      session.Autosave();
      Solve(session, kSecond, 0.2);
    });
  }

  static void ExpectBothPoints(desktop::Session & session) {
    BaseSolution & solution = SolutionOf(session);
    EXPECT_EQ(solution.size(), 2);
    EXPECT_EQ(ValueOf(session, kSecond), 0.2);
    EXPECT_TRUE(solution.HasValidSolutionData(AString(kSecond), id::invalidID));
    EXPECT_FALSE(solution.HasValidSolutionData(AString(kFirst), id::invalidID));
    for (auto const & [index, variation] : solution.GetVariations())
      EXPECT_TRUE(solution.HasSolutionData(variation->GetDesignVariationKey(), variation->GetVersionID()));
  }
};

TEST_F(TakeOverProject, KeepsStalePointsThatTheLibraryDrops) {
  CrashWithAStalePoint();
  for (bool const isSecondTime : {false, true}) {
    SCOPED_TRACE(isSecondTime);
    auto const session = Open();
    ExpectBothPoints(*session);
    EXPECT_EQ(session->GetNotices().size(), isSecondTime ? 0u : 1u);
    EXPECT_FALSE(Exists("study.results/circuit.qsol_kept"));
    if (isSecondTime)
      session->Save();
  }
  ExpectBothPoints(*Open());
}

TEST_F(TakeOverProject, PutsStalePointsBackThatATakeoverCutOffLeftInTheirOwnFile) {
  Create()->Save();
  AString const path = PathOf("study.results/circuit.qsol_kept");
  {
    auto const session = Open();
    session->GetManager().Invalidate(nullptr, 7);
    session->Save();
    BaseSolution const & solution = SolutionOf(*session);
    CStreamioLibWritePrivate kept(LongFileName(path), CStreamioLibrary::kOrdinaryMode);
    io::CBlock block(
        SolutionVariationKey(solution.GetBaseSimulationSetup().GetID(), kFirst, solution.GetID(), 0).Pack());
    ASSERT_EQ(kept.SaveDefinition(block), 0);
    ASSERT_EQ(kept.CommitAll(false), 0);
  }
  auto const session = Open();
  EXPECT_EQ(SolutionOf(*session).size(), 1);
  EXPECT_FALSE(Exists("study.results/circuit.qsol_kept"));
}

TEST_F(TakeOverProject, LosesNothingWhateverOperationOfItFails) {
  CrashWithAStalePoint();
  std::filesystem::path const kept = m_folder.Path().string() + "-kept";
  std::filesystem::copy(m_folder.Path(), kept, std::filesystem::copy_options::recursive);
  for (bool const forGood : {false, true}) {
    bool failed = true;
    int refusals = 0;
    for (int operation = 1; failed; ++operation) {
      SCOPED_TRACE(operation);
      std::filesystem::remove_all(m_folder.Path());
      std::filesystem::copy(kept, m_folder.Path(), std::filesystem::copy_options::recursive);
      {
        support::FaultyFileSystem files;
        files.FailAt(operation, forGood);
        auto const refusal = RefusalOf([&] { Open(); });
        failed = files.HasFailed();
        refusals += refusal.kind.has_value() ? 1 : 0;
        EXPECT_NE(refusal.text.find(refusal.kind ? "; " : ""), std::string::npos) << refusal.text;
      }
      ExpectBothPoints(*Open());
      ASSERT_LT(operation, 500);
    }
    EXPECT_GT(refusals, 0);
  }
  std::filesystem::remove_all(kept);
}

TEST_F(TakeOverProject, ThatCanNotBeWrittenLeavesTheFilesAndTheSavedStateCanStillBeRead) {
  CrashWithAStalePoint();
  std::string const work = Read("study.results/circuit.qsol_priv");
  std::string const library = Read("study.results/circuit.qsol");
  {
    support::FaultyFileSystem files;
    files.FailAt(2, true);
    EXPECT_TRUE(RefusalOf([&] { Open(); }).kind.has_value());
  }
  EXPECT_EQ(Read("study.results/circuit.qsol_priv"), work);
  EXPECT_EQ(Read("study.results/circuit.qsol"), library);
  EXPECT_EQ(ValueOf(*Open(Access::kReadOnly), kFirst), 0.1);
  ExpectBothPoints(*Open());
}

TEST_F(TakeOverProject, CanBeTriedOutOnACopy) {
  CrashWithAStalePoint();
  auto const before = Names();
  std::string const work = Read("study.results/circuit.qsol_priv");
  {
    desktop::Project const project(ProjectPath());
    desktop::ProjectCopy const copy(project);
    ExpectBothPoints(*desktop::Session::Open(copy.Path(), Access::kWrite));
    EXPECT_EQ(copy.ToldOfProject(copy.Path() + L": a text"), project.GetFile().FilePath() + L": a text");
  }
  EXPECT_EQ(Names(), before);
  EXPECT_EQ(Read("study.results/circuit.qsol_priv"), work);
  ExpectBothPoints(*Open());
}

TEST_F(TakeOverProject, IsTriedOutOnACopyThatMayBeWrittenThoughTheFilesMayNot) {
  CrashWithAStalePoint();
  namespace fs = std::filesystem;
  AString const library = PathOf("study.results/circuit.qsol");
  fs::permissions(text::ToUtf8(library), fs::perms::owner_read);
  desktop::Project const project(ProjectPath());
  desktop::ProjectCopy const copy(project);
  fs::path const copied = fs::path(text::ToUtf8(copy.Path())).parent_path() / "study.results" / "circuit.qsol";
  EXPECT_NE(fs::status(copied).permissions() & fs::perms::owner_write, fs::perms::none);
  EXPECT_EQ(fs::status(text::ToUtf8(library)).permissions(), fs::perms::owner_read);
}

TEST_F(TakeOverProject, TellsOfBlocksWhoseNamesATornEndTookAlongAndKeepsACopy) {
  Create()->Save();
  Crash([](desktop::Session & session) {
    for (int i = 1; i < 9; ++i)
      Solve(session, AString::Format(L"C=%d; L=2", i), i);
  });
  AString const library = PathOf("study.results/circuit.qsol");
  std::string const whole = Read("study.results/circuit.qsol_priv");
  EXPECT_EQ(desktop::CountNamelessBlocks(library), 0u);
  std::size_t cut = 0;
  while (++cut < whole.size() && desktop::CountNamelessBlocks(library) == 0)
    Write("study.results/circuit.qsol_priv", whole.substr(0, whole.size() - cut));
  ASSERT_LT(cut, whole.size()) << "no cut takes a name along";
  std::string const torn = Read("study.results/circuit.qsol_priv");
  auto const session = Open();
  ASSERT_EQ(session->GetNotices().size(), 2u);
  EXPECT_NE(session->GetNotices()[0].find(L"its end is torn off, and with it the name of 1 block"), AString::npos)
      << text::ToUtf8(session->GetNotices()[0]);
  EXPECT_EQ(Read("study.results/circuit.qsol_priv.set-aside-1"), torn);
  EXPECT_EQ(session->CountRecoveredPoints(), 7);
}

TEST_F(TakeOverProject, IsNotTriedOutBesideAWriter) {
  auto const writer = Create();
  ASSERT_EQ(Solve(*writer, kFirst, 0.1), 0);
  desktop::Project const project(ProjectPath());
  EXPECT_EQ(RefusalOf([&] { desktop::ProjectCopy const copy(project); }).kind, desktop::ErrorKind::kLocked);
}
