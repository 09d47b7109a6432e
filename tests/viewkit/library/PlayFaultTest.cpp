// What a library holds when operations of the file system fail.
#include "tests/support/FaultyFileSystem.h"
#include "tests/viewkit/library/PlayFixture.h"

/// Every operation of the file system fails in turn, while a play goes on.
class LibraryPlaysWithFaults : public LibraryPlays {
protected:
  static constexpr std::uint64_t kSteps = 20;

  // A save that failed leaves the blocks as they were, and those that were deleted to be replaced are back.
  static LibraryContent WithReplaced(LibraryContent content, LibraryContent const & deleted,
                                     LibraryPlay::Step const & step) {
    for (auto const & name : step.names)
      if (auto const at = deleted.find(name); at != deleted.end())
        content.insert(*at);
    return content;
  }

  void DoOne(LibraryPlay const & play, std::uint64_t number, Library & library) {
    auto const step = play.At(number);
    bool const succeeded = play.Do(number, library) == 0;
    if (succeeded && step.kind == Kind::Delete)
      for (auto const & name : step.names)
        if (auto const at = m_content.find(name); at != m_content.end())
          m_deleted.insert(*at);
    if (succeeded) {
      LibraryPlay::Apply(step, m_content);
      if (step.kind != Kind::Delete)
        m_deleted.clear();
      return;
    }
    std::string complaint;
    auto const content = LibraryPlay::ContentOf(library, complaint);
    ASSERT_TRUE(content) << complaint;
    ASSERT_TRUE(*content == m_content || *content == WithReplaced(m_content, m_deleted, step))
        << LibraryPlay::TextOf(*content) << "\nis not what there was before\n"
        << LibraryPlay::TextOf(m_content);
    m_content = *content;
  }

  bool PlayWithFault(std::uint64_t seed, int failAt, bool forGood) {
    LibraryPlay const play(seed);
    m_content.clear();
    m_deleted.clear();
    support::FaultyFileSystem faulty;
    auto library = std::make_unique<Library>(Path(), Library::kOrdinaryMode);
    faulty.FailAt(failAt, forGood);
    int failedSteps = 0;
    for (std::uint64_t number = 1; number <= kSteps && !HasFatalFailure(); ++number) {
      DoOne(play, number, *library);
      if (faulty.HasFailed() && ++failedSteps == 6)
        faulty.FailAt(0, false); // There is room again.
    }
    faulty.FailAt(0, false);
    if (!HasFatalFailure())
      Finish(library);
    return failedSteps > 0;
  }

  void Finish(std::unique_ptr<Library> & library) {
    Expect(m_content, *library);
    ASSERT_EQ(library->CommitAll(false), 0) << Narrow(library->LastError());
    library = std::make_unique<Library>(Path(), Library::kOrdinaryMode);
    Expect(m_content, *library);
    library.reset();
    RemoveFiles(Path());
  }

  void FailEach(bool forGood) {
    int plays = 0;
    for (std::uint64_t seed = 1; seed <= 8; ++seed) {
      bool hasFailed = true;
      for (int failAt = 1; hasFailed; ++failAt, ++plays) {
        SCOPED_TRACE(testing::Message() << "seed " << seed << ", operation " << failAt);
        hasFailed = PlayWithFault(seed, failAt, forGood);
        if (HasFatalFailure())
          return;
      }
    }
    EXPECT_GT(plays, 200) << "the plays are too short to show anything";
  }

  LibraryContent m_content;
  LibraryContent m_deleted;
};

TEST_F(LibraryPlaysWithFaults, LoseNothingWhereverAnOperationFailsOnce) { FailEach(false); }

TEST_F(LibraryPlaysWithFaults, LoseNothingWhereverAllOperationsBeginToFail) { FailEach(true); }

/// Reading, asking and locking fail too, and the library is attached again in the midst of it.
class LibraryPlaysOnAFailingDisk : public LibraryPlays {
protected:
  static constexpr std::uint64_t kSteps = 12;

  // What the library holds now, whatever fails around.
  std::optional<LibraryContent> Content(support::FaultyFileSystem & faulty) {
    std::string complaint;
    faulty.Pause(true);
    auto const content = LibraryPlay::ContentOf(*m_library, complaint);
    faulty.Pause(false);
    return content;
  }

  // After a crash.  An attach that tells of no failure shows all that there is; one that does is repeated.
  void Attach(support::FaultyFileSystem & faulty) {
    AString const next = m_path == Path() ? Path(L"b.qsol") : Path();
    Crash(m_path, next);
    faulty.Pause(true);
    m_library.reset();
    RemoveFiles(m_path);
    faulty.Pause(false);
    m_path = next;
    m_library = std::make_unique<Library>(m_path, Library::kRecoveryMode);
    if (m_library->GetFileStats().status != 0 || !m_library->LastError().empty()) {
      m_hasFailed = m_hasFailed || faulty.HasFailed();
      EXPECT_TRUE(faulty.HasFailed()) << Narrow(m_library->LastError());
      faulty.FailAt(0, false);
      m_library = std::make_unique<Library>(m_path, Library::kRecoveryMode);
    }
    auto const content = Content(faulty);
    ASSERT_TRUE(content) << "an attach that succeeded reads nothing";
    ASSERT_TRUE(*content == m_content || *content == m_safe)
        << "there is     " << LibraryPlay::TextOf(*content) << "\nthe model is " << LibraryPlay::TextOf(m_content);
    m_content = m_safe = *content;
  }

  void DoOne(LibraryPlay const & play, std::uint64_t number, support::FaultyFileSystem & faulty) {
    auto const step = play.At(number);
    if (play.Do(number, *m_library) == 0) {
      LibraryPlay::Apply(step, m_content);
      if (step.kind != Kind::Delete)
        m_safe = m_content;
      return;
    }
    ASSERT_TRUE(faulty.HasFailed()) << Narrow(m_library->LastError());
    auto const content = Content(faulty);
    ASSERT_TRUE(content);
    // Deletes that waited for what failed may have gone out, or may be taken back with it.
    for (auto const & [name, tag] : m_content)
      ASSERT_TRUE(content->contains(name) && content->at(name) == tag) << "a step that failed changed a block";
    for (auto const & [name, tag] : *content)
      ASSERT_TRUE(m_content.contains(name) || m_safe.contains(name)) << "a step that failed made a block";
    m_content = *content;
  }

  bool PlayWithFault(std::uint64_t seed, int failAt) {
    LibraryPlay const play(seed);
    m_content.clear();
    m_safe.clear();
    m_hasFailed = false;
    m_path = Path();
    support::FaultyFileSystem faulty;
    faulty.CountReads(true);
    m_library = std::make_unique<Library>(m_path, Library::kOrdinaryMode);
    faulty.FailAt(failAt, false);
    for (std::uint64_t number = 1; number <= kSteps && !HasFatalFailure(); ++number) {
      if (number % 4 == 0)
        Attach(faulty);
      if (!HasFatalFailure())
        DoOne(play, number, faulty);
    }
    m_hasFailed = m_hasFailed || faulty.HasFailed();
    faulty.FailAt(0, false);
    if (!HasFatalFailure())
      Attach(faulty);
    m_library.reset();
    RemoveFiles(m_path);
    return m_hasFailed;
  }

  std::unique_ptr<Library> m_library;
  AString m_path;
  bool m_hasFailed = false;
  LibraryContent m_content;
  LibraryContent m_safe;
};

TEST_F(LibraryPlaysOnAFailingDisk, LoseNothingWhereverAnOperationFails) {
  for (std::uint64_t seed = 1; seed <= 6; ++seed) {
    bool hasFailed = true;
    for (int failAt = 1; hasFailed && !HasFatalFailure(); ++failAt) {
      SCOPED_TRACE(testing::Message() << "seed " << seed << ", operation " << failAt);
      hasFailed = PlayWithFault(seed, failAt);
    }
  }
}
