#include "basekit/file/PlaceInFolder.h"

#include "basekit/file/LongFileName.h"
#include "basekit/text/Utf8.h"
#include "tests/support/Printers.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace {

struct PlaceInFolder : testing::Test {
  support::TemporaryFolder folder;
  LongFileName const root = text::FromUtf8(folder.Path().string());
};

} // namespace

TEST_F(PlaceInFolder, PathsBelowTheFolderArePlacesInIt) {
  for (AString const path : {L"a", L"a/b", L"./a", L"a/./b", L"a//b", L"a/", L"..a", L"a..", L"...", L"\u00f6/\u6f22"})
    EXPECT_TRUE(LFN_IsTextOfPlaceInside(path) && LFN_IsPlaceInside(root, path)) << text::ToUtf8(path);
}

TEST_F(PlaceInFolder, PathsThatLeaveTheFolderOrNameItAreNone) {
  for (AString const & path : {AString(L""), AString(L"."), AString(L"./"), AString(L"./."), AString(L".."),
                               AString(L"../a"), AString(L"a/.."), AString(L"a/../../b"), AString(L"a/../b"),
                               AString(L"/a"), AString(L"//a"), AString(L"a\0b", 3)})
    EXPECT_FALSE(LFN_IsTextOfPlaceInside(path) || LFN_IsPlaceInside(root, path)) << text::ToUtf8(path);
}

TEST_F(PlaceInFolder, NoLinkLeadsToAPlace) {
  std::filesystem::create_directory(folder / "real");
  std::filesystem::create_symlink("real", folder / "link");
  std::filesystem::create_symlink("nowhere", folder / "real" / "broken");
  EXPECT_TRUE(LFN_IsPlaceInside(root, L"real/a"));
  for (AString const path : {L"link", L"link/", L"link/a", L"real/broken", L"./link/a", L"real//broken"})
    EXPECT_FALSE(LFN_IsPlaceInside(root, path)) << text::ToUtf8(path);
}

TEST_F(PlaceInFolder, TheFolderItselfMayBeReachedByALink) {
  std::filesystem::create_directory(folder / "real");
  std::filesystem::create_symlink("real", folder / "link");
  EXPECT_TRUE(LFN_IsPlaceInside(root + AString(L"link"), L"a"));
  EXPECT_TRUE(LFN_IsPlaceInside(root + AString(L"link/"), L"a"));
}

TEST_F(PlaceInFolder, WhatComesBehindTheFolderIsToldByTheText) {
  AString relative;
  EXPECT_TRUE(LFN_RelativeTo(L"/a/b", L"/a/b/c/d", relative));
  EXPECT_EQ(relative, L"c/d");
  EXPECT_TRUE(LFN_RelativeTo(L"/a/b/", L"/a/x/../b/c", relative));
  EXPECT_EQ(relative, L"c");
  for (AString const path : {L"/a/b", L"/a/b/", L"/a/bc", L"/a", L"/a/b/../c"})
    EXPECT_FALSE(LFN_RelativeTo(L"/a/b", path, relative)) << text::ToUtf8(path);
}

TEST_F(PlaceInFolder, TwoSpellingsOfOneFolderByALinkInFrontAreOneFolder) {
  std::filesystem::create_directories(folder / "real/results/v1");
  std::filesystem::create_symlink("real", folder / "link");
  std::filesystem::create_symlink("v1", folder / "real/results/last");
  AString relative;
  EXPECT_TRUE(LFN_RelativeTo(root + AString(L"real/results"), root + AString(L"link/results/v1/x"), relative));
  EXPECT_EQ(relative, L"v1/x");
  EXPECT_TRUE(LFN_RelativeTo(root + AString(L"link/results/"), root + AString(L"real/results/absent/"), relative));
  EXPECT_EQ(relative, L"absent");
  EXPECT_FALSE(LFN_RelativeTo(root + AString(L"link/results"), root + AString(L"real/other"), relative));
  EXPECT_TRUE(LFN_RelativeTo(root + AString(L"link/results"), root + AString(L"real/results/last"), relative));
  EXPECT_EQ(relative, L"last");
}
