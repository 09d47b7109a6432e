// Loading, saving and deleting blocks by their real names.

#include "tests/solutionmanager/support/StoreTest.h"
#include "tests/support/FaultyFileSystem.h"

class BlockAccessTest : public support::StoreTest {
protected:
  void SaveVersions(std::vector<long> const & versions) {
    for (long const version : versions)
      ASSERT_EQ(Save(DataName(version), version), kOk);
  }
  static std::vector<AString> ChildNames(io::CBlock const & block) {
    std::vector<AString> names;
    for (auto const & child : block)
      names.push_back(child->Name());
    return names;
  }
};

TEST_F(BlockAccessTest, ALoadOfOneBlockLoadsNoMapOnPurpose) {
  Commit({1});
  Reopen();
  EXPECT_EQ(ContentOf(DataName(1)), -1);
  EXPECT_EQ(Names().size(), 1u);
  EXPECT_EQ(ContentOf(DataName(1)), 1);
}

TEST_F(BlockAccessTest, ALoadGivesTheBlockItsRealNameBackWhetherItIsThereOrNot) {
  SaveVersions({1});
  for (AString const & name : {DataName(1), DataName(2)}) {
    io::CBlock block(name);
    Files().LoadDefinition(block);
    EXPECT_EQ(block.Name(), name);
  }
}

TEST_F(BlockAccessTest, ASavedBlockBearsItsInternalNameInTheLibrary) {
  SaveVersions({7});
  std::list<AString> names;
  ASSERT_EQ(Files().GetLibraryForDirectAccess().PrivIndexKeyList(names), kOk);
  EXPECT_EQ(names, (std::list<AString>{L"SolutionBlock1", L"BlockMapName"}));
}

TEST_F(BlockAccessTest, AFailedWriteOfTheLibraryKeepsTheNewEntryAndGivesTheNameBack) {
  support::FaultyFileSystem disk;
  SaveVersions({1});
  disk.FailAt(1, true);
  io::CBlock block = Block(DataName(2), 2);
  EXPECT_NE(Files().SaveDefinition(block), kOk);
  disk.FailAt(0, false);
  EXPECT_EQ(block.Name(), DataName(2));
  EXPECT_EQ(Files().GetInternalBlockName(DataName(2)), AString(L"SolutionBlock2"));
  EXPECT_EQ(Files().WriteRealToInternalBlockNameMap(), kOk);
  EXPECT_EQ(NamesInLibrary(), (std::vector<AString>{DataName(1), DataName(2)}));
}

TEST_F(BlockAccessTest, ABlockThatHasAnEntryIsSavedWithoutAWriteOfTheMap) {
  SaveVersions({1});
  // An erasure that waits for a change shows whether the map goes out.
  SaveVersions({2});
  ASSERT_EQ(Files().DeleteBlock(DataName(2)), kOk);
  ASSERT_EQ(Save(DataName(1), 10), kOk);
  EXPECT_EQ(NamesInLibrary().size(), 2u);
}

TEST_F(BlockAccessTest, ABlockNamedLikeAnInternalNameKeepsWhatWasSavedLast) {
  for (long const content : {10, 20, 30}) {
    ASSERT_EQ(Save(L"SolutionBlock1", content), kOk);
    EXPECT_EQ(ContentOf(L"SolutionBlock1"), content);
  }
  EXPECT_EQ(Names(), std::vector<AString>{L"SolutionBlock1"});
  EXPECT_NE(Files().GetInternalBlockName(L"SolutionBlock1"), AString(L"SolutionBlock1"));
}

TEST_F(BlockAccessTest, BlocksOfAPatternAreAppendedInMapOrder) {
  SaveVersions({5, 30, 4});
  ASSERT_EQ(Save(Key(2, L"a=1", 2, 1).Pack(), 9), kOk);
  io::CBlock loaded;
  loaded << Block(L"there before", 0);
  ASSERT_EQ(Files().LoadBlocks(Key(1, L"NotSet", -1, -1), loaded), kOk);
  EXPECT_EQ(ChildNames(loaded), (std::vector<AString>{L"there before", DataName(30), DataName(4), DataName(5)}));
  long content = 0;
  *loaded.FindBlock(DataName(30)) >> io::named(L"N", content);
  EXPECT_EQ(content, 30);
}

TEST_F(BlockAccessTest, ABlockOfAPatternThatCannotBeLoadedIsAppendedEmptyOnPurpose) {
  SaveVersions({1, 2});
  ASSERT_EQ(Files().GetLibraryForDirectAccess().DeleteDefinition(L"SolutionBlock1"), kOk);
  io::CBlock loaded;
  EXPECT_EQ(Files().LoadBlocks(Key(), loaded), kOk);
  EXPECT_EQ(ChildNames(loaded), (std::vector<AString>{DataName(1), DataName(2)}));
  EXPECT_TRUE(loaded.FindBlock(DataName(1))->Empty());
}

TEST_F(BlockAccessTest, ALoadByPatternWithoutAMapReturnsTheFailureOfTheMap) {
  io::CBlock loaded;
  EXPECT_EQ(Files().LoadBlocks(Key(), loaded), CStreamioLibrary::kLibNotFound);
  EXPECT_EQ(Files().DeleteBlocks(Key()), CStreamioLibrary::kLibNotFound);
  std::list<AString> names;
  EXPECT_EQ(Files().GetKeyList(Key(), names), CStreamioLibrary::kLibNotFound);
  EXPECT_EQ(Files().GetSolutionKeyList(Key(), names), CStreamioLibrary::kLibNotFound);
  EXPECT_EQ(Files().IndexKeyList(names, false), CStreamioLibrary::kLibNotFound);
  EXPECT_TRUE(names.empty() && loaded.Empty());
}

TEST_F(BlockAccessTest, ABatchGoesOutInTheOrderOfItsChildren) {
  io::CBlock batch;
  for (long const version : {3, 1, 2})
    batch << Block(DataName(version), version);
  ASSERT_EQ(Files().SaveBlocks(batch), kOk);
  EXPECT_EQ(ChildNames(batch), (std::vector<AString>{DataName(3), DataName(1), DataName(2)}));
  EXPECT_EQ(Files().GetInternalBlockName(DataName(3)), AString(L"SolutionBlock1"));
  EXPECT_EQ(Files().GetInternalBlockName(DataName(2)), AString(L"SolutionBlock3"));
  EXPECT_EQ(NamesInLibrary(), Names());
}

TEST_F(BlockAccessTest, TheMapAsAChildOfABatchIsNeitherMappedNorDeleted) {
  SaveVersions({1});
  io::CBlock batch, map(L"BlockMapName");
  map << io::CBlock_named_value(DataName(8), io::CBlock_value(AString(L"SolutionBlock8")));
  batch << map;
  ASSERT_EQ(Files().SaveBlocks(batch), kOk);
  EXPECT_EQ(ChildNames(batch), std::vector<AString>{L"BlockMapName"});
  EXPECT_EQ(Names(), std::vector<AString>{DataName(1)});
  // The flag was clear: what the caller gave stands until the map changes.
  EXPECT_EQ(NamesInLibrary(), std::vector<AString>{DataName(8)});
  SaveVersions({2});
  EXPECT_EQ(NamesInLibrary(), (std::vector<AString>{DataName(1), DataName(2)}));
}

TEST_F(BlockAccessTest, ABatchThatFailsGivesTheNamesBackAndKeepsTheNewEntries) {
  support::FaultyFileSystem disk;
  SaveVersions({1});
  io::CBlock batch;
  batch << Block(DataName(2), 2) << Block(DataName(1), 11);
  disk.FailAt(1, true);
  EXPECT_NE(Files().SaveBlocks(batch), kOk);
  disk.FailAt(0, false);
  EXPECT_EQ(ChildNames(batch), (std::vector<AString>{DataName(2), DataName(1)}));
  EXPECT_EQ(Names().size(), 2u);
  EXPECT_EQ(ContentOf(DataName(2)), -1);
  EXPECT_EQ(Files().SaveBlocks(batch), kOk);
  EXPECT_EQ(ContentOf(DataName(1)), 11);
  EXPECT_EQ(NamesInLibrary(), Names());
}

TEST_F(BlockAccessTest, AnEmptyBatchWritesAMapThatHasChanged) {
  SaveVersions({1});
  Files().ExtendNameMap(DataName(2), L"SolutionBlock2");
  io::CBlock batch;
  EXPECT_EQ(Files().SaveBlocks(batch), kOk);
  EXPECT_EQ(NamesInLibrary().size(), 2u);
}

TEST_F(BlockAccessTest, DeletingABlockThatIsNotThereIsNoFailure) {
  SaveVersions({1});
  EXPECT_EQ(Files().DeleteBlock(DataName(9)), kOk);
  EXPECT_EQ(Names(), std::vector<AString>{DataName(1)});
}

TEST_F(BlockAccessTest, ADeletionThatFailsKeepsTheEntry) {
  Unattached().ExtendNameMap(DataName(1), L"SolutionBlock1");
  EXPECT_EQ(Files().DeleteBlock(DataName(1)), CStreamioLibrary::kLibNotAttached);
  EXPECT_EQ(Names(), std::vector<AString>{DataName(1)});
}

TEST_F(BlockAccessTest, APatternThatFitsNothingWritesTheMapIfItWasChanged) {
  SaveVersions({1});
  Key const nothing(77, L"NotSet", -1, -1);
  EXPECT_FALSE(Writes([&] { EXPECT_EQ(Files().DeleteBlocks(nothing), kOk); }));
  Files().ExtendNameMap(DataName(2), L"SolutionBlock2");
  EXPECT_EQ(Files().DeleteBlocks(nothing), kOk);
  EXPECT_EQ(NamesInLibrary().size(), 2u);
}

TEST_F(BlockAccessTest, DeletionsOfAPatternReachTheFile) {
  SaveVersions({1, 2, 3, 4});
  ASSERT_EQ(Save(Key(1, L"A = 1", 9, 1).Pack(), 5), kOk);
  EXPECT_EQ(Files().DeleteBlocks(Key(1, L"a=1", 2, -1)), kOk);
  ASSERT_EQ(Files().CommitAll(false), kOk);
  Reopen();
  EXPECT_EQ(Names(), std::vector<AString>{Key(1, L"A = 1", 9, 1).Pack()});
  EXPECT_EQ(ContentOf(Names().front()), 5);
  EXPECT_EQ(ContentOf(L"SolutionBlock1"), -1);
}

TEST_F(BlockAccessTest, EntriesOfAPatternGoAlthoughTheirBlocksCouldNotBeDeletedOnPurpose) {
  Unattached();
  for (long const version : {1, 2, 3})
    Files().ExtendNameMap(DataName(version), L"SolutionBlock1");
  EXPECT_EQ(Files().DeleteBlocks(Key(1, L"NotSet", 2, 2)), CStreamioLibrary::kLibNotAttached);
  EXPECT_EQ(Names(), (std::vector<AString>{DataName(1), DataName(3)}));
}

TEST_F(BlockAccessTest, ASetOfNamesTakesThoseOutsideTheMapAsTheyStand) {
  SaveVersions({1, 2});
  io::CBlock foreign = Block(L"Foreign", 7);
  ASSERT_EQ(Files().GetLibraryForDirectAccess().SaveDefinition(foreign), kOk);
  EXPECT_EQ(Files().DeleteBlocks(std::set<AString>{L"Foreign", DataName(1), L"nowhere"}), kOk);
  EXPECT_EQ(ContentOf(L"Foreign"), -1);
  EXPECT_EQ(NamesInLibrary(), std::vector<AString>{DataName(2)});
}

TEST_F(BlockAccessTest, AnEmptySetOfNamesWritesNothing) {
  SaveVersions({1});
  Files().ExtendNameMap(DataName(2), L"SolutionBlock2");
  EXPECT_FALSE(Writes([this] { EXPECT_EQ(Files().DeleteBlocks(std::set<AString>{}), kOk); }));
}

TEST_F(BlockAccessTest, EntriesOfASetOfNamesGoAlthoughTheirBlocksCouldNotBeDeletedOnPurpose) {
  Unattached();
  for (long const version : {1, 2})
    Files().ExtendNameMap(DataName(version), L"SolutionBlock1");
  EXPECT_NE(Files().DeleteBlocks(std::set<AString>{DataName(1)}), kOk);
  EXPECT_EQ(Names(), std::vector<AString>{DataName(2)});
}

TEST_F(BlockAccessTest, KeyListsAreAppendedInMapOrder) {
  SaveVersions({30, 4});
  std::list<AString> internal{L"before"}, packed{L"before"};
  EXPECT_EQ(Files().GetKeyList(Key(1, L"A=1.0", 2, -1), internal), kOk);
  EXPECT_EQ(Files().GetSolutionKeyList(Key(1, L"A=1.0", 2, -1), packed), kOk);
  EXPECT_EQ(internal, (std::list<AString>{L"before", L"SolutionBlock1", L"SolutionBlock2"}));
  EXPECT_EQ(packed, (std::list<AString>{L"before", DataName(30), DataName(4)}));
}

TEST_F(BlockAccessTest, ThePackedKeyOfANameThatIsNoKeyIsTheDefaultOne) {
  ASSERT_EQ(Save(L"Notes", 1), kOk);
  std::list<AString> packed;
  EXPECT_EQ(Files().GetSolutionKeyList(Key(), packed), kOk);
  EXPECT_EQ(packed, std::list<AString>{Key().Pack()});
}

TEST_F(BlockAccessTest, TheFlagOfTheIndexIsNotConsulted) {
  SaveVersions({2, 1});
  for (bool const flag : {false, true}) {
    std::list<AString> names;
    EXPECT_EQ(Files().IndexKeyList(names, flag), kOk);
    EXPECT_EQ(names, (std::list<AString>{DataName(1), DataName(2)}));
  }
}

TEST_F(BlockAccessTest, APatternFindsABlockThatWasSavedAfterTheFirstLookUp) {
  SaveVersions({1});
  EXPECT_FALSE(Files().HasDataBlock(Key(1, L"NotSet", 2, 2)));
  SaveVersions({2});
  EXPECT_TRUE(Files().HasDataBlock(Key(1, L"NotSet", 2, 2)));
  ASSERT_EQ(Files().DeleteBlock(DataName(2)), kOk);
  EXPECT_FALSE(Files().HasDataBlock(Key(1, L"NotSet", 2, 2)));
}

TEST_F(BlockAccessTest, ACachedBlockIsFoundUnderBothItsNames) {
  Commit({1, 2});
  EXPECT_EQ(Reopen().LoadRealToInternalBlockNameMap(), kOk);
  Files().CacheBlock(DataName(1), false);
  Files().CacheBlock(L"SolutionBlock2", true);
  EXPECT_EQ(ContentOf(DataName(1)), 1);
  EXPECT_EQ(ContentOf(DataName(2)), 2);
}
