#include "desktop/message/NameList.h"

#include "tests/support/Printers.h"

#include <gtest/gtest.h>

using desktop::NameList;

namespace {

std::vector<AString> Names(int count) {
  std::vector<AString> names;
  for (int i = 0; i < count; ++i)
    names.push_back(AString::Format(L"v%d", i));
  return names;
}

} // namespace

TEST(NameList, TellsAFewNamesWhole) {
  EXPECT_EQ(NameList({}), AString(L"none"));
  EXPECT_EQ(NameList({L"a"}), AString(L"a"));
  EXPECT_EQ(NameList({L"a", L"b"}), AString(L"a, b"));
}

TEST(NameList, OfManyTellsTheNearest) {
  std::vector<AString> names = Names(100);
  names[50] = L"capacity";
  EXPECT_EQ(NameList(names, L"capasity"), AString(L"capacity and 99 others"));
}

TEST(NameList, OfManyTellsTheFirstWithoutANearOne) {
  EXPECT_EQ(NameList(Names(100), L"resistance"), AString(L"v0, v1, v2, v3, v4 and 95 others"));
}

TEST(NameList, CutsLongNames) {
  AString const text = NameList({AString(std::wstring(5000, L'x'))});
  EXPECT_EQ(text.size(), 63u);
}
