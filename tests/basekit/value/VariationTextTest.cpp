#include "basekit/value/variation/VariationText.h"
#include "basekit/value/variation/VariationKeyCompare.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <set>
#include <string>

namespace {

bool Equal(AString const & a, AString const & b) { return VariationText(a) == VariationText(b); }

bool IsOpaque(AString const & text) { return VariationText(text).IsOpaque(); }

AString ValueOf(AString const & text, AString const & name) {
  VariationText const parsed(text);
  auto const * const pair = parsed.Find(name.View());
  return pair ? AString(pair->text) : AString(L"<none>");
}

bool Finds(VariationText const & stored, VariationText const & asked) {
  std::vector<std::uint64_t> keys;
  if (!asked.ProbeKeys(keys))
    return true;
  return std::find(keys.begin(), keys.end(), stored.Key()) != keys.end();
}

AString RealText(double number) {
  char buffer[40];
  std::snprintf(buffer, sizeof buffer, "%.17g", number);
  std::string const text(buffer);
  return AString(std::wstring(text.begin(), text.end()));
}

} // namespace

TEST(VariationText, CaseOfNamesAndTextsDoesNotMatter) {
  EXPECT_TRUE(Equal(L"C1=1.2pF; Layer=Top", L"c1=1.2PF; LAYER=top"));
  EXPECT_TRUE(Equal(L"\u00c4nderung=1", L"\u00e4nderung=1"));
  EXPECT_FALSE(Equal(L"C1=1; C2=2", L"C1=1; C3=2"));
}

TEST(VariationText, SpacingAndOrderDoNotMatter) {
  EXPECT_TRUE(Equal(L"C1=1.2pF; L1=4nH", L"  L1 =4 nH;C1\t= 1.2pF ;; "));
  EXPECT_TRUE(Equal(L"a=\u00a0x\u2003; b=2", L"b=2;a=x"));
}

TEST(VariationText, NumbersAreEqualInSIUnits) {
  EXPECT_TRUE(Equal(L"C1=1.2pF", L"C1=1.2e-12"));
  EXPECT_TRUE(Equal(L"C1=1.2pF", L"C1=1200fF"));
  EXPECT_TRUE(Equal(L"f=2.4GHz", L"f=2400MHz"));
  EXPECT_TRUE(Equal(L"x=0", L"x=-0.0"));
  EXPECT_TRUE(Equal(L"z=1+2i", L"z=1.0 + 2.0j"));
  EXPECT_FALSE(Equal(L"z=1+2i", L"z=1"));
  EXPECT_FALSE(Equal(L"C1=1.2pF", L"C1=1.2nF"));
}

TEST(VariationText, TheToleranceIsARelativeOneOfTenToTheMinusFourteen) {
  EXPECT_TRUE(Equal(L"x=1", L"x=1.0000000000000098"));
  EXPECT_FALSE(Equal(L"x=1", L"x=1.0000000000000104"));
  EXPECT_TRUE(Equal(L"x=-1e-12", L"x=-1.0000000000000098e-12"));
  EXPECT_FALSE(Equal(L"x=1e-12", L"x=1.0000000000000104e-12"));
  EXPECT_FALSE(Equal(L"x=0", L"x=1e-300"));
  EXPECT_FALSE(Equal(L"x=1e-300", L"x=-1e-300"));
}

TEST(VariationText, ANumberIsNeverEqualToAText) {
  EXPECT_FALSE(Equal(L"x=1", L"x=one"));
  EXPECT_FALSE(Equal(L"x=1", L"x=\"\""));
  EXPECT_TRUE(Equal(L"x=1", L"x=\" 1 \""));
}

TEST(VariationText, TextsThatOnlyLookLikeNumbersAreComparedAsTexts) {
  EXPECT_TRUE(Equal(L"x=NaN", L"x=nan"));
  EXPECT_TRUE(Equal(L"x=1e999", L"X=1E999"));
  EXPECT_FALSE(Equal(L"x=1e999", L"x=2e999"));
  EXPECT_FALSE(Equal(L"x=a+b", L"x=b+a"));
}

TEST(VariationText, QuotesOnlyDelimit) {
  EXPECT_TRUE(Equal(L"s=\"FR4\"", L"s=FR4"));
  EXPECT_TRUE(Equal(L"\"s\"=\"1.2pF\"", L"s=1.2pF"));
  EXPECT_EQ(ValueOf(L"s=\"a;b=c\"; t=1", L"s"), AString(L"a;b=c"));
  EXPECT_EQ(ValueOf(L"s=\"say \\\"hi\\\" \\\\ \\n\\t\"; t=\"\\\\\"", L"S"), AString(L"say \"hi\" \\ \n\t"));
  EXPECT_EQ(ValueOf(L"s=\"say \\\"hi\\\" \\\\ \\n\\t\"; t=\"\\\\\"", L"t"), AString(L"\\"));
  EXPECT_EQ(ValueOf(L"s=a b; t=", L"s"), AString(L"a b"));
  EXPECT_EQ(ValueOf(L"s=a b; t=", L"t"), AString());
}

TEST(VariationText, AnEmptyTextHasNoPairs) {
  EXPECT_FALSE(IsOpaque(L""));
  EXPECT_TRUE(Equal(L"", L" ; ;"));
  EXPECT_FALSE(Equal(L"", L"x=1"));
}

TEST(VariationText, MalformedTextsAreOpaqueAndEqualOnlyToThemselvesWithoutCase) {
  for (wchar_t const * text :
       {L"NotSet", L"SetupDefinition", L"x", L"=1", L" = 1", L"\"\"=1", L"x=1 y=2", L"x==1", L"x=\"a", L"x=\"a\\",
        L"x=\"a\\q\"", L"x=\"a\"b", L"x=a\"b\"", L"\"x\"y=1", L"x=1; X=2", L"x=1; y", L"\"x", L"x=\"a\"=1"}) {
    EXPECT_TRUE(IsOpaque(text)) << ::testing::PrintToString(AString(text));
    EXPECT_TRUE(Equal(text, AString(text).ToLower()));
    EXPECT_FALSE(Equal(text, L"other"));
    EXPECT_FALSE(Equal(text, L""));
    EXPECT_FALSE(Equal(AString(text) + L" ", text));
  }
}

TEST(VariationText, CopiesOutliveTheOriginal) {
  auto original = std::make_unique<VariationText>(AString(L"s=\"tab\\there\"; c=1.2pF"));
  VariationText const copy(*original);
  original.reset();
  EXPECT_EQ(AString(copy.Find(L"s")->text), AString(L"tab\there"));
  EXPECT_EQ(copy.Find(L"C")->number.real(), 1.2e-12);
}

TEST(VariationText, WhatIsWrittenReadsBack) {
  std::mt19937 random(11);
  std::wstring const alphabet = L"ab1.;=\"\\ \n\t\r+-%$_'\u00e4\u03a9\u00a0\u2028\U0001f600\x01";
  std::uniform_int_distribution<std::size_t> letter(0, alphabet.size() - 1);
  std::uniform_int_distribution<int> length(0, 8);
  auto const word = [&] {
    std::wstring text;
    for (int left = length(random); left > 0; --left)
      text += alphabet[letter(random)];
    return text;
  };
  for (int round = 0; round < 3000; ++round) {
    variation::Writer writer;
    std::vector<std::pair<std::wstring, std::wstring>> written;
    for (int pair = length(random); pair > 0; --pair) {
      written.emplace_back(L"n" + std::to_wstring(pair) + word(), word());
      writer.Add(written.back().first, written.back().second);
    }
    AString const text = writer.Take();
    VariationText const parsed(text);
    ASSERT_FALSE(parsed.IsOpaque()) << ::testing::PrintToString(text);
    ASSERT_EQ(parsed.Pairs().size(), written.size());
    for (auto const & [name, value] : written) {
      ASSERT_NE(parsed.Find(name), nullptr);
      ASSERT_EQ(AString(parsed.Find(name)->text), AString(value));
    }
  }
}

TEST(VariationText, AnyTextIsReadWithoutHarmAndEqualsItself) {
  std::mt19937 random(13);
  std::wstring const alphabet = L"aA1=;\"\\ e-p";
  std::uniform_int_distribution<std::size_t> letter(0, alphabet.size() - 1);
  for (int round = 0; round < 5000; ++round) {
    std::wstring text;
    for (int left = round % 17; left > 0; --left)
      text += alphabet[letter(random)];
    VariationText const parsed{AString(text)};
    ASSERT_TRUE(parsed == parsed);
    ASSERT_TRUE(Finds(parsed, parsed));
  }
}

TEST(VariationText, OrderIsTotalOverASample) {
  std::vector<VariationText> texts;
  for (wchar_t const * text :
       {L"", L"a=1", L"a=2", L"a=x", L"A=Y", L"a=1; b=1", L"b=1", L"NotSet", L"zzz", L"a=-1", L"a=1+1i"})
    texts.emplace_back(AString(text));
  for (auto const & a : texts)
    for (auto const & b : texts) {
      int const forward = VariationText::Compare(a, b);
      int const backward = VariationText::Compare(b, a);
      EXPECT_EQ(forward == 0, &a == &b);
      EXPECT_EQ(forward, backward == 0 ? 0 : 3 - backward);
      for (auto const & c : texts) {
        if (forward == 1 && VariationText::Compare(b, c) == 1) {
          EXPECT_EQ(VariationText::Compare(a, c), 1);
        }
      }
    }
}

TEST(VariationText, ProbeKeysFindEveryTextThatIsEqual) {
  std::mt19937_64 random(17);
  std::uniform_real_distribution<double> mantissa(-10.0, 10.0);
  std::uniform_int_distribution<int> exponent(-20, 20);
  std::uniform_int_distribution<int> steps(-95, 95);
  int equal = 0;
  for (int round = 0; round < 20000; ++round) {
    double const a = mantissa(random) * std::pow(10.0, exponent(random));
    double b = a;
    for (int left = steps(random); left != 0; left += left < 0 ? 1 : -1)
      b = std::nextafter(b, left < 0 ? -INFINITY : INFINITY);
    VariationText const left(L"x=" + RealText(a) + L"; y=2");
    VariationText const right(L"Y=2; X=" + RealText(b));
    if (left == right) {
      ++equal;
      ASSERT_TRUE(Finds(left, right) && Finds(right, left)) << a << " " << b;
    }
  }
  EXPECT_GT(equal, 10000);
}

TEST(VariationText, ProbeKeysReachOverTheEdgeOfACell) {
  // Half a cell above 1: the last double of one cell and the first of the next.
  double const above = 1.0 + 32768 * 0x1p-52;
  double const below = std::nextafter(above, 0.0);
  VariationText const low(L"x=" + RealText(below));
  VariationText const high(L"x=" + RealText(above));
  ASSERT_NE(low.Key(), high.Key());
  EXPECT_TRUE(low == high);
  EXPECT_TRUE(Finds(low, high));
  EXPECT_TRUE(Finds(high, low));
  std::vector<std::uint64_t> keys;
  VariationText(L"x=1; y=2.4GHz; z=3mm").ProbeKeys(keys);
  EXPECT_EQ(keys.size(), 1u);
}

TEST(VariationText, TooManyValuesNearAnEdgeMakeAllTextsCandidates) {
  AString const edge = RealText(1.0 + 32768 * 0x1p-52);
  AString few;
  AString many;
  for (int variable = 0; variable < 40; ++variable) {
    AString const pair = AString::Format(L"v%d=%s; ", variable, edge);
    many += pair;
    if (variable < 8)
      few += pair;
  }
  std::vector<std::uint64_t> keys;
  EXPECT_TRUE(VariationText(few).ProbeKeys(keys));
  EXPECT_EQ(std::set<std::uint64_t>(keys.begin(), keys.end()).size(), VariationText::maxProbeKeys);
  EXPECT_FALSE(VariationText(many).ProbeKeys(keys));
  EXPECT_TRUE(keys.empty());
}

TEST(VariationText, DifferentVariationsMostlyHaveDifferentKeys) {
  std::set<std::uint64_t> keys;
  for (int c = 0; c < 50; ++c)
    for (int l = 0; l < 50; ++l)
      keys.insert(VariationText(AString::Format(L"C1=%d.5pF; L1=%dnH; layer=l%d", c, l, l % 7)).Key());
  EXPECT_EQ(keys.size(), 2500u);
  EXPECT_NE(VariationText(L"a=1; b=2").Key(), VariationText(L"a=2; b=1").Key());
}

TEST(VariationKeyCompare, TellsEqualAndOrderByValue) {
  EXPECT_TRUE(VariationKeyCompare(L"x=1mm; y=2") == VariationKeyCompare(L"Y=2; x=1e-3"));
  EXPECT_TRUE(VariationKeyCompare(L"x=9") < VariationKeyCompare(L"x=10"));
  EXPECT_FALSE(VariationKeyCompare(L"x=10") < VariationKeyCompare(L"x=9"));
}
