#include "basekit/io/CBlock.h"
#include "basekit/text/Utf8.h"
#include "desktop/product/ResultExtras.h"
#include "products/rfcircuit/product/NodeVoltageTable.h"
#include "products/rfcircuit/product/RfSolution.h"
#include "tests/products/rfcircuit_product/quantity/ExtractorFixture.h"

#include <cmath>
#include <filesystem>

using namespace rftest;
using desktop::ResultExtras;

namespace {

AString const kPoint = L"r=50";

// Two equal resistors between the ports, with a node between them.
class NodeVoltageQuantity : public ExtractorTest {
protected:
  NodeVoltageQuantity() {
    Netlist("V1 in 0 portnum 1 z0 50\nV2 out 0 portnum 2 z0 50\n.param r=50\nR1 in mid {r}\nR2 mid out {r}\n"
            ".sp lin 3 1g 2g voltages=1.5g,3g");
    AddVariable(L"r", L"50");
    io::CBlock result;
    AString error;
    Progress progress;
    EXPECT_TRUE(m_product.MakeJobRunner()->Run(Job(*m_setup, m_netlist, kPoint), result, error, progress));
    auto & solution = dynamic_cast<rfcircuit::RfSolution &>(Solution());
    io::CBlock record(ResultExtras::kRecordName);
    solution.Receive(kPoint, solution.GetVersionID(), *result.FindBlock(ResultExtras::kBlockName), record);
    Store(*m_setup, kPoint, result);
    EXPECT_NE(VariationAt(*m_setup, kPoint), nullptr);
    solution.Accept(kPoint, solution.GetVersionID(), record);
  }
  void ExpectVoltages(AString const & quantity, double volts) {
    Column const voltages = Numbers(quantity);
    ASSERT_EQ(voltages.size(), 2u);
    for (auto const & voltage : voltages)
      EXPECT_LE(std::abs(voltage - volts), 1e-12) << voltage;
  }
};

} // namespace

TEST_F(NodeVoltageQuantity, IsTheVoltageForOneVoltBehindTheImpedanceOfThePort) {
  ASSERT_TRUE(Load(kPoint, 2));
  // 1 V over 50 + 50 + 50 + 50 ohm.
  ExpectVoltages(L"V(in)", 0.75);
  ExpectVoltages(L"V(mid)", 0.5);
  ExpectVoltages(L"V(out,1)", 0.25);
  ExpectVoltages(L"V(out,V2)", 0.75);
}

TEST_F(NodeVoltageQuantity, RunsOverTheFrequenciesThatAreStored) {
  ASSERT_TRUE(Load(kPoint, 2));
  EXPECT_EQ(Axis(), (std::vector<double>{1.5e9, 3e9}));
  std::vector<AString> const names = Names(L"Node Voltage", 2);
  EXPECT_EQ(names.size(), 6u);
  EXPECT_EQ(names.front(), L"V(in,1)");
  EXPECT_EQ(Extractor().GetQuantityType(L"V(mid)", 0).unitType, Units::kVoltage);
}

TEST_F(NodeVoltageQuantity, IsThereAmongSParametersWhereBothAreKnown) {
  ASSERT_TRUE(Load(kPoint, 1));
  Column const voltages = Numbers(L"V(mid)");
  ASSERT_EQ(voltages.size(), 3u);
  EXPECT_TRUE(std::isnan(voltages[0].real()));
  EXPECT_NEAR(voltages[1].real(), 0.5, 1e-12);
  EXPECT_TRUE(std::isnan(voltages[2].real()));
}

TEST_F(NodeVoltageQuantity, StaysAsItWasSolvedWhateverPortsAreSetTo) {
  SetPort(L"V1", 100.0);
  ASSERT_TRUE(Load(kPoint, 2));
  ExpectVoltages(L"V(mid)", 0.5);
}

TEST_F(NodeVoltageQuantity, HasNoValueWhereItsFileIsGone) {
  auto & solution = dynamic_cast<rfcircuit::RfSolution &>(Solution());
  VariationIDIndex const key(kPoint, solution.GetVersionID(), &Manager());
  std::filesystem::remove(text::ToUtf8(solution.GetNodeVoltages().GetFullPath(key, 3e9, false, false)));
  ASSERT_TRUE(Load(kPoint, 2));
  Column const voltages = Numbers(L"V(mid)");
  ASSERT_EQ(voltages.size(), 2u);
  EXPECT_NEAR(voltages[0].real(), 0.5, 1e-12);
  EXPECT_TRUE(std::isnan(voltages[1].real()));
}

TEST(NodeVoltageTable, ReadsBackWhateverItsNodesAreCalled) {
  rfcircuit::NodeVoltages written;
  written.frequency = 1e9;
  written.nodes = {"in", "a,b", "say \"x\"", "two\nlines", "µ"};
  written.ports = {1, 12};
  for (int i = 0; i < 10; ++i)
    written.values.emplace_back(0.1 * i, -1e-300 * i);
  rfcircuit::NodeVoltages read;
  ASSERT_TRUE(rfcircuit::ReadNodeVoltageTable(
      text::ToUtf8(rfcircuit::NodeVoltageTable(written, L"a \"setup\"", L"r=50")), read));
  EXPECT_EQ(read.nodes, written.nodes);
  EXPECT_EQ(read.ports, written.ports);
  EXPECT_EQ(read.values, written.values);
}

TEST(NodeVoltageTable, IsRefusedWhenItIsCutOrForeign) {
  rfcircuit::NodeVoltages read;
  for (char const * const table :
       {"", "# only a comment\n", "node\n", "node,re_port1\n", "node,re_port1,im_port1\n",
        "node,re_port1,im_port1\na,1\n", "node,re_port1,im_port1\na,1,x\n", "node,re_port1,im_port1\na,1,nan\n",
        "node,re_portx,im_portx\na,1,2\n", "name,value,more\na,1,2\n", "node,re_port0,im_port0\na,1,2\n"})
    EXPECT_FALSE(rfcircuit::ReadNodeVoltageTable(table, read)) << table;
}
