#include "basekit/file/FileOperations.h"
#include "basekit/io/RecordFormat.h"
#include "tests/support/PageCacheFileSystem.h"
#include "tests/viewkit/library/LibraryFixture.h"
#include "viewkit/library/LibraryReader.h"

class LibraryDamage : public LibraryFixture {
protected:
  // Three commits in the public file, three saves in the private one.
  void MakeLibrary(AString const & path) {
    Library library(path, Library::kOrdinaryMode);
    for (auto const * const text : {L"one", L"two", L"three"}) {
      Save(library, L"A", text);
      Save(library, L"B", text);
      library.UpdateOriginal();
      m_commits.push_back(library.CommittedLength());
    }
    library.CommitAll(false);
    for (auto const * const text : {L"four", L"five", L"six"}) {
      Save(library, L"A", text);
      Save(library, L"C", text);
    }
    Crash(path, Path());
  }
  std::vector<std::uint64_t> m_commits;
};

// Invariant 2.
TEST_F(LibraryDamage, ShowsACommittedStateWhereverThePublicFileIsCut) {
  MakeLibrary(Path(L"live.qsol"));
  auto const whole = Bytes(Path());
  wchar_t const * const texts[] = {L"<none>", L"one", L"two", L"three"};
  LFN_DeleteFile(PrivateOf(Path()));
  std::size_t commits = 0;
  for (std::size_t size = 0; size <= whole.size(); ++size) {
    SetBytes(Path(), whole.substr(0, size));
    Library library(Path(), Library::kOrdinaryMode);
    auto const text = Load(library, L"A");
    // The commit record is written twice: the first one counts as soon as it is whole.
    while (commits < 3 && text == texts[commits + 1])
      ++commits;
    ASSERT_EQ(text, texts[commits]) << size;
    ASSERT_EQ(Load(library, L"B"), texts[commits]) << size;
    if (commits < 3) {
      ASSERT_LT(size, m_commits[commits]);
    }
  }
  EXPECT_EQ(commits, 3u);
}

TEST_F(LibraryDamage, GoesOnWritingWhereverThePublicFileIsCut) {
  MakeLibrary(Path(L"live.qsol"));
  auto const whole = Bytes(Path());
  LFN_DeleteFile(PrivateOf(Path()));
  for (std::size_t size = 0; size <= whole.size(); size += 37) {
    SetBytes(Path(), whole.substr(0, size));
    Library library(Path(), Library::kOrdinaryMode);
    ASSERT_EQ(Save(library, L"New", L"new"), 0) << size << ' ' << Narrow(library.LastError());
    auto const former = Load(library, L"A");
    ASSERT_EQ(library.CommitAll(false), 0) << size;
    Library again(Path(), Library::kOrdinaryMode);
    ASSERT_EQ(Load(again, L"New"), L"new");
    ASSERT_EQ(Load(again, L"A"), former);
  }
}

// Invariant 3.
TEST_F(LibraryDamage, ShowsAPrefixWhereverThePrivateFileIsCut) {
  MakeLibrary(Path(L"live.qsol"));
  auto const whole = Bytes(PrivateOf(Path()));
  std::vector<std::pair<AString, AString>> const prefixes = {
      {L"three", L"<none>"}, {L"four", L"<none>"}, {L"four", L"four"}, {L"five", L"four"},
      {L"five", L"five"},    {L"six", L"five"},    {L"six", L"six"}};
  std::size_t reached = 0;
  for (std::size_t size = 0; size <= whole.size(); ++size) {
    SetBytes(PrivateOf(Path()), whole.substr(0, size));
    library::LibraryReader reader;
    ASSERT_EQ(reader.Open(Path(), true), 0);
    io::CBlock a(L"A");
    Library library(Path(), Library::kRecoveryMode);
    ASSERT_TRUE(library.IsRecovered()) << size;
    std::pair<AString, AString> const now(Load(library, L"A"), Load(library, L"C"));
    if (reached + 1 < prefixes.size() && now == prefixes[reached + 1])
      ++reached;
    ASSERT_EQ(now, prefixes[reached]) << size;
  }
  EXPECT_EQ(reached, prefixes.size() - 1);
}

TEST_F(LibraryDamage, NeverReturnsADamagedBlockAndAlwaysReportsIt) {
  MakeLibrary(Path(L"live.qsol"));
  for (bool const isPrivate : {false, true}) {
    auto const path = isPrivate ? PrivateOf(Path()) : Path();
    auto const whole = Bytes(path);
    for (std::size_t at = 0; at < whole.size(); ++at) {
      std::string flipped = whole;
      flipped[at] = static_cast<char>(flipped[at] ^ (1 << at % 8));
      SetBytes(path, flipped);
      library::LibraryReader reader;
      auto const opened = reader.Open(Path(), isPrivate);
      if (opened != 0)
        continue; // The whole file is refused.
      std::vector<library::LibraryReader::Damage> damages;
      reader.Verify(damages);
      bool const isSeen = !damages.empty() || !reader.PrivateFacts().exists;
      // The torn tail of a private file is silent.
      auto const facts = isPrivate ? reader.PrivateFacts() : reader.PublicFacts();
      ASSERT_TRUE(isSeen || facts.end < facts.length) << (isPrivate ? "private " : "public ") << at;
      for (auto const & entry : reader.List()) {
        io::CBlock block(entry.name);
        if (reader.Load(block) != 0)
          continue;
        io::CBlock_named_value value(L"Text", io::CBlock_value());
        block >> value;
        AString text;
        ASSERT_TRUE(block.Found() && value.Value().Query(text)) << at;
        bool const isOne = text == L"one" || text == L"two" || text == L"three" || text == L"four" || text == L"five" ||
                           text == L"six";
        ASSERT_TRUE(isOne) << at;
      }
    }
    SetBytes(path, whole);
  }
}

TEST_F(LibraryDamage, ShowsTheTrueContentOrNoneWhicheverBitIsFlipped) {
  {
    Library live(Path(L"live.qsol"), Library::kOrdinaryMode);
    Save(live, L"A", L"committed");
    live.UpdateOriginal();
    Save(live, L"A", L"saved");
    Save(live, L"B", L"saved");
    Crash(Path(L"live.qsol"), Path());
  }
  support::PageCacheFileSystem const quick;
  auto const publicBytes = Bytes(Path());
  auto const privateBytes = Bytes(PrivateOf(Path()));
  for (bool const isPrivate : {false, true}) {
    auto const & whole = isPrivate ? privateBytes : publicBytes;
    for (std::size_t bit = 0; bit < whole.size() * 8; ++bit) {
      std::string flipped = whole;
      flipped[bit / 8] = static_cast<char>(flipped[bit / 8] ^ (1 << bit % 8));
      SetBytes(Path(), isPrivate ? publicBytes : flipped);
      SetBytes(PrivateOf(Path()), isPrivate ? flipped : privateBytes);
      Library library(Path(), Library::kRecoveryMode);
      auto const a = Load(library, L"A");
      auto const b = Load(library, L"B");
      ASSERT_TRUE(a == L"committed" || a == L"saved" || a.StartsWith(L"<")) << isPrivate << bit << Narrow(a);
      ASSERT_TRUE(b == L"saved" || b.StartsWith(L"<")) << isPrivate << bit << Narrow(b);
    }
  }
}

TEST_F(LibraryDamage, FlipsInThePublicFileLoseNoMoreThanTheBlockThatTheyHit) {
  MakeLibrary(Path(L"live.qsol"));
  LFN_DeleteFile(PrivateOf(Path()));
  auto const whole = Bytes(Path());
  for (std::size_t at = 0; at < whole.size(); ++at) {
    std::string flipped = whole;
    flipped[at] = static_cast<char>(flipped[at] ^ 1);
    SetBytes(Path(), flipped);
    Library library(Path(), Library::kOrdinaryMode);
    auto const a = Load(library, L"A");
    auto const b = Load(library, L"B");
    ASSERT_TRUE(a == L"three" || b == L"three") << at;
    ASSERT_TRUE(a == L"three" || a == L"<damaged>") << at;
    ASSERT_TRUE(b == L"three" || b == L"<damaged>") << at;
  }
}

TEST_F(LibraryDamage, ReadsTheRestOfAPrivateFileThatIsDamagedInTheMiddle) {
  MakeLibrary(Path(L"live.qsol"));
  auto bytes = Bytes(PrivateOf(Path()));
  bytes[bytes.find("four")] = 'F';
  SetBytes(PrivateOf(Path()), bytes);
  Library library(Path(), Library::kRecoveryMode);
  EXPECT_TRUE(library.IsRecovered());
  EXPECT_FALSE(library.LastError().empty());
  EXPECT_EQ(Load(library, L"A"), L"six");
}

TEST_F(LibraryDamage, TellsOfADamagedBlockAtTheCommitOnceAndKeepsTheFormerVersion) {
  {
    Library live(Path(L"live.qsol"), Library::kOrdinaryMode);
    Save(live, L"A", L"former");
    live.CommitAll(false);
    Save(live, L"A", L"spoilt");
    Save(live, L"B", L"good");
    Crash(Path(L"live.qsol"), Path());
  }
  auto bytes = Bytes(PrivateOf(Path()));
  bytes[bytes.find("spoilt")] = 'X';
  SetBytes(PrivateOf(Path()), bytes);
  Library library(Path(), Library::kRecoveryMode);
  EXPECT_EQ(Load(library, L"A"), L"<damaged>");
  EXPECT_EQ(library.UpdateOriginal(), Library::kLibDamaged);
  EXPECT_EQ(Load(library, L"A"), L"former");
  EXPECT_EQ(Load(library, L"B"), L"good");
  EXPECT_EQ(library.CommitAll(false), 0);
}

TEST_F(LibraryDamage, KeepsACopyOfADamagedFileThatIsWrittenAnew) {
  {
    Library library(Path(), Library::kOrdinaryMode);
    Save(library, L"A", L"spoilt");
    Save(library, L"B", L"good");
    library.CommitAll(false);
  }
  auto bytes = Bytes(Path());
  bytes[bytes.find("spoilt")] = 'X';
  SetBytes(Path(), bytes);
  Library library(Path(), Library::kOrdinaryMode);
  EXPECT_EQ(library.RewriteLibrary(false), Library::kLibDamaged);
  EXPECT_EQ(Bytes(Path() + L".damaged-1"), bytes);
  EXPECT_EQ(Load(library, L"A"), L"<none>");
  EXPECT_EQ(Load(library, L"B"), L"good");
  EXPECT_EQ(library.RewriteLibrary(false), 0);
}

TEST_F(LibraryDamage, RefusesALibraryOfALaterFormat) {
  {
    Library library(Path(), Library::kOrdinaryMode);
    Save(library, L"A", L"one");
    library.CommitAll(false);
  }
  io::FileHeader header;
  header.version = 2;
  header.salt = 17;
  SetBytes(Path(), io::FormatFileHeader(header) + Bytes(Path()).substr(io::kFileHeaderSize));
  Library library(Path(), Library::kOrdinaryMode);
  EXPECT_EQ(library.GetFileStats().status, static_cast<unsigned>(Library::kLibNewerVersion));
  EXPECT_EQ(Load(library, L"A"), L"<failed>");
  EXPECT_NE(Save(library, L"A", L"two"), 0);
}

TEST_F(LibraryDamage, SurvivesRandomBytes) {
  unsigned state = 1;
  for (int round = 0; round < 200; ++round) {
    std::string bytes = round % 2 ? std::string("#qsol 0001 ") : std::string();
    for (int i = 0; i < 300; ++i) {
      state = state * 1664525u + 1013904223u;
      bytes += static_cast<char>(state >> 24);
    }
    SetBytes(Path(), bytes);
    SetBytes(PrivateOf(Path()), bytes);
    Library library(Path(), round % 3 ? Library::kOrdinaryMode : Library::kRecoveryMode);
    ASSERT_NE(Load(library, L"A"), L"one");
    ASSERT_NE(Save(library, L"A", L"one"), 0) << "a foreign file is never written";
  }
}

TEST_F(LibraryDamage, ReadsFromThePublicFileWhatDamageTookOfThePrivateOneAfterTheCommit) {
  {
    Library live(Path(L"live.qsol"), Library::kOrdinaryMode);
    Save(live, L"A", L"one");
    live.CommitAll(false);
    Save(live, L"A", L"two");
    Save(live, L"A", L"three");
    Save(live, L"C", L"whole");
    live.UpdateOriginal();
    Crash(Path(L"live.qsol"), Path());
  }
  auto bytes = Bytes(PrivateOf(Path()));
  auto const record = bytes.rfind("#q 01", bytes.find("three"));
  bytes.replace(record, 40, 40, 'x');
  SetBytes(PrivateOf(Path()), bytes);
  Library library(Path(), Library::kRecoveryMode);
  EXPECT_EQ(Load(library, L"A"), L"three");
  EXPECT_EQ(Save(library, L"B", L"next"), 0);
  library.CommitAll(false);
  Library again(Path(), Library::kOrdinaryMode);
  EXPECT_EQ(Load(again, L"A"), L"three");
  EXPECT_EQ(Load(again, L"B"), L"next");
}

TEST_F(LibraryDamage, KeepsWhatIsSavedAfterALossOfPowerCutThePrivateFileWithinWhatWasCommitted) {
  {
    Library live(Path(L"live.qsol"), Library::kOrdinaryMode);
    Save(live, L"A", L"one");
    live.CommitAll(false);
    Save(live, L"A", L"two");
    Save(live, L"A", L"three");
    live.UpdateOriginal();
    Crash(Path(L"live.qsol"), Path());
  }
  auto const bytes = Bytes(PrivateOf(Path()));
  SetBytes(PrivateOf(Path()), bytes.substr(0, bytes.find("three")));
  Library library(Path(), Library::kRecoveryMode);
  EXPECT_EQ(Load(library, L"A"), L"three");
  ASSERT_EQ(Save(library, L"B", L"next"), 0);
  Crash(Path(), Path(L"crashed.qsol"));
  Library crashed(Path(L"crashed.qsol"), Library::kRecoveryMode);
  EXPECT_EQ(Load(crashed, L"A"), L"three");
  EXPECT_EQ(Load(crashed, L"B"), L"next");
  ASSERT_EQ(library.CommitAll(false), 0);
  Library again(Path(), Library::kOrdinaryMode);
  EXPECT_EQ(Load(again, L"A"), L"three");
  EXPECT_EQ(Load(again, L"B"), L"next");
}
