#include "desktop/study/VaryWord.h"

#include "basekit/text/Utf8.h"
#include "desktop/Error.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>

namespace {

using desktop::ReadVaryWord;
using Values = std::vector<double>;

std::string RefusalOf(AString const & word) {
  try {
    ReadVaryWord(word);
  } catch (desktop::Error const & error) {
    EXPECT_EQ(error.Kind(), desktop::ErrorKind::kUsage);
    return error.what();
  }
  ADD_FAILURE() << "'" << text::ToUtf8(word) << "' was not refused";
  return {};
}

void ExpectRefused(AString const & word, std::vector<std::string> const & parts) {
  std::string const text = RefusalOf(word);
  for (std::string const & part : parts)
    EXPECT_NE(text.find(part), std::string::npos) << text;
}

TEST(VaryWord, ReadsAListWithPrefixesAndUnits) {
  auto const word = ReadVaryWord(L" C = 1p, 2.2pF ,3e-12");
  EXPECT_EQ(word.axis.names, std::vector<AString>{L"C"});
  EXPECT_EQ(word.axis.columns, (std::vector<Values>{{1e-12, 2.2e-12, 3e-12}}));
  EXPECT_TRUE(word.ranges.empty());
}

TEST(VaryWord, ReadsARangeInDecimalSteps) {
  EXPECT_EQ(ReadVaryWord(L"x=0.9:1.1:0.05").axis.columns, (std::vector<Values>{{0.9, 0.95, 1, 1.05, 1.1}}));
}

TEST(VaryWord, SeveralNamesRunTogether) {
  auto const word = ReadVaryWord(L"a=1,2,3,b=10,20,30,c=0:1:0.5");
  EXPECT_EQ(word.axis.names, (std::vector<AString>{L"a", L"b", L"c"}));
  EXPECT_EQ(word.axis.columns, (std::vector<Values>{{1, 2, 3}, {10, 20, 30}, {0, 0.5, 1}}));
  EXPECT_EQ(word.axis.Rows(), 3u);
}

TEST(VaryWord, LinkedValuesMayRepeatAsLongAsTheRowsDiffer) {
  EXPECT_EQ(ReadVaryWord(L"a=1,1,2,b=1,2,1").axis.Rows(), 3u);
  ExpectRefused(L"a=1,2,1,b=5,6,5", {"row 3", "twice"});
  ExpectRefused(L"a=1,2,1.0", {"1.0", "twice"});
}

TEST(VaryWord, LinkedVariablesOfUnequalLengthAreRefused) {
  ExpectRefused(L"a=1,2,3,b=10,20", {"--vary b", "2 values", "has 3", "equally many"});
  ExpectRefused(L"a=1:3:1,b=1,2", {"equally many"});
  ExpectRefused(L"a=1,2,A=3,4", {"twice"});
}

TEST(VaryWord, ReadsRangesThatAreToBeSampled) {
  auto const word = ReadVaryWord(L"a=0.9:1.1,b=10:20");
  EXPECT_TRUE(word.axis.names.empty());
  ASSERT_EQ(word.ranges.size(), 2u);
  EXPECT_EQ(word.ranges[1].name, L"b");
  EXPECT_EQ(word.ranges[1].from, 10);
  EXPECT_EQ(word.ranges[1].to, 20);
}

TEST(VaryWord, SampledRangesStandApartFromValues) {
  ExpectRefused(L"a=1:2,b=1,2", {"--vary b", "a"});
  ExpectRefused(L"a=2:1", {"empty"});
  ExpectRefused(L"a=1:1", {"empty"});
  ExpectRefused(L"a=1:2,3", {"mixed"});
}

TEST(VaryWord, ImpossibleWordsAreRefused) {
  ExpectRefused(L"a", {"="});
  ExpectRefused(L"a=", {"value"});
  ExpectRefused(L"a=1,,2", {"''"});
  ExpectRefused(L"a=1:2:3:4", {"A:B:STEP"});
  ExpectRefused(L"a=1:2:0", {"step"});
  ExpectRefused(L"a=2:1:1", {"empty"});
  ExpectRefused(L"a=0:1:1e-12", {"2000000"});
}

} // namespace
