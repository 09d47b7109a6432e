#include "basekit/file/FileOperations.h"

#include "basekit/file/CFileUtilities.h"
#include "basekit/file/LongFileName.h"
#include "basekit/text/ParseName.h"
#include "basekit/text/Utf8.h"
#include "tests/support/FaultyFileSystem.h"
#include "tests/support/TemporaryFolder.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <sys/stat.h>

class FileOperations : public testing::Test {
protected:
  LongFileName At(AString const & name) const { return Root() + name; }
  LongFileName Root() const { return text::FromUtf8(m_folder.Path().string()); }
  LongFileName Write(AString const & name, std::string const & content) const {
    std::ofstream(text::ToUtf8(At(name).FilePath())) << content;
    return At(name);
  }
  std::string Read(AString const & name) const {
    std::ifstream in(text::ToUtf8(At(name).FilePath()));
    return std::string(std::istreambuf_iterator<char>(in), {});
  }
  support::TemporaryFolder m_folder;
};

TEST_F(FileOperations, CopiesAFileOverAnother) {
  Write(L"from", "new");
  Write(L"to", "old");
  EXPECT_FALSE(LFN_Copy(At(L"from"), At(L"to"), kFailIfExists));
  EXPECT_FALSE(LFN_LastError().empty());
  EXPECT_EQ(Read(L"to"), "old");
  EXPECT_TRUE(LFN_Copy(At(L"from"), At(L"to"), kOverwrite));
  EXPECT_EQ(Read(L"to"), "new");
  EXPECT_EQ(Read(L"from"), "new");
}

TEST_F(FileOperations, ReplacesAProtectedFileOnlyWhenToldTo) {
  Write(L"from", "new");
  Write(L"to", "old");
  ::chmod(text::ToUtf8(At(L"to").FilePath()).c_str(), 0444);
  EXPECT_FALSE(LFN_Copy(At(L"from"), At(L"to"), kOverwrite));
  EXPECT_TRUE(LFN_Copy(At(L"from"), At(L"to"), kOverwriteReadOnly));
  EXPECT_EQ(Read(L"to"), "new");
}

TEST_F(FileOperations, MakesNoFolderOnADiskThatTellsNothing) {
  support::FaultyFileSystem faulty;
  faulty.CountReads(true);
  faulty.FailAt(1, true);
  EXPECT_FALSE(LFN_CreateDirectoryAndParents(At(L"a/b/")));
}

TEST_F(FileOperations, CopiesNoFolderIntoItself) {
  LFN_CreateDirectoryAndParents(At(L"from/inner/deep/"));
  Write(L"from/a", "content");
  std::filesystem::create_directory_symlink(text::ToUtf8(At(L"from").FilePath()), text::ToUtf8(At(L"link").FilePath()));
  for (wchar_t const * const target : {L"from/inner/deep/", L"from/inner/deep/new", L"from/new/", L"link/inner"}) {
    EXPECT_FALSE(LFN_Copy(At(L"from/"), At(target), kOverwrite)) << text::ToUtf8(AString(target));
    EXPECT_EQ(LFN_LastError(), AString(L"a folder is not copied into itself: ") + At(target).FilePath());
  }
  EXPECT_FALSE(LFN_Exists(At(L"from/new")));
  EXPECT_FALSE(LFN_Exists(At(L"from/inner/deep/a")));
  EXPECT_TRUE(LFN_Copy(At(L"from/"), At(L"from2/"), kOverwrite)) << "a name that begins alike is another folder";
}

TEST_F(FileOperations, CopiesAFileOntoItselfWithoutHarm) {
  Write(L"a", "content");
  EXPECT_TRUE(LFN_Copy(At(L"a"), At(L"a"), kOverwrite));
  EXPECT_EQ(Read(L"a"), "content");
}

TEST_F(FileOperations, ACopyThatFailsLeavesTheTargetAndNoRest) {
  Write(L"from", "new");
  Write(L"to", "old");
  for (int n = 1; n < 5; ++n) {
    support::FaultyFileSystem faulty;
    faulty.FailAt(n, false);
    bool const copied = LFN_Copy(At(L"from"), At(L"to"), kOverwrite);
    ASSERT_EQ(copied, !faulty.HasFailed()) << n;
    if (faulty.HasFailed()) {
      ASSERT_EQ(Read(L"to"), "old");
    }
    std::vector<AString> names;
    ASSERT_TRUE(faulty.List(Root(), names).Ok());
    ASSERT_EQ(names.size(), 2u) << n;
  }
}

TEST_F(FileOperations, FailsToCopyWhatIsNotThere) {
  EXPECT_FALSE(LFN_Copy(At(L"nothing"), At(L"to"), kOverwrite));
  EXPECT_FALSE(LFN_Move(At(L"nothing"), At(L"to"), kOverwrite));
  EXPECT_FALSE(LFN_DeleteFile(At(L"nothing")));
}

TEST_F(FileOperations, MovesAndRenames) {
  Write(L"a", "one");
  Write(L"b", "two");
  EXPECT_FALSE(LFN_Rename(At(L"a"), At(L"b")));
  EXPECT_TRUE(LFN_Rename(At(L"a"), At(L"c")));
  EXPECT_FALSE(LFN_Move(At(L"b"), At(L"c"), kFailIfExists));
  EXPECT_TRUE(LFN_Move(At(L"b"), At(L"c"), kOverwrite));
  EXPECT_EQ(Read(L"c"), "two");
  EXPECT_FALSE(LFN_Exists(At(L"b")));
}

TEST_F(FileOperations, MakesAndRemovesFolders) {
  EXPECT_FALSE(LFN_CreateDirectory(At(L"x/y")));
  EXPECT_TRUE(LFN_CreateDirectoryAndParents(At(L"x/y/z/")));
  EXPECT_TRUE(LFN_CreateDirectory(At(L"x/y/z"))) << "it is there already";
  Write(L"x/y/file", "content");
  EXPECT_TRUE(LFN_IsDirectory(At(L"x/y")));
  EXPECT_TRUE(LFN_DeleteDirectoryContents(At(L"x")));
  EXPECT_TRUE(LFN_IsDirectory(At(L"x")));
  EXPECT_FALSE(LFN_Exists(At(L"x/y")));
  EXPECT_TRUE(LFN_Delete(At(L"x/")));
  EXPECT_FALSE(LFN_Exists(At(L"x")));
}

TEST_F(FileOperations, RemovesALinkAndNotWhatItPointsTo) {
  LFN_CreateDirectory(At(L"kept"));
  Write(L"kept/file", "content");
  LFN_CreateDirectory(At(L"gone"));
  std::filesystem::create_directory_symlink(m_folder / "kept", m_folder / "gone" / "link");
  EXPECT_TRUE(LFN_Delete(At(L"gone")));
  EXPECT_EQ(Read(L"kept/file"), "content");
}

TEST_F(FileOperations, CopiesAFolderWithOrWithoutReplacing) {
  LFN_CreateDirectoryAndParents(At(L"from/sub"));
  Write(L"from/a", "new");
  Write(L"from/sub/b", "b");
  LFN_CreateDirectory(At(L"to"));
  Write(L"to/a", "old");
  EXPECT_TRUE(LFN_CopyDirectoryContents(At(L"from"), At(L"to"), false));
  EXPECT_EQ(Read(L"to/a"), "old");
  EXPECT_EQ(Read(L"to/sub/b"), "b");
  EXPECT_TRUE(LFN_CopyDirectoryContents(At(L"from"), At(L"to"), true));
  EXPECT_EQ(Read(L"to/a"), "new");
}

TEST_F(FileOperations, AFolderIsNeverEmptiedThroughALink) {
  LFN_CreateDirectory(At(L"mine"));
  Write(L"mine/file", "x");
  std::filesystem::create_directory_symlink("mine", m_folder / "link");
  EXPECT_FALSE(LFN_DeleteDirectoryContents(At(L"link")));
  EXPECT_FALSE(LFN_DeleteDirectoryContents(At(L"link/")));
  EXPECT_EQ(Read(L"mine/file"), "x");
}

TEST_F(FileOperations, ACopyOfAFolderFollowsNoLinkAndTellsSo) {
  LFN_CreateDirectory(At(L"from"));
  LFN_CreateDirectory(At(L"foreign"));
  Write(L"from/file", "x");
  Write(L"foreign/secret", "s");
  std::filesystem::create_directory_symlink(".", m_folder / "from/again");
  std::filesystem::create_directory_symlink("../foreign", m_folder / "from/other");
  std::filesystem::create_symlink("../foreign/secret", m_folder / "from/secret");
  EXPECT_FALSE(LFN_CopyDirectoryContents(At(L"from"), At(L"to"), true));
  EXPECT_EQ(Read(L"to/file"), "x");
  for (AString const & name : {AString(L"to/again"), AString(L"to/other"), AString(L"to/secret")})
    EXPECT_FALSE(LFN_Exists(At(name)));
}

TEST_F(FileOperations, ACopyOfAFolderNeverLandsBehindALink) {
  LFN_CreateDirectoryAndParents(At(L"from/sub"));
  LFN_CreateDirectory(At(L"to"));
  LFN_CreateDirectory(At(L"foreign"));
  Write(L"from/sub/file", "x");
  std::filesystem::create_directory_symlink("../foreign", m_folder / "to/sub");
  EXPECT_FALSE(LFN_CopyDirectoryContents(At(L"from"), At(L"to"), true));
  EXPECT_FALSE(LFN_Exists(At(L"foreign/file")));
}

TEST_F(FileOperations, FindsFilesByPatternInTheOrderOfTheirNames) {
  for (auto const * const name : {L"b.profile", L"a.profile", L"c.txt"})
    Write(name, "");
  LFN_CreateDirectory(At(L"d.profile"));
  auto const found = CFileUtilities::SimpleFindWithWildCard(Root(), L"*.profile");
  ASSERT_EQ(found.size(), 2u);
  EXPECT_EQ(found[0], At(L"a.profile"));
  EXPECT_EQ(found[1], At(L"b.profile"));
  EXPECT_TRUE(CFileUtilities::SimpleFindWithWildCard(At(L"nowhere"), L"*").empty());
}

TEST_F(FileOperations, MatchesStarsAndQuestionMarks) {
  EXPECT_TRUE(CFileUtilities::MatchesWildCard(L"abcabd", L"*ab?"));
  EXPECT_TRUE(CFileUtilities::MatchesWildCard(L"", L"*"));
  EXPECT_TRUE(CFileUtilities::MatchesWildCard(L"a.b.c", L"a*c"));
  EXPECT_FALSE(CFileUtilities::MatchesWildCard(L"abc", L"ab"));
  EXPECT_FALSE(CFileUtilities::MatchesWildCard(L"abc", L"a?"));
}

TEST_F(FileOperations, FindsAFreeTemporaryName) {
  AString first;
  AString second;
  ASSERT_TRUE(KvroGetTempFileName(Root(), L"tmp", L"dat", first));
  std::ofstream(text::ToUtf8(first)) << "taken";
  ASSERT_TRUE(KvroGetTempFileName(Root(), L"tmp", L".dat", second));
  EXPECT_NE(first, second);
  EXPECT_EQ(LongFileName(second).Extension(), L".dat");
  EXPECT_TRUE(LongFileName(second).NameAndExtension().StartsWith(L"tmp"));
  EXPECT_FALSE(KvroGetTempFileName(At(L"nowhere"), L"tmp", L"dat", first));
}

TEST(ParseName, SplitsATrailingNumberOff) {
  AString stem;
  unsigned long number = 0;
  EXPECT_TRUE(i18n::ParseName(L"SolutionBlock12", stem, number, false));
  EXPECT_EQ(stem, L"SolutionBlock");
  EXPECT_EQ(number, 12u);
  EXPECT_TRUE(i18n::ParseName(L"Setup 007", stem, number, true));
  EXPECT_EQ(stem, L"Setup");
  EXPECT_EQ(number, 7u);
  EXPECT_FALSE(i18n::ParseName(L"BlockMapName", stem, number, false));
  EXPECT_EQ(stem, L"BlockMapName");
  EXPECT_EQ(number, 0u);
  EXPECT_FALSE(i18n::ParseName(L"x99999999999999999999999", stem, number, false));
}
