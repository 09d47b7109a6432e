// Blocks that remember their edits, stored in a library through failures, crashes, commits and deletions.
#include "basekit/io/BlockCodec.h"
#include "basekit/io/BlockJournal.h"
#include "basekit/io/CToken_istream.h"
#include "tests/support/FaultyFileSystem.h"
#include "tests/viewkit/library/LibraryFixture.h"

#include <fstream>
#include <map>
#include <random>

namespace {

constexpr auto kOrdinary = CStreamioLibrary::kOrdinaryMode;

/// A table that is stored as a journaled block, by itself ("Table") or as the child "Rows" of a block "Head".
class Table {
public:
  Table() : m_journal(std::make_shared<io::BlockJournal>([this](io::CBlock & block) { Fill(block); })) {}
  ~Table() { m_journal->Close(); }

  void Set(int key, int value) {
    Erase(key);
    auto const at = m_rows.emplace(key, value).first;
    if (auto const next = std::next(at); next == m_rows.end()) {
      m_journal->Insert(Row(*at), nullptr);
    } else {
      auto const before = Row(*next);
      m_journal->Insert(Row(*at), &before);
    }
  }
  void Erase(int key) {
    auto const at = m_rows.find(key);
    if (at == m_rows.end())
      return;
    auto const row = Row(*at);
    m_rows.erase(at);
    m_journal->Remove(row);
  }
  io::CBlock Itself() const { return io::CBlock(L"Table", m_journal); }
  io::CBlock Head(int stamp) const {
    io::CBlock head(L"Head");
    head << io::CBlock_named_value(L"Stamp", io::CBlock_value(stamp)) << io::CBlock(L"Rows", m_journal);
    return head;
  }
  /// The rows as text; the child's of a head.
  static std::string Text(io::CBlock const & block) {
    std::string text;
    static_cast<void>(io::EncodeBlock(block, io::Form::Text, 16, text));
    return text;
  }
  std::string Text() const {
    io::CBlock block(L"Table");
    Fill(block);
    return Text(block);
  }
  std::string HeadText(int stamp) const { return Text(Head(stamp)); }

private:
  static io::CBlock_func Row(std::pair<int const, int> const & row) {
    io::CBlock_func func(L"Row");
    func << long(row.first) << long(row.second);
    return func;
  }
  void Fill(io::CBlock & block) const {
    for (auto const & row : m_rows)
      block << Row(row);
  }
  std::map<int, int> m_rows;
  std::shared_ptr<io::BlockJournal> m_journal;
};

class JournaledLibrary : public LibraryFixture, public ::testing::WithParamInterface<bool> {
protected:
  static std::string Stored(CStreamioLibrary & library, AString const & name) {
    io::CBlock block(name);
    return library.LoadDefinition(block) == 0 ? Table::Text(block) : "<none>";
  }
  CStreamioLibrary::LibIOReturn SaveTable(CStreamioLibrary & library) {
    io::CBlock block = m_table.Itself();
    return library.SaveDefinition(block);
  }
  std::string Recovered() {
    static int number = 0;
    AString const path = Path((L"crashed" + std::to_wstring(++number) + L".qsol").c_str());
    Crash(Path(), path);
    Library library(path, CStreamioLibrary::kRecoveryMode);
    return Stored(library, L"Table");
  }
  Table m_table;
};

} // namespace

TEST_P(JournaledLibrary, ShowsWhatTheOwnerHasUnderRandomEditsCommitsReopeningsAndCrashes) {
  for (unsigned seed = 0; seed < 30; ++seed) {
    std::mt19937 random(seed);
    Table table;
    AString const path = Path((L"play" + std::to_wstring(seed) + L".qsol").c_str());
    auto library = std::make_unique<Library>(path, kOrdinary);
    library->SetBinaryMode(GetParam());
    int stamp = 0;
    for (int step = 0; step < 60; ++step) {
      for (int edit = static_cast<int>(random() % 4); edit > 0; --edit) {
        int const key = static_cast<int>(random() % 50);
        random() % 3 ? table.Set(key, static_cast<int>(random() % 1000)) : table.Erase(key);
      }
      io::CBlock itself = table.Itself();
      io::CBlock head = table.Head(++stamp);
      ASSERT_EQ(library->SaveDefinition(itself), 0);
      ASSERT_EQ(library->SaveDefinition(head), 0);
      switch (random() % 8) {
      case 0:
        ASSERT_EQ(library->CommitAll(false), 0);
        break;
      case 1:
        ASSERT_EQ(library->UpdateOriginal(), 0);
        break;
      case 2:
        ASSERT_EQ(library->RewriteLibrary(false), 0);
        break;
      case 3:
        library.reset();
        library = std::make_unique<Library>(path, kOrdinary);
        break;
      case 4: {
        AString const crashed = Path(L"crashed.qsol");
        Crash(path, crashed);
        Library recovered(crashed, CStreamioLibrary::kRecoveryMode);
        ASSERT_EQ(Stored(recovered, L"Table"), table.Text()) << seed << ' ' << step;
        ASSERT_EQ(Stored(recovered, L"Head"), table.HeadText(stamp)) << seed << ' ' << step;
        break;
      }
      case 5:
        library->SetBinaryMode(random() % 2);
        break;
      default:
        break;
      }
      ASSERT_EQ(Stored(*library, L"Table"), table.Text()) << seed << ' ' << step;
      ASSERT_EQ(Stored(*library, L"Head"), table.HeadText(stamp)) << seed << ' ' << step;
    }
  }
}

// Invariant 11.
TEST_P(JournaledLibrary, EditsThatFailedToGoOutGoOutBeforeTheNextRecord) {
  for (int failing = 1; failing < 12; ++failing) {
    support::FaultyFileSystem files;
    AString const path = Path((L"faulty" + std::to_wstring(failing) + L".qsol").c_str());
    Library library(path, kOrdinary);
    library.SetBinaryMode(GetParam());
    Table table;
    table.Set(1, 1);
    io::CBlock first = table.Itself();
    ASSERT_EQ(library.SaveDefinition(first), 0);
    files.FailAt(failing, false);
    int saved = 0;
    for (; saved < 20 && !files.HasFailed(); ++saved) {
      table.Set(10 + saved, saved);
      io::CBlock block = table.Itself();
      static_cast<void>(library.SaveDefinition(block));
    }
    ASSERT_EQ(Save(library, L"Other", L"later"), 0);
    EXPECT_EQ(Stored(library, L"Table"), table.Text()) << failing;
    EXPECT_EQ(library.CommitAll(false), 0);
    Library again(path, kOrdinary);
    EXPECT_EQ(Stored(again, L"Table"), table.Text()) << failing;
  }
}

TEST_P(JournaledLibrary, ALaterPlainBlockOrADeletionIsNotUndoneByEditsThatFailedBefore) {
  for (bool const isDeleted : {false, true}) {
    support::FaultyFileSystem files;
    AString const path = Path(isDeleted ? L"deleted.qsol" : L"plain.qsol");
    Library library(path, kOrdinary);
    Save(library, L"Other", L"first");
    m_table.Set(1, isDeleted);
    files.FailAt(1, false);
    ASSERT_NE(SaveTable(library), 0);
    if (isDeleted) {
      ASSERT_EQ(library.DeleteDefinition(L"Table"), 0);
    } else {
      ASSERT_EQ(Save(library, L"Table", L"plain"), 0);
    }
    ASSERT_EQ(Save(library, L"Other", L"second"), 0);
    EXPECT_EQ(Load(library, L"Table"), isDeleted ? L"<none>" : L"plain");
  }
}

TEST_P(JournaledLibrary, ABatchThatCannotBeEncodedLeavesWhatItWasToReplace) {
  Library library(Path(), kOrdinary);
  ASSERT_EQ(Save(library, L"A", L"one"), 0);
  ASSERT_EQ(library.DeleteBlocks({L"A"}), 0);
  io::CBlock batch;
  batch << Block(L"A", L"two") << Block(L"", L"nameless");
  ASSERT_NE(library.SaveBlocks(batch), 0);
  ASSERT_EQ(Save(library, L"B", L"later"), 0);
  EXPECT_EQ(Load(library, L"A"), L"one");
}

// What is merged is synced in the public file alone.
TEST_P(JournaledLibrary, EditsAfterAnUpdateNeverGoOnFromWhatIsMerged) {
  support::FaultyFileSystem files;
  Library library(Path(), kOrdinary);
  m_table.Set(1, 1);
  ASSERT_EQ(SaveTable(library), 0);
  ASSERT_EQ(library.UpdateOriginal(), 0);
  m_table.Set(2, 2);
  ASSERT_EQ(SaveTable(library), 0);
  auto bytes = Bytes(PrivateOf(Path()));
  EXPECT_EQ(bytes.find("#q 10"), bytes.npos);
  m_table.Set(3, 3);
  ASSERT_EQ(SaveTable(library), 0);
  bytes = Bytes(PrivateOf(Path()));
  EXPECT_NE(bytes.find("#q 10"), bytes.npos);
  EXPECT_EQ(Recovered(), m_table.Text());
}

TEST_P(JournaledLibrary, ADamagedEditCostsItsBlockAloneAtTheFirstCommit) {
  Library library(Path(), kOrdinary);
  ASSERT_EQ(Save(library, L"A", L"good"), 0);
  for (int row = 0; row < 5; ++row) {
    m_table.Set(row, row);
    ASSERT_EQ(SaveTable(library), 0);
  }
  auto const bytes = Bytes(PrivateOf(Path()));
  auto const at = bytes.find("insert");
  ASSERT_NE(at, bytes.npos);
  std::fstream(Narrow(PrivateOf(Path())), std::ios::binary | std::ios::in | std::ios::out)
          .seekp(static_cast<std::streamoff>(at))
      << 'x';
  EXPECT_EQ(library.CommitAll(false), CStreamioLibrary::kLibDamaged);
  EXPECT_EQ(library.CommitAll(false), 0);
  Library again(Path(), kOrdinary);
  EXPECT_EQ(Load(again, L"A"), L"good");
}

TEST_P(JournaledLibrary, AStreamReadsEditedAndPlainBlocksByTheirNames) {
  Library library(Path(), kOrdinary);
  ASSERT_EQ(Save(library, L"A", L"good"), 0);
  for (int row = 0; row < 5; ++row) {
    m_table.Set(4 - row, row);
    ASSERT_EQ(SaveTable(library), 0);
  }
  ASSERT_NE(Bytes(PrivateOf(Path())).find("#q 10"), std::string::npos);
  io::CToken_istream stream(PrivateOf(Path()), 1);
  io::CBlock table(L"Table");
  EXPECT_FALSE(stream.BlockRead(table)) << "without an index nothing is found";
  stream.BuildIndex(9);
  ASSERT_TRUE(stream.BlockRead(table));
  EXPECT_EQ(Table::Text(table), m_table.Text());
  io::CBlock plain(L"A");
  ASSERT_TRUE(stream.BlockRead(plain));
  EXPECT_FALSE(plain.Empty());
  io::CBlock absent(L"B");
  absent << io::CBlock_named_value(L"Of", io::CBlock_value(L"its owner"));
  EXPECT_FALSE(stream.BlockRead(absent));
  EXPECT_FALSE(stream.fail());
  EXPECT_EQ(absent.Size(), 1);
}

TEST_P(JournaledLibrary, AStreamFailsAtABlockWithADamagedEditAndLeavesTheArgumentAlone) {
  Library library(Path(), kOrdinary);
  for (int row = 0; row < 5; ++row) {
    m_table.Set(row, row);
    ASSERT_EQ(SaveTable(library), 0);
  }
  auto const at = Bytes(PrivateOf(Path())).find("insert");
  ASSERT_NE(at, std::string::npos);
  std::fstream(Narrow(PrivateOf(Path())), std::ios::binary | std::ios::in | std::ios::out)
          .seekp(static_cast<std::streamoff>(at))
      << 'x';
  io::CToken_istream stream(PrivateOf(Path()), 1);
  stream.BuildIndex(9);
  io::CBlock table(L"Table");
  table << io::CBlock_named_value(L"Of", io::CBlock_value(L"its owner"));
  EXPECT_TRUE(stream.BlockRead(table));
  EXPECT_TRUE(stream.fail());
  EXPECT_EQ(table.Size(), 1);
}

TEST_P(JournaledLibrary, ABlockThatWasDeletedIsStoredWholeAgain) {
  Library library(Path(), kOrdinary);
  m_table.Set(1, 1);
  ASSERT_EQ(SaveTable(library), 0);
  ASSERT_EQ(library.DeleteDefinition(L"Table"), 0);
  ASSERT_EQ(library.RewriteLibrary(false), 0);
  ASSERT_EQ(Stored(library, L"Table"), "<none>");
  ASSERT_EQ(SaveTable(library), 0);
  EXPECT_EQ(Stored(library, L"Table"), m_table.Text());
}

TEST_P(JournaledLibrary, TwoChildrenOfOneNameAreStoredWhole) {
  Library library(Path(), kOrdinary);
  for (int row = 0; row < 4; ++row) {
    m_table.Set(row, row);
    io::CBlock head = m_table.Head(row);
    io::CBlock twin(L"rows");
    twin << io::CBlock_named_value(L"Of", io::CBlock_value(L"a product"));
    head << twin;
    std::string const whole = Table::Text(io::CBlock(head));
    ASSERT_EQ(library.SaveDefinition(head), 0);
    EXPECT_EQ(Stored(library, L"Head"), whole);
  }
}

TEST_P(JournaledLibrary, ASavedCopyHoldsTheEditsAndGoesOn) {
  Library library(Path(), kOrdinary);
  for (int row = 0; row < 5; ++row) {
    m_table.Set(row, row);
    ASSERT_EQ(SaveTable(library), 0);
  }
  ASSERT_TRUE(library.CopyToNewLibPath(Path(L"copy.qsol")));
  m_table.Erase(2);
  ASSERT_EQ(SaveTable(library), 0);
  EXPECT_EQ(Stored(library, L"Table"), m_table.Text());
  ASSERT_EQ(library.CommitAll(false), 0);
  Library again(Path(L"copy.qsol"), kOrdinary);
  EXPECT_EQ(Stored(again, L"Table"), m_table.Text());
}

INSTANTIATE_TEST_SUITE_P(Forms, JournaledLibrary, ::testing::Bool(),
                         [](auto const & form) { return form.param ? "Binary" : "Text"; });
