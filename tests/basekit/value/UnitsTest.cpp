#include "basekit/value/units/QuantityText.h"
#include "basekit/value/units/UnitDefinition.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <utility>
#include <vector>

namespace {

std::vector<std::pair<Units::FullUnitType, AString>> const namedUnits = {
    {Units::kHertz, L"Hz"},   {Units::kGigahertz, L"GHz"}, {Units::kSecond, L"s"},   {Units::kNanosecond, L"ns"},
    {Units::kMetre, L"m"},    {Units::kMillimetre, L"mm"}, {Units::kNoUnits, L""},   {Units::kOhm, L"Ohm"},
    {Units::kFarad, L"F"},    {Units::kPicofarad, L"pF"},  {Units::kHenry, L"H"},    {Units::kNanohenry, L"nH"},
    {Units::kVolt, L"V"},     {Units::kMillivolt, L"mV"},  {Units::kAmpere, L"A"},   {Units::kWatt, L"W"},
    {Units::kDegree, L"deg"}, {Units::kRadian, L"rad"},    {Units::kDecibel, L"dB"}, {Units::kDecibelMilliwatt, L"dBm"},
    {Units::kCoulomb, L"C"},  {Units::kCelsius, L"cel"},   {Units::kSiemens, L"S"},  {Units::kPercent, L"%"},
};

/// All numbers that are a unit.
std::vector<Units::FullUnitType> EveryUnit() {
  std::vector<Units::FullUnitType> units;
  for (int number = 0; number < 1000; ++number)
    if (Units::Scale scale; Units::GetScale(static_cast<Units::FullUnitType>(number), scale))
      units.push_back(static_cast<Units::FullUnitType>(number));
  EXPECT_EQ(units.size(), 12u * 10u + 9u);
  return units;
}

} // namespace

TEST(Units, NamedNumbersAreTheUnitsOfTheirSymbols) {
  for (auto const & [unit, symbol] : namedUnits)
    EXPECT_EQ(Units::GetUnitDef(unit).GetUnitString(), symbol) << static_cast<int>(unit);
}

TEST(Units, NoUnitsIs90AndItsTypeIs15) {
  EXPECT_EQ(static_cast<int>(Units::kNoUnits), 90);
  EXPECT_EQ(static_cast<int>(Units::kNoUnitType), 15);
  EXPECT_EQ(Units::GetUnitType(Units::kNoUnits), Units::kNoUnitType);
  EXPECT_EQ(Units::GetDefaultUnits(Units::kNoUnitType), Units::kNoUnits);
}

TEST(Units, NumbersThatAreNoUnitHaveTheDefinitionOfNoUnit) {
  for (int const number : {-1, 21, 100000})
    EXPECT_EQ(Units::GetUnitDef(static_cast<Units::FullUnitType>(number)).GetFullUnitType(), Units::kNoUnits);
}

TEST(Units, EveryUnitHasTheTypeOfItsDefaultAndADefaultOfItsType) {
  for (int type = 0; type <= Units::kRatio; ++type) {
    auto const unitType = static_cast<Units::UnitType>(type);
    EXPECT_EQ(Units::GetUnitType(Units::GetDefaultUnits(unitType)), unitType);
  }
}

TEST(Units, ConversionsOfEveryUnitInvertEachOther) {
  std::mt19937_64 random(26);
  std::uniform_real_distribution<double> exponents(-15.0, 15.0);
  for (Units::FullUnitType const unit : EveryUnit())
    for (int i = 0; i < 50; ++i) {
      double const value = (i % 2 == 0 ? 1.0 : -1.0) * std::pow(10.0, exponents(random));
      double const back = Units::ConvertFromSI(Units::ConvertToSI(value, unit), unit);
      double const scale = std::max(std::fabs(value), unit == Units::kCelsius ? 273.15 : 0.0);
      EXPECT_NEAR(back, value, 5e-16 * scale) << static_cast<int>(unit);
    }
}

TEST(Units, ANumberInAnyUnitMeansWhatItsTextMeans) {
  for (Units::FullUnitType const unit : EveryUnit())
    for (wchar_t const * const digits : {L"0", L"-1.5", L"2.4", L"1e12", L"7e-9"}) {
      val::Quantity number;
      val::Quantity text;
      ASSERT_TRUE(val::ParseQuantity(digits, number));
      ASSERT_TRUE(val::ParseQuantity((AString(digits) + Units::GetSymbol(unit)).View(), text))
          << static_cast<int>(unit);
      double const si = Units::ConvertToSI(number.real, unit);
      EXPECT_NEAR(text.real, si, 5e-16 * std::fabs(si)) << static_cast<int>(unit);
      EXPECT_EQ(text.unit, unit);
    }
}

TEST(Units, AUnitWithoutPrefixesHasOneNumberAlone) {
  for (int const number : {289, 353, 385, 449, 513, 545, 641}) {
    auto const unit = static_cast<Units::FullUnitType>(number);
    Units::Scale scale;
    EXPECT_FALSE(Units::GetScale(unit, scale)) << number;
    EXPECT_EQ(Units::GetSymbol(unit), AString()) << number;
    EXPECT_EQ(Units::GetUnitType(unit), Units::kNoUnitType) << number;
    EXPECT_EQ(Units::ConvertToSI(2.0, unit), 2.0) << number;
  }
}

TEST(Units, ConversionFromSIGivesTheFactorOfAUnit) {
  EXPECT_EQ(Units::ConvertFromSI(1.0, Units::kGigahertz), 1e-9);
  EXPECT_EQ(Units::ConvertFromSI(1.0, Units::kNanosecond), 1e9);
  EXPECT_EQ(Units::ConvertFromSI(1.0, Units::kNoUnits), 1.0);
  EXPECT_EQ(Units::ConvertToSI(20.0, Units::kCelsius), 293.15);
  EXPECT_DOUBLE_EQ(Units::ConvertToSI(180.0, Units::kDegree), 3.141592653589793);
}
