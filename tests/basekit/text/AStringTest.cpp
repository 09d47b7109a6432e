#include "basekit/text/AString.h"
#include "basekit/text/NumberText.h"
#include "basekit/text/Utf8.h"
#include "tests/support/Printers.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

TEST(AString, CopiesShareTextAndStayIndependent) {
  AString a(L"frequency");
  AString b = a;
  EXPECT_EQ(a.c_str(), b.c_str());
  b += L"!";
  EXPECT_EQ(a, AString(L"frequency"));
  EXPECT_EQ(b, AString(L"frequency!"));
}

TEST(AString, ComparesWithoutCaseBeyondAscii) {
  EXPECT_TRUE(AString::MatchNoCase(L"Größe ΔΩ Ж", L"GRÖßE δω ж"));
  EXPECT_FALSE(AString::MatchNoCase(L"a", L"ab"));
  EXPECT_LT(AString(L"alpha").CompareNoCase(L"BETA"), 0);
  EXPECT_GT(AString(L"b").Compare(L"B"), 0);
}

TEST(AString, FormatsTextsNumbersAndPercentSigns) {
  EXPECT_EQ(AString::Format(L"%s : %s", AString(L"Setup"), L"Sweep"), AString(L"Setup : Sweep"));
  EXPECT_EQ(AString::Format(L"Design_%d.svcache", 17L), AString(L"Design_17.svcache"));
  EXPECT_EQ(AString::Format(L"%.5g%%|%5d|%-4s|%03d", 0.123456789, 42, L"x", -7), AString(L"0.12346%|   42|x   |-07"));
}

TEST(AString, FormatWithTooFewArgumentsLeavesTheRestOut) {
  EXPECT_EQ(AString::Format(L"%s and %s", L"one"), AString(L"one and "));
}

TEST(AString, FormatTreatsPercentSignsInsideArgumentsAsText) {
  EXPECT_EQ(AString::Format(L"[%s]", L"100%s%n"), AString(L"[100%s%n]"));
}

TEST(AString, TokenizesAndTrims) {
  auto const pieces = AString(L" a:b :: c").Tokenize(L":");
  ASSERT_EQ(pieces.size(), 3u);
  EXPECT_EQ(pieces[1].Trimmed(), AString(L"b"));
  EXPECT_TRUE(AString(L" \t ").Trimmed().empty());
}

TEST(AString, KnowsNumbersOfABase) {
  EXPECT_TRUE(AString(L"-12").IsNumber(10));
  EXPECT_FALSE(AString(L"12a").IsNumber(10));
  EXPECT_TRUE(AString(L"12a").IsNumber(16));
  EXPECT_FALSE(AString(L"-").IsNumber(10));
}

TEST(NumberText, ShortestTextReadsBackBitForBit) {
  for (double const value : {0.1, 1.0 / 3.0, 5e-324, std::numeric_limits<double>::max(), -0.0, 1e300, 123456789.0}) {
    double back = 7;
    ASSERT_TRUE(text::ParseReal(std::string_view(text::ShortestReal(value)), back));
    EXPECT_EQ(std::signbit(value), std::signbit(back));
    EXPECT_EQ(value, back);
  }
  double back = 0;
  ASSERT_TRUE(text::ParseReal(std::string_view(text::ShortestReal(NAN)), back));
  EXPECT_TRUE(std::isnan(back));
  ASSERT_TRUE(text::ParseReal(std::string_view(text::ShortestReal(-INFINITY)), back));
  EXPECT_EQ(back, -INFINITY);
}

TEST(NumberText, RefusesHalfNumbersAndLeavesTheResult) {
  double real = 3;
  long long whole = 4;
  EXPECT_FALSE(text::ParseReal(std::wstring_view(L"1.5x"), real));
  EXPECT_FALSE(text::ParseInteger(std::wstring_view(L"99999999999999999999"), whole));
  EXPECT_FALSE(text::ParseInteger(std::wstring_view(L""), whole));
  EXPECT_EQ(real, 3);
  EXPECT_EQ(whole, 4);
}

TEST(Utf8, RoundTripsEveryPlaneAndMarksBadBytes) {
  AString const wide(L"aé€𝄞");
  EXPECT_EQ(text::FromUtf8(text::ToUtf8(wide)), wide);
  AString strict(L"kept");
  EXPECT_FALSE(text::FromUtf8Strict("a\xC0\xAF", strict));
  EXPECT_FALSE(text::FromUtf8Strict("\xED\xA0\x80", strict));
  EXPECT_EQ(strict, AString(L"kept"));
  EXPECT_EQ(text::FromUtf8("a\xFFz"), AString(L"a\xFFFDz"));
}
