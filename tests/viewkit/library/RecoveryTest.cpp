#include "basekit/file/FileOperations.h"
#include "basekit/io/CToken_iostream.h"
#include "basekit/io/CToken_istream.h"
#include "tests/viewkit/library/LibraryFixture.h"
#include "viewkit/library/LibraryReader.h"

#include <filesystem>
#include <sys/wait.h>
#include <unistd.h>

class LibraryRecovery : public LibraryFixture {
protected:
  using PrivateFile = library::LibraryReader::PrivateFile;

  // A library with A committed, whose writer was killed after it had saved A and B.
  void MakeCrashed(AString const & path) {
    Library library(Path(L"live.qsol"), Library::kOrdinaryMode);
    Save(library, L"A", L"committed");
    library.CommitAll(false);
    Save(library, L"A", L"saved");
    Save(library, L"B", L"new");
    Crash(Path(L"live.qsol"), path);
  }
};

TEST_F(LibraryRecovery, TakesOverWhatACrashLeft) {
  MakeCrashed(Path());
  EXPECT_EQ(library::LibraryReader::StateOfPrivateFile(Path()), PrivateFile::LeftByCrash);
  Library library(Path(), Library::kRecoveryMode);
  EXPECT_TRUE(library.IsRecovered());
  EXPECT_EQ(Load(library, L"A"), L"saved");
  EXPECT_EQ(Load(library, L"B"), L"new");
  EXPECT_TRUE(library.HasUnsavedChanges());
  EXPECT_EQ(library.UpdateOriginal(), 0);
  Save(library, L"C", L"later");
  EXPECT_EQ(library.CommitAll(false), 0);
  Library again(Path(), Library::kOrdinaryMode);
  EXPECT_FALSE(again.IsRecovered());
  EXPECT_EQ(Load(again, L"A"), L"saved");
  EXPECT_EQ(Load(again, L"C"), L"later");
}

TEST_F(LibraryRecovery, TakesOverAPrivateFileWithoutAPublicOne) {
  {
    Library library(Path(L"live.qsol"), Library::kOrdinaryMode);
    Save(library, L"A", L"saved");
    Crash(Path(L"live.qsol"), Path());
  }
  Library library(Path(), Library::kRecoveryMode);
  EXPECT_TRUE(library.IsRecovered());
  EXPECT_EQ(Load(library, L"A"), L"saved");
}

TEST_F(LibraryRecovery, RecoversNothingWhereThereIsNoPrivateFile) {
  Library library(Path(), Library::kRecoveryMode);
  EXPECT_FALSE(library.IsRecovered());
  EXPECT_EQ(Save(library, L"A", L"one"), 0);
}

// Invariant 8.
TEST_F(LibraryRecovery, SetsACrashedPrivateFileAsideInTheOrdinaryModeOnceItWrites) {
  MakeCrashed(Path());
  auto const left = Bytes(PrivateOf(Path()));
  Library library(Path(), Library::kOrdinaryMode);
  EXPECT_EQ(Load(library, L"A"), L"committed");
  EXPECT_EQ(Bytes(PrivateOf(Path())), left) << "attaching and reading change nothing";
  EXPECT_TRUE(library.WasSetAside().empty());
  EXPECT_EQ(library.AcquireForWriting(), 0);
  ASSERT_FALSE(library.WasSetAside().empty());
  EXPECT_EQ(Bytes(library.WasSetAside()), left);
  EXPECT_EQ(Save(library, L"A", L"again"), 0);
}

TEST_F(LibraryRecovery, LeavesThePrivateFileOfAnotherGenerationAlone) {
  {
    Library other(Path(L"other.qsol"), Library::kOrdinaryMode);
    Save(other, L"A", L"other");
    other.CommitAll(false);
    Save(other, L"A", L"other, unsaved");
  }
  {
    Library library(Path(), Library::kOrdinaryMode);
    Save(library, L"A", L"mine");
    library.CommitAll(false);
  }
  LFN_Copy(PrivateOf(Path(L"other.qsol")), PrivateOf(Path()), kOverwrite);
  EXPECT_EQ(library::LibraryReader::StateOfPrivateFile(Path()), PrivateFile::OtherGeneration);
  Library recovering(Path(), Library::kRecoveryMode);
  EXPECT_FALSE(recovering.IsRecovered());
  EXPECT_EQ(Load(recovering, L"A"), L"mine");
  EXPECT_EQ(Save(recovering, L"B", L"two"), 0);
  EXPECT_TRUE(LFN_Exists(recovering.WasSetAside()));
}

TEST_F(LibraryRecovery, SetsAForeignPrivateFileAside) {
  SetBytes(PrivateOf(Path()), "This is a letter, which is longer than the header of a library by far, and no library.");
  Library library(Path(), Library::kRecoveryMode);
  EXPECT_FALSE(library.IsRecovered());
  EXPECT_EQ(Save(library, L"A", L"one"), 0);
  EXPECT_TRUE(LFN_Exists(library.WasSetAside()));
}

TEST_F(LibraryRecovery, RefusesAForeignPublicFileAndNeverWritesIt) {
  std::string const letter(200, 'x');
  SetBytes(Path(), letter);
  Library library(Path(), Library::kOrdinaryMode);
  EXPECT_EQ(library.GetFileStats().status, static_cast<unsigned>(Library::kLibForeignFile));
  EXPECT_NE(Save(library, L"A", L"one"), 0);
  EXPECT_NE(library.CommitAll(false), 0);
  EXPECT_NE(library.RewriteLibrary(false), 0);
  EXPECT_EQ(Bytes(Path()), letter);
}

// Invariant 6.
TEST_F(LibraryRecovery, KnowsWhatWasCommittedWhenTheCrashCameBeforeThePrivateFileWasDropped) {
  {
    Library library(Path(L"live.qsol"), Library::kOrdinaryMode);
    Save(library, L"A", L"one");
    library.UpdateOriginal();
    Crash(Path(L"live.qsol"), Path());
  }
  Library library(Path(), Library::kRecoveryMode);
  EXPECT_TRUE(library.IsRecovered());
  EXPECT_FALSE(library.HasUnsavedChanges());
  EXPECT_EQ(Load(library, L"A"), L"one");
}

// Invariant 3.
TEST_F(LibraryRecovery, FindsABatchWholeOrNotAtAll) {
  Library live(Path(L"live.qsol"), Library::kOrdinaryMode);
  Save(live, L"A", L"old");
  auto const before = Bytes(PrivateOf(Path(L"live.qsol"))).size();
  io::CBlock batch = Batch({{L"A", L"new"}, {L"B", L"new"}, {L"C", L"new"}});
  live.DeleteBlocks({L"A"});
  live.SaveBlocks(batch);
  auto const whole = Bytes(PrivateOf(Path(L"live.qsol")));
  for (std::size_t size = before; size <= whole.size(); ++size) {
    SetBytes(PrivateOf(Path()), whole.substr(0, size));
    library::LibraryReader reader;
    ASSERT_EQ(reader.Open(Path(), true), 0);
    ASSERT_EQ(reader.List().size(), size == whole.size() ? 3u : 1u) << size;
  }
}

TEST_F(LibraryRecovery, TakesTheFilesFromAnAbandonedLibraryOfTheSameProcess) {
  auto abandoned = std::make_unique<Library>(Path(), Library::kOrdinaryMode);
  Save(*abandoned, L"A", L"one");
  Library library(Path(), Library::kRecoveryMode);
  EXPECT_TRUE(library.IsRecovered());
  EXPECT_EQ(Load(library, L"A"), L"one");
  EXPECT_EQ(Save(*abandoned, L"A", L"lost"), Library::kLibLocked);
  abandoned.reset();
  EXPECT_EQ(Save(library, L"B", L"two"), 0);
  EXPECT_EQ(library.CommitAll(false), 0);
}

// Invariant 9.
TEST_F(LibraryRecovery, KeepsASecondWriterOutButLetsItRead) {
  Library first(Path(), Library::kOrdinaryMode);
  Save(first, L"A", L"one");
  first.UpdateOriginal();
  Save(first, L"A", L"two");
  Library second(Path(), Library::kOrdinaryMode);
  EXPECT_EQ(Load(second, L"A"), L"one") << "the committed state";
  EXPECT_EQ(Save(second, L"B", L"x"), Library::kLibLocked);
  EXPECT_EQ(second.CommitAll(false), 0) << "there is nothing to commit";
  EXPECT_EQ(library::LibraryReader::StateOfPrivateFile(Path()), PrivateFile::InUse);
  first.CommitAll(false);
  EXPECT_EQ(Save(second, L"B", L"x"), Library::kLibLocked) << "the public file stays locked";
}

TEST_F(LibraryRecovery, SeesWhatAnotherLibraryCommittedBeforeItsOwnFirstWrite) {
  Library second(Path(), Library::kOrdinaryMode);
  {
    Library first(Path(), Library::kOrdinaryMode);
    Save(first, L"A", L"one");
    first.CommitAll(false);
  }
  EXPECT_EQ(Save(second, L"B", L"two"), 0);
  EXPECT_EQ(Load(second, L"A"), L"one");
  EXPECT_EQ(second.CommitAll(false), 0);
  Library third(Path(), Library::kOrdinaryMode);
  EXPECT_EQ(Load(third, L"A"), L"one");
  EXPECT_EQ(Load(third, L"B"), L"two");
}

TEST_F(LibraryRecovery, LosesItsLocksWithItsProcess) {
  pid_t const child = ::fork();
  if (child == 0) {
    auto * const library = new Library(Path(), Library::kOrdinaryMode);
    bool const saved = Save(*library, L"A", L"from the child") == 0 && library->UpdateOriginal() == 0 &&
                       Save(*library, L"B", L"not committed") == 0;
    ::_exit(saved ? 0 : 1);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  ASSERT_EQ(status, 0);
  Library library(Path(), Library::kRecoveryMode);
  EXPECT_TRUE(library.IsRecovered());
  EXPECT_EQ(Load(library, L"B"), L"not committed");
  EXPECT_EQ(library.CommitAll(false), 0);
}

TEST_F(LibraryRecovery, IsLockedOutByAnotherProcess) {
  int ready[2];
  int done[2];
  ASSERT_EQ(::pipe(ready) | ::pipe(done), 0);
  pid_t const child = ::fork();
  if (child == 0) {
    ::close(done[1]);
    auto * const library = new Library(Path(), Library::kOrdinaryMode);
    Save(*library, L"A", L"theirs");
    library->UpdateOriginal();
    char byte = 'x';
    static_cast<void>(::write(ready[1], &byte, 1) + ::read(done[0], &byte, 1));
    ::_exit(0);
  }
  char byte = 0;
  ASSERT_EQ(::read(ready[0], &byte, 1), 1);
  {
    Library library(Path(), Library::kRecoveryMode);
    EXPECT_FALSE(library.IsRecovered());
    EXPECT_EQ(Load(library, L"A"), L"theirs");
    EXPECT_EQ(Save(library, L"B", L"x"), Library::kLibLocked);
    EXPECT_FALSE(library.LastError().empty());
  }
  ::close(done[1]);
  int status = 0;
  ::waitpid(child, &status, 0);
  for (int const end : {ready[0], ready[1], done[0]})
    ::close(end);
}

TEST_F(LibraryRecovery, LetsTokenStreamsFindBlocksInBothFiles) {
  MakeCrashed(Path());
  io::CToken_istream priv(LongFileName(PrivateOf(Path())), 1);
  priv.BuildIndex(1);
  EXPECT_TRUE(priv.BlockSeek(L"b"));
  EXPECT_FALSE(priv.BlockSeek(L"C"));
  io::CToken_iostream pub(LongFileName(Path()), 0);
  pub.BuildIndex(9);
  ASSERT_TRUE(pub.BlockSeek(L"A"));
  EXPECT_TRUE(pub.AtBeginBlock(L"A"));
  io::CBlock read(L"A");
  pub >> read;
  EXPECT_FALSE(pub.fail());
  EXPECT_EQ(read.Size(), 1);
  EXPECT_FALSE(pub.BlockSeek(L"B"));
}

TEST_F(LibraryRecovery, LetsTokenStreamsReadATornPrivateFile) {
  MakeCrashed(Path());
  auto const whole = Bytes(PrivateOf(Path()));
  for (std::size_t size = 0; size <= whole.size(); ++size) {
    SetBytes(PrivateOf(Path()), whole.substr(0, size));
    io::CToken_istream in(LongFileName(PrivateOf(Path())), 1);
    in.BuildIndex(1);
    bool const found = in.BlockSeek(L"B");
    ASSERT_EQ(found, size == whole.size()) << size;
  }
}

TEST_F(LibraryRecovery, ScansLittleOfALongPrivateFile) {
  auto const live = Path(L"live.qsol");
  AString const large(std::wstring(100000, L'x'));
  Library library(live, Library::kOrdinaryMode);
  for (int i = 0; i < 200; ++i)
    ASSERT_EQ(Save(library, AString::Format(L"Large%d", i), large), 0);
  Crash(live, Path());
  Library recovered(Path(), Library::kRecoveryMode);
  EXPECT_TRUE(recovered.IsRecovered());
  EXPECT_EQ(recovered.GetFileStats().blocks, 200u);
  EXPECT_EQ(Load(recovered, L"Large0"), large);
  EXPECT_EQ(Load(recovered, L"Large199"), large);
}
