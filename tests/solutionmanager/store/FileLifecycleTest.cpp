// The two files of a solution library from attaching to deletion.

#include "basekit/diag/Profiling.h"
#include "basekit/file/FileOperations.h"
#include "tests/solutionmanager/support/StoreTest.h"
#include "tests/solutionmanager/support/TestDesktop.h"

#include <fstream>
#include <functional>
#include <map>

class FileLifecycleTest : public support::StoreTest {
protected:
  static constexpr auto kRecoveryMode = CStreamioLibrary::kRecoveryMode;

  void MakeFile(char const * name) { std::ofstream(m_folder / name) << "content"; }
  /// Waits for the first use to attach to a path of which nothing exists.
  SolutionFileManager & Pending(char const * name = "new.qsol") {
    Unattached().SetLibPath(Path(name), kOrdinaryMode);
    return Files();
  }
  static std::uint64_t RunsOf(std::string const & label) {
    for (auto const & total : Profiling::Totals())
      if (total.label == label)
        return total.runs;
    return 0;
  }
};

TEST_F(FileLifecycleTest, AManagerBuiltOnAFileShowsItsFolderAsTheLibraryPathOnPurpose) {
  EXPECT_EQ(Files().GetLibPath(), LongFileName(Path()).DirPath());
  EXPECT_TRUE(Files().IsLibraryInitialized());
}

TEST_F(FileLifecycleTest, ReadingMakesNoPrivateFile) {
  Commit({1, 2});
  ASSERT_FALSE(Exists("d.qsol_priv"));
  auto const length = Length("d.qsol");
  EXPECT_EQ(Reopen().LoadRealToInternalBlockNameMap(), kOk);
  EXPECT_EQ(ContentOf(DataName(2)), 2);
  EXPECT_TRUE(Files().HasDataBlock(Key(1, L"a = 1", 2, 1)));
  io::CBlock all;
  EXPECT_EQ(Files().LoadBlocks(Key(), all), kOk);
  EXPECT_EQ(Names().size(), 2u);
  EXPECT_EQ(Files().GetFileStats().status, 0u);
  EXPECT_FALSE(Files().HavePrivQsolBlocks());
  EXPECT_FALSE(Exists("d.qsol_priv"));
  m_files.reset();
  EXPECT_FALSE(Exists("d.qsol_priv"));
  EXPECT_EQ(Length("d.qsol"), length);
}

TEST_F(FileLifecycleTest, ANewManagerOfAProjectIsNotAttached) {
  Unattached();
  EXPECT_TRUE(Files().GetLibPath().empty());
  EXPECT_FALSE(Files().IsLibraryInitialized());
  EXPECT_FALSE(Files().IsRecovered());
  EXPECT_FALSE(Files().HavePrivQsolBlocks());
}

TEST_F(FileLifecycleTest, WithoutAPathNoOperationAttaches) {
  Unattached();
  EXPECT_NE(Save(DataName(1), 1), kOk);
  io::CBlock batch;
  batch << Block(DataName(2), 2);
  EXPECT_NE(Files().SaveBlocks(batch), kOk);
  EXPECT_NE(Files().UpdateOriginal(), kOk);
  EXPECT_NE(Files().RewriteLibrary(false), kOk);
  EXPECT_NE(Files().GetFileStats().status, 0u);
  EXPECT_FALSE(Files().IsLibraryInitialized());
}

TEST_F(FileLifecycleTest, APublicFileAloneIsAttachedAtOnce) {
  Commit({1});
  Unattached().SetLibPath(Path(), kOrdinaryMode);
  EXPECT_TRUE(Files().IsLibraryInitialized());
  EXPECT_EQ(Names().size(), 1u);
}

TEST_F(FileLifecycleTest, WithoutAPublicFileTheAttachWaits) {
  Pending();
  EXPECT_EQ(Files().GetLibPath(), Path("new.qsol"));
  EXPECT_FALSE(Files().IsLibraryInitialized());
}

TEST_F(FileLifecycleTest, APrivateFileBesideThePublicOneMakesTheAttachWaitAndStaysAsItIs) {
  Commit({1});
  MakeFile("d.qsol_priv");
  Unattached().SetLibPath(Path(), kOrdinaryMode);
  EXPECT_FALSE(Files().IsLibraryInitialized());
  EXPECT_FALSE(Files().HavePrivQsolBlocks());
  Files().ResetPrivateLib();
  EXPECT_EQ(Length("d.qsol_priv"), 7u);
}

TEST_F(FileLifecycleTest, TheRecoveryModeAttachesWhateverIsThere) {
  Unattached().SetLibPath(Path("new.qsol"), kRecoveryMode);
  EXPECT_TRUE(Files().IsLibraryInitialized());
}

TEST_F(FileLifecycleTest, TheFirstWriteMakesTheFolder) {
  Pending("made/d.qsol");
  EXPECT_FALSE(Exists("made"));
  EXPECT_EQ(Save(DataName(1), 1), kOk);
  EXPECT_TRUE(Exists("made/d.qsol_priv"));
}

TEST_F(FileLifecycleTest, TheFolderOfAProjectIsMadeByTheProject) {
  support::TestProject project(Path("results/deep/"));
  m_files = std::make_unique<SolutionFileManager>(&project);
  Files().SetLibPath(Path("results/deep/d.qsol"), kOrdinaryMode);
  EXPECT_FALSE(Exists("results"));
  EXPECT_EQ(Save(DataName(1), 1), kOk);
  EXPECT_TRUE(Exists("results/deep/d.qsol_priv"));
}

TEST_F(FileLifecycleTest, WhatWritesOrLooksAtTheLibraryItselfAttachesFirst) {
  std::map<std::string, std::function<void(SolutionFileManager &)>> const operations{
      {"GetFileStats", [](auto & files) { files.GetFileStats(); }},
      {"GetLibraryForDirectAccess", [](auto & files) { files.GetLibraryForDirectAccess(); }},
      {"SaveDefinition",
       [](auto & files) {
         io::CBlock block = Block(DataName(1), 1);
         files.SaveDefinition(block);
       }},
      {"SaveBlocks",
       [](auto & files) {
         io::CBlock batch;
         files.SaveBlocks(batch);
       }},
      {"UpdateOriginal", [](auto & files) { files.UpdateOriginal(); }},
      {"RewriteLibrary", [](auto & files) { files.RewriteLibrary(false); }},
      {"LoadRealToInternalBlockNameMap", [](auto & files) { files.LoadRealToInternalBlockNameMap(); }},
      {"WriteRealToInternalBlockNameMap", [](auto & files) { files.WriteRealToInternalBlockNameMap(); }},
      {"HasDataBlock", [](auto & files) { files.HasDataBlock(Key()); }}};
  for (auto const & [name, operation] : operations) {
    operation(Pending((name + ".qsol").c_str()));
    EXPECT_TRUE(Files().IsLibraryInitialized()) << name;
  }
}

TEST_F(FileLifecycleTest, AllElseLeavesTheAttachWaiting) {
  Pending();
  Files().SetBinaryMode(true);
  Files().SetPrecision(5);
  Files().IsBinaryModeFile();
  EXPECT_EQ(ContentOf(DataName(1)), -1);
  EXPECT_NE(Files().CommitAll(false), kOk);
  Files().CacheBlock(DataName(1), false);
  Files().ResetPrivateLib();
  Files().VariationKeyChanged(L"a=1", L"b=1");
  EXPECT_FALSE(Files().HavePrivQsolBlocks());
  EXPECT_FALSE(Files().IsRecovered());
  EXPECT_FALSE(Files().IsLibraryInitialized());
  EXPECT_FALSE(Exists("new.qsol_priv"));
}

TEST_F(FileLifecycleTest, AnotherPathEmptiesTheMapAndMarksItAsChanged) {
  Commit({1});
  ASSERT_EQ(LFN_Copy(LongFileName(Path()), LongFileName(Path("other.qsol")), kOverwrite), true);
  Unattached().SetLibPath(Path(), kOrdinaryMode);
  ASSERT_EQ(Save(DataName(2), 2), kOk);
  Files().SetLibPath(Path("other.qsol"), kOrdinaryMode);
  EXPECT_TRUE(MapInMemory().empty());
  EXPECT_EQ(Names(), std::vector<AString>{DataName(1)});
  EXPECT_TRUE(!Exists("other.qsol_priv"));
  EXPECT_EQ(Files().WriteRealToInternalBlockNameMap(), kOk);
  EXPECT_TRUE(Exists("other.qsol_priv"));
}

TEST_F(FileLifecycleTest, TheSamePathAgainChangesNothing) {
  Commit({1});
  Unattached().SetLibPath(Path(), kOrdinaryMode);
  ASSERT_EQ(Save(DataName(2), 2), kOk);
  Files().SetLibPath(Path(), kOrdinaryMode);
  EXPECT_TRUE(Files().IsLibraryInitialized());
  EXPECT_EQ(MapInMemory().size(), 2u);
  EXPECT_EQ(ContentOf(DataName(2)), 2);
}

TEST_F(FileLifecycleTest, AChangedPathOfANewLibraryWaitsAgain) {
  Pending("first.qsol");
  ASSERT_EQ(Save(DataName(1), 1), kOk);
  Files().SetLibPath(Path("second.qsol"), kOrdinaryMode);
  EXPECT_FALSE(Files().IsLibraryInitialized());
  ASSERT_EQ(Save(DataName(2), 2), kOk);
  EXPECT_EQ(NamesInLibrary(), std::vector<AString>{DataName(2)});
  EXPECT_TRUE(Exists("second.qsol_priv"));
}

TEST_F(FileLifecycleTest, TheEndOfAManagerCommitsNothing) {
  ASSERT_EQ(Save(DataName(1), 1), kOk);
  auto const length = Length("d.qsol");
  m_files.reset();
  EXPECT_EQ(Length("d.qsol"), length);
}

TEST_F(FileLifecycleTest, ACommitDoesNotWriteTheMapFirstOnPurpose) {
  ASSERT_EQ(Save(DataName(1), 1), kOk);
  Files().ExtendNameMap(DataName(2), L"SolutionBlock2");
  ASSERT_EQ(Files().CommitAll(false), kOk);
  Reopen();
  EXPECT_EQ(Names(), std::vector<AString>{DataName(1)});
}

TEST_F(FileLifecycleTest, AnUpdateWritesTheMapFirst) {
  ASSERT_EQ(Save(DataName(1), 1), kOk);
  Files().ExtendNameMap(DataName(2), L"SolutionBlock2");
  ASSERT_EQ(Files().UpdateOriginal(), kOk);
  SolutionFileManager reader{LongFileName(Path())};
  std::list<AString> names;
  EXPECT_EQ(reader.IndexKeyList(names, true), kOk);
  EXPECT_EQ(names.size(), 2u);
}

TEST_F(FileLifecycleTest, ARewriteKeepsAllBlocks) {
  for (long const version : {1, 2, 3})
    ASSERT_EQ(Save(DataName(version), version), kOk);
  ASSERT_EQ(Files().RewriteLibrary(true), kOk);
  Reopen();
  EXPECT_EQ(Names().size(), 3u);
  EXPECT_EQ(ContentOf(DataName(3)), 3);
}

TEST_F(FileLifecycleTest, FormAndPrecisionAreTheLibrarys) {
  Files().SetBinaryMode(true);
  EXPECT_TRUE(Files().IsBinaryModeFile());
  EXPECT_TRUE(Files().GetLibraryForDirectAccess().IsBinaryModeFile());
  Files().SetBinaryMode(false);
  EXPECT_FALSE(Files().IsBinaryModeFile());
  Files().SetPrecision(3);
  io::CBlock block(DataName(1));
  block << io::named(L"X", 1.23456789);
  ASSERT_EQ(Files().SaveDefinition(block), kOk);
  ASSERT_EQ(Files().CommitAll(false), kOk);
  Reopen();
  ASSERT_EQ(Names().size(), 1u);
  io::CBlock read(DataName(1));
  double value = 0;
  ASSERT_EQ(Files().LoadDefinition(read), kOk);
  read >> io::named(L"X", value);
  EXPECT_EQ(value, 1.23);
}

TEST_F(FileLifecycleTest, PrivateBlocksAreThereFromTheFirstSaveToTheCommit) {
  EXPECT_FALSE(Files().HavePrivQsolBlocks());
  ASSERT_EQ(Save(DataName(1), 1), kOk);
  EXPECT_TRUE(Files().HavePrivQsolBlocks());
  ASSERT_EQ(Files().CommitAll(false), kOk);
  EXPECT_FALSE(Files().HavePrivQsolBlocks());
}

TEST_F(FileLifecycleTest, DeletingTheLibraryLeavesTheMapInMemoryOnPurpose) {
  ASSERT_EQ(Save(DataName(1), 1), kOk);
  ASSERT_EQ(Files().CommitAll(false), kOk);
  Files().DeleteLibrary();
  EXPECT_FALSE(Exists("d.qsol"));
  EXPECT_FALSE(Exists("d.qsol_priv"));
  EXPECT_EQ(MapInMemory().size(), 1u);
  EXPECT_EQ(ContentOf(DataName(1)), -1);
  ASSERT_EQ(Save(DataName(2), 2), kOk);
  EXPECT_EQ(NamesInLibrary(), (std::vector<AString>{DataName(1), DataName(2)}));
}

TEST_F(FileLifecycleTest, AfterAResetTheNextSaveStoresTheWholeMapOfTheMemory) {
  Commit({1});
  Reopen().LoadRealToInternalBlockNameMap();
  ASSERT_EQ(Save(DataName(2), 2), kOk);
  Files().ResetPrivateLib();
  EXPECT_EQ(NamesInLibrary(), std::vector<AString>{DataName(1)});
  ASSERT_EQ(Save(DataName(3), 3), kOk);
  EXPECT_EQ(NamesInLibrary(), (std::vector<AString>{DataName(1), DataName(2), DataName(3)}));
}

TEST_F(FileLifecycleTest, SaveAsLeavesTheOldFilesAndTheMapAsTheyAre) {
  ASSERT_EQ(Save(DataName(1), 1), kOk);
  ASSERT_EQ(Files().CommitAll(false), kOk);
  ASSERT_EQ(Save(DataName(2), 2), kOk);
  Files().ChangeLibPathForSaving(Path("copy.qsol"));
  EXPECT_TRUE(Files().IsLibraryInitialized());
  EXPECT_EQ(Files().GetLibPath(), Path("copy.qsol"));
  EXPECT_EQ(MapInMemory().size(), 2u);
  EXPECT_EQ(ContentOf(DataName(2)), 2);
  ASSERT_EQ(Save(DataName(3), 3), kOk);
  EXPECT_EQ(NamesInLibrary(), (std::vector<AString>{DataName(1), DataName(2), DataName(3)}));
  EXPECT_TRUE(Exists("d.qsol"));
}

TEST_F(FileLifecycleTest, SaveAsToTheCurrentPathGoesOnThere) {
  Unattached().SetLibPath(Path(), kRecoveryMode);
  ASSERT_EQ(Save(DataName(1), 1), kOk);
  Files().ChangeLibPathForSaving(Path());
  EXPECT_TRUE(Files().IsLibraryInitialized());
  EXPECT_EQ(ContentOf(DataName(1)), 1);
  EXPECT_EQ(Names().size(), 1u);
}

TEST_F(FileLifecycleTest, SaveAsToTheCurrentPathIsHandedToTheLibraryAllTheSame) {
  Pending("d.qsol").ChangeLibPathForSaving(Path());
  EXPECT_TRUE(Files().IsLibraryInitialized());
}

TEST_F(FileLifecycleTest, ASaveAsThatFailsMakesTheAttachWait) {
  ASSERT_EQ(Save(DataName(1), 1), kOk);
  MakeFile("blocker");
  Files().ChangeLibPathForSaving(Path("blocker/d.qsol"));
  EXPECT_EQ(Files().GetLibPath(), Path("blocker/d.qsol"));
  EXPECT_FALSE(Files().IsLibraryInitialized());
  EXPECT_EQ(MapInMemory().size(), 1u);
}

TEST_F(FileLifecycleTest, SaveAsTakesProfilesAndNoOtherFiles) {
  Unattached().SetLibPath(Path(), kRecoveryMode);
  ASSERT_EQ(Save(DataName(1), 1), kOk);
  for (auto const * name : {"a.profile", "b.profile", "c.profile.txt", "profile"})
    MakeFile(name);
  std::filesystem::create_directory(m_folder / "new");
  MakeFile("new/a.profile");
  std::ofstream(m_folder / "new" / "a.profile") << "older, longer content";
  Files().ChangeLibPathForSaving(Path("new/d.qsol"));
  EXPECT_EQ(Length("new/a.profile"), 7u);
  EXPECT_TRUE(Exists("new/b.profile"));
  EXPECT_FALSE(Exists("new/c.profile.txt"));
  EXPECT_FALSE(Exists("new/profile"));
}

TEST_F(FileLifecycleTest, TheFolderThatProfilesGoToMustEndInASeparatorOnPurpose) {
  MakeFile("run.profile");
  std::filesystem::create_directory(m_folder / "to");
  Unattached().SaveProfileData(Folder(), Path("to"));
  EXPECT_FALSE(Exists("to/run.profile"));
  EXPECT_TRUE(Exists("torun.profile"));
}

TEST_F(FileLifecycleTest, SaveAsWhileTheAttachWaitsCopiesNoBlocks) {
  Commit({1});
  MakeFile("d.qsol_priv");
  Unattached().SetLibPath(Path(), kOrdinaryMode);
  std::filesystem::create_directory(m_folder / "new");
  Files().ChangeLibPathForSaving(Path("new/d.qsol"));
  EXPECT_EQ(Files().GetLibPath(), Path("new/d.qsol"));
  EXPECT_FALSE(Exists("new/d.qsol"));
  EXPECT_TRUE(Names().empty());
  EXPECT_TRUE(Exists("d.qsol_priv"));
}

TEST_F(FileLifecycleTest, SaveAsWithoutAnOldPathTakesNoProfilesAlong) {
  MakeFile("run.profile");
  auto const former = std::filesystem::current_path();
  std::filesystem::current_path(m_folder.Path());
  std::filesystem::create_directory(m_folder / "new");
  Unattached().ChangeLibPathForSaving(Path("new/d.qsol"));
  std::filesystem::current_path(former);
  EXPECT_FALSE(Exists("new/run.profile"));
}

TEST_F(FileLifecycleTest, EachProfiledOperationCountsItsRunsUnderItsLabel) {
  ASSERT_EQ(Save(DataName(1), 1), kOk);
  std::map<std::string, std::function<void()>> const operations{
      {"CommitAll", [this] { Files().CommitAll(false); }},
      {"CacheBlock", [this] { Files().CacheBlock(DataName(1), false); }},
      {"SaveDefinition", [this] { Save(DataName(1), 1); }},
      {"WriteRealToInternalBlockNameMap", [this] { Files().WriteRealToInternalBlockNameMap(); }},
      {"UpdateOriginal", [this] { Files().UpdateOriginal(); }},
      {"GetKeyList",
       [this] {
         std::list<AString> names;
         Files().GetKeyList(Key(), names);
       }},
      {"GetSolnKeyList",
       [this] {
         std::list<AString> names;
         Files().GetSolutionKeyList(Key(), names);
       }},
      {"IndexKeyList", [this] { Names(); }},
      {"VarKeyChanged", [this] { Files().VariationKeyChanged(L"x", L"y"); }},
      {"SaveBlocks", [this] {
         io::CBlock batch;
         Files().SaveBlocks(batch);
       }}};
  for (auto const & [name, operation] : operations) {
    std::string const label = "SolutionFileManager_" + name;
    auto const before = RunsOf(label);
    operation();
    EXPECT_GT(RunsOf(label), before) << label;
  }
}
