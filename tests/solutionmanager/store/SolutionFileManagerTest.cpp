#include "solutionmanager/store/SolutionFileManager.h"

#include "tests/solutionmanager/support/StoreTest.h"

#include <fstream>

class SolutionFileManagerTest : public support::StoreTest {
protected:
  static long ContentOf(SolutionFileManager & files, AString const & name) {
    io::CBlock block(name);
    long content = -1;
    if (files.LoadDefinition(block) == kOk)
      block >> io::named(L"N", content);
    return content;
  }
  static std::list<AString> Names(SolutionFileManager & files) {
    std::list<AString> names;
    files.IndexKeyList(names, false);
    return names;
  }
};

TEST_F(SolutionFileManagerTest, BlocksGetInternalNamesInOrderOfFirstSave) {
  SolutionFileManager files{LongFileName(Path())};
  for (long version : {3, 1, 2}) {
    io::CBlock block = Block(DataName(version), version);
    ASSERT_EQ(files.SaveDefinition(block), kOk);
    EXPECT_EQ(block.Name(), DataName(version));
  }
  bool found = false;
  EXPECT_EQ(files.GetInternalBlockName(found, DataName(3)), AString(L"SolutionBlock1"));
  EXPECT_TRUE(found);
  EXPECT_EQ(files.GetInternalBlockName(DataName(2)), AString(L"SolutionBlock3"));
  EXPECT_EQ(files.GetInternalBlockName(found, L"unknown"), AString(L"unknown"));
  EXPECT_FALSE(found);
}

TEST_F(SolutionFileManagerTest, ASecondSaveReusesTheEntry) {
  SolutionFileManager files{LongFileName(Path())};
  for (long content : {10, 20}) {
    io::CBlock block = Block(DataName(1), content);
    ASSERT_EQ(files.SaveDefinition(block), kOk);
  }
  EXPECT_EQ(Names(files).size(), 1u);
  EXPECT_EQ(ContentOf(files, DataName(1)), 20);
}

TEST_F(SolutionFileManagerTest, WhatWasCommittedIsThereInTheNextManagerAndNumbersGoOn) {
  {
    SolutionFileManager files{LongFileName(Path())};
    for (long version = 1; version <= 9; ++version) {
      io::CBlock block = Block(DataName(version), version);
      files.SaveDefinition(block);
    }
    ASSERT_EQ(files.CommitAll(false), kOk);
  }
  SolutionFileManager files{LongFileName(Path())};
  ASSERT_EQ(files.LoadRealToInternalBlockNameMap(), kOk);
  EXPECT_EQ(ContentOf(files, DataName(7)), 7);
  EXPECT_EQ(files.GenerateUniqueBlockName(), AString(L"SolutionBlock10"));
}

TEST_F(SolutionFileManagerTest, ALibraryWithoutANameMapMakesItsLoadFail) {
  SolutionFileManager files{LongFileName(Path())};
  EXPECT_NE(files.LoadRealToInternalBlockNameMap(), kOk);
  EXPECT_FALSE(files.HasDataBlock(Key()));
}

TEST_F(SolutionFileManagerTest, ASaveNeverReplacesAMapThatItHasNotSeen) {
  {
    SolutionFileManager files{LongFileName(Path())};
    io::CBlock block = Block(DataName(1), 1);
    files.SaveDefinition(block);
    files.CommitAll(false);
  }
  SolutionFileManager files{LongFileName(Path())};
  io::CBlock block = Block(DataName(2), 2);
  ASSERT_EQ(files.SaveDefinition(block), kOk);
  EXPECT_EQ(ContentOf(files, DataName(1)), 1);
  EXPECT_EQ(Names(files).size(), 2u);
}

TEST_F(SolutionFileManagerTest, SaveBlocksStoresAllChildrenAndGivesTheirNamesBack) {
  SolutionFileManager files{LongFileName(Path())};
  io::CBlock first = Block(DataName(1), 1);
  files.SaveDefinition(first);
  io::CBlock batch;
  batch << Block(DataName(2), 2) << Block(DataName(1), 11) << Block(L"BlockMapName", 0);
  // The library takes the map's name as it stands; it is written anew right after.
  ASSERT_EQ(files.SaveBlocks(batch), kOk);
  std::vector<AString> names;
  for (auto const & child : batch)
    names.push_back(child->Name());
  EXPECT_EQ(names, (std::vector<AString>{DataName(2), DataName(1), L"BlockMapName"}));
  EXPECT_EQ(ContentOf(files, DataName(1)), 11);
  EXPECT_EQ(ContentOf(files, DataName(2)), 2);
  EXPECT_EQ(Names(files).size(), 2u);
}

TEST_F(SolutionFileManagerTest, KeyListsGiveInternalNamesTheOthersRealOnes) {
  SolutionFileManager files{LongFileName(Path())};
  io::CBlock block = Block(DataName(1), 1);
  files.SaveDefinition(block);
  std::list<AString> internal, packed;
  EXPECT_EQ(files.GetKeyList(Key(), internal), kOk);
  EXPECT_EQ(files.GetSolutionKeyList(Key(), packed), kOk);
  EXPECT_EQ(internal, std::list<AString>{L"SolutionBlock1"});
  EXPECT_EQ(packed, std::list<AString>{DataName(1)});
  EXPECT_EQ(Names(files), std::list<AString>{DataName(1)});
}

TEST_F(SolutionFileManagerTest, AnyNameMayBeABlockButPatternsSeeOnlyKeys) {
  SolutionFileManager files{LongFileName(Path())};
  io::CBlock block = Block(L"ProductNotes", 4);
  ASSERT_EQ(files.SaveDefinition(block), kOk);
  EXPECT_EQ(ContentOf(files, L"ProductNotes"), 4);
  EXPECT_TRUE(files.HasDataBlock(Key()));
  EXPECT_FALSE(files.HasDataBlock(Key(1, L"NotSet", -1, -1)));
}

TEST_F(SolutionFileManagerTest, APatternDeletesWhatFitsAndNothingElse) {
  SolutionFileManager files{LongFileName(Path())};
  for (long version : {1, 2}) {
    io::CBlock block = Block(DataName(version), version);
    files.SaveDefinition(block);
  }
  EXPECT_EQ(files.DeleteBlocks(Key(1, L"NotSet", 2, 1)), kOk);
  EXPECT_EQ(Names(files), std::list<AString>{DataName(2)});
  EXPECT_EQ(ContentOf(files, DataName(2)), 2);
}

TEST_F(SolutionFileManagerTest, ASetOfNamesIsDeletedInOnePass) {
  SolutionFileManager files{LongFileName(Path())};
  for (long version : {1, 2, 3}) {
    io::CBlock block = Block(DataName(version), version);
    files.SaveDefinition(block);
  }
  EXPECT_EQ(files.DeleteBlocks(std::set<AString>{DataName(1), DataName(3)}), kOk);
  EXPECT_EQ(Names(files), std::list<AString>{DataName(2)});
  EXPECT_EQ(files.DeleteBlocks(std::set<AString>{}), kOk);
}

TEST_F(SolutionFileManagerTest, DeleteBlockLeavesTheMapFlagAloneOnPurpose) {
  {
    SolutionFileManager files{LongFileName(Path())};
    for (long version : {1, 2}) {
      io::CBlock block = Block(DataName(version), version);
      files.SaveDefinition(block);
    }
    EXPECT_EQ(files.DeleteBlock(DataName(1)), kOk);
    EXPECT_EQ(Names(files).size(), 1u);
    files.CommitAll(false);
  }
  // The erasure did not reach the file: it would have with the next change.
  SolutionFileManager files{LongFileName(Path())};
  EXPECT_EQ(Names(files).size(), 2u);
  EXPECT_EQ(ContentOf(files, DataName(1)), -1);
}

TEST_F(SolutionFileManagerTest, RenamingAVariationMovesEntriesAndNoBlock) {
  SolutionFileManager files{LongFileName(Path())};
  io::CBlock block = Block(DataName(1, L"a=1"), 5);
  files.SaveDefinition(block);
  files.VariationKeyChanged(L"no such text", L"b=1");
  EXPECT_EQ(Names(files), std::list<AString>{DataName(1, L"a=1")});
  files.VariationKeyChanged(L"a=1", L"b=1");
  EXPECT_EQ(Names(files), std::list<AString>{DataName(1, L"b=1")});
  EXPECT_EQ(ContentOf(files, DataName(1, L"b=1")), 5);
  EXPECT_EQ(files.GetInternalBlockName(DataName(1, L"b=1")), AString(L"SolutionBlock1"));
}

TEST_F(SolutionFileManagerTest, ExtendNameMapKeepsAnEntryThatIsThere) {
  SolutionFileManager files{LongFileName(Path())};
  files.ExtendNameMap(DataName(1), L"SolutionBlock7");
  files.ExtendNameMap(DataName(1), L"SolutionBlock8");
  EXPECT_EQ(files.GetInternalBlockName(DataName(1)), AString(L"SolutionBlock7"));
  files.InitNextAvailableIndex();
  EXPECT_EQ(files.GenerateUniqueBlockName(), AString(L"SolutionBlock8"));
}

TEST_F(SolutionFileManagerTest, APrivateFileDefersTheAttachUntilTheFirstUse) {
  std::ofstream(m_folder / "late.qsol_priv") << "left by someone";
  SolutionFileManager files{static_cast<IProject *>(nullptr)};
  EXPECT_FALSE(files.IsLibraryInitialized());
  files.SetLibPath(Path("late.qsol"), CStreamioLibrary::kOrdinaryMode);
  EXPECT_FALSE(files.IsLibraryInitialized());
  io::CBlock block = Block(DataName(1), 1);
  files.SaveDefinition(block);
  EXPECT_TRUE(files.IsLibraryInitialized());
}

TEST_F(SolutionFileManagerTest, WithoutAPathNothingIsEverAttached) {
  SolutionFileManager files{static_cast<IProject *>(nullptr)};
  io::CBlock block = Block(DataName(1), 1);
  EXPECT_NE(files.SaveDefinition(block), kOk);
  EXPECT_FALSE(files.IsLibraryInitialized());
  EXPECT_FALSE(files.IsRecovered());
  EXPECT_FALSE(files.HavePrivQsolBlocks());
}

TEST_F(SolutionFileManagerTest, SaveUnderANewNameTakesBlocksAndProfilesAlong) {
  SolutionFileManager files{LongFileName(Path())};
  io::CBlock block = Block(DataName(1), 1);
  files.SaveDefinition(block);
  files.CommitAll(false);
  std::ofstream(m_folder / "run.profile") << "times";
  std::filesystem::create_directory(m_folder / "new");
  AString const newPath = text::FromUtf8((m_folder / "new" / "d.qsol").string());
  files.ChangeLibPathForSaving(newPath);
  EXPECT_EQ(files.GetLibPath(), newPath);
  EXPECT_TRUE(std::filesystem::exists(m_folder / "new" / "run.profile"));
  EXPECT_TRUE(std::filesystem::exists(m_folder / "d.qsol"));
  EXPECT_EQ(ContentOf(files, DataName(1)), 1);
}

TEST_F(SolutionFileManagerTest, ResetDropsTheBlocksAndLeavesTheMapInMemory) {
  SolutionFileManager files{LongFileName(Path())};
  io::CBlock block = Block(DataName(1), 1);
  files.SaveDefinition(block);
  EXPECT_TRUE(files.HavePrivQsolBlocks());
  files.ResetPrivateLib();
  EXPECT_FALSE(files.HavePrivQsolBlocks());
  EXPECT_EQ(Names(files).size(), 1u);
  EXPECT_EQ(ContentOf(files, DataName(1)), -1);
}

TEST_F(SolutionFileManagerTest, NoOperationReplacesAMapThatItHasNotSeen) {
  {
    SolutionFileManager files{LongFileName(Path())};
    for (long version : {1, 2, 3}) {
      io::CBlock block = Block(DataName(version), version);
      files.SaveDefinition(block);
    }
    files.CommitAll(false);
  }
  {
    SolutionFileManager updated{LongFileName(Path())};
    EXPECT_EQ(updated.UpdateOriginal(), kOk);
    EXPECT_EQ(Names(updated).size(), 3u);
  }
  SolutionFileManager deletedOne{LongFileName(Path())};
  EXPECT_EQ(deletedOne.DeleteBlock(DataName(1)), kOk);
  EXPECT_EQ(Names(deletedOne).size(), 2u);
  EXPECT_EQ(deletedOne.DeleteBlocks(std::set<AString>{DataName(2)}), kOk);
  EXPECT_EQ(Names(deletedOne), std::list<AString>{DataName(3)});
  EXPECT_EQ(ContentOf(deletedOne, DataName(3)), 3);
}

TEST_F(SolutionFileManagerTest, ASaveIntoALibraryWhoseMapIsDamagedIsRefusedAndTouchesNothing) {
  {
    SolutionFileManager files{LongFileName(Path())};
    io::CBlock block = Block(DataName(1), 1);
    files.SaveDefinition(block);
    files.CommitAll(false);
  }
  std::string bytes;
  {
    std::ifstream file(m_folder / "d.qsol", std::ios::binary);
    bytes.assign(std::istreambuf_iterator<char>(file), {});
  }
  auto const at = bytes.find("= \"SolutionBlock1\"");
  ASSERT_NE(at, std::string::npos);
  bytes[at + 3] = 'Z';
  std::ofstream(m_folder / "d.qsol", std::ios::binary) << bytes;
  SolutionFileManager files{LongFileName(Path())};
  io::CBlock block = Block(DataName(2), 2);
  EXPECT_NE(files.SaveDefinition(block), kOk);
  io::CBlock batch;
  batch << Block(DataName(3), 3);
  EXPECT_NE(files.SaveBlocks(batch), kOk);
  EXPECT_FALSE(files.HavePrivQsolBlocks());
}

TEST_F(SolutionFileManagerTest, AFolderIsFoundBehindEitherSlash) {
  std::string path = (m_folder / "made" / "d.qsol").string();
  path[path.rfind('/')] = '\\';
  SolutionFileManager files{static_cast<IProject *>(nullptr)};
  files.SetLibPath(text::FromUtf8(path), CStreamioLibrary::kRecoveryMode);
  EXPECT_TRUE(std::filesystem::is_directory(m_folder / "made"));
}
