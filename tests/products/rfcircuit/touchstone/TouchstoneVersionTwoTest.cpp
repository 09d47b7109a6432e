#include "products/rfcircuit/engine/touchstone/TouchstoneReader.h"

#include "tests/products/rfcircuit/RfSupport.h"

#include <gtest/gtest.h>

namespace {

using namespace rftest;
using rf::ReadTouchstoneText;
using Frequencies = std::vector<double>;
using Lines = std::vector<std::string>;

std::string Head(std::string const & settings) { return "[Version] 2.0\n# Hz S RI R 50\n" + settings; }

std::string FirstNote(rf::TouchstoneData const & data) { return data.notes.empty() ? "" : data.notes.front().text; }

TEST(TouchstoneVersionTwo, ReadsAllKeywords) {
  auto const data = ReadTouchstoneText("! before\n"
                                       "[Version] 2.0 ! the first keyword\n"
                                       "# Hz S RI R 10\n"
                                       "[number of ports]  4\n"
                                       "[Number of  Frequencies] 1\n"
                                       "[Number of Noise Frequencies] 1\n"
                                       "[Reference] 50 75 ! of two\n"
                                       "! and two more\n"
                                       "0.01 0.01\n"
                                       "[Matrix Format] full\n"
                                       "[Begin Information]\n"
                                       "[Manufacturer] any # ! 1 2 3\n"
                                       "\n"
                                       "[End Information]\n"
                                       "[Network Data]\n"
                                       "1 11 0 12 0 13 0 14 0\n21 0 22 0 23 0 24 0\n31 0 32 0 33 0 34 0\n"
                                       "41 0 42 0 43 0 44 0\n"
                                       "[Noise Data]\n"
                                       "4 0.7 0.64 69 19\n"
                                       "[End]\n\n! nothing more\n",
                                       "x.ts");
  EXPECT_EQ(data.network.z0, (std::vector<double>{50, 75, 0.01, 0.01}));
  EXPECT_EQ(data.network.frequencies, (Frequencies{1}));
  EXPECT_EQ(data.network.matrices[0](3, 2), Complex(43, 0));
  EXPECT_EQ(data.information, (Lines{"[Manufacturer] any # ! 1 2 3", ""}));
  EXPECT_EQ(data.facts.version, "2.0");
  EXPECT_EQ(data.facts.noiseLines, 1u);
  EXPECT_EQ(FirstNote(data), "1 lines of noise data were skipped");
  EXPECT_EQ(data.notes.size(), 1u);
}

TEST(TouchstoneVersionTwo, TheOrderOfTwoPortsIsThatOfItsKeyword) {
  auto const s21 = [](std::string const & order) {
    std::string const text = Head("[Number of Ports] 2\n[Two-Port Data Order] " + order +
                                  "\n[Number of Frequencies] 1\n[Network Data]\n1 11 0 2 0 3 0 22 0\n[End]\n");
    return ReadTouchstoneText(text, "x.ts").network.matrices[0](1, 0);
  };
  EXPECT_EQ(s21("21_12"), Complex(2, 0));
  EXPECT_EQ(s21("12_21"), Complex(3, 0));
}

TEST(TouchstoneVersionTwo, TriangularMatricesAreSymmetric) {
  auto const read = [](std::string const & layout, std::string const & numbers) {
    return ReadTouchstoneText(Head("[Number of Ports] 3\n[Number of Frequencies] 1\n[Matrix Format] " + layout +
                                   "\n[Network Data]\n" + numbers + "[End]\n"),
                              "x.ts")
        .network.matrices[0];
  };
  auto const lower = read("Lower", "1 11 0\n21 0 22 0\n31 0 32 0 33 0\n");
  auto const upper = read("UPPER", "1 11 0 21 0 31 0\n22 0 32 0\n33 0\n");
  for (std::size_t row = 0; row < 3; ++row)
    for (std::size_t column = 0; column < 3; ++column) {
      double const expected = static_cast<double>(10 * (std::max(row, column) + 1) + std::min(row, column) + 1);
      EXPECT_EQ(lower(row, column), expected);
      EXPECT_EQ(upper(row, column), expected);
    }
}

TEST(TouchstoneVersionTwo, TriangularTwoPortsNeedNoOrder) {
  auto const data = ReadTouchstoneText(Head("[Number of Ports] 2\n[Number of Frequencies] 1\n[Matrix Format] Lower\n"
                                            "[Network Data]\n1 11 0 21 0 22 0\n[End]\n"),
                                       "x.ts");
  EXPECT_EQ(data.network.matrices[0](0, 1), Complex(21, 0));
  EXPECT_EQ(data.network.matrices[0](1, 0), Complex(21, 0));
}

TEST(TouchstoneVersionTwo, WithoutReferenceTheOptionLineTellsTheImpedance) {
  auto const data = ReadTouchstoneText(
      "[Version] 2.1\n# R 20 Hz RI\n[Number of Ports] 1\n[Number of Frequencies] 1\n[Network Data]\n1 0 0\n[End]", "x");
  EXPECT_EQ(data.network.z0, (std::vector<double>{20}));
  EXPECT_TRUE(data.notes.empty());
}

TEST(TouchstoneVersionTwo, WhatIsMissingWithoutHarmIsTold) {
  auto const data = ReadTouchstoneText(Head("[Number of Ports] 1\n[Network Data]\n1 0 0\n"), "x.s2p");
  ASSERT_EQ(data.notes.size(), 3u);
  EXPECT_EQ(data.notes[0].text, "the name promises 2 ports, the file was read with 1");
  EXPECT_EQ(data.notes[1].text, "there is no [Number of Frequencies]: whether all are there can't be told");
  EXPECT_EQ(data.notes[2].text, "[End] is missing");
}

TEST(TouchstoneVersionTwo, WhatStandsBehindTheEndIsToldAndNotRead) {
  auto const data = ReadTouchstoneText(
      Head("[Number of Ports] 1\n[Number of Frequencies] 1\n[Network Data]\n1 0 0\n[End]\n! so\n2 0 0\n"), "x.ts");
  EXPECT_EQ(data.network.frequencies, (Frequencies{1}));
  EXPECT_EQ(FirstNote(data), "what stands behind [End] was not read");
  EXPECT_EQ(data.notes[0].line, 9u);
}

TEST(TouchstoneVersionTwo, AFileThatSaysVersionOneIsReadAsSuch) {
  auto const data = ReadTouchstoneText("[Version] 1.1\n# Hz RI R 10 20\n1 11 0 21 0 12 0 22 0\n", "x.s2p");
  EXPECT_EQ(data.facts.version, "1.1");
  EXPECT_EQ(data.network.matrices[0](1, 0), Complex(21, 0));
}

TEST(TouchstoneVersionTwo, CountsThatLieCostNoMemory) {
  try {
    ReadTouchstoneText(Head("[Number of Ports] 10000\n[Number of Frequencies] 1000000000\n[Network Data]\n1 0 0\n"),
                       "x");
    FAIL() << "no error was raised";
  } catch (rf::TouchstoneSyntaxError const & error) {
    EXPECT_EQ(error.Message(), "the point at 1 Hz ends after 2 of 200000000 numbers");
  }
}

} // namespace
