// What a library holds after a loss of power.
#include "tests/support/PageCacheFileSystem.h"
#include "tests/viewkit/library/PlayFixture.h"

#include <set>

using support::NextRandom;

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

  // What is there was committed, or saved since; what was committed is there, unless it was deleted since.
  void ExpectNothingOld(Library & library, std::string const & where) {
    io::CBlock all;
    library.LoadBlocks(all, false);
    for (auto const & child : all) {
      io::CBlock_ptr<io::CBlock> const block(child);
      io::CBlock_named_value tag(L"Tag", io::CBlock_value());
      *block >> tag;
      long long value = 0;
      bool const isOurs = block->Found() && tag.Value().Query(value);
      ASSERT_TRUE(!isOurs || m_saved.contains({block->Name(), static_cast<std::uint64_t>(value)}))
          << where << Narrow(block->Name()) << " holds what was not saved, or replaced by a commit";
    }
  }
  void ExpectAllCommitted(Library & library, std::string const & where) {
    for (auto const & [name, tag] : m_committed) {
      io::CBlock block(name);
      ASSERT_TRUE(m_deleted.contains(name) || library.LoadDefinition(block) == 0)
          << where << Narrow(name) << " is gone";
    }
  }

  // Work goes on, whatever the recovery found.
  void CheckRecovered(std::string const & where) {
    Library library(Path(L"after/a.qsol"), Library::kRecoveryMode);
    ExpectNothingOld(library, where);
    ASSERT_EQ(Save(library, L"Next", L"next"), 0) << where << Narrow(library.LastError());
    Crash(Path(L"after/a.qsol"), Path(L"after/b.qsol"));
    Library recovered(Path(L"after/b.qsol"), Library::kRecoveryMode);
    ASSERT_EQ(Load(recovered, L"Next"), L"next") << where;
    // Damage of what no sync stood behind is told once.
    if (library.CommitAll(false) != 0) {
      ASSERT_EQ(library.CommitAll(false), 0) << where << Narrow(library.LastError());
    }
    Library again(Path(L"after/a.qsol"), Library::kOrdinaryMode);
    ASSERT_EQ(Load(again, L"Next"), L"next") << where;
    ExpectNothingOld(again, where);
    ExpectAllCommitted(again, where);
  }

  void Play(std::uint64_t seed) {
    LibraryPlay const play(seed, seed % 10 == 0 ? LibraryPlay::Sizes::Mixed : LibraryPlay::Sizes::Small);
    m_content.clear();
    m_committed.clear();
    m_saved.clear();
    m_deleted.clear();
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
      for (std::size_t i = 0; i < step.names.size(); ++i)
        if (step.kind == Kind::Delete)
          m_deleted.insert(step.names[i]);
        else
          m_saved.insert({step.names[i], step.tags[i]});
      m_isCommitting = Commits(step.kind);
      ASSERT_EQ(play.Do(number, library), 0) << Narrow(library.LastError());
      LibraryPlay::Apply(step, m_content);
      if (m_isCommitting) {
        m_committed = m_content;
        m_saved = {m_content.begin(), m_content.end()};
        m_deleted.clear();
      }
    }
    disk.OnChange(nullptr);
  }

  LibraryContent m_content;
  LibraryContent m_committed;
  /// Since the last commit, and by it.
  std::set<std::pair<AString, std::uint64_t>> m_saved;
  std::set<AString> m_deleted;
  bool m_isCommitting = false;
};

TEST_F(LibraryPowerLoss, KeepsEveryCommitThatReturnedZeroAndShowsNothingThatWasNeverSaved) {
  for (std::uint64_t seed = 1; seed <= 100 && !HasFatalFailure(); ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    Play(seed);
    RemoveFiles(Path());
  }
}
