// One save of project file, library, mirrored stores and managed files: all of it or nothing, wherever it is cut off.
#include "desktop/project/SaveProtocol.h"
#include "desktop/command/Editor.h"
#include "tests/desktop/support/StoresFixture.h"
#include "tests/support/AssertWatch.h"
#include "tests/support/FaultyFileSystem.h"

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

using LeftWork = desktop::Session::LeftWork;
using Contents = std::vector<std::string>;

class SaveProtocolTest : public support::StoresTest {
protected:
  // A saved project with one point, its files, and a managed file "old"; beside it unsaved work: the point solved
  // again, a second one, another value of L, a managed file "new", and the old one deleted.
  void SetUp() override {
    {
      auto const session = Create();
      SolveWithFiles(*session, kFirst, "first");
      m_managed = Manage(*session, "old");
      session->Save();
      m_project = Read("study.sproject");
      m_library = Read("study.results/circuit.qsol");
      Work(*session);
    }
    std::filesystem::copy(m_folder.Path(), m_kept, std::filesystem::copy_options::recursive);
  }

  void TearDown() override { std::filesystem::remove_all(m_kept); }

  void Work(desktop::Session & session) const {
    session.SetVariables({{L"L", L"5"}});
    SolveWithFiles(session, kFirst, "again");
    SolveWithFiles(session, kSecond, "second");
    Manage(session, "new");
    ASSERT_TRUE(session.GetManager().DeleteManagedFile(L"notes", text::FromUtf8(m_managed)));
  }

  void PutBack(std::filesystem::path const & from) const {
    std::filesystem::remove_all(m_folder.Path());
    std::filesystem::copy(from, m_folder.Path(), std::filesystem::copy_options::recursive);
  }
  void PutBack() const { PutBack(m_kept); }

  bool IsNew() const { return Read("study.sproject") != m_project; }

  static void ExpectWork(desktop::Session & session) {
    EXPECT_EQ(ContentOf(session, kFirst), "again");
    EXPECT_EQ(ContentOf(session, kSecond), "second");
    EXPECT_EQ(ValueOf(session, kFirst), 5.0);
    EXPECT_EQ(ValueOf(session, kSecond), 6.0);
    EXPECT_EQ(TextOf(session, L"L"), AString(L"5"));
  }

  static void ExpectSaved(desktop::Session & session) {
    EXPECT_EQ(ContentOf(session, kFirst), "first");
    EXPECT_EQ(ContentOf(session, kSecond), "");
    EXPECT_EQ(TextOf(session, L"L"), AString(L"2"));
  }

  void ExpectNothingLeft() const {
    EXPECT_FALSE(Exists("study.sproject.saving"));
    EXPECT_FALSE(Exists("study.results/saving"));
    EXPECT_FALSE(Exists("study.sproject.new"));
    EXPECT_FALSE(Exists("study.results/circuit.qsol_saved") && IsNew());
  }

  // Whatever happened: the next session has all the work, and the saved state is the old one or the new one, whole.
  void ExpectOldOrNew() {
    bool const isNew = IsNew();
    SCOPED_TRACE(isNew ? "the new state" : "the old state");
    {
      auto const session = Open();
      ExpectWork(*session);
      EXPECT_EQ(session->HasUnsavedChanges(), !isNew);
      EXPECT_EQ(ManagedContents(), isNew ? Contents{"new"} : (Contents{"new", "old"}));
      ExpectNothingLeft();
    }
    isNew ? ExpectWork(*Open(Access::kReadOnly)) : ExpectSaved(*Open(Access::kReadOnly));
    EXPECT_EQ(Files().size(), isNew ? 8u : 12u);
    auto const session = desktop::Session::Open(ProjectPath(), Access::kWrite, LeftWork::kDiscard);
    EXPECT_FALSE(session->HasUnsavedChanges());
    isNew ? ExpectWork(*session) : ExpectSaved(*session);
    EXPECT_EQ(Files().size(), isNew ? 8u : 4u);
    EXPECT_EQ(ManagedContents(), isNew ? Contents{"new"} : Contents{"old"});
    EXPECT_FALSE(Exists("study.sproject.auto"));
    if (!isNew) {
      EXPECT_EQ(Read("study.sproject"), m_project);
      EXPECT_EQ(Read("study.results/circuit.qsol"), m_library);
    }
  }

  // A process that dies with nothing done from operation `at` on; whether there was such an operation.
  bool SaveAndDie(int at) const {
    Crash([&](desktop::Session & session) {
      support::FaultyFileSystem files;
      files.FailAt(at, true);
      RefusalOf([&] { session.Save(); });
      Write("died", files.HasFailed() ? "yes" : "no");
      std::raise(SIGKILL); // Nothing reaches the disk behind the failure.
    });
    return Died();
  }

  // The same of an opening, which settles what an interrupted save left.
  bool OpenAndDie(int at) const {
    pid_t const child = ::fork();
    if (child == 0) {
      support::FaultyFileSystem files;
      files.FailAt(at, true);
      RefusalOf([&] { Open(); });
      Write("died", files.HasFailed() ? "yes" : "no");
      std::raise(SIGKILL);
    }
    int status = 0;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    return Died();
  }

  bool Died() const {
    bool const died = Read("died") == "yes";
    std::filesystem::remove(m_folder / "died");
    return died;
  }

  // Beside an interrupted save: the saved state but for files on their way, and nothing is written.
  void ExpectAReaderSeesNothingUnsaved() const {
    auto const before = Names();
    {
      auto const session = Open(Access::kReadOnly);
      EXPECT_EQ(TextOf(*session, L"L"), AString(L"2"));
      EXPECT_EQ(ContentOf(*session, kSecond), "");
      EXPECT_EQ(ContentOf(*session, kFirst).find("again"), std::string::npos);
    }
    EXPECT_EQ(Names(), before);
  }

  std::filesystem::path const m_kept = m_folder.Path().string() + "-kept";
  std::string m_told;
  std::string m_managed;
  std::string m_project;
  std::string m_library;
};

TEST_F(SaveProtocolTest, ASaveBringsAllFilesAbout) {
  Open()->Save();
  EXPECT_TRUE(IsNew());
  ExpectOldOrNew();
}

TEST_F(SaveProtocolTest, ADiscardTakesAllFilesBack) {
  ExpectOldOrNew();
  PutBack();
  {
    auto const session = Open();
    session->Discard();
    EXPECT_FALSE(session->HasUnsavedChanges());
    ExpectSaved(*session);
    EXPECT_EQ(session->GetDropped().files, 8);
    EXPECT_EQ(Files().size(), 4u);
    EXPECT_EQ(ManagedContents(), Contents{"old"});
    Work(*session);
    session->Save();
  }
  ExpectOldOrNew();
}

TEST_F(SaveProtocolTest, ASaveThatFailsAnywhereLeavesTheSessionItsWorkAndTheNextOneSucceeds) {
  int refusals = 0;
  bool failed = true;
  for (int operation = 1; failed; ++operation) {
    SCOPED_TRACE(operation);
    PutBack();
    {
      auto const session = Open();
      {
        support::FaultyFileSystem files;
        files.FailAt(operation, false);
        auto const refusal = RefusalOf([&] { session->Save(); });
        refusals += refusal.kind.has_value() ? 1 : 0;
        m_told = refusal.text;
        failed = files.HasFailed();
        support::AssertWatch::Take(); // A managed list that can't be written is reported, too.
      }
      ExpectWork(*session);
      SolveWithFiles(*session, L"C=4; L=2", "third");
      EXPECT_EQ(RefusalOf([&] { session->Save(); }).text, "") << "behind " << m_told;
      EXPECT_EQ(ContentOf(*session, L"C=4; L=2"), "third");
      EXPECT_FALSE(session->HasUnsavedChanges());
    }
    auto const session = Open();
    ExpectWork(*session);
    EXPECT_EQ(ContentOf(*session, L"C=4; L=2"), "third");
    EXPECT_EQ(Files().size(), 12u);
    EXPECT_EQ(ManagedContents(), Contents{"new"});
    ExpectNothingLeft();
    ASSERT_LT(operation, 600);
    ASSERT_FALSE(HasFailure());
  }
  EXPECT_GT(refusals, 20);
}

TEST_F(SaveProtocolTest, ASaveOverADiskThatStaysFullAnywhereIsOldOrNewInTheNextSession) {
  bool failed = true;
  for (int operation = 1; failed; ++operation) {
    SCOPED_TRACE(operation);
    PutBack();
    {
      auto const session = Open();
      support::FaultyFileSystem files;
      files.FailAt(operation, true);
      RefusalOf([&] { session->Save(); });
      failed = files.HasFailed();
      support::AssertWatch::Take();
    }
    ExpectOldOrNew();
    ASSERT_LT(operation, 600);
    ASSERT_FALSE(HasFailure());
  }
}

TEST_F(SaveProtocolTest, ASaveThatDiesAnywhereIsOldOrNew) {
  int states[2] = {0, 0};
  bool died = true;
  for (int operation = 1; died; ++operation) {
    SCOPED_TRACE(operation);
    PutBack();
    died = SaveAndDie(operation);
    ++states[IsNew() ? 1 : 0];
    if (!IsNew())
      ExpectAReaderSeesNothingUnsaved();
    ExpectOldOrNew();
    ASSERT_LT(operation, 600);
    ASSERT_FALSE(HasFailure());
  }
  EXPECT_GT(states[0], 20);
  EXPECT_GT(states[1], 5);
}

TEST_F(SaveProtocolTest, AnOpeningThatDiesWhileItSettlesAnInterruptedSaveIsDoneAgain) {
  std::filesystem::path const cut = m_folder.Path().string() + "-cut";
  // Where the save dies: in the middle of its moves, and behind its step.
  for (bool const isBehind : {false, true}) {
    int at = 1;
    for (bool found = false; !found; ++at) {
      PutBack();
      ASSERT_TRUE(SaveAndDie(at));
      found = isBehind ? IsNew() : Exists("study.results/saving/4");
    }
    std::filesystem::remove_all(cut);
    std::filesystem::copy(m_folder.Path(), cut, std::filesystem::copy_options::recursive);
    bool died = true;
    for (int operation = 1; died; ++operation) {
      SCOPED_TRACE(testing::Message() << (isBehind ? "behind, " : "before, ") << operation);
      PutBack(cut);
      died = OpenAndDie(operation);
      ExpectOldOrNew();
      ASSERT_LT(operation, 400);
      ASSERT_FALSE(HasFailure());
    }
  }
  std::filesystem::remove_all(cut);
}
