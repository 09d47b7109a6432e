#include "basekit/file/LongFileName.h"

#include "basekit/text/Utf8.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

TEST(LongFileName, TakesAPathApart) {
  LongFileName const name(L"/results/amp.v2.qsol");
  EXPECT_EQ(name.FilePath(), L"/results/amp.v2.qsol");
  EXPECT_EQ(name.DirPath(), L"/results/");
  EXPECT_EQ(name.NameAndExtension(), L"amp.v2.qsol");
  EXPECT_EQ(name.Name(), L"amp.v2");
  EXPECT_EQ(name.Extension(), L".qsol");
}

TEST(LongFileName, KnowsBareNamesDirectoryNamesAndHiddenFiles) {
  EXPECT_EQ(LongFileName(L"amp.qsol").DirPath(), L"");
  EXPECT_EQ(LongFileName(L"/results/").DirPath(), L"/results/");
  EXPECT_EQ(LongFileName(L"/results/").NameAndExtension(), L"results");
  EXPECT_EQ(LongFileName(L"/a.b/").Extension(), L"");
  EXPECT_EQ(LongFileName(L"/a.b/c").Extension(), L"");
  EXPECT_EQ(LongFileName(L".hidden").Name(), L".hidden");
  EXPECT_EQ(LongFileName(L"..").Extension(), L"");
  EXPECT_EQ(LongFileName().Name(), L"");
}

TEST(LongFileName, JoinsWithOneSlash) {
  for (auto const * const head : {L"/a", L"/a/"})
    for (auto const * const tail : {L"b.txt", L"/b.txt"})
      EXPECT_EQ((LongFileName(head) + tail).FilePath(), L"/a/b.txt");
  EXPECT_EQ(LongFileName(LongFileName(), L"b").FilePath(), L"b");
  EXPECT_EQ((LongFileName(L"/a/") + L"").FilePath(), L"/a/");
}

TEST(LongFileName, BecomesADirectoryNameOnce) {
  LongFileName name(L"/a");
  name.MakeItDirectory();
  name.MakeItDirectory();
  EXPECT_EQ(name.FilePath(), L"/a/");
  EXPECT_TRUE(name.IsDirectory());
  LongFileName empty;
  empty.MakeItDirectory();
  EXPECT_TRUE(empty.IsEmpty());
}

TEST(LongFileName, AsksTheDisk) {
  support::TemporaryFolder const folder;
  LongFileName const path(text::FromUtf8(folder.Path().string()));
  EXPECT_TRUE(path.Exists());
  EXPECT_TRUE(path.IsDirectory());
  EXPECT_FALSE((path + L"nothing").Exists());
  EXPECT_FALSE((path + L"nothing").IsDirectory());
}
