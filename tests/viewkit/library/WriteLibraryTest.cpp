#include "basekit/file/FileOperations.h"
#include "tests/viewkit/library/LibraryFixture.h"

class WriteLibrary : public LibraryFixture {};

TEST_F(WriteLibrary, SavesAndLoadsABlock) {
  Library library(Path(), Library::kOrdinaryMode);
  EXPECT_EQ(Save(library, L"A", L"one"), 0);
  EXPECT_EQ(Load(library, L"A"), L"one");
}

TEST_F(WriteLibrary, ReplacesABlockOfTheSameName) {
  Library library(Path(), Library::kOrdinaryMode);
  Save(library, L"A", L"one");
  Save(library, L"A", L"two");
  EXPECT_EQ(Load(library, L"A"), L"two");
  EXPECT_EQ(library.GetFileStats().blocks, 1u);
  io::CBlock all;
  EXPECT_EQ(library.LoadBlocks(all, false), 0);
  EXPECT_EQ(all.Size(), 1);
}

TEST_F(WriteLibrary, LeavesABlockAsItWasWhenTheNameIsNotThere) {
  Library library(Path(), Library::kOrdinaryMode);
  io::CBlock block = Block(L"A", L"mine");
  EXPECT_NE(library.LoadDefinition(block), 0);
  EXPECT_EQ(block.Size(), 1);
  EXPECT_EQ(block.Name(), L"A");
}

TEST_F(WriteLibrary, DeletesNothingForAnEmptyList) {
  Library unattached;
  EXPECT_EQ(unattached.DeleteBlocks({}), 0);
  Library library(Path(), Library::kOrdinaryMode);
  EXPECT_EQ(library.DeleteBlocks({}), 0);
  EXPECT_FALSE(LFN_Exists(PrivateOf(Path())));
}

TEST_F(WriteLibrary, FailsEveryOperationWhileUnattached) {
  Library library;
  EXPECT_NE(Save(library, L"A", L"one"), 0);
  EXPECT_EQ(Load(library, L"A"), L"<failed>");
  EXPECT_NE(library.CommitAll(true), 0);
  EXPECT_NE(library.UpdateOriginal(), 0);
  EXPECT_NE(library.RewriteLibrary(true), 0);
  EXPECT_NE(library.GetFileStats().status, 0u);
  std::list<AString> names;
  EXPECT_NE(library.PrivIndexKeyList(names), 0);
  EXPECT_FALSE(library.LastError().empty());
}

TEST_F(WriteLibrary, LeavesThePublicFileAloneUntilACommit) {
  Library library(Path(), Library::kOrdinaryMode);
  Save(library, L"A", L"one");
  EXPECT_FALSE(LFN_Exists(Path()));
  EXPECT_TRUE(LFN_Exists(PrivateOf(Path())));
  EXPECT_TRUE(library.HasUnsavedChanges());
  EXPECT_EQ(library.CommitAll(false), 0);
  EXPECT_TRUE(LFN_Exists(Path()));
  EXPECT_FALSE(LFN_Exists(PrivateOf(Path())));
  EXPECT_FALSE(library.HasUnsavedChanges());
}

TEST_F(WriteLibrary, KeepsCommittedBlocksOverARestart) {
  {
    Library library(Path(), Library::kOrdinaryMode);
    Save(library, L"A", L"one");
    library.CommitAll(false);
    Save(library, L"B", L"two");
    Save(library, L"A", L"changed");
    library.CommitAll(false);
  }
  Library library(Path(), Library::kOrdinaryMode);
  EXPECT_EQ(Load(library, L"A"), L"changed");
  EXPECT_EQ(Load(library, L"B"), L"two");
}

TEST_F(WriteLibrary, GoesOnWithAPrivateFileThatWasClosedInOrder) {
  {
    Library library(Path(), Library::kOrdinaryMode);
    Save(library, L"A", L"one");
    library.CommitAll(false);
    Save(library, L"A", L"unsaved");
  }
  ASSERT_TRUE(LFN_Exists(PrivateOf(Path())));
  Library library(Path(), Library::kOrdinaryMode);
  EXPECT_EQ(Load(library, L"A"), L"unsaved");
  EXPECT_TRUE(library.HasUnsavedChanges());
  EXPECT_EQ(Save(library, L"B", L"more"), 0);
  EXPECT_EQ(library.CommitAll(false), 0);
  EXPECT_TRUE(library.WasSetAside().empty());
  Library again(Path(), Library::kOrdinaryMode);
  EXPECT_EQ(Load(again, L"A"), L"unsaved");
}

TEST_F(WriteLibrary, ShowsThePublicStateAfterAReset) {
  Library library(Path(), Library::kOrdinaryMode);
  Save(library, L"A", L"one");
  library.CommitAll(false);
  Save(library, L"A", L"two");
  library.DeleteBlocks({L"A"});
  library.ResetPrivateLib();
  EXPECT_EQ(Load(library, L"A"), L"one");
  EXPECT_FALSE(library.HasUnsavedChanges());
  EXPECT_EQ(Save(library, L"A", L"three"), 0);
}

TEST_F(WriteLibrary, ListsTheNamesInThePrivateFile) {
  Library library(Path(), Library::kOrdinaryMode);
  Save(library, L"A", L"one");
  library.CommitAll(false);
  Save(library, L"C", L"two");
  Save(library, L"B", L"three");
  library.DeleteDefinition(L"A");
  std::list<AString> names;
  EXPECT_EQ(library.PrivIndexKeyList(names), 0);
  EXPECT_EQ(names, (std::list<AString>{L"C", L"B"}));
}

TEST_F(WriteLibrary, KeepsThePrivateFileInUseAfterUpdateOriginal) {
  Library library(Path(), Library::kOrdinaryMode);
  Save(library, L"A", L"one");
  EXPECT_EQ(library.UpdateOriginal(), 0);
  EXPECT_TRUE(LFN_Exists(PrivateOf(Path())));
  EXPECT_FALSE(library.HasUnsavedChanges());
  std::list<AString> names;
  library.PrivIndexKeyList(names);
  EXPECT_EQ(names.size(), 1u);
  library.CommitAll(false);
  names.clear();
  library.PrivIndexKeyList(names);
  EXPECT_TRUE(names.empty());
}

TEST_F(WriteLibrary, CarriesDeletionsIntoThePublicFile) {
  Library library(Path(), Library::kOrdinaryMode);
  Save(library, L"A", L"one");
  Save(library, L"B", L"two");
  library.CommitAll(false);
  EXPECT_EQ(library.DeleteBlocks({L"A", L"not there"}), 0);
  EXPECT_EQ(Load(library, L"A"), L"<none>");
  EXPECT_EQ(library.GetFileStats().blocks, 1u);
  EXPECT_EQ(library.CommitAll(false), 0);
  Library again(Path(), Library::kOrdinaryMode);
  EXPECT_EQ(Load(again, L"A"), L"<none>");
  EXPECT_EQ(Load(again, L"B"), L"two");
}

TEST_F(WriteLibrary, FindsABlockUnderItsNameInAnyCase) {
  Library library(Path(), Library::kOrdinaryMode);
  Save(library, L"Alpha", L"one");
  EXPECT_EQ(Load(library, L"ALPHA"), L"one");
  Save(library, L"aLPHA", L"two");
  EXPECT_EQ(library.GetFileStats().blocks, 1u);
}

TEST_F(WriteLibrary, HoldsAnyUnicodeNameAndText) {
  AString const name = L"\x00e4\x4e2d\U0001F600 \"quoted\"\nline\ttab\\ {}#=";
  {
    Library library(Path(), Library::kOrdinaryMode);
    EXPECT_EQ(Save(library, name, name), 0);
    library.CommitAll(false);
  }
  Library library(Path(), Library::kOrdinaryMode);
  EXPECT_EQ(Load(library, name), name);
}

TEST_F(WriteLibrary, RefusesNamesThatNoFileCanHold) {
  Library library(Path(), Library::kOrdinaryMode);
  EXPECT_EQ(Save(library, L"", L"one"), Library::kLibBadName);
  wchar_t const half[] = {0xD800, 0};
  EXPECT_EQ(Save(library, half, L"one"), Library::kLibBadName);
}

TEST_F(WriteLibrary, StoresABatchUnderTheNamesOfItsChildren) {
  Library library(Path(), Library::kOrdinaryMode);
  io::CBlock batch = Batch({{L"A", L"one"}, {L"B", L"two"}});
  EXPECT_EQ(library.SaveBlocks(batch), 0);
  EXPECT_EQ(Load(library, L"A"), L"one");
  EXPECT_EQ(Load(library, L"B"), L"two");
}

TEST_F(WriteLibrary, WritesBothForms) {
  Library library(Path(), Library::kOrdinaryMode);
  EXPECT_FALSE(library.IsBinaryModeFile());
  Save(library, L"T", L"text");
  library.SetBinaryMode(true);
  EXPECT_TRUE(library.IsBinaryModeFile());
  Save(library, L"B", L"binary");
  EXPECT_EQ(library.RewriteLibrary(true), 0);
  Library again(Path(), Library::kOrdinaryMode);
  EXPECT_TRUE(again.IsBinaryModeFile());
  EXPECT_EQ(Load(again, L"T"), L"text");
  EXPECT_EQ(Load(again, L"B"), L"binary");
}

TEST_F(WriteLibrary, DropsDeadSpaceByARewrite) {
  Library library(Path(), Library::kOrdinaryMode);
  for (int i = 0; i < 50; ++i) {
    Save(library, L"A", AString::Format(L"%d", i));
    library.UpdateOriginal();
  }
  auto const before = library.CommittedLength();
  EXPECT_EQ(library.RewriteLibrary(false), 0);
  EXPECT_LT(library.CommittedLength(), before / 10);
  EXPECT_EQ(Load(library, L"A"), L"49");
  EXPECT_EQ(Save(library, L"B", L"after"), 0);
  EXPECT_EQ(library.CommitAll(true), 0);
}

TEST_F(WriteLibrary, RemovesItsFiles) {
  Library library(Path(), Library::kOrdinaryMode);
  Save(library, L"A", L"one");
  library.UpdateOriginal();
  Save(library, L"B", L"two");
  library.DeleteLibrary();
  EXPECT_FALSE(LFN_Exists(Path()));
  EXPECT_FALSE(LFN_Exists(PrivateOf(Path())));
  EXPECT_EQ(Load(library, L"A"), L"<none>");
  EXPECT_EQ(Save(library, L"A", L"anew"), 0);
}

TEST_F(WriteLibrary, GoesOnAtTheNewPathAfterACopy) {
  Library library(Path(), Library::kOrdinaryMode);
  Save(library, L"A", L"committed");
  library.CommitAll(false);
  Save(library, L"A", L"unsaved");
  ASSERT_TRUE(library.CopyToNewLibPath(Path(L"b.qsol")));
  EXPECT_EQ(Load(library, L"A"), L"unsaved");
  Save(library, L"B", L"only there");
  EXPECT_EQ(library.CommitAll(false), 0);
  Library old(Path(), Library::kOrdinaryMode);
  EXPECT_EQ(Load(old, L"A"), L"unsaved") << "the old library keeps its own unsaved work";
  EXPECT_EQ(Load(old, L"B"), L"<none>");
  old.ResetPrivateLib();
  EXPECT_EQ(Load(old, L"A"), L"committed");
  Library copy(Path(L"b.qsol"), Library::kOrdinaryMode);
  EXPECT_EQ(Load(copy, L"A"), L"unsaved");
}

TEST_F(WriteLibrary, CopiesOverALibraryAndSetsItsPrivateFileAside) {
  {
    Library other(Path(L"b.qsol"), Library::kOrdinaryMode);
    Save(other, L"Old", L"one");
    other.CommitAll(false);
    Save(other, L"Old", L"two");
  }
  Library library(Path(), Library::kOrdinaryMode);
  Save(library, L"A", L"mine");
  ASSERT_TRUE(library.CopyToNewLibPath(Path(L"b.qsol")));
  EXPECT_EQ(Load(library, L"Old"), L"<none>");
  EXPECT_EQ(Load(library, L"A"), L"mine");
  EXPECT_TRUE(LFN_Exists(library.WasSetAside()));
}

TEST_F(WriteLibrary, CopiesToItsOwnPathWithoutDoingAnything) {
  Library library(Path(), Library::kOrdinaryMode);
  Save(library, L"A", L"one");
  EXPECT_TRUE(library.CopyToNewLibPath(Path()));
  EXPECT_EQ(Load(library, L"A"), L"one");
  EXPECT_EQ(library.GetFileStats().status, 0u);
}

TEST_F(WriteLibrary, LoadsACachedBlockAndForgetsItWhenItChanges) {
  Library library(Path(), Library::kOrdinaryMode);
  Save(library, L"A", L"one");
  library.CacheBlock(L"A");
  EXPECT_EQ(Load(library, L"A"), L"one");
  EXPECT_EQ(Load(library, L"A"), L"one");
  Save(library, L"A", L"two");
  EXPECT_EQ(Load(library, L"A"), L"two");
  library.DeleteDefinition(L"A");
  EXPECT_EQ(Load(library, L"A"), L"<none>");
}

TEST_F(WriteLibrary, GoesBackToAnEarlierCommit) {
  Library library(Path(), Library::kOrdinaryMode);
  Save(library, L"A", L"one");
  library.CommitAll(false);
  auto const length = library.CommittedLength();
  Save(library, L"A", L"two");
  Save(library, L"B", L"new");
  library.UpdateOriginal();
  EXPECT_FALSE(library.HasUnsavedChanges());
  EXPECT_EQ(library.RevertCommit(length), 0);
  EXPECT_TRUE(library.HasUnsavedChanges());
  EXPECT_EQ(Load(library, L"A"), L"two");
  library.ResetPrivateLib();
  EXPECT_EQ(Load(library, L"A"), L"one");
  EXPECT_EQ(Load(library, L"B"), L"<none>");
  EXPECT_NE(library.RevertCommit(length - 1), 0);
}

TEST_F(WriteLibrary, HoldsTenThousandBlocks) {
  {
    Library library(Path(), Library::kOrdinaryMode);
    for (int i = 0; i < 10000; ++i)
      ASSERT_EQ(Save(library, AString::Format(L"SolutionBlock%d", i), AString::Format(L"%d", i)), 0);
    EXPECT_EQ(library.CommitAll(false), 0);
    for (int i = 0; i < 100; ++i) {
      Save(library, AString::Format(L"SolutionBlock%d", i), L"changed");
      ASSERT_EQ(library.UpdateOriginal(), 0);
    }
  }
  Library library(Path(), Library::kOrdinaryMode);
  EXPECT_EQ(library.GetFileStats().blocks, 10000u);
  EXPECT_EQ(Load(library, L"SolutionBlock99"), L"changed");
  EXPECT_EQ(Load(library, L"SolutionBlock9999"), L"9999");
}
