#include "viewkit/library/LibraryReader.h"

#include "basekit/file/FileOperations.h"
#include "basekit/file/IFileSystem.h"
#include "tests/viewkit/library/LibraryFixture.h"

using library::LibraryReader;

class ReaderOfLibraries : public LibraryFixture {
protected:
  static AString Read(LibraryReader & reader, AString const & name) {
    io::CBlock block(name);
    if (reader.Load(block) != 0)
      return L"<none>";
    io::CBlock_named_value value(L"Text", io::CBlock_value());
    block >> value;
    AString text;
    value.Value().Query(text);
    return text;
  }
};

TEST_F(ReaderOfLibraries, FindsNoLibraryWhereThereIsNone) {
  LibraryReader reader;
  EXPECT_EQ(reader.Open(Path(), true), CStreamioLibrary::kLibNotFound);
  EXPECT_TRUE(reader.List().empty());
}

TEST_F(ReaderOfLibraries, ShowsTheCommittedStateAndOnRequestThePrivateOne) {
  Library library(Path(), Library::kOrdinaryMode);
  Save(library, L"A", L"committed");
  library.CommitAll(false);
  library.SetBinaryMode(true);
  Save(library, L"A", L"saved");
  LibraryReader committed;
  ASSERT_EQ(committed.Open(Path(), false), 0);
  EXPECT_EQ(Read(committed, L"A"), L"committed");
  LibraryReader both;
  ASSERT_EQ(both.Open(Path(), true), 0);
  EXPECT_EQ(Read(both, L"A"), L"saved");
  auto const list = both.List();
  ASSERT_EQ(list.size(), 1u);
  EXPECT_TRUE(list[0].isPrivate);
  EXPECT_TRUE(list[0].isBinary);
  EXPECT_GT(list[0].length, 0u);
}

TEST_F(ReaderOfLibraries, FollowsAWriter) {
  Library library(Path(), Library::kOrdinaryMode);
  LibraryReader reader;
  reader.Open(Path(), true);
  bool changed = false;
  Save(library, L"A", L"one");
  EXPECT_EQ(reader.Refresh(changed), 0);
  EXPECT_TRUE(changed);
  EXPECT_EQ(Read(reader, L"A"), L"one");
  EXPECT_EQ(reader.Refresh(changed), 0);
  EXPECT_FALSE(changed);
  Save(library, L"B", L"two");
  reader.Refresh(changed);
  EXPECT_TRUE(changed);
  EXPECT_EQ(Read(reader, L"B"), L"two");
  library.CommitAll(false);
  reader.Refresh(changed);
  EXPECT_TRUE(changed);
  EXPECT_EQ(Read(reader, L"A"), L"one");
  library.RewriteLibrary(false);
  Save(library, L"C", L"three");
  reader.Refresh(changed);
  EXPECT_EQ(Read(reader, L"B"), L"two");
  EXPECT_EQ(Read(reader, L"C"), L"three");
}

TEST_F(ReaderOfLibraries, VerifiesAndNamesTheDamagedBlockAndItsPlace) {
  {
    Library library(Path(), Library::kOrdinaryMode);
    Save(library, L"A", L"spoilt");
    Save(library, L"B", L"good");
    library.CommitAll(false);
  }
  LibraryReader reader;
  reader.Open(Path(), true);
  std::vector<LibraryReader::Damage> damages;
  auto const whole = reader.Verify(damages);
  EXPECT_TRUE(damages.empty());
  EXPECT_EQ(whole, 5u) << "two blocks, the index, the commit twice";
  auto bytes = Bytes(Path());
  auto const at = bytes.find("spoilt");
  bytes[at] = 'X';
  SetBytes(Path(), bytes);
  reader.Open(Path(), true);
  EXPECT_EQ(reader.Verify(damages), whole - 1);
  ASSERT_EQ(damages.size(), 1u);
  EXPECT_EQ(damages[0].name, L"A");
  EXPECT_LT(damages[0].offset, at);
  EXPECT_GT(damages[0].offset + damages[0].length, at);
  EXPECT_EQ(Read(reader, L"B"), L"good");
}

TEST_F(ReaderOfLibraries, TellsTheFactsOfTheFiles) {
  Library library(Path(), Library::kOrdinaryMode);
  Save(library, L"A", L"one");
  library.UpdateOriginal();
  Save(library, L"B", L"two");
  library.UpdateOriginal();
  LibraryReader reader;
  reader.Open(Path(), true);
  EXPECT_EQ(reader.PublicFacts().commits, 2u);
  EXPECT_EQ(reader.PublicFacts().blocks, 2u);
  EXPECT_EQ(reader.PublicFacts().end, library.CommittedLength());
  EXPECT_TRUE(reader.PrivateFacts().exists);
}

TEST_F(ReaderOfLibraries, TellsTheLastCommitWithoutTheIndexAsWithIt) {
  LibraryReader::CommitFacts facts;
  EXPECT_EQ(LibraryReader::FactsOfLastCommit(Path(), facts), CStreamioLibrary::kLibNotFound);
  EXPECT_EQ(facts.commits, 0u);
  Library library(Path(), Library::kOrdinaryMode);
  for (int commit = 1; commit <= 3; ++commit) {
    Save(library, AString::Format(L"A%d", commit), L"text");
    library.CommitAll(false);
    LibraryReader reader;
    ASSERT_EQ(reader.Open(Path(), false), 0);
    ASSERT_EQ(LibraryReader::FactsOfLastCommit(Path(), facts), 0);
    EXPECT_EQ(facts.commits, reader.PublicFacts().commits);
    EXPECT_EQ(facts.end, reader.PublicFacts().end);
    EXPECT_EQ(facts.length, reader.PublicFacts().length);
  }
  EXPECT_EQ(facts.commits, 3u);
}

TEST_F(ReaderOfLibraries, TextLibrariesArePrintable) {
  Library library(Path(), Library::kOrdinaryMode);
  Save(library, L"A", L"one");
  library.DeleteDefinition(L"A");
  Save(library, L"B", L"two");
  library.CommitAll(false);
  for (char const character : Bytes(Path()))
    ASSERT_TRUE(character == '\n' || (character >= ' ' && character <= '~'));
}

TEST_F(ReaderOfLibraries, ReadsOneFileByItselfWhereverItBelongs) {
  Library library(Path(), Library::kOrdinaryMode);
  Save(library, L"A", L"committed");
  library.CommitAll(false);
  Save(library, L"B", L"saved");
  Crash(Path(), Path(L"b.qsol"));
  LibraryReader reader;
  ASSERT_EQ(reader.OpenAlone(PrivateOf(Path(L"b.qsol"))), 0);
  EXPECT_FALSE(reader.PublicFacts().exists);
  EXPECT_EQ(reader.PrivateFacts().baseCommit, [&] {
    LibraryReader committed;
    committed.Open(Path(), false);
    return committed.PublicFacts().commit;
  }());
  EXPECT_EQ(Read(reader, L"B"), L"saved");
  EXPECT_EQ(Read(reader, L"A"), L"<none>");
  ASSERT_EQ(reader.OpenAlone(Path(L"b.qsol")), 0);
  EXPECT_FALSE(reader.PrivateFacts().exists);
  EXPECT_EQ(Read(reader, L"A"), L"committed");
  EXPECT_EQ(reader.OpenAlone(Path(L"none")), CStreamioLibrary::kLibNotFound);
}

TEST_F(ReaderOfLibraries, AsksForTheLockOfThePrivateFileAndTakesNone) {
  Library library(Path(), Library::kOrdinaryMode);
  Save(library, L"A", L"one");
  EXPECT_EQ(LibraryReader::StateOfPrivateFile(Path()), LibraryReader::PrivateFile::InUse);
  Crash(Path(), Path(L"b.qsol"));
  std::unique_ptr<file::IFile> file;
  ASSERT_TRUE(file::FileSystem().Open(PrivateOf(Path(L"b.qsol")), file::OpenMode::ReadWrite, file).Ok());
  EXPECT_EQ(LibraryReader::StateOfPrivateFile(Path(L"b.qsol")), LibraryReader::PrivateFile::LeftByCrash);
  bool isLocked = true;
  EXPECT_TRUE(file->AskLock(isLocked).Ok());
  EXPECT_FALSE(isLocked);
  ASSERT_TRUE(file->TryLock().Ok());
  EXPECT_EQ(LibraryReader::StateOfPrivateFile(Path(L"b.qsol")), LibraryReader::PrivateFile::InUse);
  EXPECT_TRUE(file->AskLock(isLocked).Ok());
  EXPECT_FALSE(isLocked) << "one's own lock is not another's";
}
