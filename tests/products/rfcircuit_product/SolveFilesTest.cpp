#include "basekit/io/CBlock.h"
#include "basekit/text/Utf8.h"
#include "desktop/product/ResultExtras.h"
#include "products/rfcircuit/product/NodeVoltageTable.h"
#include "products/rfcircuit/product/SweepPlan.h"
#include "tests/products/rfcircuit_product/RfProductTest.h"

using namespace rftest;
using desktop::ResultExtras;

namespace {

std::string const kDivider = "divider\n.param res=30\nV1 in 0 dc 0 ac 1 portnum 1 z0 50\nR1 in mid {res}\n"
                             "R2 mid 0 20\nV2 mid 0 dc 0 ac 1 portnum 2 z0 75\n.sp lin 3 1meg 1g ";

class SolveFiles : public RfProductTest {
protected:
  rfcircuit::RfSetup & Setup(std::string const & words) {
    m_source = WriteFile(m_folder / "divider.cir", kDivider + words + "\n.end\n");
    return CreateSetup(Source(m_source).setups.at(0));
  }
  // What a worker gives; the error in place of it.
  io::CBlock Result(rfcircuit::RfSetup & setup, AString const & variation, AString & error) {
    desktop::SolveJob job;
    m_product.DescribeJob(setup, job);
    job.sourceFile = Wide(m_source);
    job.variation = variation;
    io::CBlock result;
    Progress progress;
    m_product.MakeJobRunner()->Run(job, result, error, progress);
    return result;
  }
  // As the queue stores it.
  rfcircuit::RfSolution & Deliver(rfcircuit::RfSetup & setup, AString const & variation) {
    AString error;
    io::CBlock const result = Result(setup, variation, error);
    EXPECT_EQ(error, L"");
    auto & solution = dynamic_cast<rfcircuit::RfSolution &>(SolutionOf(setup));
    if (io::CBlock const * const extras = result.FindBlock(ResultExtras::kBlockName)) {
      io::CBlock record(ResultExtras::kRecordName);
      solution.Receive(variation, solution.GetVersionID(), *extras, record);
      solution.Accept(variation, solution.GetVersionID(), record);
    }
    return solution;
  }
  VariationIDIndex Key(AString const & variation) { return VariationIDIndex(variation, 0, &Manager()); }

  std::filesystem::path m_source;
};

std::vector<std::string> Lines(std::string const & text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);)
    lines.push_back(line);
  return lines;
}

} // namespace

TEST_F(SolveFiles, NotAskedForAreNone) {
  AString error;
  io::CBlock const result = Result(Setup(""), L"res=30", error);
  EXPECT_EQ(error, L"");
  EXPECT_EQ(result.FindBlock(ResultExtras::kBlockName), nullptr);
}

TEST_F(SolveFiles, NodeVoltagesOfADividerStandInATableForEachFrequency) {
  auto & solution = Deliver(Setup("voltages=0,1g"), L"res=25");
  auto & store = solution.GetNodeVoltages();
  std::vector<double> frequencies;
  store.ListValidDoubles(Key(L"res=25"), frequencies);
  EXPECT_EQ(frequencies, (std::vector<double>{0.0, 1e9}));
  auto const lines = Lines(Content(text::ToUtf8(store.GetFullPath(Key(L"res=25"), 1e9, false, false))));
  ASSERT_EQ(lines.size(), 7u);
  EXPECT_EQ(lines[0], "# Node voltages in volt at 1e+09 Hz");
  EXPECT_EQ(lines[2], "# Variation: res=25");
  EXPECT_EQ(lines[4], "node,re_port1,im_port1,re_port2,im_port2");
  double const middle = 1 / (1 / 20.0 + 1 / 75.0);
  double one = 0.0;
  ASSERT_EQ(std::sscanf(lines[5].c_str(), "in,%lf,", &one), 1) << lines[5];
  EXPECT_NEAR(one, (25 + middle) / (75 + middle), 1e-12);
  double two = 0.0;
  double imaginary = 1.0;
  ASSERT_EQ(std::sscanf(lines[6].c_str(), "mid,%lf,%lf,", &two, &imaginary), 2) << lines[6];
  EXPECT_NEAR(two, middle / (75 + middle), 1e-12);
  EXPECT_EQ(imaginary, 0.0);
}

TEST_F(SolveFiles, ATouchstoneFileIsRenormalizedAndFlagged) {
  auto & solution = Deliver(Setup("touchstone z0=75"), L"res=30");
  AString const path = solution.GetTouchstoneFiles().GetFullPath(Key(L"res=30"), false, false);
  EXPECT_TRUE(path.EndsWith(L".s2p"));
  auto const lines = Lines(Content(text::ToUtf8(path)));
  ASSERT_EQ(lines.size(), 9u);
  EXPECT_EQ(lines[4], "! Renormalized; the ports' own impedances in ohm: 1 = 50, 2 = 75");
  EXPECT_EQ(lines[5], "# Hz S RI R 75");
  double frequency = 0.0;
  double s11 = 0.0;
  ASSERT_EQ(std::sscanf(lines[6].c_str(), "%lf %lf", &frequency, &s11), 2);
  double const input = 30 + 1 / (1 / 20.0 + 1 / 75.0);
  EXPECT_NEAR(s11, (input - 75) / (input + 75), 1e-12);
  EXPECT_TRUE(solution.GetRenormalized().GetData(Key(L"res=30")));
  EXPECT_FALSE(solution.GetRenormalized().GetData(Key(L"res=31")));
}

TEST_F(SolveFiles, PortsThatDifferAreWrittenInVersion2) {
  auto & solution = Deliver(Setup("touchstone"), L"res=30");
  AString const path = solution.GetTouchstoneFiles().GetFullPath(Key(L"res=30"), false, false);
  std::string const text = Content(text::ToUtf8(path));
  EXPECT_NE(text.find("[Version] 2.0\n"), std::string::npos) << text;
  EXPECT_NE(text.find("[Reference] 50 75\n"), std::string::npos) << text;
}

TEST_F(SolveFiles, AnAdaptiveSweepTellsItsPasses) {
  auto & solution = Deliver(Setup("adaptive"), L"res=30");
  EXPECT_GT(solution.GetPasses().GetData(Key(L"res=30")), 0);
  EXPECT_EQ(solution.GetPasses().GetData(Key(L"res=31")), -1);
}

TEST(NodeVoltageTable, QuotesNamesThatWouldBeTwoColumns) {
  rfcircuit::NodeVoltages const voltages{1e9, {"a,b", "c\"d"}, {1}, {{1, 2}, {3, 4}}};
  std::string const table = text::ToUtf8(NodeVoltageTable(voltages, L"S\nR", L"größe=1"));
  EXPECT_NE(table.find("# Setup: S R\n# Variation: größe=1\n"), std::string::npos);
  EXPECT_NE(table.find("\n\"a,b\",1,2\n\"c\"\"d\",3,4\n"), std::string::npos);
}

TEST(SweepPlan, KeepsTheFilesThatAreAskedFor) {
  for (wchar_t const * const words :
       {L"lin 201 1e+07 2e+09 touchstone", L"lin 201 1e+07 2e+09 touchstone z0=75 voltages=0,1e+09",
        L"list 1e+09 2e+09 voltages=1e+09", L"dec 10 1000 1e+06 adaptive target=1e-05 passes=2 voltages=1.5"}) {
    AString error;
    auto const plan = rfcircuit::PlanOfWords(words, error);
    ASSERT_TRUE(plan) << text::ToUtf8(error);
    EXPECT_EQ(rfcircuit::WordsOfPlan(*plan), AString(words));
    io::CBlock settings(L"Settings");
    rfcircuit::WritePlan(settings, *plan);
    auto const read = rfcircuit::ReadPlan(ThroughText(settings), error);
    ASSERT_TRUE(read) << text::ToUtf8(error);
    EXPECT_EQ(read->files, plan->files);
  }
}
