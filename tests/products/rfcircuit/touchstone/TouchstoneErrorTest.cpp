#include "products/rfcircuit/engine/touchstone/TouchstoneReader.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace {

std::string ErrorOf(std::string const & text, std::string const & name = "x.s1p",
                    std::optional<std::size_t> ports = {}) {
  try {
    rf::ReadTouchstoneText(text, name, ports);
  } catch (rf::TouchstoneSyntaxError const & error) {
    return error.what();
  }
  ADD_FAILURE() << "no error was raised by " << text;
  return "";
}

std::string ErrorOfTwo(std::string const & settings, std::string const & data = "[Network Data]\n1 0 0\n[End]\n") {
  return ErrorOf("[Version] 2.0\n# Hz S RI R 50\n" + settings + data, "x.ts");
}

std::string const OPTIONS = "expected Hz, kHz, MHz or GHz; S, Y, Z, G or H; MA, DB or RI; R and an impedance";
std::string const KEYWORDS =
    "expected [Number of Ports], [Two-Port Data Order], [Number of Frequencies], [Number of Noise Frequencies], "
    "[Reference], [Matrix Format], [Begin Information] or [Network Data]";

TEST(TouchstoneError, ACarriesItsPlaceAndItsExpectation) {
  try {
    rf::ReadTouchstoneText("# Hz RI\n1 0.5 0\n2 \t0,5 0\n", "x.s1p");
    FAIL() << "no error was raised";
  } catch (rf::TouchstoneSyntaxError const & error) {
    EXPECT_EQ(error.File(), "x.s1p");
    EXPECT_EQ(error.Line(), 3u);
    EXPECT_EQ(error.Column(), 4u);
    EXPECT_EQ(error.Message(), "'0,5' is not a number");
    EXPECT_EQ(error.Expected(), "expected a number such as -1.5e-3");
    EXPECT_STREQ(error.what(), "x.s1p:3:4: '0,5' is not a number; expected a number such as -1.5e-3");
  }
}

TEST(TouchstoneError, AnEmptyTextHasNoData) {
  EXPECT_EQ(ErrorOf(""), "x.s1p:1:1: there is no network data; expected a line that begins with a frequency");
  EXPECT_EQ(ErrorOf("! only\n# Hz RI\n"),
            "x.s1p:3:1: there is no network data; expected a line that begins with a frequency");
}

TEST(TouchstoneError, WordsThatAreNoNumbers) {
  for (char const * word :
       {"x", "1x", "1e", "e5", "--1", "+-1", "1.2.3", "nan", "0x10", "1e5e5", "+", "-", ".", "1d", "1e+-5"})
    EXPECT_EQ(ErrorOf("# Hz RI\n1 0 " + std::string(word) + "\n"),
              "x.s1p:2:5: '" + std::string(word) + "' is not a number; expected a number such as -1.5e-3");
  for (char const * word : {"1e999", "-1D+400", "1e99999999999999999999"})
    EXPECT_EQ(ErrorOf("# Hz RI\n1 0 " + std::string(word) + "\n"),
              "x.s1p:2:5: '" + std::string(word) + "' is too large; expected a finite number");
}

TEST(TouchstoneError, InfinitiesAreNoNumbers) {
  for (char const * word : {"inf", "-inf", "infinity"})
    EXPECT_NE(ErrorOf("# Hz RI\n1 0 " + std::string(word) + "\n").find("x.s1p:2:5: "), std::string::npos);
}

TEST(TouchstoneError, AWordWithoutEndIsShownShort) {
  std::string const digits(100000, '1');
  EXPECT_EQ(ErrorOf("# Hz RI\n1 0 " + digits + " 2 3\n"),
            "x.s1p:2:5: a word begins with '" + digits.substr(0, 40) + "...'; words have at most 256 characters");
  EXPECT_EQ(ErrorOf("# Hz RI\n1 0 0." + std::string(600, '0') + "\n").substr(0, 28), "x.s1p:2:5: a word begins wit");
}

TEST(TouchstoneError, BinaryFilesAreToldAsSuch) {
  EXPECT_EQ(ErrorOf(std::string("# Hz RI\n1 0\0 0\n", 15)),
            "x.s1p:2:4: there is a zero byte; a Touchstone file is text");
  EXPECT_EQ(ErrorOf("\xff\xfe#"), "x.s1p:1:1: the text is in UTF-16; save it as plain text or UTF-8");
  EXPECT_EQ(ErrorOf("\x7f"
                    "ELF\x02 1\n"),
            "x.s1p:1:1: '?ELF?' is not a number; expected a number such as -1.5e-3");
}

TEST(TouchstoneError, OptionsThatAreNone) {
  EXPECT_EQ(ErrorOf("# Hz S XY R 50\n1 0 0\n"), "x.s1p:1:8: the option line has 'XY'; " + OPTIONS);
  EXPECT_EQ(ErrorOf("#THz\n1 0 0\n"), "x.s1p:1:1: the option line has 'THz'; " + OPTIONS);
  EXPECT_EQ(ErrorOf("# Hz S RI Rx\n1 0 0\n"), "x.s1p:1:11: the option line has 'Rx'; " + OPTIONS);
  EXPECT_EQ(ErrorOf("# Hz S RI 50\n1 0 0\n"), "x.s1p:1:11: the option line has '50'; " + OPTIONS);
  EXPECT_EQ(ErrorOf("# Hz S RI MA\n1 0 0\n"), "x.s1p:1:11: the option line tells the format twice; expected it once");
  EXPECT_EQ(ErrorOf("# Hz GHz\n1 0 0\n"),
            "x.s1p:1:6: the option line tells the unit of frequencies twice; expected it once");
  EXPECT_EQ(ErrorOf("# S Z\n1 0 0\n"),
            "x.s1p:1:5: the option line tells the kind of parameters twice; expected it once");
  EXPECT_EQ(ErrorOf("# R 50 S R 50\n1 0 0\n"),
            "x.s1p:1:10: the option line tells the impedance twice; expected it once");
}

TEST(TouchstoneError, ImpedancesThatAreNone) {
  EXPECT_EQ(ErrorOf("# Hz S RI R 0\n1 0 0\n"), "x.s1p:1:13: 0 is no reference impedance; expected ohms above zero");
  EXPECT_EQ(ErrorOf("# Hz S RI R-50\n1 0 0\n"), "x.s1p:1:11: -50 is no reference impedance; expected ohms above zero");
  EXPECT_EQ(ErrorOf("# Hz S RI R 50+5j\n1 0 0\n"),
            "x.s1p:1:13: '50+5j' is not a number; expected a number such as -1.5e-3");
  EXPECT_EQ(ErrorOf("# Hz S RI R 50 60 70\n1 0 0 0 0 0 0 0 0\n", "x.s2p"),
            "x.s2p:1:11: 3 reference impedances were read for 2 ports; expected one, or one for each port");
}

TEST(TouchstoneError, AnOptionLineBehindTheData) {
  EXPECT_EQ(ErrorOf("1 0 0\n# GHz S MA R 50\n"),
            "x.s1p:2:1: the option line stands behind the data; expected it before the first frequency");
}

TEST(TouchstoneError, TheNumberOfPortsMustBeTold) {
  EXPECT_EQ(ErrorOf("# Hz RI\n1 0 0\n", "measured.txt"),
            "measured.txt:2:1: the number of ports is not told; expected a "
            "file name that ends with it, such as .s2p");
  EXPECT_EQ(ErrorOf("# Hz RI\n1 0 0\n", "x.s1p", 0), "x.s1p:2:1: 0 ports were asked for; expected 1 to 10000");
  EXPECT_EQ(ErrorOf("# Hz RI\n1 0 0\n", "x.s99999p"), "x.s99999p:2:1: 99999 ports were asked for; expected 1 to 10000");
}

TEST(TouchstoneError, FrequenciesMustRise) {
  EXPECT_EQ(ErrorOf("# Hz RI\n2 0 0\n1 0 0\n"),
            "x.s1p:3:1: the frequency 1 Hz stands behind 2 Hz; expected rising frequencies, of 1 port");
  EXPECT_EQ(ErrorOf("# kHz RI\n-2 0 0\n"), "x.s1p:2:1: the frequency -2000 Hz is negative; expected zero or more");
  EXPECT_EQ(ErrorOf("# Hz RI\n2 0 0 0 0 0 0 0 0\n1 0 0 0 0 0 0 0 0\n", "x.s2p"),
            "x.s2p:3:1: the frequency 1 Hz stands behind 2 Hz; expected rising frequencies, of 2 ports");
}

TEST(TouchstoneError, PointsMustBeWhole) {
  EXPECT_EQ(ErrorOf("# Hz RI\n1 0 0 0 0 0 0\n", "x.s2p"),
            "x.s2p:3:1: the point at 1 Hz ends after 6 of 8 numbers; expected those of 2 ports");
  EXPECT_EQ(ErrorOf("# Hz RI\n1 0 0 5\n"),
            "x.s1p:2:7: the line goes on after the 2 numbers of the point at 1 Hz; expected its end: the file was read "
            "with 1 port");
}

TEST(TouchstoneError, FilesOfFewerPortsThanTheirNameTellsAreNoticed) {
  std::string one = "# GHz RI\n";
  std::string two = one;
  for (int i = 1; i < 20; ++i) {
    one += std::to_string(i) + " 0.5 0.1\n";
    two += std::to_string(i) + " 0.5 0.1 0.5 0.1 0.5 0.1 0.5 0.1\n";
  }
  EXPECT_EQ(ErrorOf(one, "x.s2p"),
            "x.s2p:4:10: the lines look like points of 1 port each; expected a point of 2 ports over several lines");
  EXPECT_EQ(ErrorOf(one, "x.s4p"),
            "x.s4p:12:11: the lines look like points of 1 port each; expected a point of 4 ports over several lines");
  EXPECT_EQ(ErrorOf(two, "x.s7p"),
            "x.s7p:12:35: the lines look like points of 2 ports each; expected a point of 7 ports over several lines");
  for (char const * name : {"x.s3p", "x.s5p", "x.s6p", "x.s8p"}) {
    EXPECT_NE(ErrorOf(one, name), "") << name;
    EXPECT_NE(ErrorOf(two, name), "") << name;
  }
}

TEST(TouchstoneError, FilesOfMorePortsThanTheirNameTellsAreNoticed) {
  std::string const two = "# GHz RI\n1 0.5 0.1 0.5 0.1 0.5 0.1 0.5 0.1\n";
  std::string const three = "# GHz RI\n1 0 0 0 0 0 0\n0 0 0 0 0 0\n0 0 0 0 0 0\n";
  EXPECT_NE(ErrorOf(two, "x.s1p").find("the line goes on after the 2 numbers"), std::string::npos);
  EXPECT_NE(ErrorOf(three, "x.s2p").find("the line goes on after the 8 numbers"), std::string::npos);
}

TEST(TouchstoneError, NoiseDataHasFiveNumbersALine) {
  std::string const data = "# Hz RI\n2 0 0 0 0 0 0 0 0\n1 0 0 0 0\n";
  EXPECT_EQ(ErrorOf(data + "2 0 0 0\n", "x.s2p"), "x.s2p:4:1: a line of noise data has 4 numbers; expected 5, as a "
                                                  "frequency that does not rise begins noise data");
  EXPECT_NE(ErrorOf(data + "2 0 0 0 x\n", "x.s2p").find("x.s2p:4:9: 'x' is not a number"), std::string::npos);
}

TEST(TouchstoneError, ValuesThatOverflow) {
  EXPECT_EQ(ErrorOf("# Hz DB\n1 0 0\n 2 9999 0\n"),
            "x.s1p:3:2: a value at 2 Hz is too large; expected finite S-parameters");
}

TEST(TouchstoneError, HybridParametersNeedTwoPorts) {
  EXPECT_EQ(ErrorOf("! a\n# Hz H RI\n1 0 0\n"),
            "x.s1p:2:1: H-parameters of 1 port; expected two ports for G- and H-parameters");
  EXPECT_EQ(ErrorOf("# Hz Z RI R 50 75\n1 0 0 0 0 0 0 0 0\n", "x.s2p"),
            "x.s2p:1:1: Z-parameters of version 1 with several impedances; expected one impedance, by which they are "
            "normalised");
}

TEST(TouchstoneError, KeywordsNeedTheirVersion) {
  EXPECT_EQ(ErrorOf("[Number of Ports] 1\n"),
            "x.s1p:1:1: [Number of Ports] stands in a file of version 1; expected [Version] 2.0 before it");
  EXPECT_EQ(ErrorOf("# Hz RI\n1 0 0\n[End]\n"),
            "x.s1p:3:1: [End] stands in a file of version 1; expected [Version] 2.0 at its beginning");
  EXPECT_EQ(ErrorOf("[Version] 3.0\n"), "x.s1p:1:11: the version is '3.0'; expected 1.0, 1.1, 2.0 or 2.1");
  EXPECT_EQ(ErrorOf("[Version]\n"), "x.s1p:1:10: the version is ''; expected 1.0, 1.1, 2.0 or 2.1");
}

TEST(TouchstoneError, KeywordsThatAreNotUnderstood) {
  EXPECT_EQ(ErrorOfTwo("[Colour] red\n"), "x.ts:3:1: the keyword [Colour] is unknown; " + KEYWORDS);
  EXPECT_EQ(ErrorOfTwo("[Number of Ports\n"), "x.ts:3:1: a keyword is not closed: '[Number of Ports'; expected ']'");
  EXPECT_EQ(ErrorOfTwo("[Mixed-Mode Order] D1,2 C1,2\n"),
            "x.ts:3:1: [Mixed-Mode Order] tells of mixed-mode parameters, which are not read; expected a file with "
            "single-ended parameters");
  EXPECT_EQ(ErrorOfTwo("[Matrix Format] Full\n[Matrix Format] Full\n"),
            "x.ts:4:1: [Matrix Format] stands here for the second time; expected it once");
  EXPECT_EQ(ErrorOfTwo("1 0 0\n"),
            "x.ts:3:1: something other than a keyword stands before [Network Data]; " + KEYWORDS);
  EXPECT_EQ(ErrorOfTwo("[End Information]\n"), "x.ts:3:1: the keyword [End Information] is unknown; " + KEYWORDS);
}

TEST(TouchstoneError, ArgumentsThatAreNone) {
  for (char const * number : {"0", "x", "-1", "2.5", "10001", "1e3", ""})
    EXPECT_EQ(ErrorOfTwo("[Number of Ports] " + std::string(number) + "\n"),
              "x.ts:3:19: '" + std::string(number) + "' is no such number; expected a whole number from 1 to 10000");
  EXPECT_EQ(ErrorOfTwo("[Number of Ports] 1 2\n"),
            "x.ts:3:21: the line goes on after [Number of Ports]; expected the end of the line");
  EXPECT_EQ(ErrorOfTwo("[Two-Port Data Order] 11_22\n"),
            "x.ts:3:23: the two-port data order is '11_22'; expected 12_21 or 21_12");
  EXPECT_EQ(ErrorOfTwo("[Matrix Format] half\n"),
            "x.ts:3:17: the matrix format is 'half'; expected Full, Lower or Upper");
  EXPECT_EQ(ErrorOfTwo("[Begin Information]\nx\n"),
            "x.ts:3:20: [Begin Information] is not closed; expected [End Information]");
}

TEST(TouchstoneError, KeywordsThatAreMissing) {
  EXPECT_EQ(ErrorOfTwo(""), "x.ts:3:1: [Network Data] begins without a number of ports; expected [Number of Ports] "
                            "before it");
  EXPECT_EQ(ErrorOfTwo("[Number of Ports] 2\n"), "x.ts:4:1: [Network Data] of two ports begins without their order; "
                                                 "expected [Two-Port Data Order] 21_12 or 12_21 before it");
  EXPECT_EQ(ErrorOfTwo("[Number of Ports] 1\n", ""), "x.ts:4:1: there is no network data; expected [Network Data]");
  EXPECT_EQ(ErrorOfTwo("[Number of Ports] 1\n", "[Network Data]\n[End]\n"),
            "x.ts:5:1: there is no network data; expected at least one frequency");
}

TEST(TouchstoneError, ReferencesMustBeThoseOfThePorts) {
  EXPECT_EQ(ErrorOfTwo("[Number of Ports] 2\n[Two-Port Data Order] 21_12\n[Reference] 50\n"),
            "x.ts:5:12: 1 reference impedances were read for 2 ports; expected one for each port");
  EXPECT_EQ(ErrorOfTwo("[Number of Ports] 1\n[Reference]\n"),
            "x.ts:4:12: 0 reference impedances were read for 1 port; expected one for each port");
  EXPECT_EQ(ErrorOfTwo("[Number of Ports] 1\n[Reference] 50\n 60\n"),
            "x.ts:4:12: 2 reference impedances were read for 1 port; expected one for each port");
  EXPECT_EQ(ErrorOfTwo("[Number of Ports] 1\n[Reference] 5O\n"),
            "x.ts:4:13: '5O' is not a number; expected a number such as -1.5e-3");
}

TEST(TouchstoneError, FrequenciesMustBeAsManyAsPromised) {
  std::string const settings = "[Number of Ports] 1\n[Number of Frequencies] 2\n";
  EXPECT_EQ(ErrorOfTwo(settings),
            "x.ts:7:1: the network data end after 1 frequencies; expected 2, as [Number of Frequencies] tells");
  EXPECT_EQ(ErrorOfTwo(settings, "[Network Data]\n1 0 0\n2 0 0\n3 0 0\n[End]\n"),
            "x.ts:9:1: the network data end after 3 frequencies; expected 2, as [Number of Frequencies] tells");
}

TEST(TouchstoneError, KeywordsInTheWrongPlace) {
  std::string const settings = "[Number of Ports] 1\n";
  EXPECT_EQ(ErrorOfTwo(settings, "[Network Data]\n1 0 0\n[Reference] 50\n"),
            "x.ts:6:1: [Reference] stands behind the network data; expected a frequency, [Noise Data] or [End]");
  EXPECT_EQ(ErrorOfTwo(settings, "[Network Data]\n1 0\n[End]\n"),
            "x.ts:6:1: the point at 1 Hz ends after 1 of 2 numbers; expected those of 1 port");
  EXPECT_EQ(ErrorOfTwo(settings, "[Network Data]\n1 0 0\n[Noise Data]\n1 2 3 4 5\n[Network Data]\n"),
            "x.ts:8:1: a keyword stands behind the noise data; expected [End]");
  EXPECT_EQ(ErrorOf("[Version] 2.0\n# Hz RI\n[Number of Ports] 1\n[Network Data]\n1 0 0\n[End]\n", "x.ts", 2),
            "x.ts:4:1: the file has 1 port, asked for were 2; expected the same number");
}

TEST(TouchstoneError, TheMessageStaysOnOneLineWhateverTheNameHolds) {
  EXPECT_EQ(ErrorOf("", "a\nb.s1p").substr(0, 11), "a?b.s1p:1:1");
}

} // namespace
