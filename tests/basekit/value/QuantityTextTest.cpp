#include "basekit/value/units/QuantityText.h"
#include "basekit/text/NumberText.h"
#include "basekit/text/Utf8.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <string>

namespace {

double Read(std::wstring_view text) {
  val::Quantity quantity;
  return val::ParseQuantity(text, quantity) ? quantity.real : std::nan("");
}

bool IsQuantity(std::wstring_view text) {
  val::Quantity quantity;
  return val::ParseQuantity(text, quantity);
}

Units::FullUnitType UnitOf(std::wstring_view text) {
  val::Quantity quantity;
  val::ParseQuantity(text, quantity);
  return quantity.unit;
}

} // namespace

TEST(QuantityText, APrefixIsJoinedWithTheExponentSoThatNothingIsRounded) {
  EXPECT_EQ(Read(L"1.2pF"), 1.2e-12);
  EXPECT_EQ(Read(L"2.4GHz"), 2.4e9);
  EXPECT_EQ(Read(L"0.3mm"), 0.3e-3);
  EXPECT_EQ(Read(L"7e3nH"), 7e-6);
  EXPECT_EQ(Read(L"-4.7k"), -4700.0);
  EXPECT_EQ(Read(L"+1e-12"), 1e-12);
  EXPECT_EQ(Read(L".5"), 0.5);
  EXPECT_EQ(Read(L"5."), 5.0);
}

TEST(QuantityText, BlanksRoundANumberAndBeforeItsUnitMeanNothing) {
  EXPECT_EQ(Read(L"  2.4 GHz "), 2.4e9);
  EXPECT_EQ(Read(L"1.2\tpF"), 1.2e-12);
}

TEST(QuantityText, TheFieldsUnitsAreKnown) {
  EXPECT_EQ(Read(L"50Ohm"), 50.0);
  EXPECT_EQ(Read(L"50\u03a9"), 50.0);
  EXPECT_EQ(Read(L"3\u00b5H"), 3e-6);
  EXPECT_EQ(Read(L"3\u03bcH"), 3e-6);
  EXPECT_EQ(Read(L"1mil"), 2.54e-5);
  EXPECT_EQ(Read(L"2cm"), 0.02);
  EXPECT_EQ(Read(L"-3dB"), -3.0);
  EXPECT_EQ(Read(L"10dBm"), 10.0);
  EXPECT_EQ(Read(L"50%"), 0.5);
  EXPECT_DOUBLE_EQ(Read(L"180deg"), 3.14159265358979323846);
  EXPECT_DOUBLE_EQ(Read(L"25cel"), 298.15);
}

TEST(QuantityText, AUnitWinsOverAPrefixAndTheExactCaseOverAnother) {
  EXPECT_EQ(Read(L"1m"), 1.0);
  EXPECT_EQ(Units::GetUnitType(UnitOf(L"1m")), Units::kLength);
  EXPECT_EQ(Read(L"1M"), 1e6);
  EXPECT_EQ(Read(L"1f"), 1e-15);
  EXPECT_EQ(Read(L"1F"), 1.0);
  EXPECT_EQ(Read(L"1mHz"), 1e-3);
  EXPECT_EQ(Read(L"1MHz"), 1e6);
  EXPECT_EQ(Read(L"1MHZ"), 1e6);
  EXPECT_EQ(Read(L"1ghz"), 1e9);
  EXPECT_EQ(Read(L"1PF"), 1e-12);
  EXPECT_EQ(Read(L"1meg"), 1e6);
  EXPECT_EQ(Read(L"1MEGohm"), 1e6);
  EXPECT_EQ(Read(L"1K"), 1e3);
}

TEST(QuantityText, WordsExpressionsAndNumbersOutOfRangeAreNoNumbers) {
  for (wchar_t const * text :
       {L"",      L" ",        L"-",      L".",     L"e5",      L"abc",       L"C1",   L"2*C1", L"1+2",
        L"1.2.3", L"1e999",    L"1e-999", L"nan",   L"inf",     L"-infinity", L"0x10", L"1pX",  L"1 2",
        L"--1",   L"1e400GHz", L"12mdeg", L"1GGHz", L"1\u0664", L"1i2",       L"1+-2i"})
    EXPECT_FALSE(IsQuantity(text)) << std::string(text, text + std::char_traits<wchar_t>::length(text));
}

TEST(QuantityText, HugeExponentsAndLongDigitsAreReadWithoutHarm) {
  EXPECT_FALSE(IsQuantity(L"1e" + std::wstring(100000, L'9')));
  EXPECT_EQ(Read(L"0." + std::wstring(100000, L'3')), 1.0 / 3.0);
  EXPECT_FALSE(IsQuantity(std::wstring(100000, L'9')));
}

TEST(QuantityText, ComplexNumbersHaveTwoParts) {
  val::Quantity quantity;
  ASSERT_TRUE(val::ParseQuantity(L"50-10.5i", quantity));
  EXPECT_TRUE(quantity.isComplex);
  EXPECT_EQ(quantity.real, 50.0);
  EXPECT_EQ(quantity.imaginary, -10.5);
  ASSERT_TRUE(val::ParseQuantity(L"1e3 + 2e-1j", quantity));
  EXPECT_EQ(quantity.real, 1000.0);
  EXPECT_EQ(quantity.imaginary, 0.2);
  ASSERT_TRUE(val::ParseQuantity(L"-2i", quantity));
  EXPECT_EQ(quantity.real, 0.0);
  EXPECT_EQ(quantity.imaginary, -2.0);
}

TEST(QuantityText, ANumberWithoutUnitIsTakenInTheAssumedOne) {
  val::Quantity quantity;
  Units::FullUnitType const picofarad = UnitOf(L"1pF");
  ASSERT_TRUE(val::ParseQuantity(L"1.2", quantity, picofarad));
  EXPECT_EQ(quantity.real, 1.2e-12);
  ASSERT_TRUE(val::ParseQuantity(L"1.2nF", quantity, picofarad));
  EXPECT_EQ(quantity.real, 1.2e-9);
}

TEST(QuantityText, WrittenTextsAreShort) {
  EXPECT_EQ(val::QuantityText({1.2e-12, 0, false, UnitOf(L"1pF")}), AString(L"1.2pF"));
  EXPECT_EQ(val::QuantityText({2.4e9, 0, false, UnitOf(L"1GHz")}), AString(L"2.4GHz"));
  EXPECT_EQ(val::QuantityText({50.0, 0, false, Units::kNoUnits}), AString(L"50"));
  EXPECT_EQ(val::QuantityText({1e-12, 0, false, Units::kNoUnits}), AString(L"1e-12"));
  EXPECT_EQ(val::QuantityText({-0.025, 0, false, Units::kNoUnits}), AString(L"-0.025"));
  EXPECT_EQ(val::QuantityText({0.0, 0, false, UnitOf(L"1GHz")}), AString(L"0GHz"));
  EXPECT_EQ(val::QuantityText({Read(L"30deg"), 0, false, UnitOf(L"1deg")}), AString(L"30deg"));
  EXPECT_EQ(val::QuantityText({1.0, -2.5, true, Units::kNoUnits}), AString(L"1-2.5i"));
}

TEST(QuantityText, AnyNumberInAnyUnitReadsBackBitForBit) {
  std::mt19937_64 random(7);
  std::uniform_real_distribution<double> mantissa(-10.0, 10.0);
  std::uniform_int_distribution<int> exponent(-30, 30);
  for (wchar_t const * sample : {L"1", L"1pF", L"1GHz", L"1MHz", L"1mm", L"1mil", L"1deg", L"1cel", L"1uH"})
    for (int round = 0; round < 200; ++round) {
      double const number = mantissa(random) * std::pow(10.0, exponent(random));
      AString const text = val::QuantityText({number, 0, false, UnitOf(sample)});
      EXPECT_EQ(Read(text.View()), number) << ::testing::PrintToString(text);
      EXPECT_EQ(Units::GetUnitType(UnitOf(text.View())), Units::GetUnitType(UnitOf(sample)))
          << ::testing::PrintToString(text);
    }
}

TEST(QuantityText, ANumberOfAUnitWithoutAPlainOneReadsBackToTheLastDigitsInThatUnit) {
  std::mt19937_64 random(7);
  std::uniform_real_distribution<double> value(-1000.0, 1000.0);
  for (int round = 0; round < 200; ++round) {
    double const number = value(random);
    AString const text = val::QuantityText({number, 0, false, Units::kPercent});
    EXPECT_NEAR(Read(text.View()), number, 3e-13) << ::testing::PrintToString(text);
    EXPECT_EQ(UnitOf(text.View()), Units::kPercent) << ::testing::PrintToString(text);
  }
}

TEST(QuantityText, WhatWasReadInAUnitIsWrittenInItBitForBit) {
  std::mt19937_64 random(27);
  std::uniform_real_distribution<double> value(-1000.0, 1000.0);
  for (wchar_t const * const unit : {L"deg", L"mil", L"in", L"cm", L"%", L"cel"})
    for (int round = 0; round < 500; ++round) {
      std::string const digits = text::RealWithDigits(value(random), 17);
      val::Quantity read;
      ASSERT_TRUE(val::ParseQuantity((AString(std::wstring(digits.begin(), digits.end())) + unit).View(), read));
      AString const text = val::QuantityText(read);
      EXPECT_EQ(Read(text.View()), read.real) << ::testing::PrintToString(text);
      EXPECT_EQ(UnitOf(text.View()), read.unit) << ::testing::PrintToString(text);
    }
}

TEST(QuantityText, ABareMAloneIsMetreOrThousandth) {
  for (wchar_t const * const text : {L"900m", L" -1.5 m ", L"1e3m"})
    EXPECT_TRUE(val::IsMetreOrThousandth(text));
  for (wchar_t const * const text : {L"900mm", L"900meter", L"900mV", L"900", L"2M", L"3cm", L"m", L"", L"1dBm"})
    EXPECT_FALSE(val::IsMetreOrThousandth(text));
}

TEST(QuantityText, AWrittenAngleMeansTheSameWhereDegreesAreAssumed) {
  std::mt19937_64 random(11);
  std::uniform_real_distribution<double> angle(-4.0, 4.0);
  for (int round = 0; round < 200; ++round) {
    double const number = angle(random);
    val::Quantity readBack;
    AString const text = val::QuantityText({number, 0, false, Units::kDegree});
    ASSERT_TRUE(val::ParseQuantity(text.View(), readBack, Units::kDegree));
    EXPECT_EQ(readBack.real, number) << ::testing::PrintToString(text);
  }
}

TEST(QuantityText, TextsThatAreKeysWithoutCaseMeanTheSameInAnyCase) {
  EXPECT_EQ(val::CaseProofText(L"100MHz"), AString(L"100MegHz"));
  EXPECT_EQ(val::CaseProofText(L"2.2M"), AString(L"2.2Meg"));
  EXPECT_EQ(val::CaseProofText(L"1.5F"), AString(L"1.5"));
  EXPECT_EQ(val::CaseProofText(L"100mHz"), AString(L"100mHz"));
  EXPECT_EQ(val::CaseProofText(L"2.4GHz"), AString(L"2.4GHz"));
  EXPECT_EQ(val::CaseProofText(L"1.2pF"), AString(L"1.2pF"));
  EXPECT_EQ(val::CaseProofText(L"3mm"), AString(L"3mm"));
  EXPECT_EQ(val::CaseProofText(L"M*2"), AString(L"M*2"));
}

TEST(Units, NoUnitIsNinetyAndTheDefaultOfUnitTypeFifteen) {
  EXPECT_EQ(static_cast<int>(Units::kNoUnits), 90);
  EXPECT_EQ(Units::GetDefaultUnits(static_cast<Units::UnitType>(15)), Units::kNoUnits);
  EXPECT_EQ(Units::GetUnitType(Units::kNoUnits), Units::kNoUnitType);
  EXPECT_TRUE(Units::GetSymbol(Units::kNoUnits).empty());
  EXPECT_EQ(Units::ToSI(3.0, Units::kNoUnits), 3.0);
}

TEST(Units, EveryUnitTypeHasADefaultWhoseSymbolReadsBack) {
  for (int type = Units::kFrequency; type <= Units::kRatio; ++type) {
    if (type == Units::kNoUnitType)
      continue;
    Units::FullUnitType const unit = Units::GetDefaultUnits(static_cast<Units::UnitType>(type));
    EXPECT_EQ(Units::GetUnitType(unit), type);
    Units::Scale scale;
    ASSERT_TRUE(Units::FindScale(Units::GetSymbol(unit).View(), scale));
    EXPECT_EQ(scale.unit, unit);
  }
}

TEST(Units, AUnitRanksBeforeAPrefixAndTheExactCaseBeforeAnother) {
  struct {
    wchar_t const * suffix;
    wchar_t const * symbol;
    int exponent;
  } const readings[] = {{L"m", L"m", 0},         {L"M", L"", 6},       {L"mm", L"mm", -3},   {L"Mm", L"Mm", 6},
                        {L"MHZ", L"MHz", 6},     {L"mhz", L"mHz", -3}, {L"Meg", L"", 6},     {L"meg", L"", 6},
                        {L"s", L"s", 0},         {L"S", L"S", 0},      {L"f", L"", -15},     {L"F", L"F", 0},
                        {L"pf", L"pF", -12},     {L"DB", L"dB", 0},    {L"OHMS", L"Ohm", 0}, {L"kohm", L"kOhm", 3},
                        {L"\u00b5H", L"uH", -6}, {L"Mil", L"mil", 0}};
  for (auto const & [suffix, symbol, exponent] : readings) {
    Units::Scale scale;
    ASSERT_TRUE(Units::FindScale(suffix, scale)) << text::ToUtf8(AString(suffix));
    EXPECT_EQ(Units::GetSymbol(scale.unit), AString(symbol)) << text::ToUtf8(AString(suffix));
    EXPECT_EQ(scale.exponent, exponent) << text::ToUtf8(AString(suffix));
  }
  for (auto const * none : {L"", L"x", L"kmil", L"kk", L"Hzz", L"a very long suffix"}) {
    Units::Scale scale;
    EXPECT_FALSE(Units::FindScale(none, scale)) << text::ToUtf8(AString(none));
  }
}

TEST(Units, NumbersThatAreNoUnitHaveNoType) {
  for (int number : {-1, 91, 100000, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
    auto const unit = static_cast<Units::FullUnitType>(number);
    EXPECT_EQ(Units::ToSI(2.0, unit), 2.0) << number;
    EXPECT_TRUE(Units::GetSymbol(unit).empty()) << number;
  }
}
