#include "basekit/id/Id.h"
#include "basekit/io/CBlock.h"
#include "tests/desktop/support/SessionFixture.h"

using desktop::ErrorKind;
using LeftWork = desktop::Session::LeftWork;

namespace {

constexpr wchar_t kSaved[] = L"C=1; L=2";
constexpr wchar_t kUnsaved[] = L"C=3; L=2";

} // namespace

class DiscardProject : public support::SessionTest {
protected:
  // A saved point, then a change of the design and a point that are not saved.
  void SetUp() override {
    auto const session = Create();
    ASSERT_EQ(Solve(*session, kSaved, 0.1), 0);
    session->Save();
  }

  static void Work(desktop::Session & session) {
    session.SetVariables({{L"C", L"3"}});
    Solve(session, kUnsaved, 0.3);
  }

  void ExpectSavedState(desktop::Session & session) {
    EXPECT_FALSE(session.HasUnsavedChanges());
    EXPECT_FALSE(Exists("study.sproject.auto"));
    EXPECT_FALSE(Exists("study.results/circuit.qsol_priv"));
    EXPECT_EQ(SolutionOf(session).size(), 1);
    EXPECT_EQ(TextOf(session, L"C"), L"1");
    EXPECT_EQ(ValueOf(session, kSaved), 0.1);
    EXPECT_EQ(ValueOf(session, kUnsaved), std::nullopt); // Last: to ask gives the variation an ID.
  }

  std::unique_ptr<desktop::Session> Discard() const {
    return desktop::Session::Open(ProjectPath(), Access::kWrite, LeftWork::kDiscard);
  }
};

TEST_F(DiscardProject, GoesBackToWhatWasSavedInAnOpenSession) {
  auto const session = Open();
  Work(*session);
  session->Discard();
  EXPECT_TRUE(session->GetDropped().design);
  EXPECT_EQ(session->GetDropped().points, 1);
  ExpectSavedState(*session);
  Work(*session);
  session->Save();
  EXPECT_EQ(ValueOf(*Open(Access::kReadOnly), kUnsaved), 0.3);
}

TEST_F(DiscardProject, DropsWhatAnEarlierSessionLeftUnsaved) {
  Work(*Open());
  auto const session = Discard();
  EXPECT_TRUE(session->GetNotices().empty());
  EXPECT_EQ(session->GetDropped().points, 1);
  ExpectSavedState(*session);
}

TEST_F(DiscardProject, DropsWhatACrashLeftAndTakesNothingOver) {
  Crash(Work);
  auto const session = Discard();
  EXPECT_EQ(session->GetDropped().points, 1);
  ExpectSavedState(*session);
}

TEST_F(DiscardProject, FindsNothingToDropInASavedProject) {
  auto const session = Discard();
  EXPECT_FALSE(session->GetDropped().design);
  EXPECT_FALSE(session->GetDropped().results);
  ExpectSavedState(*session);
}

TEST_F(DiscardProject, MakesSavedPointsValidAgainThatAnUnsavedEditMadeStale) {
  auto const session = Open();
  session->GetManager().Invalidate(nullptr, 7);
  session->Autosave();
  ASSERT_FALSE(SolutionOf(*session).HasValidSolutionData(AString(kSaved), id::invalidID));
  session->Discard();
  EXPECT_TRUE(SolutionOf(*session).HasValidSolutionData(AString(kSaved), id::invalidID));
}

TEST_F(DiscardProject, MakesSavedPointsValidAgainAlsoAfterACrashAndItsTakeover) {
  Crash([](desktop::Session & session) {
    session.GetManager().Invalidate(nullptr, 7);
    session.Autosave();
    Solve(session, kUnsaved, 0.3);
  });
  {
    auto const session = Open();
    EXPECT_FALSE(SolutionOf(*session).HasValidSolutionData(AString(kSaved), id::invalidID));
    EXPECT_EQ(ValueOf(*session, kUnsaved), 0.3);
  }
  auto const session = Discard();
  EXPECT_TRUE(SolutionOf(*session).HasValidSolutionData(AString(kSaved), id::invalidID));
  EXPECT_EQ(ValueOf(*session, kSaved), 0.1);
}

TEST_F(DiscardProject, BringsBackASetupWithItsPointsThatWasDeletedBeforeACrash) {
  Crash([](desktop::Session & session) {
    session.GetManager().DeleteSimulationSetup(SolutionOf(session).GetBaseSimulationSetup().GetID(), nullptr);
    session.Autosave();
    io::CBlock block(SolutionVariationKey(id::invalidID, L"a block of the product's own", 1, 1).Pack());
    static_cast<void>(session.GetManager().SaveSingleBlock(block));
  });
  EXPECT_EQ(Open()->GetManager().GetSetups().size(), 1u);
  auto const session = Discard();
  EXPECT_EQ(session->GetManager().GetSetups().size(), 2u);
  EXPECT_EQ(ValueOf(*session, kSaved), 0.1);
}

TEST_F(DiscardProject, DropsNothingWhenThereIsNoSavedStateToGoBackTo) {
  Work(*Open());
  std::filesystem::rename(m_folder / "study.results/circuit.qsol", m_folder / "elsewhere");
  auto const missing = RefusalOf([&] { Discard(); });
  EXPECT_EQ(missing.kind, ErrorKind::kProject);
  EXPECT_NE(missing.text.find("no saved state"), std::string::npos);
  Write("study.results/circuit.qsol", "something else");
  EXPECT_EQ(RefusalOf([&] { Discard(); }).kind, ErrorKind::kProject);
  std::filesystem::rename(m_folder / "elsewhere", m_folder / "study.results/circuit.qsol");
  auto const session = Open();
  EXPECT_EQ(TextOf(*session, L"C"), L"3");
  EXPECT_EQ(ValueOf(*session, kUnsaved), 0.3);
}

TEST_F(DiscardProject, IsRefusedBesideAWriterAndWhenReadOnly) {
  auto const writer = Open();
  Work(*writer);
  EXPECT_EQ(RefusalOf([&] { Discard(); }).kind, ErrorKind::kLocked);
  auto const reader = Open(Access::kReadOnly);
  EXPECT_EQ(RefusalOf([&] { reader->Discard(); }).kind, ErrorKind::kUsage);
  EXPECT_EQ(ValueOf(*writer, kUnsaved), 0.3);
}

TEST_F(DiscardProject, SetsUnsavedWorkAsideWhereThatIsAskedFor) {
  Crash(Work);
  std::string const autosave = Read("study.sproject.auto");
  std::string const work = Read("study.results/circuit.qsol_priv");
  auto const session = desktop::Session::Open(ProjectPath(), Access::kWrite, LeftWork::kSetAside);
  ExpectSavedState(*session);
  EXPECT_EQ(session->GetNotices().size(), 2u);
  EXPECT_EQ(Read("study.sproject.auto.set-aside-1"), autosave);
  EXPECT_EQ(Read("study.results/circuit.qsol_priv.set-aside-1"), work);
}
