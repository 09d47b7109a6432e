// A disk that is full, and files that may not be written: what a process of its own meets there.
#include "tests/viewkit/library/PlayFixture.h"

#include <csignal>
#include <filesystem>
#include <functional>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr uid_t kNobody = 65534;

/// Bytes that a file may have in this process; no limit when it ends.
class RoomForFiles {
public:
  explicit RoomForFiles(std::uint64_t bytes) {
    ::getrlimit(RLIMIT_FSIZE, &m_former);
    rlimit const limit{bytes, m_former.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~RoomForFiles() { ::setrlimit(RLIMIT_FSIZE, &m_former); }
  RoomForFiles(RoomForFiles const &) = delete;
  RoomForFiles & operator=(RoomForFiles const &) = delete;

private:
  rlimit m_former{};
};

} // namespace

class LibraryLimits : public LibraryPlays {
protected:
  // Limits and rights belong to a process.  What fails there is printed there, and fails here.
  static void InChild(std::function<void()> const & step) {
    pid_t const child = ::fork();
    if (child == 0) {
      step();
      std::fflush(nullptr);
      ::_exit(HasFailure() ? 1 : 0);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
  }

  void PlayInLittleRoom(std::uint64_t room) {
    LibraryPlay const play(room);
    LibraryContent model;
    auto library = std::make_unique<Library>(Path(), Library::kOrdinaryMode);
    std::uint64_t number = 1;
    {
      RoomForFiles const limit(room);
      while (play.Do(number, *library) == 0)
        LibraryPlay::Apply(play.At(number++), model);
    }
    EXPECT_FALSE(library->LastError().empty());
    // Deletes that were to go with what failed may be taken back; so only what is said to be there is asked for.
    std::string complaint;
    auto const content = LibraryPlay::ContentOf(*library, complaint);
    ASSERT_TRUE(content) << complaint;
    for (auto const & [name, tag] : model)
      ASSERT_TRUE(content->contains(name) && content->at(name) == tag) << Narrow(name) << " was changed";
    ASSERT_EQ(play.Do(number, *library), 0) << Narrow(library->LastError());
    model = *content;
    LibraryPlay::Apply(play.At(number), model);
    ASSERT_EQ(library->CommitAll(false), 0) << Narrow(library->LastError());
    library = std::make_unique<Library>(Path(), Library::kOrdinaryMode);
    Expect(model, *library);
    library.reset();
    RemoveFiles(Path());
  }

  // A folder of somebody who has no rights but those that modes give.
  void AsNobody(std::function<void(std::filesystem::path const & folder)> const & step) {
    auto const folder = m_folder / "theirs";
    std::filesystem::create_directory(folder);
    std::filesystem::permissions(m_folder.Path(), std::filesystem::perms::all);
    std::filesystem::permissions(folder, std::filesystem::perms::all);
    InChild([&] {
      if (::geteuid() == 0) {
        ASSERT_EQ(::chown(folder.c_str(), kNobody, kNobody), 0);
        ASSERT_EQ(::setgid(kNobody) | ::setuid(kNobody), 0);
      }
      step(folder);
      std::filesystem::permissions(folder, std::filesystem::perms::all);
    });
  }
};

TEST_F(LibraryLimits, ADiskThatIsFullAtAnySizeFailsTheStepAndRoomMendsIt) {
  InChild([&] {
    ::signal(SIGXFSZ, SIG_IGN);
    for (std::uint64_t room = 1; room < 4000 && !HasFatalFailure(); room += 61) {
      SCOPED_TRACE(testing::Message() << room << " bytes");
      PlayInLittleRoom(room);
    }
  });
}

TEST_F(LibraryLimits, AFolderThatLostItsPermissionFailsWritesAndShowsAllThatThereIs) {
  AsNobody([&](std::filesystem::path const & folder) {
    AString const path = Path(L"theirs/a.qsol");
    Library library(path, Library::kOrdinaryMode);
    Save(library, L"A", L"committed");
    ASSERT_EQ(library.CommitAll(false), 0);
    std::filesystem::permissions(folder, std::filesystem::perms(0555));
    EXPECT_NE(Save(library, L"A", L"new"), 0) << "the private file can't be made";
    EXPECT_FALSE(library.LastError().empty());
    EXPECT_EQ(Load(library, L"A"), L"committed");
    EXPECT_NE(library.RewriteLibrary(false), 0);
    EXPECT_EQ(Load(library, L"A"), L"committed");
    std::filesystem::permissions(folder, std::filesystem::perms(0755));
    EXPECT_EQ(Save(library, L"A", L"new"), 0) << Narrow(library.LastError());
    EXPECT_EQ(library.CommitAll(false), 0) << Narrow(library.LastError());
    Library again(path, Library::kOrdinaryMode);
    EXPECT_EQ(Load(again, L"A"), L"new");
  });
}

TEST_F(LibraryLimits, FilesThatMayOnlyBeReadShowTheCommittedStateAndStayAsTheyAre) {
  AsNobody([&](std::filesystem::path const &) {
    AString const path = Path(L"theirs/a.qsol");
    {
      Library library(path, Library::kOrdinaryMode);
      Save(library, L"A", L"committed");
      ASSERT_EQ(library.CommitAll(false), 0);
    }
    std::filesystem::permissions(Narrow(path), std::filesystem::perms(0444));
    auto const before = Bytes(path);
    Library library(path, Library::kOrdinaryMode);
    EXPECT_EQ(Load(library, L"A"), L"committed");
    EXPECT_NE(Save(library, L"A", L"new"), 0);
    EXPECT_NE(library.RewriteLibrary(false), 0);
    EXPECT_EQ(Load(library, L"A"), L"committed");
    EXPECT_EQ(Bytes(path), before);
  });
}

TEST_F(LibraryLimits, AFileThatMayNotBeReadIsNoEmptyLibrary) {
  AsNobody([&](std::filesystem::path const &) {
    AString const path = Path(L"theirs/a.qsol");
    {
      Library library(path, Library::kOrdinaryMode);
      Save(library, L"A", L"committed");
      ASSERT_EQ(library.CommitAll(false), 0);
    }
    std::filesystem::permissions(Narrow(path), std::filesystem::perms(0));
    Library library(path, Library::kOrdinaryMode);
    EXPECT_EQ(library.GetFileStats().status, static_cast<unsigned>(Library::kLibReadFailed));
    EXPECT_NE(Save(library, L"A", L"new"), 0);
    std::filesystem::permissions(Narrow(path), std::filesystem::perms(0644));
    Library again(path, Library::kOrdinaryMode);
    EXPECT_EQ(Load(again, L"A"), L"committed");
  });
}
