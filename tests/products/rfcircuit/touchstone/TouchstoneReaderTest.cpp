#include "products/rfcircuit/engine/touchstone/TouchstoneReader.h"

#include "tests/products/rfcircuit/RfSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace {

using namespace rftest;
using rf::ReadTouchstoneText;
using rf::TouchstoneFacts;

using Frequencies = std::vector<double>;

std::vector<std::string> Notes(rf::TouchstoneData const & data) {
  std::vector<std::string> notes;
  for (auto const & note : data.notes)
    notes.push_back(std::to_string(note.line) + ": " + note.text);
  return notes;
}

using Lines = std::vector<std::string>;

TEST(TouchstoneReader, VersionOneTwoPortsStandInTheOrder11_21_12_22) {
  auto const data = ReadTouchstoneText("! a test\n"
                                       "# Hz S RI R 75\n"
                                       "1 11 0.11 21 0.21 12 0.12 22 0.22\n"
                                       "2 11 0.11 21 0.21 12 0.12 22 0.22\n",
                                       "x.s2p");
  EXPECT_EQ(data.network.frequencies, (Frequencies{1, 2}));
  EXPECT_EQ(data.network.z0, (std::vector<double>{75, 75}));
  EXPECT_EQ(data.network.matrices[1](0, 0), Complex(11, 0.11));
  EXPECT_EQ(data.network.matrices[1](0, 1), Complex(12, 0.12));
  EXPECT_EQ(data.network.matrices[1](1, 0), Complex(21, 0.21));
  EXPECT_EQ(data.network.matrices[1](1, 1), Complex(22, 0.22));
  EXPECT_EQ(data.comments, (Lines{"a test"}));
  EXPECT_EQ(data.facts.version, "1.0");
  EXPECT_EQ(data.facts.lines, 4u);
  EXPECT_EQ(data.facts.bytes, 92u);
  EXPECT_TRUE(data.notes.empty());
  EXPECT_EQ(data.name, "x.s2p");
}

TEST(TouchstoneReader, LargerMatricesStandByRows) {
  auto const data = ReadTouchstoneText("# Hz S RI\n1 11 0 12 0 13 0\n 21 0 22 0 23 0\n 31 0 32 0 33 0\n", "x.s3p");
  for (std::size_t i = 0; i < 9; ++i)
    EXPECT_EQ(data.network.matrices[0](i / 3, i % 3), Complex(static_cast<double>(10 * (i / 3 + 1) + i % 3 + 1)));
}

TEST(TouchstoneReader, OptionsStandInAnyOrderAndCase) {
  for (char const * line : {"# mhz s ri r 20", "#\tR 20 RI MHZ S", "#MHz R20 Ri s",
                            "  # ri S r 20. Mhz ! and a comment", "# MHz RI R 2.0D+1"}) {
    auto const data = ReadTouchstoneText(std::string(line) + "\n1.5 0.25 -0.5\n", "x.s1p");
    EXPECT_EQ(data.network.frequencies, (Frequencies{1.5e6})) << line;
    EXPECT_EQ(data.network.z0, (std::vector<double>{20})) << line;
    EXPECT_EQ(data.network.matrices[0](0, 0), Complex(0.25, -0.5)) << line;
    EXPECT_EQ(data.facts.frequencyUnit, "MHz") << line;
    EXPECT_EQ(data.facts.format, TouchstoneFacts::Format::RealImaginary) << line;
    EXPECT_TRUE(data.notes.empty()) << line;
  }
}

TEST(TouchstoneReader, WithoutAnOptionLineTheDefaultsHoldAndAreTold) {
  auto const data = ReadTouchstoneText("! nothing else\n2 0.5 90\n", "x.s1p");
  EXPECT_EQ(data.network.frequencies, (Frequencies{2e9}));
  EXPECT_EQ(data.network.z0, (std::vector<double>{50}));
  ExpectNear(data.network.matrices[0](0, 0), Complex(0, 0.5), 1e-16);
  EXPECT_FALSE(data.facts.hasOptionLine);
  EXPECT_EQ(Notes(data), (Lines{"0: there is no option line: GHz S MA R 50 was taken"}));
}

TEST(TouchstoneReader, AnEmptyOptionLineMeansTheDefaults) {
  auto const data = ReadTouchstoneText("#\n2 0.5 90\n", "x.s1p");
  EXPECT_EQ(data.network.frequencies, (Frequencies{2e9}));
  EXPECT_TRUE(data.notes.empty());
}

TEST(TouchstoneReader, AnImpedanceThatIsNotGivenIsFiftyOhmAndTold) {
  auto const data = ReadTouchstoneText("# Hz R S RI\n1 0 0\n", "x.s1p");
  EXPECT_EQ(data.network.z0, (std::vector<double>{50}));
  EXPECT_EQ(Notes(data), (Lines{"1: the option line has R without an impedance: 50 ohm were taken"}));
}

TEST(TouchstoneReader, ReadsAllThreeFormats) {
  auto const value = [](char const * text) { return ReadTouchstoneText(text, "x.s1p").network.matrices[0](0, 0); };
  ExpectNear(value("# MA\n1 0.5 -30\n"), std::polar(0.5, -M_PI / 6), 1e-16);
  ExpectNear(value("# DB\n1 -20 120\n"), std::polar(0.1, 2 * M_PI / 3), 1e-16);
  ExpectNear(value("# RI\n1 0.5 -30\n"), Complex(0.5, -30), 0);
}

TEST(TouchstoneReader, FrequenciesAreRoundedOnceWhateverTheirUnit) {
  auto const frequency = [](std::string const & unit, std::string const & number) {
    return ReadTouchstoneText("# " + unit + " RI\n" + number + " 0 0\n", "x.s1p").network.frequencies[0];
  };
  EXPECT_EQ(frequency("GHz", "2.3"), 2.3e9);
  EXPECT_EQ(frequency("GHz", "1.1"), 1.1e9);
  EXPECT_EQ(frequency("GHz", "0.0033"), 3.3e6);
  EXPECT_EQ(frequency("MHz", "+1.1E+3"), 1.1e9);
  EXPECT_EQ(frequency("kHz", "1.1d-2"), 11);
  EXPECT_EQ(frequency("Hz", "1.1e9"), 1.1e9);
  EXPECT_EQ(frequency("GHz", "0"), 0);
}

TEST(TouchstoneReader, NumbersMayHavePlusSignsAndFortranExponents) {
  auto const data = ReadTouchstoneText("# Hz S RI R 50\n+1.D0 +.5D-1 -5.0d+01\n", "x.s1p");
  EXPECT_EQ(data.network.matrices[0](0, 0), Complex(0.05, -50));
  auto const tiny = ReadTouchstoneText("# Hz S RI R 50\n1 1e-400 -1D-400\n", "x.s1p");
  EXPECT_EQ(tiny.network.matrices[0](0, 0), Complex(0, 0));
}

TEST(TouchstoneReader, CommentsStandAnywhere) {
  auto const data = ReadTouchstoneText("!first\n\n  ! second\n# Hz S RI R 50 ! third\n! fourth\n"
                                       "1 11 0 ! fifth\n!sixth\n21 0!seventh\n\n12 0 22 0\n!",
                                       "x.s2p");
  EXPECT_EQ(data.comments, (Lines{"first", "second", "third", "fourth", "fifth", "sixth", "seventh", ""}));
  EXPECT_EQ(data.network.matrices[0](1, 0), Complex(21, 0));
}

TEST(TouchstoneReader, LinesMayEndInAnyWayAndWrapAnywhere) {
  std::string const plain = "# Hz S RI R 50\n1 11 0 21 0 12 0 22 0\n2 11 0 21 0 12 0 22 0\n";
  std::string wrapped = "\xef\xbb\xbf# Hz S RI R 50\r\n";
  for (char const * frequency : {"1", "2"})
    wrapped += std::string(frequency) + "\r\n\t11\t0\r\n21\r\n0 12 0 22\r\n0\r\n";
  std::string returns = plain;
  std::ranges::replace(returns, '\n', '\r');
  std::string noLastEnd = plain;
  noLastEnd.pop_back();
  for (std::string const & text : {plain, wrapped, returns, noLastEnd, plain + "\x1a"}) {
    auto const data = ReadTouchstoneText(text, "x.s2p");
    EXPECT_EQ(data.network.frequencies, (Frequencies{1, 2})) << text;
    EXPECT_EQ(data.network.matrices[1](1, 0), Complex(21, 0)) << text;
    EXPECT_EQ(data.network.matrices[1](1, 1), Complex(22, 0)) << text;
  }
  EXPECT_EQ(ReadTouchstoneText(returns, "x.s2p").facts.lines, 3u);
  EXPECT_EQ(ReadTouchstoneText(noLastEnd, "x.s2p").facts.lines, 3u);
}

TEST(TouchstoneReader, SeveralImpedancesInTheOptionLineAreThoseOfThePorts) {
  auto const data = ReadTouchstoneText("# Hz S RI R 50 75\n1 0 0 0 0 0 0 0 0\n", "x.s2p");
  EXPECT_EQ(data.network.z0, (std::vector<double>{50, 75}));
  EXPECT_EQ(data.facts.version, "1.1");
}

TEST(TouchstoneReader, NoiseDataOfVersionOneIsSkippedAndTold) {
  auto const data = ReadTouchstoneText("# GHz S RI R 50\n1 11 0 21 0 12 0 22 0\n2 11 0 21 0 12 0 22 0\n"
                                       "! noise\n2 2.5 0.6 -10 0.4 ! rows of five\n\n3 2.7 0.5 -20 0.3\n",
                                       "x.s2p");
  EXPECT_EQ(data.network.frequencies, (Frequencies{1e9, 2e9}));
  EXPECT_EQ(data.facts.noiseLines, 2u);
  EXPECT_EQ(Notes(data), (Lines{"5: 2 lines of noise data were skipped"}));
}

TEST(TouchstoneReader, FrequenciesThatStandTwiceKeepTheFirstAndAreTold) {
  auto const data = ReadTouchstoneText("# Hz RI\n1 1 0\n1 2 0\n1 3 0\n2 4 0\n", "x.s1p");
  EXPECT_EQ(data.network.frequencies, (Frequencies{1, 2}));
  EXPECT_EQ(data.network.matrices[0](0, 0), Complex(1, 0));
  EXPECT_EQ(Notes(data), (Lines{"3: a frequency stands there again: the first was kept, 2 skipped"}));
}

TEST(TouchstoneReader, FurtherOptionLinesAreIgnoredAndTold) {
  auto const data = ReadTouchstoneText("# Hz RI\n# GHz MA\n1 1 0\n# GHz DB\n2 1 0\n# x\n", "x.s1p");
  EXPECT_EQ(data.network.frequencies, (Frequencies{1, 2}));
  EXPECT_EQ(Notes(data), (Lines{"2: further option lines were ignored", "4: further option lines were ignored"}));
}

TEST(TouchstoneReader, TheCallerTellsThePortsWhereTheNameDoesNot) {
  std::string const text = "# Hz S RI R 50\n1 11 0 21 0 12 0 22 0\n";
  EXPECT_EQ(ReadTouchstoneText(text, "measured.txt", 2).network.Ports(), 2u);
  auto const data = ReadTouchstoneText(text, "measured.s4p", 2);
  EXPECT_EQ(Notes(data), (Lines{"0: the name promises 4 ports, the file was read with 2"}));
  EXPECT_EQ(rf::PortsOfTouchstoneName("/a.b/c.S12P"), 12u);
  for (char const * name :
       {"a.sp", "a.s0p", "a.s2", "a.s2px", "s2p", "a.sxp", "", ".", "a.s-2p", "a.s2 p", "a.s99999999999999999999999p"})
    EXPECT_FALSE(rf::PortsOfTouchstoneName(name)) << name;
}

TEST(TouchstoneReader, ANetworkTellsOfItselfInOneLine) {
  auto const one = ReadTouchstoneText("# MHz RI R 75\n1 0 0\n", "x.s1p");
  EXPECT_EQ(rf::Summary(one.network), "1 port, 1 point from 1000000 to 1000000 Hz, 75 ohm");
  auto const two = ReadTouchstoneText("# Hz RI R 50 75\n1 0 0 0 0 0 0 0 0\n2 0 0 0 0 0 0 0 0\n", "x.s2p");
  EXPECT_EQ(rf::Summary(two.network), "2 ports, 2 points from 1 to 2 Hz, 50 75 ohm");
}

TEST(TouchstoneReader, CommentsBeyondTheFirst64KiBAreCounted) {
  std::string text = "# Hz RI\n1 0 0\n";
  for (int i = 0; i < 3000; ++i)
    text += "! a comment with thirty letters\n";
  auto const data = ReadTouchstoneText(text, "x.s1p");
  EXPECT_LT(data.comments.size(), 3000u);
  EXPECT_GT(data.comments.size(), 1900u);
  EXPECT_EQ(Notes(data),
            (Lines{"0: " + std::to_string(3000 - data.comments.size()) + " further comments were not kept"}));
}

TEST(TouchstoneReader, TextsManyTimesTheBufferAreReadWhole) {
  std::string text = "# Hz S RI R 50\n";
  for (int i = 0; i < 40000; ++i)
    text += Text(i) + (i % 7 == 0 ? " ! " + std::string(static_cast<std::size_t>(i % 300), 'x') + "\r\n" : "  \t ") +
            Text(i * 0.5) + " " + Text(-i) + "\r\n";
  ASSERT_GT(text.size(), 3u * 256 * 1024);
  auto const data = ReadTouchstoneText(text, "x.s1p");
  ASSERT_EQ(data.network.frequencies.size(), 40000u);
  for (int i = 0; i < 40000; ++i) {
    ASSERT_EQ(data.network.frequencies[static_cast<std::size_t>(i)], i);
    ASSERT_EQ(data.network.matrices[static_cast<std::size_t>(i)](0, 0), Complex(i * 0.5, -i));
  }
  EXPECT_EQ(data.facts.bytes, text.size());
}

TEST(TouchstoneReader, WhereTheBufferEndsMakesNoDifference) {
  std::string const rest = "\r\n# GHz S RI R 50 ! c\r\n1.25 +1.5D-2\t-2.5e+1!d\r\n\r2.5\r\n-1 0\r\n";
  auto const check = [&](std::size_t before) {
    std::string const text = "!" + std::string(256 * 1024 - before, 'x') + rest;
    auto const data = ReadTouchstoneText(text + "!" + std::string(1000, 'y'), "x.s1p");
    EXPECT_EQ(data.network.frequencies, (Frequencies{1.25e9, 2.5e9})) << before;
    EXPECT_EQ(data.network.matrices[0](0, 0), Complex(0.015, -25)) << before;
    EXPECT_EQ(data.comments.size(), 4u) << before;
    EXPECT_EQ(data.facts.lines, 7u) << before;
  };
  for (std::size_t before = 0; before < 80; ++before)
    check(before);
  for (std::size_t before = 500; before < 620; ++before)
    check(before);
}

TEST(TouchstoneReader, ACommentLongerThanTheBufferIsPassed) {
  auto const data =
      ReadTouchstoneText("!" + std::string(600000, 'x') + "\n# Hz RI\n1 0 0 !" + std::string(600000, 'y'), "x.s1p");
  EXPECT_EQ(data.network.frequencies, (Frequencies{1}));
  EXPECT_EQ(data.comments[0], std::string(1024, 'x'));
}

TEST(TouchstoneReader, AMatrixOfManyPortsMayStandInOneLine) {
  std::string text = "# Hz RI\n1";
  for (int i = 0; i < 120 * 120; ++i)
    text += " " + Text(i) + " " + Text(-i);
  auto const data = ReadTouchstoneText(text + "\n", "x.s120p");
  EXPECT_EQ(data.network.matrices[0](119, 119), Complex(14399, -14399));
}

TEST(TouchstoneReader, FilesAreReadLikeTexts) {
  FolderOfFiles const folder;
  auto const path = folder.Write("a.S1P", "# Hz RI\n1 0.5 0\n");
  auto const data = rf::ReadTouchstone(path);
  EXPECT_EQ(data.name, path.string());
  EXPECT_EQ(data.network.frequencies, (Frequencies{1}));
}

std::string ErrorOfFile(std::filesystem::path const & path) {
  try {
    rf::ReadTouchstone(path);
  } catch (rf::TouchstoneFileError const & error) {
    return error.what();
  }
  ADD_FAILURE() << "no error was raised";
  return "";
}

TEST(TouchstoneReader, FilesThatCannotBeReadAreTold) {
  FolderOfFiles const folder;
  auto const missing = folder.Path() / "none.s1p";
  EXPECT_EQ(ErrorOfFile(missing), missing.string() +
                                      ": can't be read: No such file or directory; give a Touchstone file "
                                      "that you may read");
  folder.Write("d.s1p/x", "");
  EXPECT_NE(ErrorOfFile(folder.Path() / "d.s1p").find("can't be read: Is a directory"), std::string::npos);
}

} // namespace
