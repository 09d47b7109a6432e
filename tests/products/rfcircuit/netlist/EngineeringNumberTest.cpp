#include "products/rfcircuit/engine/netlist/EngineeringNumber.h"

#include <gtest/gtest.h>

namespace {

using rf::EngineeringNumber;
using Outcome = EngineeringNumber::Outcome;

double ValueOf(char const * text) {
  auto const number = EngineeringNumber::Read(text, true);
  EXPECT_EQ(number.outcome, Outcome::Number) << text;
  EXPECT_EQ(number.length, std::string_view(text).size()) << text;
  return number.value;
}

TEST(EngineeringNumber, SuffixesScaleWithoutCase) {
  EXPECT_EQ(ValueOf("2t"), 2e12);
  EXPECT_EQ(ValueOf("2G"), 2e9);
  EXPECT_EQ(ValueOf("2meg"), 2e6);
  EXPECT_EQ(ValueOf("2MEG"), 2e6);
  EXPECT_EQ(ValueOf("2k"), 2e3);
  EXPECT_EQ(ValueOf("2m"), 2e-3);
  EXPECT_EQ(ValueOf("2M"), 2e-3);
  EXPECT_EQ(ValueOf("2u"), 2e-6);
  EXPECT_EQ(ValueOf("2n"), 2e-9);
  EXPECT_EQ(ValueOf("2p"), 2e-12);
  EXPECT_EQ(ValueOf("2f"), 2e-15);
  EXPECT_DOUBLE_EQ(ValueOf("2mil"), 50.8e-6);
}

TEST(EngineeringNumber, UnitLettersAreIgnored) {
  EXPECT_EQ(ValueOf("10pF"), 10e-12);
  EXPECT_EQ(ValueOf("10megohm"), 10e6);
  EXPECT_EQ(ValueOf("5V"), 5.0);
  EXPECT_EQ(ValueOf("50Ohm"), 50.0);
}

TEST(EngineeringNumber, OneFIsOneFemtoAndOneAIsOne) {
  EXPECT_EQ(ValueOf("1F"), 1e-15);
  EXPECT_EQ(ValueOf("1A"), 1.0);
}

TEST(EngineeringNumber, IsTheNearestDoubleSuffixIncluded) {
  EXPECT_EQ(ValueOf("4.7p"), 4.7e-12);
  EXPECT_EQ(ValueOf("0.1n"), 0.1e-9);
  EXPECT_EQ(ValueOf("3.3e2u"), 3.3e-4);
}

TEST(EngineeringNumber, DecimalFormsAndSigns) {
  EXPECT_EQ(ValueOf(".5"), 0.5);
  EXPECT_EQ(ValueOf("5."), 5.0);
  EXPECT_EQ(ValueOf("-1.5e-3k"), -1.5);
  EXPECT_EQ(ValueOf("+7"), 7.0);
  EXPECT_EQ(ValueOf("1E+3"), 1000.0);
}

TEST(EngineeringNumber, WordsThatOnlyBeginAsNumbersAreMalformed) {
  for (char const * text : {"", ".", "k", "1.2.3", "5k5", "1e", "1e+", "2_x", "-", "1k.5"})
    EXPECT_EQ(EngineeringNumber::Read(text, true).outcome, Outcome::Malformed) << text;
}

TEST(EngineeringNumber, BeyondADoubleIsOutOfRange) {
  for (char const * text : {"1e400", "1e-400", "1e308t", "1e99999999999999999999"})
    EXPECT_EQ(EngineeringNumber::Read(text).outcome, Outcome::OutOfRange) << text;
}

} // namespace
