#include "solutionmanager/address/PackedKeyText.h"

#include "solutionmanager/address/SolutionVariationKey.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace {

using Key = SolutionVariationKey;

void ExpectAsUnpack(AString const & text) {
  Key const before(11, L"before", 12, 13);
  Key quick = before, slow = before;
  EXPECT_EQ(UnpackQuickly(text, quick), slow.Unpack(text)) << testing::PrintToString(text);
  EXPECT_EQ(quick.GetSimSetupKey(), slow.GetSimSetupKey()) << testing::PrintToString(text);
  EXPECT_EQ(quick.GetDesignVariationKey(), slow.GetDesignVariationKey()) << testing::PrintToString(text);
  EXPECT_EQ(quick.GetSolutionKey(), slow.GetSolutionKey()) << testing::PrintToString(text);
  EXPECT_EQ(quick.GetVersionIDKey(), slow.GetVersionIDKey()) << testing::PrintToString(text);
}

AString AnyText(std::mt19937 & engine) {
  static std::vector<wchar_t> const letters{L'a',
                                            L'Z',
                                            L'0',
                                            L' ',
                                            L'=',
                                            L';',
                                            L'"',
                                            L'\\',
                                            L'\n',
                                            L'\t',
                                            wchar_t(1),
                                            L'(',
                                            L')',
                                            L'\'',
                                            wchar_t(0x7f),
                                            wchar_t(0x85),
                                            wchar_t(0xa0),
                                            wchar_t(0x3a9),
                                            wchar_t(0x2028),
                                            wchar_t(0xfeff),
                                            wchar_t(0xd800),
                                            wchar_t(0x1f600),
                                            wchar_t(0x110000),
                                            wchar_t(0x4e2d)};
  std::wstring text;
  for (auto count = engine() % 12; count > 0; --count)
    text += letters[engine() % letters.size()];
  return AString(std::wstring_view(text));
}

long AnyNumber(std::mt19937 & engine) {
  static std::vector<long> const numbers{-3,
                                         -2,
                                         -1,
                                         0,
                                         1,
                                         42,
                                         123456,
                                         999999999999999999,
                                         1000000000000000000,
                                         std::numeric_limits<long>::max(),
                                         std::numeric_limits<long>::min()};
  return numbers[engine() % numbers.size()];
}

} // namespace

TEST(PackedKeyText, ReadsEveryKeyAsUnpackDoes) {
  std::mt19937 engine(5);
  for (int i = 0; i < 3000; ++i)
    ExpectAsUnpack(Key(AnyNumber(engine), AnyText(engine), AnyNumber(engine), AnyNumber(engine)).Pack());
}

TEST(PackedKeyText, ReadsTextsThatAreNearlyKeysAsUnpackDoes) {
  std::mt19937 engine(6);
  for (int i = 0; i < 3000; ++i) {
    std::wstring text(Key(AnyNumber(engine), AnyText(engine), AnyNumber(engine), AnyNumber(engine)).Pack().View());
    std::size_t const at = engine() % text.size();
    switch (engine() % 4) {
    case 0:
      text.erase(at, 1);
      break;
    case 1:
      text.insert(at, 1, L"\"\\ ,=()-.e0x{"[engine() % 13]);
      break;
    case 2:
      text.resize(at);
      break;
    default:
      text[at] = static_cast<wchar_t>(engine() % 0x180);
    }
    ExpectAsUnpack(AString(std::wstring_view(text)));
  }
}

TEST(PackedKeyText, LeavesOtherFormsToUnpack) {
  for (auto const * text :
       {L"SolutionKey(VersionID = 4, Solution = 3, Instance = \"a=1\", SimSetup = 2)",
        L"SolutionKey( SimSetup = 1, Instance = \"a\", Solution = 2, VersionID = 3)", L"ProductNotes", L"",
        L"SolutionKey(SimSetup = -0, Instance = \"a\", Solution = 2.0, VersionID = 3e0)",
        L"SolutionKey(SimSetup = 1, Instance = \"a\", Solution = 2, VersionID = 3) ",
        L"SolutionKey(SimSetup = 1, Instance = \"a\", Solution = 2, VersionID = 3)x",
        L"SolutionKey(SimSetup = 99999999999999999999, Instance = \"a\", Solution = 2, VersionID = 3)"})
    ExpectAsUnpack(text);
  Key const key(1, AString(std::wstring(65536, L'v')), 2, 3);
  ExpectAsUnpack(key.Pack());
  ExpectAsUnpack(key.BinaryPack());
}
