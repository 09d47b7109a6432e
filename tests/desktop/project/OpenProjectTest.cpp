#include "desktop/project/ProjectFile.h"
#include "tests/desktop/support/SessionFixture.h"

using desktop::ErrorKind;

namespace {

constexpr wchar_t kPoint[] = L"C=1; L=2";
constexpr wchar_t kOther[] = L"C=3; L=2";

} // namespace

class OpenProject : public support::SessionTest {};

TEST_F(OpenProject, FindsSetupsAndSolutionsUnderTheirIdsAndNames) {
  long setupID = 0;
  long solutionID = 0;
  {
    auto const session = Create();
    BaseSolution const & solution = SolutionOf(*session, L"Fine");
    setupID = solution.GetBaseSimulationSetup().GetID();
    solutionID = solution.GetID();
  }
  auto const session = Open();
  BaseSolution const & solution = SolutionOf(*session, L"Fine");
  EXPECT_EQ(solution.GetBaseSimulationSetup().GetID(), setupID);
  EXPECT_EQ(solution.GetID(), solutionID);
  EXPECT_EQ(solution.GetSolutionName(), L"Points");
  EXPECT_EQ(session->GetManager().GetSetups().size(), 2u);
  EXPECT_TRUE(session->GetNotices().empty());
  EXPECT_FALSE(session->HasUnsavedChanges());
}

TEST_F(OpenProject, ShowsSavedPoints) {
  {
    auto const session = Create();
    ASSERT_EQ(Solve(*session, kPoint, 0.1), 0);
    EXPECT_TRUE(session->HasUnsavedChanges());
    EXPECT_TRUE(session->GetProject().HasUnsavedChanges());
    session->Save();
    EXPECT_FALSE(session->HasUnsavedChanges());
  }
  auto const session = Open();
  EXPECT_EQ(SolutionOf(*session).size(), 1);
  EXPECT_EQ(ValueOf(*session, kPoint), 0.1);
  EXPECT_TRUE(SolutionOf(*session).HasValidSolutionData(AString(kPoint), id::invalidID));
  EXPECT_FALSE(session->HasUnsavedChanges());
}

TEST_F(OpenProject, GoesOnWithVariablesThatWereNotSaved) {
  { Create()->SetVariables({{L"c", L"3"}}); }
  {
    auto const session = Open();
    EXPECT_EQ(TextOf(*session, L"C"), L"3");
    EXPECT_EQ(session->GetDesign().NominalInstance().GetVariationKey(), kOther);
    EXPECT_TRUE(session->HasUnsavedChanges());
    session->Save();
  }
  EXPECT_FALSE(Exists("study.sproject.auto"));
  auto const session = Open();
  EXPECT_EQ(TextOf(*session, L"C"), L"3");
  EXPECT_FALSE(session->HasUnsavedChanges());
}

TEST_F(OpenProject, GoesOnWithPointsThatWereNotSaved) {
  {
    auto const session = Create();
    session->Autosave();
    ASSERT_EQ(Solve(*session, kPoint, 0.1), 0);
  }
  {
    auto const session = Open();
    EXPECT_EQ(ValueOf(*session, kPoint), 0.1);
    EXPECT_TRUE(session->HasUnsavedChanges());
    EXPECT_TRUE(session->GetNotices().empty());
    EXPECT_FALSE(session->GetCommittedBlocks().contains(
        SolutionOf(*session).GetVariations().begin()->second->GetSolutionVariationKey().Pack()));
    session->Save();
    EXPECT_TRUE(session->GetCommittedBlocks().contains(
        SolutionOf(*session).GetVariations().begin()->second->GetSolutionVariationKey().Pack()));
  }
  EXPECT_EQ(ValueOf(*Open(), kPoint), 0.1);
}

TEST_F(OpenProject, ShowsPointsOfAnEarlierVersionAsStale) {
  for (bool const saves : {false, true}) {
    SCOPED_TRACE(saves);
    for (auto const * name : {"study.sproject", "study.sproject.auto", "study.results"})
      std::filesystem::remove_all(m_folder / name);
    {
      auto const session = Create();
      ASSERT_EQ(Solve(*session, kPoint, 0.1), 0);
      session->GetManager().Invalidate(nullptr, 7);
      session->Autosave();
      ASSERT_EQ(Solve(*session, kOther, 0.3), 0);
      if (saves)
        session->Save();
    }
    auto const session = Open();
    BaseSolution & solution = SolutionOf(*session);
    EXPECT_EQ(solution.size(), 2);
    EXPECT_FALSE(solution.HasValidSolutionData(AString(kPoint), id::invalidID));
    EXPECT_TRUE(solution.HasValidSolutionData(AString(kOther), id::invalidID));
  }
}

TEST_F(OpenProject, RefusesASecondWriter) {
  auto const first = Create();
  auto const refusal = RefusalOf([&] { Open(); });
  EXPECT_EQ(refusal.kind, ErrorKind::kLocked);
  EXPECT_NE(refusal.text.find("another process"), std::string::npos);
  EXPECT_TRUE(Exists("study.sproject.lock"));
}

TEST_F(OpenProject, IsNotLockedByALockFileThatACrashLeft) {
  Create();
  Write("study.sproject.lock", "");
  EXPECT_FALSE(RefusalOf([&] { Open(); }).kind.has_value());
  EXPECT_FALSE(Exists("study.sproject.lock"));
}

TEST_F(OpenProject, ReadsTheCommittedStateBesideAWriter) {
  auto const writer = Create();
  ASSERT_EQ(Solve(*writer, kPoint, 0.1), 0);
  writer->Save();
  writer->SetVariables({{L"C", L"3"}});
  ASSERT_EQ(Solve(*writer, kOther, 0.3), 0);
  auto const before = Names();
  auto const reader = Open(Access::kReadOnly);
  EXPECT_EQ(TextOf(*reader, L"C"), L"1");
  EXPECT_EQ(ValueOf(*reader, kPoint), 0.1);
  EXPECT_EQ(ValueOf(*reader, kOther), std::nullopt);
  EXPECT_FALSE(reader->HasUnsavedChanges());
  EXPECT_EQ(Names(), before);
  ASSERT_EQ(Solve(*writer, L"C=4; L=2", 0.4), 0);
  writer->Save();
  EXPECT_EQ(ValueOf(*Open(Access::kReadOnly), kOther), 0.3);
}

TEST_F(OpenProject, NeitherTakesOverNorSetsAsideWhenReadOnly) {
  Create();
  Crash([&](desktop::Session & session) {
    session.SetVariables({{L"C", L"3"}});
    Solve(session, kOther, 0.3);
  });
  auto const before = Names();
  {
    auto const reader = Open(Access::kReadOnly);
    EXPECT_EQ(TextOf(*reader, L"C"), L"1");
    EXPECT_EQ(SolutionOf(*reader).size(), 0);
    EXPECT_TRUE(reader->GetNotices().empty());
  }
  EXPECT_EQ(Names(), before);
  EXPECT_EQ(ValueOf(*Open(), kOther), 0.3);
}

TEST_F(OpenProject, ReadsInAFolderThatCanNotBeWritten) {
  {
    auto const session = Create();
    ASSERT_EQ(Solve(*session, kPoint, 0.1), 0);
    session->Save();
  }
  for (auto const * name : {".", "study.results"})
    std::filesystem::permissions(m_folder / name, std::filesystem::perms(0555));
  WithoutRights([&] {
    EXPECT_EQ(ValueOf(*Open(Access::kReadOnly), kPoint), 0.1);
    auto const refusal = RefusalOf([&] { Open(); });
    EXPECT_EQ(refusal.kind, ErrorKind::kStorage);
    EXPECT_NE(refusal.text.find("ermission"), std::string::npos);
  });
  for (auto const * name : {".", "study.results"})
    std::filesystem::permissions(m_folder / name, std::filesystem::perms(0755));
}

TEST_F(OpenProject, SaysWhenResultsCanNotBeStored) {
  Create();
  std::filesystem::permissions(m_folder.Path(), std::filesystem::perms(0777));
  std::filesystem::permissions(m_folder / "study.results", std::filesystem::perms(0555));
  WithoutRights([&] {
    auto const session = Open();
    EXPECT_NE(Solve(*session, kPoint, 0.1), 0);
    session->GetManager().Invalidate(nullptr, 7);
    for (auto const & work : {std::function<void()>([&] { session->Autosave(); }), {[&] { session->Save(); }}}) {
      auto const refusal = RefusalOf(work);
      EXPECT_EQ(refusal.kind, ErrorKind::kStorage);
      EXPECT_NE(refusal.text.find("results can't be stored"), std::string::npos);
      EXPECT_NE(refusal.text.find("ermission"), std::string::npos);
    }
  });
  std::filesystem::permissions(m_folder / "study.results", std::filesystem::perms(0755));
  EXPECT_FALSE(Exists("study.sproject.auto"));
  EXPECT_FALSE(Open()->HasUnsavedChanges());
}

TEST_F(OpenProject, RefusesEveryChangeWhenReadOnly) {
  Create();
  auto const before = Names();
  auto const reader = Open(Access::kReadOnly);
  EXPECT_EQ(RefusalOf([&] { reader->SetVariables({{L"C", L"3"}}); }).kind, ErrorKind::kUsage);
  EXPECT_EQ(RefusalOf([&] { reader->Save(); }).kind, ErrorKind::kUsage);
  EXPECT_EQ(RefusalOf([&] { reader->Autosave(); }).kind, ErrorKind::kUsage);
  EXPECT_NE(Solve(*reader, kPoint, 0.1), 0);
  EXPECT_EQ(Names(), before);
}

TEST_F(OpenProject, SaysWhenTheLibraryIsGoneAndUsesNoIdAgain) {
  long next = 0;
  {
    auto const session = Create();
    session->GetManager().Invalidate(nullptr, 7);
    session->Save();
    next = session->GetManager().PeekNextUniqueID();
  }
  std::filesystem::remove_all(m_folder / "study.results");
  auto const session = Open();
  ASSERT_EQ(session->GetNotices().size(), 1u);
  EXPECT_NE(session->GetNotices().front().find(L"the library is missing"), AString::npos);
  EXPECT_EQ(session->GetManager().PeekNextUniqueID(), next);
  EXPECT_EQ(SolutionOf(*session).GetVersionID(), next - 1);
  EXPECT_EQ(session->GetManager().GetSetups().size(), 2u);
  ASSERT_EQ(Solve(*session, kPoint, 0.1), 0);
  session->Save();
}

TEST_F(OpenProject, RefusesALibraryThatIsNone) {
  Create();
  Write("study.results/circuit.qsol", "something else");
  for (Access const access : {Access::kWrite, Access::kReadOnly}) {
    auto const refusal = RefusalOf([&] { Open(access); });
    EXPECT_EQ(refusal.kind, ErrorKind::kProject);
    EXPECT_NE(refusal.text.find("circuit.qsol"), std::string::npos);
  }
  EXPECT_EQ(Read("study.results/circuit.qsol"), "something else");
}

TEST_F(OpenProject, RefusesASourceThatHasChanged) {
  auto const session = Create();
  EXPECT_FALSE(RefusalOf([&] { session->CheckSourceUnchanged(); }).kind.has_value());
  Write("part.txt", "A part\n");
  auto const changed = RefusalOf([&] { session->CheckSourceUnchanged(); });
  EXPECT_EQ(changed.kind, ErrorKind::kSource);
  EXPECT_NE(changed.text.find("part.txt: the source has changed"), std::string::npos);
  std::filesystem::remove(m_folder / "part.txt");
  EXPECT_EQ(RefusalOf([&] { session->CheckSourceUnchanged(); }).kind, ErrorKind::kSource);
}

TEST_F(OpenProject, FindsTheSourceWhereTheFolderWasMovedTo) {
  std::filesystem::create_directory(m_folder / "a");
  Write("a/circuit.txt", "param C 1\nsetup Sweep\n");
  desktop::Session::Create(PathOf("a/study"), PathOf("a/circuit.txt"), L"fake");
  std::filesystem::rename(m_folder / "a", m_folder / "b");
  auto const session = desktop::Session::Open(PathOf("b/study"), Access::kWrite);
  EXPECT_EQ(session->GetProject().GetSourceFile().FilePath(), PathOf("b/circuit.txt"));
  EXPECT_FALSE(RefusalOf([&] { session->CheckSourceUnchanged(); }).kind.has_value());
}

TEST_F(OpenProject, ALinkLeadsToTheProjectThatIsThereAndToItsLock) {
  Create();
  std::filesystem::create_directory(m_folder / "elsewhere");
  std::filesystem::create_symlink(m_folder / "study.sproject", m_folder / "elsewhere" / "link.sproject");
  AString const link = PathOf("elsewhere/link");
  {
    auto const opened = desktop::Session::Open(link, Access::kWrite);
    EXPECT_EQ(opened->GetProject().GetFile().FilePath(), ProjectPath() + L".sproject");
    EXPECT_EQ(RefusalOf([&] { Open(); }).kind, desktop::ErrorKind::kLocked);
    opened->SetVariables({{L"C", L"7"}});
    opened->Save();
  }
  EXPECT_EQ(TextOf(*Open(), L"C"), L"7");
  EXPECT_TRUE(std::filesystem::is_symlink(m_folder / "elsewhere" / "link.sproject"));
  EXPECT_FALSE(Exists("elsewhere/link.results"));
}

TEST_F(OpenProject, TakesTheSourceOfTheNameBesideItselfWhereThatOfItsPathIsGone) {
  std::filesystem::create_directory(m_folder / "a");
  Write("a/far.txt", "param C 1\nsetup Sweep\n");
  desktop::Session::Create(PathOf("moved"), PathOf("a/far.txt"), L"fake");
  std::filesystem::rename(m_folder / "a" / "far.txt", m_folder / "far.txt");
  auto const session = desktop::Session::Open(PathOf("moved"), Access::kWrite);
  EXPECT_EQ(session->GetProject().GetSourceFile().FilePath(), PathOf("far.txt"));
  EXPECT_FALSE(RefusalOf([&] { session->CheckSourceUnchanged(); }).kind.has_value());
  Write("far.txt", "param C 2\nsetup Sweep\n");
  EXPECT_EQ(RefusalOf([&] { session->CheckSourceUnchanged(); }).kind, ErrorKind::kSource) << "another one is a change";
  Write("a/far.txt", "param C 1\nsetup Sweep\n");
  EXPECT_EQ(session->GetProject().GetSourceFile().FilePath(), PathOf("a/far.txt")) << "its own place comes first";
  EXPECT_FALSE(RefusalOf([&] { session->CheckSourceUnchanged(); }).kind.has_value());
}
