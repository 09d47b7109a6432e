// Random operations against a simple model: what a library holds after reopenings, crashes, failures and losses of
// power.
#include "basekit/file/FileOperations.h"
#include "tests/support/FaultyFileSystem.h"
#include "tests/support/LibraryPlay.h"
#include "tests/support/PageCacheFileSystem.h"
#include "tests/viewkit/library/LibraryFixture.h"

#include <algorithm>
#include <set>

namespace {

using support::LibraryContent;
using support::LibraryPlay;
using support::NextRandom;
using Kind = LibraryPlay::Step::Kind;
using Library = CStreamioLibWritePrivate;

} // namespace

class LibraryPlays : public LibraryFixture {
protected:
  void Expect(LibraryContent const & wanted, Library & library) {
    std::string complaint;
    auto const content = LibraryPlay::ContentOf(library, complaint);
    ASSERT_TRUE(content) << complaint;
    ASSERT_EQ(*content, wanted) << "there is    " << LibraryPlay::TextOf(*content) << "\nthe model is "
                                << LibraryPlay::TextOf(wanted);
  }
  void RemoveFiles(AString const & path) {
    for (auto const & each : {path, PrivateOf(path)})
      if (LFN_Exists(each))
        LFN_DeleteFile(each);
  }
};

/// Each sequence is a short play, cut by reopenings and crashes.
class LibraryAgainstModel : public LibraryPlays, public testing::WithParamInterface<int> {
protected:
  static constexpr int kSequences = 1000;

  void Reopen() {
    m_library.reset();
    m_library = std::make_unique<Library>(m_path, Library::kOrdinaryMode);
    Expect(m_content, *m_library);
    m_safe = m_content;
  }

  // Deletes wait for the save behind them, so a crash may undo the last ones.
  void CrashAndRecover() {
    AString const next = m_path == Path() ? Path(L"b.qsol") : Path();
    Crash(m_path, next);
    m_library.reset();
    RemoveFiles(m_path);
    m_path = next;
    m_library = std::make_unique<Library>(m_path, Library::kRecoveryMode);
    std::string complaint;
    auto const content = LibraryPlay::ContentOf(*m_library, complaint);
    ASSERT_TRUE(content) << complaint;
    ASSERT_TRUE(*content == m_content || *content == m_safe)
        << "there is     " << LibraryPlay::TextOf(*content) << "\nthe model is " << LibraryPlay::TextOf(m_content)
        << "\nor           " << LibraryPlay::TextOf(m_safe);
    m_content = m_safe = *content;
  }

  void PlayOnce(std::uint64_t seed) {
    LibraryPlay const play(seed);
    std::uint64_t random = seed;
    m_path = Path();
    m_content.clear();
    m_safe.clear();
    m_library = std::make_unique<Library>(m_path, Library::kOrdinaryMode);
    m_library->SetBinaryMode(seed % 2 == 0);
    std::uint64_t const steps = 4 + NextRandom(random) % 12;
    for (std::uint64_t number = 1; number <= steps && !HasFatalFailure(); ++number) {
      SCOPED_TRACE(testing::Message() << "step " << number);
      ASSERT_EQ(play.Do(number, *m_library), 0) << Narrow(m_library->LastError());
      auto const step = play.At(number);
      LibraryPlay::Apply(step, m_content);
      if (step.kind != Kind::Delete)
        m_safe = m_content;
      std::uint64_t const what = NextRandom(random) % 12;
      if (what == 0)
        Reopen();
      else if (what == 1)
        CrashAndRecover();
      else if (what == 2)
        Expect(m_content, *m_library);
    }
    Reopen();
    m_library.reset();
    RemoveFiles(m_path);
  }

  std::unique_ptr<Library> m_library;
  AString m_path;
  LibraryContent m_content;
  LibraryContent m_safe;
};

TEST_P(LibraryAgainstModel, HoldsWhatTheModelHoldsOverReopeningsAndCrashes) {
  support::PageCacheFileSystem const quick;
  for (int i = 0; i < kSequences && !HasFatalFailure(); ++i) {
    auto const seed = static_cast<std::uint64_t>(GetParam() * kSequences + i);
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    PlayOnce(seed);
  }
}

INSTANTIATE_TEST_SUITE_P(TenThousandSequences, LibraryAgainstModel, testing::Range(0, 10));

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

/// A loss of power at every operation, with a disk that kept, dropped or tore what was not synced.
class LibraryPowerLoss : public LibraryPlays {
protected:
  static constexpr std::uint64_t kSteps = 20;

  static bool Commits(Kind kind) { return kind > Kind::Delete; }

  // What a commit promised is there; a commit that is under way came through or did not.
  void CheckCommitted(std::string const & where) {
    Library library(Path(L"after/a.qsol"), Library::kOrdinaryMode);
    std::string complaint;
    auto const content = LibraryPlay::ContentOf(library, complaint);
    ASSERT_TRUE(content) << where << complaint;
    ASSERT_TRUE(*content == m_committed || (m_isCommitting && *content == m_content))
        << where << "there is     " << LibraryPlay::TextOf(*content) << "\ncommitted is "
        << LibraryPlay::TextOf(m_committed) << "\nthe model is " << LibraryPlay::TextOf(m_content);
  }

  // What was saved may be there, and is what was saved once when it is there; work goes on.
  void CheckRecovered(std::string const & where) {
    Library library(Path(L"after/a.qsol"), Library::kRecoveryMode);
    io::CBlock all;
    library.LoadBlocks(all, false);
    for (auto const & child : all) {
      io::CBlock_ptr<io::CBlock> const block(child);
      io::CBlock_named_value tag(L"Tag", io::CBlock_value());
      *block >> tag;
      long long value = 0;
      ASSERT_TRUE(tag.Value().Query(value)) << where;
      ASSERT_TRUE(m_saved.contains({block->Name(), static_cast<std::uint64_t>(value)}))
          << where << Narrow(block->Name()) << " holds what was never saved";
    }
    ASSERT_EQ(Save(library, L"Next", L"next"), 0) << where << Narrow(library.LastError());
    // Damage of what no sync stood behind is told once.
    if (library.CommitAll(false) != 0) {
      ASSERT_EQ(library.CommitAll(false), 0) << where << Narrow(library.LastError());
    }
    Library again(Path(L"after/a.qsol"), Library::kOrdinaryMode);
    ASSERT_EQ(Load(again, L"Next"), L"next") << where;
  }

  void Play(std::uint64_t seed) {
    LibraryPlay const play(seed, seed % 10 == 0 ? LibraryPlay::Sizes::Mixed : LibraryPlay::Sizes::Small);
    m_content.clear();
    m_committed.clear();
    m_saved.clear();
    std::uint64_t random = seed;
    support::PageCacheFileSystem disk;
    Library library(Path(), Library::kOrdinaryMode);
    library.SetBinaryMode(seed % 2 == 0);
    int operation = 0;
    disk.OnChange([&] {
      ++operation;
      if (NextRandom(random) % 3 != 0 || HasFatalFailure())
        return;
      disk.LosePower(Path(L"after"), random);
      support::PageCacheFileSystem const quick;
      std::string const where = "operation " + std::to_string(operation) + "\n";
      CheckCommitted(where);
      if (!HasFatalFailure())
        CheckRecovered(where);
    });
    for (std::uint64_t number = 1; number <= kSteps && !HasFatalFailure(); ++number) {
      auto const step = play.At(number);
      for (std::size_t i = 0; i < step.names.size() && step.kind != Kind::Delete; ++i)
        m_saved.insert({step.names[i], step.tags[i]});
      m_isCommitting = Commits(step.kind);
      ASSERT_EQ(play.Do(number, library), 0) << Narrow(library.LastError());
      LibraryPlay::Apply(step, m_content);
      if (m_isCommitting)
        m_committed = m_content;
    }
    disk.OnChange(nullptr);
  }

  LibraryContent m_content;
  LibraryContent m_committed;
  std::set<std::pair<AString, std::uint64_t>> m_saved;
  bool m_isCommitting = false;
};

TEST_F(LibraryPowerLoss, KeepsEveryCommitThatReturnedZeroAndShowsNothingThatWasNeverSaved) {
  for (std::uint64_t seed = 1; seed <= 100 && !HasFatalFailure(); ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    Play(seed);
    RemoveFiles(Path());
  }
}
