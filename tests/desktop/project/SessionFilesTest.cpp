// The files of solutions and managed files over the life of a project: who keeps them, who takes them back.
#include "tests/desktop/support/StoresFixture.h"
#include "tests/support/AssertWatch.h"

#include <algorithm>
#include <csignal>
#include <sys/resource.h>

using LeftWork = desktop::Session::LeftWork;
using Contents = std::vector<std::string>;

class SessionFiles : public support::StoresTest {
protected:
  void SetUp() override {
    auto const session = Create();
    SolveWithFiles(*session, kFirst, "first");
    Manage(*session, "saved");
    session->Save();
  }

  static std::string Told(desktop::Session const & session) {
    std::string told;
    for (AString const & notice : session.GetNotices())
      told += text::ToUtf8(notice) + "\n";
    return told;
  }

  void ExpectSavedState(desktop::Session & session) const {
    EXPECT_FALSE(session.HasUnsavedChanges());
    EXPECT_EQ(ContentOf(session, kFirst), "first");
    EXPECT_EQ(ContentOf(session, kSecond), "");
    EXPECT_EQ(Files().size(), 4u);
    EXPECT_EQ(ManagedContents(), Contents{"saved"});
  }
};

TEST_F(SessionFiles, AProjectWithoutFilesIsSavedWithoutANote) {
  std::filesystem::create_directory(m_folder / "other");
  auto const session = desktop::Session::Create(PathOf("other/plain"), PathOf("circuit.txt"), L"fake");
  ASSERT_EQ(Solve(*session, kFirst, 1.0), 0);
  session->Save();
  EXPECT_FALSE(Exists("other/plain.results/ManagedFiles_Design1.qsol"));
  EXPECT_FALSE(Exists("other/plain.results/saving"));
}

TEST_F(SessionFiles, ASessionThatClosesWithoutASaveLeavesItsFilesToTheNextOne) {
  {
    auto const session = Open();
    SolveWithFiles(*session, kSecond, "second");
    Manage(*session, "unsaved");
    EXPECT_TRUE(session->HasUnsavedChanges());
  }
  for (int time = 0; time < 2; ++time) {
    Open(Access::kReadOnly)->GetManager().GetFullPathForManagedFile(L"notes", L"any");
    auto const session = Open();
    EXPECT_TRUE(session->HasUnsavedChanges());
    EXPECT_EQ(ContentOf(*session, kSecond), "second");
    EXPECT_EQ(ManagedContents(), (Contents{"saved", "unsaved"}));
  }
  ExpectSavedState(*desktop::Session::Open(ProjectPath(), Access::kWrite, LeftWork::kDiscard));
}

TEST_F(SessionFiles, AManagedFileAloneIsUnsavedWork) {
  auto const session = Open();
  EXPECT_FALSE(session->HasUnsavedChanges());
  Manage(*session, "unsaved");
  EXPECT_TRUE(session->HasUnsavedChanges());
  session->Save();
  EXPECT_FALSE(session->HasUnsavedChanges());
  EXPECT_EQ(ManagedContents(), (Contents{"saved", "unsaved"}));
}

TEST_F(SessionFiles, WorkThatIsSetAsideTakesItsFilesWithIt) {
  {
    auto const session = Open();
    SolveWithFiles(*session, kFirst, "again");
    Manage(*session, "unsaved");
  }
  auto const session = desktop::Session::Open(ProjectPath(), Access::kWrite, LeftWork::kSetAside);
  ExpectSavedState(*session);
  std::vector<std::string> aside;
  for (std::string const & name : Names())
    if (name.find("study.results.set-aside-1/") == 0 && std::filesystem::is_regular_file(m_folder / name))
      aside.push_back(Read(name));
  EXPECT_EQ(std::count(aside.begin(), aside.end(), "again"), 4);
  EXPECT_EQ(std::count(aside.begin(), aside.end(), "unsaved"), 1);
  EXPECT_NE(Told(*session).find("set aside in"), std::string::npos) << Told(*session);
}

TEST_F(SessionFiles, FilesThatACrashLeftAndNothingNamesGoAndAreTold) {
  std::vector<std::string> const others{"fake/F3/readme", "fake/unknown/1_2", "stranger"};
  Crash([&](desktop::Session & session) {
    session.BeginAutosave();
    Solve(session, kSecond, 0.3);
    StoresOf(session).Store(kSecond, "second"); // No autosave tells of it.
    for (std::string const & name : others) {
      std::filesystem::create_directories((m_folder / ("study.results/" + name)).parent_path());
      Write("study.results/" + name, "of somebody else");
    }
  });
  EXPECT_GT(Files().size(), 8u);
  auto const session = Open();
  EXPECT_NE(Told(*session).find("4 result files that neither saved nor unsaved work names"), std::string::npos)
      << Told(*session);
  for (std::string const & name : others)
    EXPECT_EQ(Read("study.results/" + name), "of somebody else");
  EXPECT_EQ(ContentOf(*session, kFirst), "first");
  EXPECT_EQ(ContentOf(*session, kSecond), "");
}

TEST_F(SessionFiles, ACrashTakesNoFileThatTheSavedStateOrTheAutosaveNames) {
  Crash([&](desktop::Session & session) {
    SolveWithFiles(session, kSecond, "second");
    for (CMirroredDataMap * const store : StoresOf(session).All())
      store->DiscardMirroredData(kFirst);
    session.Autosave();
  });
  {
    auto const session = Open();
    EXPECT_EQ(ContentOf(*session, kFirst), "");
    EXPECT_EQ(ContentOf(*session, kSecond), "second");
    EXPECT_EQ(Files().size(), 8u);
  }
  ExpectSavedState(*desktop::Session::Open(ProjectPath(), Access::kWrite, LeftWork::kDiscard));
}

TEST_F(SessionFiles, AFileThatSomebodyDeletedIsLeftOutAndTold) {
  for (std::string const & name : Files())
    if (name.find("fake/F") != std::string::npos)
      std::filesystem::remove(m_folder / name);
  for (Access const access : {Access::kReadOnly, Access::kWrite}) {
    auto const session = Open(access);
    EXPECT_NE(Told(*session).find("1 result file is missing and left out"), std::string::npos) << Told(*session);
    EXPECT_FALSE(session->HasUnsavedChanges());
  }
  {
    auto const session = Open();
    session->SetVariables({{L"L", L"3"}});
    session->Save();
  }
  EXPECT_EQ(Told(*Open()), "") << "the save left it out";
}

TEST_F(SessionFiles, AFileThatSomebodyChangedIsTheResultByNow) {
  for (std::string const & name : Files())
    Write(name, "by hand");
  {
    auto const session = Open();
    SolveWithFiles(*session, kSecond, "second");
    session->Save();
  }
  auto const session = Open();
  EXPECT_TRUE(StoresOf(*session).files.HaveData(StoresOf(*session).KeyOf(kFirst)));
  auto const files = Files();
  EXPECT_EQ(std::count_if(files.begin(), files.end(), [&](auto const & name) { return Read(name) == "by hand"; }), 4);
}

TEST_F(SessionFiles, ManagedFilesThatACrashLeftAreUnsavedUntilASaveOrADiscard) {
  Crash([](desktop::Session & session) { Manage(session, "unsaved"); });
  EXPECT_TRUE(Open()->HasUnsavedChanges());
  {
    auto const session = Open();
    session->Discard();
    EXPECT_EQ(ManagedContents(), Contents{"saved"});
    EXPECT_FALSE(session->HasUnsavedChanges());
  }
  Crash([](desktop::Session & session) { Manage(session, "unsaved"); });
  Open()->Save();
  EXPECT_EQ(ManagedContents(), (Contents{"saved", "unsaved"}));
  EXPECT_FALSE(Open()->HasUnsavedChanges());
}

TEST_F(SessionFiles, AReaderBesideAWriterSeesTheSavedFilesAlone) {
  auto const writer = Open();
  SolveWithFiles(*writer, kFirst, "again");
  SolveWithFiles(*writer, kSecond, "second");
  {
    auto const reader = Open(Access::kReadOnly);
    EXPECT_EQ(ContentOf(*reader, kFirst), "first");
    EXPECT_EQ(ContentOf(*reader, kSecond), "");
  }
  writer->Save();
  EXPECT_EQ(ContentOf(*Open(Access::kReadOnly), kFirst), "again");
}

TEST_F(SessionFiles, AnInterruptedSaveWithoutItsNoteIsRefusedWithARemedy) {
  {
    auto const session = Open();
    SolveWithFiles(*session, kFirst, "again");
  }
  std::filesystem::create_directory(m_folder / "study.results/saving");
  Write("study.results/saving/journal", "");
  auto const refusal = RefusalOf([&] { Open(); });
  EXPECT_EQ(refusal.kind, desktop::ErrorKind::kProject);
  EXPECT_NE(refusal.text.find("move the folder elsewhere"), std::string::npos) << refusal.text;
  EXPECT_EQ(ContentOf(*Open(Access::kReadOnly), kFirst), "first");
}

TEST_F(SessionFiles, ASaveOverALimitOfFileSizesKeepsAllWork) {
  auto const session = Open();
  SolveWithFiles(*session, kFirst, "again");
  Manage(*session, "unsaved");
  rlimit before{};
  ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
  std::signal(SIGXFSZ, SIG_IGN);
  int refusals = 0;
  for (rlim_t const limit : {0, 20, 60, 200, 2000, 4000}) {
    rlimit const small{limit, before.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    auto const refusal = RefusalOf([&] { session->Save(); });
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &before), 0);
    support::AssertWatch::Take();
    refusals += refusal.kind.has_value() ? 1 : 0;
    EXPECT_EQ(ContentOf(*session, kFirst), "again") << limit;
    EXPECT_EQ(ManagedContents(), (Contents{"saved", "unsaved"}));
  }
  EXPECT_GT(refusals, 2);
  session->Save();
  EXPECT_FALSE(session->HasUnsavedChanges());
  EXPECT_EQ(Files().size(), 4u);
  EXPECT_FALSE(Exists("study.sproject.saving"));
}

TEST_F(SessionFiles, ASaveIntoAFolderWithoutPermissionIsRefusedAndLosesNothing) {
  {
    auto const session = Open();
    SolveWithFiles(*session, kFirst, "again");
  }
  auto const setModes = [&](unsigned modes) {
    for (auto const & entry : std::filesystem::recursive_directory_iterator(m_folder / "study.results/fake"))
      if (entry.is_directory())
        std::filesystem::permissions(entry.path(), std::filesystem::perms(modes));
  };
  for (auto const & entry : std::filesystem::recursive_directory_iterator(m_folder.Path()))
    std::filesystem::permissions(entry.path(), std::filesystem::perms(0777));
  std::filesystem::permissions(m_folder.Path(), std::filesystem::perms(0777));
  setModes(0555);
  WithoutRights([&] {
    auto const session = Open();
    auto const refusal = RefusalOf([&] { session->Save(); });
    EXPECT_EQ(refusal.kind, desktop::ErrorKind::kStorage) << refusal.text;
    EXPECT_NE(refusal.text.find("result files can't be saved"), std::string::npos) << refusal.text;
    EXPECT_EQ(ContentOf(*session, kFirst), "again");
    EXPECT_TRUE(session->HasUnsavedChanges());
  });
  setModes(0777);
  EXPECT_EQ(ContentOf(*Open(Access::kReadOnly), kFirst), "first");
  auto const session = Open();
  session->Save();
  EXPECT_EQ(ContentOf(*session, kFirst), "again");
  EXPECT_EQ(Files().size(), 4u);
}
