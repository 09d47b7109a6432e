#include "basekit/text/CsvLine.h"

#include <gtest/gtest.h>

namespace {

using Fields = std::vector<std::string>;

Fields Split(std::string_view line, char separator = ',') {
  Fields fields;
  std::string problem;
  EXPECT_TRUE(text::SplitCsvLine(line, separator, fields, problem)) << problem;
  return fields;
}

std::string ProblemOf(std::string_view line) {
  Fields fields;
  std::string problem;
  EXPECT_FALSE(text::SplitCsvLine(line, ',', fields, problem));
  return problem;
}

TEST(CsvLine, TakesFieldsApartAndDropsBlanksRoundThem) {
  EXPECT_EQ(Split("a,b,c"), (Fields{"a", "b", "c"}));
  EXPECT_EQ(Split("  a b ,\t1e-3\t, "), (Fields{"a b", "1e-3", ""}));
}

TEST(CsvLine, KeepsEmptyFields) {
  EXPECT_EQ(Split(""), (Fields{""}));
  EXPECT_EQ(Split(",,"), (Fields{"", "", ""}));
  EXPECT_EQ(Split("a,"), (Fields{"a", ""}));
}

TEST(CsvLine, QuotesHoldSeparatorsBlanksAndDoubledQuotes) {
  EXPECT_EQ(Split(R"("a,b", " c ","say ""x""")"), (Fields{"a,b", " c ", R"(say "x")"}));
  EXPECT_EQ(Split(R"("",x)"), (Fields{"", "x"}));
}

TEST(CsvLine, TellsWhatIsWrongWithQuotes) {
  EXPECT_NE(ProblemOf(R"(a,"b)").find("not closed"), std::string::npos);
  EXPECT_NE(ProblemOf(R"("a"b,c)").find("behind"), std::string::npos);
  EXPECT_NE(ProblemOf(R"(a"b,c)").find("inside"), std::string::npos);
}

TEST(CsvLine, ATabParts) { EXPECT_EQ(Split("a\t\tb", '\t'), (Fields{"a", "", "b"})); }

} // namespace
