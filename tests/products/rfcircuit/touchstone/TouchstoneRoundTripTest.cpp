#include "products/rfcircuit/engine/touchstone/TouchstoneReader.h"
#include "products/rfcircuit/engine/touchstone/TouchstoneWriter.h"

#include "tests/products/rfcircuit/RfSupport.h"

#include <gtest/gtest.h>

#include <fmt/format.h>

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <random>

namespace {

using namespace rftest;
using Format = rf::TouchstoneOptions::Format;

constexpr Format FORMATS[] = {Format::RealImaginary, Format::MagnitudeDegrees, Format::DecibelDegrees};

/** Random S-parameters: magnitudes over many decades, frequencies from zero. */
struct RandomNetwork {
  rf::SParameterTable table;
  std::vector<rf::Port> ports;

  RandomNetwork(std::size_t portCount, std::size_t points, bool hasSeveralImpedances, unsigned seed) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> exponent(-6, 0.3);
    std::uniform_real_distribution<double> angle(-M_PI, M_PI);
    std::uniform_real_distribution<double> unit(0.1, 1);
    for (std::size_t i = 0; i < portCount; ++i)
      table.z0.push_back(hasSeveralImpedances ? 100 * unit(random) : 50);
    for (std::size_t i = 0; i < portCount; ++i)
      ports.push_back({static_cast<int>(i) + 1, "V", table.z0[i], 0});
    double frequency = 0;
    for (std::size_t k = 0; k < points; ++k, frequency += 1e9 * unit(random)) {
      table.frequencies.push_back(frequency);
      table.matrices.emplace_back(portCount);
      for (std::size_t i = 0; i < portCount * portCount; ++i)
        table.matrices.back()(i / portCount, i % portCount) = std::polar(std::pow(10, exponent(random)), angle(random));
    }
  }

  std::string Text(rf::TouchstoneOptions const & options) const {
    return rf::TouchstoneText("x", {"made by a test"}, ports, table.frequencies, table.matrices, options);
  }
};

void ExpectSame(rf::SParameterTable const & actual, rf::SParameterTable const & expected, double tolerance) {
  EXPECT_EQ(actual.frequencies, expected.frequencies);
  EXPECT_EQ(actual.z0, expected.z0);
  ASSERT_EQ(actual.matrices.size(), expected.matrices.size());
  for (std::size_t k = 0; k < expected.matrices.size(); ++k) {
    std::size_t const n = expected.Ports();
    ASSERT_EQ(actual.matrices[k].Ports(), n);
    for (std::size_t i = 0; i < n * n; ++i) {
      Complex const value = expected.matrices[k](i / n, i % n);
      ExpectNear(actual.matrices[k](i / n, i % n), value, tolerance * std::abs(value));
    }
  }
}

TEST(TouchstoneRoundTrip, WhatIsWrittenReadsBackInAnyFormatOfOneToEightPorts) {
  for (std::size_t ports = 1; ports <= 8; ++ports)
    for (bool const hasSeveralImpedances : {false, true})
      for (Format const format : FORMATS) {
        RandomNetwork const network(ports, 7, hasSeveralImpedances, static_cast<unsigned>(ports));
        auto const data = rf::ReadTouchstoneText(network.Text({format, 17}), "x" + rf::TouchstoneExtension(ports));
        bool const isExact = format == Format::RealImaginary;
        ExpectSame(data.network, network.table, isExact ? 0 : 1e-13);
        EXPECT_EQ(data.facts.version, hasSeveralImpedances && ports > 1 ? "2.0" : "1.0");
        EXPECT_TRUE(data.notes.empty());
        EXPECT_EQ(data.comments, (std::vector<std::string>{"made by a test"}));
      }
}

TEST(TouchstoneRoundTrip, FewerDigitsReadBackAsWellAsTheyCan) {
  RandomNetwork const network(3, 5, false, 1);
  ExpectSame(rf::ReadTouchstoneText(network.Text({Format::RealImaginary, 9}), "x.s3p").network, network.table, 3e-7);
}

/** Writes networks in ways that the writer does not have: units, line breaks, blanks, comments, order of options. */
class WildText {
public:
  explicit WildText(unsigned seed) : m_Random(seed) {}

  std::string Of(RandomNetwork const & network, bool isSecondVersion) {
    int const shift = std::vector<int>{0, 3, 6, 9}[Choose(4)];
    std::string text = isSecondVersion ? Ends("[Version] 2.0") : "";
    text += Ends(fmt::format("# {} R {} ri",
                             shift == 0   ? "hz"
                             : shift == 3 ? "KHZ"
                             : shift == 6 ? "MHz"
                                          : "ghz",
                             network.table.z0[0]));
    std::size_t const n = network.table.Ports();
    if (isSecondVersion) {
      text += Ends(fmt::format("[NUMBER OF PORTS] {}", n)) + Ends("[two-port data order] 12_21") + "[Reference]";
      for (double const z0 : network.table.z0)
        text += Gap() + fmt::format("{}", z0);
      text += "\n" + Ends(fmt::format("[Number of Frequencies] {}", network.table.frequencies.size())) +
              Ends("[Network Data]");
    }
    for (std::size_t k = 0; k < network.table.frequencies.size(); ++k) {
      text += fmt::format("{}e-{}", network.table.frequencies[k], shift);
      for (std::size_t i = 0; i < n * n; ++i) {
        bool const isByColumn = n == 2 && !isSecondVersion;
        Complex const value = network.table.matrices[k](isByColumn ? i % n : i / n, isByColumn ? i / n : i % n);
        text += Gap() + fmt::format("{:+.17e}", value.real()) + Gap() + fmt::format("{}", value.imag());
      }
      text += Ends("");
    }
    return text + (isSecondVersion ? Ends("[End]") : "");
  }

private:
  std::size_t Choose(std::size_t count) { return std::uniform_int_distribution<std::size_t>(0, count - 1)(m_Random); }
  std::string Ends(std::string const & line) {
    return line + std::vector<std::string>{"\n", "\r\n", " ! 1 2 3\n", "\t\n\n", "\r\n! # [x]\r\n"}[Choose(5)];
  }
  std::string Gap() {
    return std::vector<std::string>{" ", "  ", "\t", "\n", "\r\n  ", " ! 4 5\n", " ", " "}[Choose(8)];
  }

  std::mt19937 m_Random;
};

TEST(TouchstoneRoundTrip, AnyLayoutOfTheSameNumbersReadsTheSame) {
  for (unsigned seed = 0; seed < 300; ++seed) {
    bool const isSecondVersion = seed % 2 == 1;
    RandomNetwork network(1 + seed % 8, 1 + seed % 5, isSecondVersion, seed);
    for (double & frequency : network.table.frequencies)
      frequency = std::floor(frequency / 1e3) * 1e3;
    std::string const text = WildText(seed).Of(network, isSecondVersion);
    try {
      ExpectSame(rf::ReadTouchstoneText(text, "x", network.table.Ports()).network, network.table, 0);
    } catch (rf::TouchstoneError const & error) {
      ADD_FAILURE() << error.what() << "\n" << text;
    }
    if (HasFailure())
      break;
  }
}

bool Runs(std::string const & command) { return std::system((command + " >/dev/null 2>&1").c_str()) == 0; }

/** A Python that has scikit-rf; Debian's packages belong to its own, whichever stands first in the path. */
std::string PythonWithReader() {
  for (std::string const python : {"python3", "/usr/bin/python3"})
    if (Runs(python + " -c 'import skrf'"))
      return python;
  return {};
}

/** Files of random networks, and what scikit-rf makes of them. */
class IndependentReader {
public:
  explicit IndependentReader(std::string const & python) : m_Command(python) {
    // What it misses for drawing it would write among the numbers.
    m_Command += " " + m_Folder
                           .Write("dump.py", "import contextlib, io, sys\n"
                                             "with contextlib.redirect_stdout(io.StringIO()): import skrf\n"
                                             "for file in sys.argv[1:]:\n"
                                             "    network = skrf.Network(file)\n"
                                             "    for k, f in enumerate(network.f):\n"
                                             "        print(float(f))\n"
                                             "        for z in network.z0[k]: print(float(z.real))\n"
                                             "        for s in network.s[k].flat:\n"
                                             "            print(float(s.real), float(s.imag))\n")
                           .string();
  }

  /** It gets the text without a line that it doesn't know. */
  void Add(std::string text, std::size_t ports, std::string const & unknown = {}) {
    std::string const name = "n" + Text(static_cast<int>(m_Own.size())) + rf::TouchstoneExtension(ports);
    m_Own.push_back(rf::ReadTouchstoneText(text, name).network);
    std::size_t const place = text.find(unknown);
    if (place != std::string::npos)
      text.erase(place, unknown.size());
    m_Command += " " + m_Folder.Write(name, text).string();
  }

  void ExpectTheSame(bool knowsImpedances) {
    auto const output = m_Folder.Path() / "out.txt";
    ASSERT_EQ(std::system((m_Command + " >" + output.string()).c_str()), 0);
    std::ifstream numbers(output);
    for (rf::SParameterTable const & own : m_Own)
      ExpectPrinted(numbers, own, knowsImpedances);
    ASSERT_TRUE(numbers.good());
    std::string more;
    EXPECT_FALSE(numbers >> more) << more;
  }

private:
  static void ExpectPrinted(std::istream & numbers, rf::SParameterTable const & own, bool knowsImpedances) {
    std::size_t const n = own.Ports();
    for (std::size_t k = 0; k < own.frequencies.size(); ++k) {
      double frequency = -1;
      numbers >> frequency;
      EXPECT_NEAR(frequency, own.frequencies[k], 1e-9 * own.frequencies[k]);
      for (double const expected : own.z0) {
        double z0 = 0;
        numbers >> z0;
        if (knowsImpedances) {
          EXPECT_NEAR(z0, expected, 1e-12 * expected);
        }
      }
      for (std::size_t i = 0; i < n * n; ++i) {
        double real = 0;
        double imaginary = 0;
        numbers >> real >> imaginary;
        ExpectNear(own.matrices[k](i / n, i % n), Complex(real, imaginary), 1e-12);
      }
    }
  }

  FolderOfFiles const m_Folder;
  std::string m_Command;
  std::vector<rf::SParameterTable> m_Own;
};

TEST(TouchstoneRoundTrip, AnIndependentReaderSeesTheSame) {
  std::string const python = PythonWithReader();
  if (python.empty())
    GTEST_SKIP() << "python3 has no scikit-rf: scripts/setup --referee installs it";
  IndependentReader reader(python);
  for (std::size_t ports = 1; ports <= 8; ++ports)
    for (Format const format : FORMATS)
      reader.Add(RandomNetwork(ports, 5, false, static_cast<unsigned>(ports)).Text({format, 17}), ports);
  reader.ExpectTheSame(true);
}

// scikit-rf 0.15 takes one impedance for all ports, and knows the one order of two ports that is written but not its
// name.
TEST(TouchstoneRoundTrip, AnIndependentReaderSeesTheSameMatricesInTheSecondVersion) {
  std::string const python = PythonWithReader();
  if (python.empty())
    GTEST_SKIP() << "python3 has no scikit-rf: scripts/setup --referee installs it";
  IndependentReader reader(python);
  for (std::size_t ports = 2; ports <= 8; ++ports)
    for (Format const format : FORMATS) {
      std::string const text = RandomNetwork(ports, 5, true, static_cast<unsigned>(ports)).Text({format, 17});
      ASSERT_NE(text.find("[Version] 2.0"), std::string::npos) << text;
      reader.Add(text, ports, "[Two-Port Data Order] 21_12\n");
    }
  reader.ExpectTheSame(false);
}

} // namespace
