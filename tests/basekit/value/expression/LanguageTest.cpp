// What expressions of single numbers come to.

#include "tests/basekit/value/expression/Evaluator.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace {

class Language : public testing::Test, public support::Evaluator {};

constexpr double inf = std::numeric_limits<double>::infinity();

} // namespace

TEST_F(Language, ProductsBindTighterThanSumsAndFromTheLeft) {
  EXPECT_EQ(Number(L"1+2*3"), 7.0);
  EXPECT_EQ(Number(L"(1+2)*3"), 9.0);
  EXPECT_EQ(Number(L"10-4-3"), 3.0);
  EXPECT_EQ(Number(L"24/4/3"), 2.0);
  EXPECT_EQ(Number(L"2*-3"), -6.0);
  EXPECT_EQ(Number(L" 1 +\t2\n"), 3.0);
}

TEST_F(Language, PowersBindFromTheRightAndTighterThanSigns) {
  EXPECT_EQ(Number(L"2^3^2"), 512.0);
  EXPECT_EQ(Number(L"-2^2"), -4.0);
  EXPECT_EQ(Number(L"(-2)^2"), 4.0);
  EXPECT_EQ(Number(L"2^-2"), 0.25);
  EXPECT_EQ(Number(L"2**3"), 8.0);
  EXPECT_EQ(Number(L"--3"), 3.0);
  EXPECT_EQ(Number(L"+3"), 3.0);
}

TEST_F(Language, NumbersTakePrefixesAndUnits) {
  EXPECT_EQ(Number(L"2.4GHz"), 2.4e9);
  EXPECT_EQ(Number(L"2.4 GHz"), 2.4e9);
  EXPECT_EQ(Number(L"3k"), 3000.0);
  EXPECT_EQ(Number(L"1e-3"), 1e-3);
  EXPECT_EQ(Number(L"10meg"), 1e7);
  EXPECT_EQ(Number(L".5"), 0.5);
  EXPECT_EQ(Number(L"1.2pF"), 1.2e-12);
  EXPECT_EQ(Number(L"5%"), 0.05);
  EXPECT_EQ(Number(L"(5 %)*2"), 0.1);
  EXPECT_EQ(Number(L"2.4\tGHz"), 2.4e9);
  EXPECT_EQ(Number(L"20cel"), 293.15);
  EXPECT_NEAR(Number(L"sin(30deg)"), 0.5, 1e-15);
  EXPECT_EQ(Number(L"2 mm*3"), 6e-3);
}

TEST_F(Language, ComparisonsAndLogicGiveOneOrZero) {
  EXPECT_EQ(Number(L"1 < 2"), 1.0);
  EXPECT_EQ(Number(L"2 <= 1"), 0.0);
  EXPECT_EQ(Number(L"1+1 == 2 && 3 > 2"), 1.0);
  EXPECT_EQ(Number(L"0 || 0"), 0.0);
  EXPECT_EQ(Number(L"1 != 2 || 0"), 1.0);
  EXPECT_EQ(Number(L"!0"), 1.0);
  EXPECT_EQ(Number(L"!5 == 0"), 1.0);
  EXPECT_EQ(Number(L"1 || 0 && 0"), 1.0);
  EXPECT_EQ(Number(L"1i == 1i"), 1.0);
}

TEST_F(Language, IfChoosesByTheCondition) {
  EXPECT_EQ(Number(L"if(2 > 1, 10, 20)"), 10.0);
  EXPECT_EQ(Number(L"if(0, 10, 20)"), 20.0);
  EXPECT_EQ(Complex(L"if(1, 2i, 3)"), std::complex<double>(0, 2));
}

TEST_F(Language, FunctionsAreKnownWithoutCase) {
  EXPECT_EQ(Number(L"dB(100)"), 40.0);
  EXPECT_EQ(Number(L"DB10(100)"), 20.0);
  EXPECT_NEAR(Number(L"dBm(1mW)"), 0.0, 1e-14);
  EXPECT_EQ(Number(L"mag(3+4i)"), 5.0);
  EXPECT_EQ(Number(L"ang_deg(1i)"), 90.0);
  EXPECT_EQ(Number(L"ang_deg(-1)"), 180.0);
  EXPECT_EQ(Number(L"ang_deg(-0)"), 0.0);
  EXPECT_EQ(Number(L"ang_rad(-1)"), std::numbers::pi);
  EXPECT_EQ(Number(L"re(3+4i)"), 3.0);
  EXPECT_EQ(Number(L"im(3+4i)"), 4.0);
  EXPECT_EQ(Complex(L"conj(3+4i)"), std::complex<double>(3, -4));
  EXPECT_EQ(Number(L"vswr(0.5)"), 3.0);
  EXPECT_EQ(Number(L"vswr(-1)"), inf);
  EXPECT_EQ(Number(L"atan2(1, -1)"), std::atan2(1.0, -1.0));
  EXPECT_EQ(Number(L"min(3, -2)"), -2.0);
  EXPECT_EQ(Number(L"max(3, -2)"), 3.0);
  EXPECT_EQ(Number(L"limit(7, 0, 5)"), 5.0);
  EXPECT_EQ(Number(L"mod(-1, 3)"), 2.0);
  EXPECT_EQ(Number(L"ln(exp(2))"), 2.0);
  EXPECT_EQ(Number(L"log(1)"), 0.0);
  EXPECT_EQ(Number(L"log10(1000)"), 3.0);
  EXPECT_EQ(Number(L"log2(8)"), 3.0);
  EXPECT_EQ(Number(L"round(-2.5)"), -3.0);
  EXPECT_EQ(Number(L"sgn(-4)"), -1.0);
  EXPECT_EQ(Complex(L"complex(1, 2)"), std::complex<double>(1, 2));
  EXPECT_NEAR(std::abs(Complex(L"polar(2, 90)") - std::complex<double>(0, 2)), 0.0, 1e-15);
}

TEST_F(Language, ComplexArithmeticWorks) {
  EXPECT_EQ(Complex(L"(1+2i)*(3-1i)"), std::complex<double>(5, 5));
  EXPECT_EQ(Complex(L"(1+2i)^2"), std::complex<double>(-3, 4));
  EXPECT_EQ(Complex(L"1i/2"), std::complex<double>(0, 0.5));
  EXPECT_EQ(Complex(L"2*(1+2i)"), std::complex<double>(2, 4));
  EXPECT_EQ(Complex(L"(1+2i)*2"), std::complex<double>(2, 4));
  EXPECT_EQ(Complex(L"2/(1+1i)"), std::complex<double>(1, -1));
  EXPECT_EQ(Complex(L"2*complex(1, inf)"), std::complex<double>(2, inf));
  EXPECT_NEAR(std::abs(Complex(L"sqrt(-1+0i)") - std::complex<double>(0, 1)), 0.0, 1e-15);
  EXPECT_EQ(Complex(L"(0+0i)^2"), std::complex<double>(0, 0));
  EXPECT_EQ(Complex(L"(2i)^0"), std::complex<double>(1, 0));
}

TEST_F(Language, DivisionByZeroAndOverflowFollowTheArithmeticOfFloatingPoint) {
  EXPECT_EQ(Number(L"1/0"), inf);
  EXPECT_EQ(Number(L"-1/0"), -inf);
  EXPECT_TRUE(std::isnan(Number(L"0/0")));
  EXPECT_EQ(Number(L"1e308*10"), inf);
  EXPECT_EQ(Number(L"10^400"), inf);
  EXPECT_EQ(Number(L"dB(0)"), -inf);
  EXPECT_TRUE(std::isnan(Number(L"sqrt(-1)")));
  EXPECT_TRUE(std::isnan(Number(L"(-8)^(1/3)")));
  EXPECT_TRUE(std::isnan(Number(L"inf - inf")));
}

TEST_F(Language, WhatHasNoValueDecidesNothing) {
  EXPECT_TRUE(std::isnan(Number(L"if(nan, 1, 2)")));
  EXPECT_EQ(Number(L"nan == nan"), 0.0);
  EXPECT_EQ(Number(L"nan != nan"), 1.0);
  EXPECT_EQ(Number(L"nan && 0"), 0.0);
  EXPECT_TRUE(std::isnan(Number(L"nan && 1")));
  EXPECT_EQ(Number(L"nan || 1"), 1.0);
  EXPECT_TRUE(std::isnan(Number(L"nan || 0")));
  EXPECT_TRUE(std::isnan(Number(L"!nan")));
  EXPECT_TRUE(std::isnan(Number(L"max(nan, 1)")));
  EXPECT_TRUE(std::isnan(Number(L"min(1, nan)")));
  EXPECT_EQ(Number(L"isnan(nan)"), 1.0);
}

TEST_F(Language, UserVariablesDependOnEachOther) {
  scope.AddDefinition(L"w", L"2*h + 1mm");
  scope.AddDefinition(L"h", L"0.5mm");
  EXPECT_EQ(Number(L"w*2"), 4e-3);
  EXPECT_EQ(Number(L"W*2"), 4e-3);
}

TEST_F(Language, NamesOfFunctionsMayBeNamesOfVariables) {
  scope.AddDefinition(L"max", L"3");
  scope.AddDefinition(L"pi", L"3");
  scope.AddDefinition(L"if", L"4");
  EXPECT_EQ(Number(L"max(max, 2)"), 3.0);
  EXPECT_EQ(Number(L"pi"), 3.0);
  EXPECT_EQ(Number(L"if(if == 4, 1, 2)"), 1.0);
}

TEST_F(Language, ConstantsOfTheFieldHaveNames) {
  EXPECT_EQ(Number(L"pi"), std::numbers::pi);
  EXPECT_EQ(Number(L"c0"), 299792458.0);
  EXPECT_NEAR(Number(L"sqrt(mu0/eps0)"), 376.730313, 1e-6);
}

TEST_F(Language, UnitsOfResultsFollowFromThoseOfTheParts) {
  auto const unitOf = [&](wchar_t const * text) {
    EXPECT_TRUE(Evaluate(text));
    return result.state.fullUnit;
  };
  EXPECT_EQ(unitOf(L"1V/2A"), Units::kOhm);
  EXPECT_EQ(unitOf(L"1V*2A"), Units::kWatt);
  EXPECT_EQ(unitOf(L"1/2ns"), Units::kHertz);
  EXPECT_EQ(unitOf(L"3*2GHz"), Units::kGigahertz);
  EXPECT_EQ(unitOf(L"2mm + 1"), Units::kMillimetre);
  EXPECT_EQ(unitOf(L"1V + 1A"), Units::kNoUnits);
  EXPECT_EQ(unitOf(L"dB(2V)"), Units::kDecibel);
  EXPECT_EQ(unitOf(L"sqrt(2V*3V)"), Units::kNoUnits);
  EXPECT_EQ(unitOf(L"1V > 2V"), Units::kNoUnits);
  EXPECT_EQ(unitOf(L"if(1V > 2V, 2mm, 3mm)"), Units::kMillimetre);
  EXPECT_EQ(unitOf(L"if(1V, 3A, 4A)"), Units::kAmpere);
  EXPECT_EQ(unitOf(L"if(1V, 3, 4)"), Units::kNoUnits);
  EXPECT_EQ(unitOf(L"re(polar(2V, 30deg))"), Units::kVolt);
  EXPECT_EQ(unitOf(L"re(polar(2, 30deg))"), Units::kNoUnits);
  EXPECT_EQ(unitOf(L"2*30deg"), Units::kDegree);
  EXPECT_EQ(unitOf(L"30deg/2"), Units::kDegree);
  EXPECT_EQ(unitOf(L"dB(2)/2"), Units::kDecibel);
  EXPECT_EQ(unitOf(L"3*5%"), Units::kPercent);
  EXPECT_EQ(unitOf(L"30deg/2deg"), Units::kNoUnits);
  EXPECT_EQ(unitOf(L"1/2deg"), Units::kNoUnits);
  EXPECT_EQ(unitOf(L"2V*30deg"), Units::kVolt);
}

TEST_F(Language, ATemperatureBearsItsSignAndWhatIsComputedOfItIsInKelvins) {
  EXPECT_EQ(Number(L"-5cel"), 268.15);
  EXPECT_EQ(Number(L"1*-5cel"), 268.15);
  EXPECT_EQ(Number(L"max(-5cel, 1)"), 268.15);
  EXPECT_EQ(result.state.fullUnit, Units::kCelsius);
  EXPECT_EQ(Number(L"-(5cel)"), -278.15);
  EXPECT_EQ(Number(L"300kelvin"), 300.0);
  Units::FullUnitType const kelvin = result.state.fullUnit;
  EXPECT_EQ(Units::GetSymbol(kelvin), AString(L"kelvin"));
  EXPECT_EQ(Number(L"3K"), 3000.0) << "the prefix";
  EXPECT_EQ(Number(L"20cel"), 293.15);
  EXPECT_EQ(result.state.fullUnit, Units::kCelsius);
  EXPECT_NEAR(Number(L"20cel - 15cel"), 5.0, 1e-12);
  for (wchar_t const * const text : {L"20cel - 15cel", L"20cel + 5kelvin", L"2*20cel", L"20cel/2", L"-(20cel)"}) {
    EXPECT_TRUE(Evaluate(text));
    EXPECT_EQ(result.state.fullUnit, kelvin);
  }
}

TEST_F(Language, AnAngleWithAUnitIsConvertedWhereDegreesAreTaken) {
  EXPECT_NEAR(std::abs(Complex(L"polar(2, 90deg)") - std::complex<double>(0, 2)), 0.0, 1e-15);
  EXPECT_NEAR(std::abs(Complex(L"polar(2, asin(1))") - std::complex<double>(0, 2)), 0.0, 1e-15);
  std::vector<double> const axis = {1, 2, 4, 8};
  std::vector<std::complex<double>> const loop = {{4, 0}, {0, -2}, {-0.6, -0.1}, {0, 0.1}};
  scope.SetAxis(axis);
  scope.AddColumn(L"y", std::span<std::complex<double> const>(loop));
  double const margin = Number(L"phasemargin(y)");
  EXPECT_NEAR(Number(L"phasemargin(y, 1, 10deg)"), margin - 10, 1e-12);
  EXPECT_NEAR(Number(L"phasemargin(y, 1, 10)"), margin - 10, 1e-12);
  EXPECT_NEAR(Number(L"phasemargin(y, 1, 2*5deg)"), margin - 10, 1e-12);
  EXPECT_NEAR(Number(L"phasemargin(y, 1+0, pi/18*1rad)"), margin - 10, 1e-12);
}
