// Ten thousand short plays, cut by reopenings and crashes.
#include "tests/support/PageCacheFileSystem.h"
#include "tests/viewkit/library/PlayFixture.h"

using support::NextRandom;

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
