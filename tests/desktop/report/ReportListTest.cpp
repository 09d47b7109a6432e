#include "desktop/report/ReportList.h"

#include "basekit/io/BlockCodec.h"
#include "basekit/io/CBlock.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>

using desktop::ReportDefinition;
using desktop::ReportDisplay;
using desktop::ReportList;

namespace {

ReportList ListOf(ReportList::Definitions definitions) {
  ReportList list;
  list.Exchange(definitions);
  return list;
}

ReportDefinition Report(AString const & name) {
  return {name, L"S \"1\"", L"Sol", L"Freq", {L"dB(S(2,1))", L"\u03b1"}, L"R=1", {L"C1", L"L1"}, ReportDisplay::kSmith};
}

// The text form of what is written, with one piece of it replaced.
std::vector<AString> NoticesOf(std::string const & from, std::string const & to, ReportList & list) {
  io::CBlock block(L"Reports");
  ListOf({Report(L"a"), Report(L"b")}).Write(block);
  std::string bytes;
  EXPECT_TRUE(io::EncodeItem(block, io::Form::Text, io::kExactDigits, bytes));
  EXPECT_NE(bytes.find(from), std::string::npos) << bytes;
  bytes.replace(bytes.find(from), from.size(), to);
  std::size_t at = 0;
  io::CBlock_ptr<io::CBlock> const read(io::DecodeItemAt(bytes, at));
  std::vector<AString> notices;
  if (read)
    list.Read(*read, notices);
  return notices;
}

} // namespace

TEST(ReportList, ReadsWhatItWrote) {
  ReportDefinition plain{L"plain", L"", L"", L"", {L"gain"}, L"", {}, ReportDisplay::kTable};
  io::CBlock block(L"Reports");
  ListOf({Report(L"a"), plain}).Write(block);
  ReportList read;
  std::vector<AString> notices;
  read.Read(block, notices);
  EXPECT_EQ(read.All(), (ReportList::Definitions{Report(L"a"), plain}));
  EXPECT_TRUE(notices.empty());
}

TEST(ReportList, ADamagedDefinitionIsLeftOutAndToldWhileTheOthersStay) {
  std::vector<std::pair<std::string, std::string>> const damages{
      {"Name = \"a\"", "Nome = \"a\""}, {"Name = \"a\"", "Name = \"\""}, {"X = \"Freq\"", "X = \"\""},
      {"X = \"Freq\"", "X = 3"},        {"Y [\"dB", "Z [\"dB"},          {"Y [\"dB(S(2,1))\"", "Y [7"},
      {"\"smith\"", "\"carpet\""},      {"Over [\"C1\"", "Over [1"},     {"Report {", "Rapport {"},
  };
  for (auto const & [from, to] : damages) {
    ReportList list;
    EXPECT_EQ(NoticesOf(from, to, list).size(), 1u) << to;
    EXPECT_EQ(list.All().size(), 1u) << to;
    EXPECT_TRUE(list.Find(L"b")) << to;
  }
}

TEST(ReportList, OfTwoOfOneNameTheFirstStays) {
  ReportList list;
  EXPECT_EQ(NoticesOf("Name = \"b\"", "Name = \"A\"", list).size(), 1u);
  EXPECT_EQ(list.All(), ReportList::Definitions{Report(L"a")});
}

TEST(ReportList, FindsByNameWithoutCase) {
  ReportList const list = ListOf({Report(L"Gain")});
  EXPECT_TRUE(list.Find(L"gAIN"));
  EXPECT_FALSE(list.Find(L"gai"));
}

TEST(ReportDefinition, DescribesItselfInOneLine) {
  EXPECT_EQ(DescribeReport(Report(L"a")),
            L"dB(S(2,1)), \u03b1 over Freq, for each C1, L1, at R=1, of setup S \"1\" : Sol");
}
