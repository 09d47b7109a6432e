// Name maps that no manager wrote.

#include "basekit/io/CBlock_func.h"
#include "tests/solutionmanager/support/StoreTest.h"
#include "tests/support/AssertWatch.h"

#include <limits>

class HostileNameMapTest : public support::StoreTest {
protected:
  io::CBlock m_map{SolutionFileManager::kRealToInternalBlkName};

  void Add(AString const & realName, AString const & internalName) {
    m_map << io::CBlock_named_value(realName, io::CBlock_value(internalName));
  }
  /// The map as a file holds it, with what else was saved, in a manager that has loaded it.
  void Load() {
    ASSERT_EQ(Files().GetLibraryForDirectAccess().SaveDefinition(m_map), kOk);
    ASSERT_EQ(Files().CommitAll(false), kOk);
    ASSERT_EQ(Reopen().LoadRealToInternalBlockNameMap(), kOk);
  }
};

TEST_F(HostileNameMapTest, ChildrenThatAreNoNamedTextsAreSkipped) {
  m_map << io::CBlock_named_value(DataName(1), io::CBlock_value(17L)) << io::CBlock_func(DataName(2))
        << io::CBlock(DataName(3)) << io::CBlock_named_value(DataName(4)) << io::CBlock_vec(DataName(5));
  Add(DataName(6), L"SolutionBlock2");
  Load();
  EXPECT_EQ(Names(), std::vector<AString>{DataName(6)});
}

TEST_F(HostileNameMapTest, OfANameThatComesTwiceTheFirstCounts) {
  Add(DataName(1), L"SolutionBlock4");
  Add(DataName(1), L"SolutionBlock5");
  Load();
  EXPECT_EQ(Files().GetInternalBlockName(DataName(1)), AString(L"SolutionBlock4"));
}

TEST_F(HostileNameMapTest, ANumberAfterWhichNoMoreWouldFitIsReportedAndDoesNotCount) {
  support::AssertWatch::Expect("isSane");
  Add(DataName(1), AString::Format(L"SolutionBlock%d", std::numeric_limits<unsigned long>::max()));
  Add(DataName(2), L"SolutionBlock99999999999999999999999999");
  Add(DataName(3), L"SolutionBlock6");
  Load();
  EXPECT_EQ(Files().GenerateUniqueBlockName(), AString(L"SolutionBlock7"));
}

TEST_F(HostileNameMapTest, NamesThatAreNoKeysAreFoundByNameAndByAPatternOfAllWildcards) {
  Add(L"", L"SolutionBlock1");
  Add(L"SolutionKey(SimSetup = 1, Instance = \"a=1\"", L"SolutionBlock2");
  Add(L"SolutionKey(SimSetup = \"1\", Instance = 3, Solution = true, VersionID = none)", L"SolutionBlock3");
  Load();
  EXPECT_EQ(Names().size(), 3u);
  std::list<AString> all, some;
  EXPECT_EQ(Files().GetKeyList(Key(), all), kOk);
  EXPECT_EQ(Files().GetKeyList(Key(1, L"NotSet", -1, -1), some), kOk);
  EXPECT_EQ(all.size(), 3u);
  EXPECT_TRUE(some.empty());
}

TEST_F(HostileNameMapTest, NamesLikePathsNameBlocksAndNothingElse) {
  std::filesystem::create_directory(m_folder / "inside");
  m_files = std::make_unique<SolutionFileManager>(LongFileName(Path("inside/d.qsol")));
  std::vector<AString> const names{L"../outside", L"..\\outside", L"/etc/outside", L"a/../../outside", L"outside_priv"};
  for (auto const & name : names) {
    Add(name, name + L"1");
    io::CBlock block = Block(name + L"1", 5);
    ASSERT_EQ(Files().GetLibraryForDirectAccess().SaveDefinition(block), kOk);
  }
  ASSERT_EQ(Files().GetLibraryForDirectAccess().SaveDefinition(m_map), kOk);
  ASSERT_EQ(Files().LoadRealToInternalBlockNameMap(), kOk);
  for (auto const & name : names) {
    EXPECT_EQ(ContentOf(name), 5);
    Files().CacheBlock(name, false);
    EXPECT_EQ(Save(name, 6), kOk);
    EXPECT_EQ(ContentOf(name), 6);
  }
  EXPECT_EQ(Files().DeleteBlocks(Key()), kOk);
  std::size_t filesMade = 0;
  for (auto const & entry : std::filesystem::recursive_directory_iterator(m_folder.Path()))
    filesMade += entry.is_directory() || entry.path().filename().string().rfind("d.qsol", 0) == 0 ? 0 : 1;
  EXPECT_EQ(filesMade, 0u);
}

TEST_F(HostileNameMapTest, ControlCharactersAndVeryLongNamesComeBackAsTheyWere) {
  AString const odd(std::wstring(L"a\x01\n\t\x7f\x85\u2028\ufeff"));
  AString const variation = AString(std::wstring(65536, L'v')) + L"=1";
  Add(odd, L"SolutionBlock1");
  Add(DataName(3, variation), L"SolutionBlock2");
  Add(L"long", AString(std::wstring(65536, L'i')));
  Load();
  EXPECT_EQ(MapInMemory().count(odd), 1u);
  EXPECT_TRUE(Files().HasDataBlock(Key(1, variation, 2, 3)));
  EXPECT_EQ(Save(L"long", 8), kOk);
  EXPECT_EQ(ContentOf(L"long"), 8);
  EXPECT_EQ(Files().CommitAll(false), kOk);
  Reopen();
  EXPECT_EQ(Names().size(), 3u);
}

TEST_F(HostileNameMapTest, NoEntryStandsForTheMapItselfOrForNothing) {
  support::AssertWatch::Expect("isEntry");
  Add(DataName(1), L"blockmapname");
  Add(L"BlockMapName", L"SolutionBlock3");
  Add(DataName(2), L"");
  Add(DataName(4), L"SolutionBlock4");
  Load();
  EXPECT_EQ(Names(), std::vector<AString>{DataName(4)});
  ASSERT_EQ(Save(DataName(1), 1), kOk);
  EXPECT_EQ(NamesInLibrary(), (std::vector<AString>{DataName(1), DataName(4)}));
}

TEST_F(HostileNameMapTest, TwoEntriesOfOneBlockAreBothThere) {
  Add(DataName(1), L"SolutionBlock1");
  Add(DataName(2), L"SolutionBlock1");
  Load();
  ASSERT_EQ(Save(DataName(1), 7), kOk);
  EXPECT_EQ(ContentOf(DataName(2)), 7);
  EXPECT_EQ(Files().DeleteBlocks(Key(1, L"NotSet", 2, 1)), kOk);
  EXPECT_EQ(Names(), std::vector<AString>{DataName(2)});
}
