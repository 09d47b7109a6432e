#include "basekit/value/units/UnitDefinition.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>

#include <cmath>
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

TEST(Units, ConversionsInvertEachOther) {
  for (auto const & [unit, symbol] : namedUnits)
    for (double const value : {-273.0, -1.5, 0.0, 1e-9, 0.1, 1.0, 2.4, 1e12}) {
      double const back = Units::ConvertFromSI(Units::ConvertToSI(value, unit), unit);
      double const scale = std::max(std::fabs(value), unit == Units::kCelsius ? 273.15 : 0.0);
      EXPECT_NEAR(back, value, 4e-16 * scale) << value;
    }
}

TEST(Units, ConversionFromSIGivesTheFactorOfAUnit) {
  EXPECT_EQ(Units::ConvertFromSI(1.0, Units::kGigahertz), 1e-9);
  EXPECT_EQ(Units::ConvertFromSI(1.0, Units::kNanosecond), 1e9);
  EXPECT_EQ(Units::ConvertFromSI(1.0, Units::kNoUnits), 1.0);
  EXPECT_EQ(Units::ConvertToSI(20.0, Units::kCelsius), 293.15);
  EXPECT_DOUBLE_EQ(Units::ConvertToSI(180.0, Units::kDegree), 3.141592653589793);
}
