#include "tests/products/rfcircuit_product/ProductSupport.h"

#include "basekit/io/CBlock.h"
#include "basekit/text/Utf8.h"
#include "basekit/value/units/QuantityText.h"
#include "products/rfcircuit/engine/netlist/Netlist.h"
#include "products/rfcircuit/product/SweepSettings.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

using namespace rftest;

namespace {

std::string const kTwoPorts = "V1 in 0 dc 0 ac 1 portnum 1 z0 50\nV2 out 0 dc 0 ac 0 portnum 2 z0 50\n";

struct Example {
  std::string file;
  AString summary;
  std::vector<std::pair<AString, AString>> variables;
};

std::vector<Example> const & Examples() {
  static std::vector<Example> const examples{
      {"attenuator/attenuator.cir", L"2 ports, 6 elements, 1 sweep", {{L"attenuation", L"10"}}},
      {"branchline/branchline.cir", L"4 ports, 4 elements, 1 sweep", {{L"f0", L"2.4e+09"}, {L"zline", L"50"}}},
      {"lowpass/lowpass.cir", L"2 ports, 7 elements, 1 sweep", {{L"cscale", L"1"}, {L"lscale", L"1"}}},
      {"sallenkey/sallenkey.cir",
       L"2 ports, 6 elements, 1 sweep",
       {{L"gain", L"1e+05"}, {L"r", L"1000"}, {L"c", L"1e-09"}}},
      {"transformer/transformer.cir",
       L"2 ports, 2 elements, 1 sweep",
       {{L"coupling", L"0.98"}, {L"lprimary", L"1e-06"}, {L"lsecondary", L"4e-06"}}}};
  return examples;
}

class NetlistSource : public testing::Test {
protected:
  std::filesystem::path Write(std::string const & lines) { return WriteFile(m_folder / "test.cir", "title\n" + lines); }

  support::TemporaryFolder m_folder;
};

} // namespace

TEST_F(NetlistSource, OfEveryExampleIsTold) {
  for (Example const & example : Examples()) {
    SCOPED_TRACE(example.file);
    auto const source = Source(ExampleFile(example.file));
    EXPECT_EQ(source.summary, example.summary);
    ASSERT_EQ(source.files.size(), 1u);
    EXPECT_EQ(source.files[0], Wide(ExampleFile(example.file)));
    ASSERT_EQ(source.setups.size(), 1u);
    EXPECT_EQ(source.setups[0].name, L"SParameters1");
    EXPECT_EQ(source.setups[0].typeName, L"SParameters");
    ASSERT_EQ(source.variables.size(), example.variables.size());
    for (std::size_t i = 0; i < example.variables.size(); ++i) {
      EXPECT_EQ(source.variables[i].name, example.variables[i].first);
      EXPECT_EQ(source.variables[i].value, example.variables[i].second);
    }
  }
}

TEST_F(NetlistSource, GivesVariablesTheVeryNumberOfTheNetlist) {
  for (Example const & example : Examples()) {
    auto const netlist = rf::ReadNetlist(ExampleFile(example.file));
    auto const source = Source(ExampleFile(example.file));
    for (std::size_t i = 0; i < source.variables.size(); ++i) {
      val::Quantity quantity;
      ASSERT_TRUE(val::ParseQuantity(source.variables[i].value.View(), quantity));
      EXPECT_EQ(quantity.real, netlist.DesignVariables()[i].value);
    }
  }
}

TEST_F(NetlistSource, GivesVariablesTheShortestPlainNumberHoweverTheyAreWritten) {
  auto const source =
      Source(Write(".param a=1F b=3m c={+1.00} d=-0 e=0.1000\nR1 in out 50\n" + kTwoPorts + ".sp lin 11 1g 2g\n"));
  std::vector<AString> values;
  for (auto const & variable : source.variables)
    values.push_back(variable.value);
  EXPECT_EQ(values, (std::vector<AString>{L"1e-15", L"0.003", L"1", L"0", L"0.1"}));
}

TEST_F(NetlistSource, GivesOneSetupForEachSweepInTheOrderOfTheFile) {
  auto const source =
      Source(Write("R1 in out 50\n" + kTwoPorts + ".sp lin 11 1g 2g\n.sp dec 10 1k 1meg\n.sp list 3g 1g\n"));
  EXPECT_EQ(source.summary, L"2 ports, 1 element, 3 sweeps");
  ASSERT_EQ(source.setups.size(), 3u);
  EXPECT_EQ(source.setups[0].name, L"SParameters1");
  EXPECT_EQ(source.setups[2].name, L"SParameters3");
  EXPECT_EQ(source.setups[0].settings.Pack(), L"Settings { Kind = \"lin\" Points = 11 Start = 1e9 Stop = 2e9 }");
  EXPECT_EQ(source.setups[1].settings.Pack(), L"Settings { Kind = \"dec\" Points = 10 Start = 1000 Stop = 1e6 }");
  EXPECT_EQ(source.setups[2].settings.Pack(), L"Settings { Kind = \"list\" Frequencies(1e9, 3e9) }");
}

TEST_F(NetlistSource, NamesAllFilesTheMainOneFirst) {
  WriteFile(m_folder / "part.inc", "R1 in out 50\n");
  auto const main = Write(".include part.inc\n" + kTwoPorts + ".sp lin 11 1g 2g\n");
  auto const source = Source(main);
  EXPECT_EQ(source.files, (std::vector<AString>{Wide(main), Wide(m_folder / "part.inc")}));
}

TEST_F(NetlistSource, TellsOfTransientsThatAreLeftOut) {
  EXPECT_EQ(Source(Write("R1 in out 50\n" + kTwoPorts + ".sp lin 11 1g 2g\n.tran 1n 1u\n")).summary,
            L"2 ports, 1 element, 1 sweep (1 .tran line left out)");
}

TEST_F(NetlistSource, HandsOnTheNotesOfTheReader) {
  auto const file = Write("R1 in out 50\n" + kTwoPorts + ".sp lin 11 1g 2g\n.temp 27\n.tran 1n 1u\n");
  EXPECT_EQ(Source(file).notes,
            (std::vector<AString>{Wide(file) + L":6: .temp: ignored",
                                  Wide(file) + L":7: .tran: ignored; .sp sweeps alone are solved"}));
}

TEST_F(NetlistSource, WhoseFirstPortIsTakenForTheTitleIsRefusedWithThatNote) {
  auto const file = WriteFile(m_folder / "test.cir", kTwoPorts + "R1 in out 50\nR2 in 0 50\n.sp lin 11 1g 2g\n");
  EXPECT_EQ(ErrorOfSource(file),
            file.string() + ":2: V2: it is port 2, but there is no port 1; number the ports 1, 2, 3, ... without gaps; "
                            "note: line 1 is the title and is not read, though it looks like a statement; put a title "
                            "line in front of it");
}

TEST_F(NetlistSource, WithoutPortsIsRefusedWithARemedy) {
  auto const file = Write("R1 in 0 50\n.sp lin 11 1g 2g\n");
  EXPECT_EQ(ErrorOfSource(file), file.string() + ": circuit: it has no ports; add voltage sources such as 'V1 in 0 dc "
                                                 "0 ac 1 portnum 1 z0 50'");
}

TEST_F(NetlistSource, WithoutASweepIsRefusedWithARemedy) {
  auto const file = Write("R1 in out 50\n" + kTwoPorts);
  EXPECT_EQ(ErrorOfSource(file),
            file.string() + ": .sp: there is no sweep to solve; add a line such as '.sp lin 101 1meg 1g'");
}

TEST_F(NetlistSource, WithAnAcLineForASweepIsRefusedWithTheLineToWrite) {
  auto const file = Write("R1 in out 50\n" + kTwoPorts + ".AC dec 10 1k 1meg\n");
  EXPECT_EQ(ErrorOfSource(file), file.string() + ":5: .ac: there is no sweep to solve, as .ac lines are ignored; write "
                                                 "'.sp dec 10 1k 1meg' instead");
}

TEST_F(NetlistSource, ThatCanNotBeReadGivesTheReadersOneLine) {
  auto const file = Write("R1 in out fifty ohms\n" + kTwoPorts + ".sp lin 11 1g 2g\n");
  std::string const error = ErrorOfSource(file);
  EXPECT_EQ(error.rfind(file.string() + ":2: ", 0), 0u) << error;
  EXPECT_EQ(error.find('\n'), std::string::npos);
}

TEST_F(NetlistSource, ThatIsMissingIsNamed) {
  EXPECT_NE(ErrorOfSource(m_folder / "absent.cir").find("absent.cir"), std::string::npos);
}
