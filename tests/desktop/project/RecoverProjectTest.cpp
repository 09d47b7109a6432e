#include "basekit/io/CNamed_value_manip.h"
#include "desktop/project/ProjectFile.h"
#include "tests/desktop/support/SessionFixture.h"
#include "tests/support/FaultyFileSystem.h"

using desktop::ProjectFileKind;
using desktop::ProjectRecord;

namespace {

AString PointOf(int number) { return AString::Format(L"C=%d; L=2", number); }

} // namespace

class RecoverProject : public support::SessionTest {
protected:
  static std::size_t Find(AString const & notice, wchar_t const * text) { return notice.find(AString(text)); }
};

TEST_F(RecoverProject, KeepsEveryPointThatWasStoredBeforeACrash) {
  {
    auto const session = Create();
    ASSERT_EQ(Solve(*session, PointOf(1), 0.1), 0);
    session->Save();
  }
  Crash([&](desktop::Session & session) {
    session.SetVariables({{L"C", L"9"}});
    for (int number = 2; number <= 20; ++number)
      if (Solve(session, PointOf(number), number / 10.0) != CStreamioLibrary::kLibSuccess)
        std::_Exit(1);
  });
  {
    auto const session = Open();
    ASSERT_EQ(session->GetNotices().size(), 1u);
    EXPECT_EQ(session->GetNotices().front(), L"study: recovered 19 points after a crash");
    EXPECT_EQ(SolutionOf(*session).size(), 20);
    for (int number = 1; number <= 20; ++number)
      EXPECT_EQ(ValueOf(*session, PointOf(number)), number / 10.0);
    EXPECT_EQ(TextOf(*session, L"C"), L"9");
    EXPECT_TRUE(session->HasUnsavedChanges());
  }
  auto const session = Open();
  EXPECT_TRUE(session->GetNotices().empty());
  EXPECT_EQ(ValueOf(*session, PointOf(20)), 2.0);
}

TEST_F(RecoverProject, SurvivesACrashAfterARecovery) {
  Create();
  for (int round = 1; round <= 4; ++round)
    Crash([&](desktop::Session & session) {
      session.Autosave();
      Solve(session, PointOf(round), round);
    });
  auto const session = Open();
  EXPECT_EQ(SolutionOf(*session).size(), 4);
  for (int round = 1; round <= 4; ++round)
    EXPECT_EQ(ValueOf(*session, PointOf(round)), round);
  session->Save();
}

TEST_F(RecoverProject, KeepsPointsOfAVersionThatIsNewSinceTheLastSave) {
  Create();
  Crash([&](desktop::Session & session) {
    Solve(session, PointOf(1), 0.1);
    // So many IDs that versions differ in their number of digits: as texts they sort another way.
    for (int i = 0; i < 120; ++i)
      session.GetManager().Invalidate(nullptr, 7);
    session.Autosave();
    Solve(session, PointOf(2), 0.2);
  });
  auto const session = Open();
  EXPECT_TRUE(SolutionOf(*session).HasValidSolutionData(PointOf(2), id::invalidID));
  EXPECT_EQ(ValueOf(*session, PointOf(2)), 0.2);
  EXPECT_GT(SolutionOf(*session).GetVersionID(), 100);
  EXPECT_EQ(session->GetManager().GetSetups().size(), 2u);
}

TEST_F(RecoverProject, GivesOutNoIdTwiceAfterACrash) {
  Create();
  long before = 0;
  {
    auto const session = Open();
    before = session->GetManager().PeekNextUniqueID();
  }
  Crash([&](desktop::Session & session) {
    session.Autosave();
    Solve(session, PointOf(1), 0.1);
  });
  EXPECT_GT(Open()->GetManager().PeekNextUniqueID(), before);
}

TEST_F(RecoverProject, SetsAsideAPrivateFileOfAnotherProject) {
  Create();
  Write("study.results/circuit.qsol_priv", "nonsense");
  {
    auto const session = Open();
    ASSERT_EQ(session->GetNotices().size(), 1u);
    EXPECT_NE(Find(session->GetNotices().front(), L"was set aside as"), AString::npos);
  }
  auto const names = Names();
  EXPECT_EQ(std::count_if(names.begin(), names.end(),
                          [](auto const & name) { return name.find("set-aside") != std::string::npos; }),
            1);
}

TEST_F(RecoverProject, SetsAsideAnAutosaveThatCanNotBeRead) {
  { Create()->SetVariables({{L"C", L"3"}}); }
  std::string const cut = Read("study.sproject.auto").substr(0, 100);
  Write("study.sproject.auto", cut);
  auto const session = Open();
  EXPECT_EQ(TextOf(*session, L"C"), L"1");
  ASSERT_EQ(session->GetNotices().size(), 1u);
  EXPECT_NE(Find(session->GetNotices().front(), L"the autosave is cut off; it was set aside as"), AString::npos);
  EXPECT_FALSE(Exists("study.sproject.auto"));
  EXPECT_EQ(Read("study.sproject.auto.set-aside-1"), cut);
}

TEST_F(RecoverProject, SetsAsideAnAutosaveThatContinuesAnotherProjectFile) {
  Create();
  std::string const old = Read("study.sproject");
  {
    auto const session = Open();
    session->SetVariables({{L"C", L"3"}});
    session->Save();
    session->SetVariables({{L"C", L"4"}});
  }
  Write("study.sproject", old); // A copy that was put back.
  auto const session = Open();
  EXPECT_EQ(TextOf(*session, L"C"), L"1");
  ASSERT_EQ(session->GetNotices().size(), 1u);
  EXPECT_TRUE(Exists("study.sproject.auto.set-aside-1"));
}

TEST_F(RecoverProject, DropsTheAutosaveThatASaveDidNotComeToRemove) {
  std::string autosave;
  {
    auto const session = Create();
    session->SetVariables({{L"C", L"3"}});
    autosave = Read("study.sproject.auto");
    session->Save();
  }
  Write("study.sproject.auto", autosave);
  auto const session = Open();
  EXPECT_EQ(TextOf(*session, L"C"), L"3");
  EXPECT_TRUE(session->GetNotices().empty());
  EXPECT_FALSE(session->HasUnsavedChanges());
  EXPECT_FALSE(Exists("study.sproject.auto"));
}

TEST_F(RecoverProject, MakesASetupThatOnlyTheDesignKnows) {
  Create();
  ProjectRecord record = desktop::DecodeProject(Read("study.sproject"), ProjectFileKind::kProject, L"a");
  io::CBlock setup(L"SimSetup");
  setup << io::named(L"TypeName", L"Fake") << io::named(L"ID", 900) << io::named(L"Name", L"Added");
  io::CBlock solution(L"Solution");
  solution << io::named(L"ID", 901) << io::named(L"Name", L"New points");
  setup << solution;
  record.module << setup;
  Write("study.sproject", desktop::EncodeProject(record, ProjectFileKind::kProject));
  {
    auto const session = Open();
    EXPECT_EQ(session->GetManager().GetSetups().size(), 3u);
    EXPECT_EQ(SolutionOf(*session, L"Added").GetGlobalSolutionName(), L"Added : New points");
    session->Save();
  }
  EXPECT_EQ(SolutionOf(*Open(), L"Added").GetID(), 901);
}

TEST_F(RecoverProject, DropsASetupThatOnlyTheLibraryKnows) {
  {
    auto const session = Create();
    ASSERT_EQ(Solve(*session, PointOf(1), 0.1), 0);
    session->Save();
  }
  ProjectRecord record = desktop::DecodeProject(Read("study.sproject"), ProjectFileKind::kProject, L"a");
  io::CBlock module(L"Module");
  for (auto const & child : record.module) {
    AString name;
    if (child->IsBlock())
      *io::CBlock_ptr<io::CBlock>(child) >> io::named(L"Name", name);
    if (name != L"Sweep")
      module << child;
  }
  record.module = module;
  Write("study.sproject", desktop::EncodeProject(record, ProjectFileKind::kProject));
  for (Access const access : {Access::kReadOnly, Access::kWrite}) {
    auto const session = Open(access);
    ASSERT_EQ(session->GetManager().GetSetups().size(), 1u);
    EXPECT_EQ(session->GetManager().GetSetups().begin()->second->GetName(), L"Fine");
  }
}

TEST_F(RecoverProject, LosesNothingWhateverOperationOfASaveFails) {
  {
    auto const session = Create();
    session->SetVariables({{L"C", L"5"}});
    ASSERT_EQ(Solve(*session, PointOf(5), 0.5), 0);
  }
  std::filesystem::path const kept = m_folder.Path().string() + "-kept";
  std::filesystem::copy(m_folder.Path(), kept, std::filesystem::copy_options::recursive);
  bool failed = true;
  int refusals = 0;
  for (int operation = 1; failed; ++operation) {
    std::filesystem::remove_all(m_folder.Path());
    std::filesystem::copy(kept, m_folder.Path(), std::filesystem::copy_options::recursive);
    {
      auto const session = Open();
      support::FaultyFileSystem files;
      files.FailAt(operation, false);
      auto const refusal = RefusalOf([&] { session->Save(); });
      failed = files.HasFailed();
      refusals += refusal.kind.has_value() ? 1 : 0;
      EXPECT_EQ(refusal.kind.value_or(desktop::ErrorKind::kStorage), desktop::ErrorKind::kStorage);
    }
    auto const session = Open();
    EXPECT_EQ(TextOf(*session, L"C"), L"5") << "operation " << operation;
    EXPECT_EQ(ValueOf(*session, PointOf(5)), 0.5) << "operation " << operation;
    ASSERT_LT(operation, 500);
  }
  EXPECT_GT(refusals, 5);
  std::filesystem::remove_all(kept);
}

TEST_F(RecoverProject, SavesOnceThereIsRoomAgain) {
  Create();
  bool failed = true;
  for (int operation = 1; failed; ++operation) {
    auto const session = Open();
    session->SetVariables({{L"C", AString::Format(L"%d", operation + 1)}});
    ASSERT_EQ(Solve(*session, PointOf(operation), operation), 0);
    {
      support::FaultyFileSystem files;
      files.FailAt(operation, false);
      RefusalOf([&] { session->Save(); });
      failed = files.HasFailed();
    }
    EXPECT_FALSE(RefusalOf([&] { session->Save(); }).kind.has_value()) << "operation " << operation;
    EXPECT_FALSE(session->HasUnsavedChanges()) << "operation " << operation;
    auto const reader = Open(Access::kReadOnly);
    EXPECT_EQ(ValueOf(*reader, PointOf(operation)), operation);
    EXPECT_EQ(TextOf(*reader, L"C"), AString::Format(L"%d", operation + 1));
    ASSERT_LT(operation, 500);
  }
}
