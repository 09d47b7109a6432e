#include "basekit/file/FileOperations.h"
#include "tests/support/FaultyFileSystem.h"
#include "tests/viewkit/library/LibraryFixture.h"

class InPlaceLibrary : public LibraryFixture {
protected:
  static std::vector<AString> Names(CStreamioLibPrivate & library) {
    io::CBlock all;
    EXPECT_EQ(library.LoadBlocks(all, false), 0);
    std::vector<AString> names;
    for (auto const & child : all)
      names.push_back(child.Item()->Name());
    return names;
  }
};

TEST_F(InPlaceLibrary, FailsWhileUnattached) {
  CStreamioLibPrivate library;
  EXPECT_NE(Save(library, L"A", L"one"), 0);
  EXPECT_NE(library.ClearLibrary(), 0);
  EXPECT_NE(library.GetFileStats().status, 0u);
  EXPECT_EQ(library.DeleteBlocks({}), 0);
}

TEST_F(InPlaceLibrary, MakesTheFileWithTheFirstSave) {
  CStreamioLibPrivate library;
  library.SetLibPath(Path());
  EXPECT_FALSE(LFN_Exists(Path()));
  EXPECT_EQ(Save(library, L"A", L"one"), 0);
  EXPECT_TRUE(LFN_Exists(Path()));
}

TEST_F(InPlaceLibrary, ShowsEachSaveAtOnceInThePublicFile) {
  CStreamioLibPrivate library;
  library.SetLibPath(Path());
  library.SetPrecision(16);
  Save(library, L"A", L"one");
  io::CBlock batch = Batch({{L"B", L"two"}, {L"C", L"three"}});
  EXPECT_EQ(library.SaveBlocks(batch), 0);
  Library reader(Path(), Library::kOrdinaryMode);
  EXPECT_EQ(Load(reader, L"A"), L"one");
  EXPECT_EQ(Load(reader, L"C"), L"three");
}

TEST_F(InPlaceLibrary, LoadsAllBlocksInTheOrderOfTheFile) {
  CStreamioLibPrivate library;
  library.SetLibPath(Path());
  for (auto const * const name : {L"Z", L"M", L"A"})
    Save(library, name, name);
  EXPECT_EQ(Names(library), (std::vector<AString>{L"Z", L"M", L"A"}));
  io::CBlock holder(L"Holder");
  holder << Block(L"First", L"stays");
  library.LoadBlocks(holder, false);
  EXPECT_EQ(holder.Size(), 4);
}

TEST_F(InPlaceLibrary, OpensACopyOfACommittedLibraryAndCutsItDown) {
  {
    Library library(Path(L"design.qsol"), Library::kOrdinaryMode);
    for (auto const * const name : {L"Keep", L"Drop", L"Other"})
      Save(library, name, name);
    library.CommitAll(false);
    ASSERT_TRUE(LFN_Copy(Path(L"design.qsol"), Path(), kOverwrite));
  }
  {
    CStreamioLibPrivate copy;
    copy.SetLibPath(Path());
    io::CBlock all;
    ASSERT_EQ(copy.LoadBlocks(all, false), 0);
    io::CBlock keep;
    for (auto const & child : all)
      if (child.Item()->Name() != L"Drop")
        keep << child;
    EXPECT_EQ(copy.ClearLibrary(), 0);
    EXPECT_TRUE(Names(copy).empty());
    EXPECT_EQ(copy.SaveBlocks(keep), 0);
    EXPECT_EQ(Save(copy, L"Other", L"replaced"), 0);
  }
  Library reader(Path(), Library::kOrdinaryMode);
  EXPECT_EQ(Load(reader, L"Keep"), L"Keep");
  EXPECT_EQ(Load(reader, L"Drop"), L"<none>");
  EXPECT_EQ(Load(reader, L"Other"), L"replaced");
}

TEST_F(InPlaceLibrary, ClearingMakesAnEmptyFile) {
  CStreamioLibPrivate library;
  library.SetLibPath(Path());
  EXPECT_EQ(library.ClearLibrary(), 0);
  EXPECT_TRUE(LFN_Exists(Path()));
  EXPECT_EQ(library.GetFileStats().blocks, 0u);
  EXPECT_EQ(library.GetFileStats().status, 0u);
}

TEST_F(InPlaceLibrary, RewritesAndConverts) {
  CStreamioLibPrivate library;
  library.SetLibPath(Path());
  for (int i = 0; i < 30; ++i)
    Save(library, L"A", AString::Format(L"%d", i));
  auto const before = library.GetFileStats().fileBytes;
  library.SetBinaryMode(true);
  EXPECT_EQ(library.RewriteLibrary(true), 0);
  EXPECT_LT(library.GetFileStats().fileBytes, before / 5);
  CStreamioLibPrivate again;
  again.SetLibPath(Path());
  EXPECT_TRUE(again.IsBinaryModeFile());
  EXPECT_EQ(Load(again, L"A"), L"29");
}

TEST_F(InPlaceLibrary, LeavesOutADamagedBlockAndTellsOfIt) {
  {
    CStreamioLibPrivate library;
    library.SetLibPath(Path());
    for (auto const * const name : {L"first", L"second", L"third"})
      Save(library, name, AString(L"value-") + name);
  }
  auto bytes = Bytes(Path());
  bytes[bytes.find("value-second")] = 'V';
  SetBytes(Path(), bytes);
  CStreamioLibPrivate library;
  library.SetLibPath(Path());
  io::CBlock all;
  EXPECT_EQ(library.LoadBlocks(all, false), CStreamioLibrary::kLibDamaged);
  EXPECT_EQ(all.Size(), 2);
  io::CBlock begin;
  EXPECT_NE(library.LoadBlocks(begin, true), 0);
  EXPECT_EQ(begin.Size(), 1);
}

TEST_F(InPlaceLibrary, GoesOnAfterASaveThatFailed) {
  for (int n = 1; n < 6; ++n) {
    auto const path = Path(AString::Format(L"%d.qsol", n).c_str());
    support::FaultyFileSystem faulty;
    CStreamioLibPrivate library;
    library.SetLibPath(path);
    faulty.FailAt(n, true);
    bool const first = Save(library, L"A", L"one") == 0;
    bool const second = Save(library, L"B", L"two") == 0;
    faulty.FailAt(0, false);
    EXPECT_EQ(Load(library, L"A"), first ? L"one" : L"<none>");
    EXPECT_EQ(Load(library, L"B"), second ? L"two" : L"<none>");
    EXPECT_EQ(Save(library, L"C", L"three"), 0) << n << Narrow(library.LastError());
    CStreamioLibPrivate again;
    again.SetLibPath(path);
    EXPECT_EQ(Load(again, L"C"), L"three");
  }
}

TEST_F(InPlaceLibrary, RefusesAForeignFile) {
  SetBytes(Path(), std::string(100, 'x'));
  CStreamioLibPrivate library;
  library.SetLibPath(Path());
  EXPECT_EQ(Save(library, L"A", L"one"), CStreamioLibrary::kLibForeignFile);
  EXPECT_EQ(library.ClearLibrary(), CStreamioLibrary::kLibForeignFile);
  EXPECT_EQ(Bytes(Path()), std::string(100, 'x'));
}
