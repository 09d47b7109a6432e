// N elements: S-parameters of a file as a part of a circuit.
#include "products/rfcircuit/engine/network/SParameterLookup.h"
#include "products/rfcircuit/engine/touchstone/TouchstoneWriter.h"
#include "tests/products/rfcircuit/RfSupport.h"

#include <cmath>

using namespace rftest;

namespace {

/// A netlist in a folder of its own, with data that circuits gave.
class NetworkElementTest : public testing::Test {
protected:
  /// Solves a circuit at the frequencies and writes its data.
  void WriteData(std::string const & name, std::string const & lines, std::vector<double> const & frequencies) const {
    rf::SParameterSolver solver(Build(lines));
    std::vector<rf::SMatrix> matrices;
    for (double const frequency : frequencies)
      matrices.push_back(solver.At(frequency));
    rf::TouchstoneOptions options;
    options.digits = 17;
    rf::WriteTouchstone(m_Folder.Path() / name, {}, solver.Ports(), frequencies, matrices, options);
  }
  void WriteText(std::string const & name, std::string const & text) const { m_Folder.Write(name, text); }

  rf::Netlist Read(std::string const & lines) const {
    return rf::ReadNetlistText("title\n" + lines, (m_Folder.Path() / "main.cir").string());
  }
  rf::SMatrix Solve(std::string const & lines, double frequency) const {
    return rf::SParameterSolver(rf::Elaborate(Read(lines))).At(frequency);
  }
  std::string Refusal(std::function<void()> const & action) const {
    std::string text = ErrorOf(action);
    std::string const folder = m_Folder.Path().string() + "/";
    for (std::size_t at = text.find(folder); at != std::string::npos; at = text.find(folder))
      text.erase(at, folder.size());
    return text;
  }

  FolderOfFiles m_Folder;
};

void ExpectEqual(rf::SMatrix const & actual, rf::SMatrix const & expected, double tolerance) {
  ASSERT_EQ(actual.Ports(), expected.Ports());
  for (std::size_t row = 0; row < actual.Ports(); ++row)
    for (std::size_t column = 0; column < actual.Ports(); ++column)
      ExpectNear(actual(row, column), expected(row, column), tolerance);
}

std::string const TWO_PORTS = "\nV1 in 0 portnum 1 z0 50\nV2 out 0 portnum 2 z0 50\n";
std::string const PART = "L1 in mid 4n\nC1 mid 0 2p\nR1 mid out 7\nC2 out 0 1p\nE1 x 0 in 0 3\nR2 x out 90\n";
std::vector<double> const GRID{0, 1e6, 3.3e8, 1e9, 2.5e9};

} // namespace

TEST_F(NetworkElementTest, ACascadeSolvesAsTheSameCircuitInOneNetlist) {
  WriteData("part.s2p", PART + TWO_PORTS, GRID);
  std::string const rest = "R9 in a 20\nC9 out 0 3p\nL9 b out 2n\n" + TWO_PORTS;
  std::string const flat = "X1 a b part\n.subckt part in out\n" + PART + ".ends\n" + rest;
  for (double const frequency : GRID)
    ExpectEqual(Solve("N1 a b part.s2p\n" + rest, frequency), Solve(flat, frequency), 1e-12);
}

TEST_F(NetworkElementTest, TheReferenceImpedancesOfTheFileDontMatter) {
  std::string const other = "\nV1 in 0 portnum 1 z0 12.5\nV2 out 0 portnum 2 z0 300\n";
  WriteData("part.s2p", PART + other, GRID);
  for (double const frequency : GRID)
    ExpectEqual(Solve("N1 in out part.s2p" + TWO_PORTS, frequency), Solve(PART + TWO_PORTS, frequency), 1e-12);
}

TEST_F(NetworkElementTest, DataThatHasNoAdmittanceIsSolvedToo) {
  WriteText("through.s2p", "# Hz S RI R 50\n0 0 0 1 0 1 0 0 0\n1e9 0 0 1 0 1 0 0 0\n");
  rf::SMatrix const s = Solve("N1 in out through.s2p\nC1 out 0 1p" + TWO_PORTS, 5e8);
  ExpectEqual(s, Solve("R1 in out 0\nC1 out 0 1p" + TWO_PORTS, 5e8), 1e-12);
}

TEST_F(NetworkElementTest, DataThatHasNoImpedanceIsSolvedToo) {
  WriteText("series.s2p", "# Hz S RI R 50\n1 0.5 0 0.5 0 0.5 0 0.5 0\n1e9 0.5 0 0.5 0 0.5 0 0.5 0\n");
  ExpectEqual(Solve("N1 in out series.s2p" + TWO_PORTS, 5e8), Solve("R1 in out 100" + TWO_PORTS, 5e8), 1e-12);
}

TEST_F(NetworkElementTest, ShortsAndOpensAtOnePortAreSolved) {
  WriteText("short.s1p", "# Hz S RI R 50\n1 -1 0\n1e9 -1 0\n");
  WriteText("open.s1p", "# Hz S RI R 50\n1 1 0\n1e9 1 0\n");
  std::string const rest = "R1 in out 30" + TWO_PORTS;
  ExpectEqual(Solve("N1 out short.s1p\nR2 in x 1\nR3 x 0 1\n" + rest, 5e8),
              Solve("R9 out 0 0\nR2 in x 1\nR3 x 0 1\n" + rest, 5e8), 1e-12);
  ExpectEqual(Solve("N1 out open.s1p\n" + rest, 5e8), Solve(rest, 5e8), 1e-12);
}

TEST_F(NetworkElementTest, ANodeMoreIsWhatThePortsCountFrom) {
  WriteData("part.s2p", "R1 in out 30\nC1 out 0 2p" + TWO_PORTS, GRID);
  std::string const rest = "R8 foot 0 11\nL8 foot 0 1n" + TWO_PORTS;
  for (double const frequency : {1e6, 1e9})
    ExpectEqual(Solve("N1 in out foot part.s2p\n" + rest, frequency),
                Solve("R1 in out 30\nC1 out foot 2p\n" + rest, frequency), 1e-12);
}

TEST_F(NetworkElementTest, APortMayLieAtGroundAndTwoAtOneNode) {
  WriteData("part.s2p", PART + TWO_PORTS, GRID);
  std::string const rest = "R1 p out 10\nVp p 0 portnum 1\nVo out 0 portnum 2\n";
  std::string const subckt = ".subckt part in out\n" + PART + ".ends\n";
  ExpectEqual(Solve("N1 p 0 part.s2p\n" + rest, 1e9), Solve("X1 p 0 part\n" + subckt + rest, 1e9), 1e-12);
  ExpectEqual(Solve("N1 p p part.s2p\n" + rest, 1e9), Solve("X1 p p part\n" + subckt + rest, 1e9), 1e-12);
}

TEST_F(NetworkElementTest, InstancesOfASubcircuitShareItsData) {
  WriteData("part.s2p", PART + TWO_PORTS, GRID);
  std::string const two = "X1 in m block\nX2 m out block\n" + TWO_PORTS;
  ExpectEqual(Solve(two + ".subckt block a b\nN1 a b part.s2p\n.ends\n", 1e9),
              Solve(two + ".subckt block in out\n" + PART + ".ends\n", 1e9), 1e-12);
}

TEST_F(NetworkElementTest, BetweenTwoFrequenciesAStraightLineCounts) {
  WriteText("line.s1p", "# Hz S RI R 50\n1e9 0.1 0.5\n2e9 0.3 -0.5\n");
  rf::SMatrix const s = Solve("N1 in line.s1p\nV1 in 0 portnum 1\n", 1.25e9);
  ExpectNear(s(0, 0), Complex(0.15, 0.25), 1e-14);
}

TEST_F(NetworkElementTest, AtItsOwnFrequenciesTheDataCountsAsItStands) {
  rf::SParameterTable table;
  table.frequencies = {0.1 + 0.2, 1.0};
  table.matrices.assign(2, rf::SMatrix(1));
  table.matrices[0](0, 0) = {1.0 / 3, 0.1};
  table.matrices[1](0, 0) = 0.7;
  EXPECT_EQ(rf::ParametersAt(table, 0.3)(0, 0), Complex(1.0 / 3, 0.1));
  EXPECT_EQ(rf::ParametersAt(table, 1.0)(0, 0), Complex(0.7, 0));
  EXPECT_TRUE(rf::Covers(table, 0.3));
  EXPECT_FALSE(rf::Covers(table, 0.2999));
  EXPECT_FALSE(rf::Covers(table, 1.0001));
  EXPECT_FALSE(rf::Covers(table, std::nan("")));
}

TEST_F(NetworkElementTest, BeyondItsDataANetworkIsRefused) {
  WriteText("line.s1p", "# Hz S RI R 50\n1e9 0.1 0.5\n2e9 0.3 -0.5\n");
  for (double const frequency : {0.0, 9e8})
    EXPECT_THROW(Solve("N1 in line.s1p\nV1 in 0 portnum 1\n", frequency), rf::NetlistError);
  EXPECT_EQ(Refusal([&] { Solve("N1 in line.s1p\nV1 in 0 portnum 1\n", 3e9); }),
            "main.cir:2: N1: it is not known at 3000000000 Hz: line.s1p goes from 1000000000 to 2000000000 Hz; sweep "
            "within that range, or solve the file's data over a wider one");
}

TEST_F(NetworkElementTest, LinesThatDontFitTheirFileAreRefused) {
  WriteText("part.s2p", "# Hz S RI R 50\n1e9 0 0 1 0 1 0 0 0\n");
  EXPECT_EQ(Refusal([&] { Read("N1 a part.s2p\n"); }),
            "main.cir:2: N1: it has 1 node, 'part.s2p' has 2 ports; give one node for each port, and one more where "
            "the ports' reference is not ground");
  EXPECT_NE(Refusal([&] { Read("N1 a b c d part.s2p\n"); }).find("it has 4 nodes"), std::string::npos);
  EXPECT_NE(Refusal([&] { Read("N1 part.s2p\n"); }).find("nodes and the file's name are missing"), std::string::npos);
  EXPECT_NE(Refusal([&] { Read("N1 a b part.s2p z0=3\n"); }).find("it knows no 'z0='"), std::string::npos);
  EXPECT_NE(Refusal([&] { Read("N1 a b gone.s2p\n"); }).find("main.cir:2: N1: its data can't be used: gone.s2p"),
            std::string::npos);
  WriteText("broken.s2p", "# Hz S RI R 50\n1e9 0 0 1\n");
  EXPECT_NE(Refusal([&] { Read("N1 a b broken.s2p\n"); }).find("broken.s2p:"), std::string::npos);
}

TEST_F(NetworkElementTest, ItsNodesFloatWithoutAPathToGround) {
  WriteText("part.s2p", "# Hz S RI R 50\n1e9 0 0 1 0 1 0 0 0\n");
  EXPECT_NE(Refusal([&] {
              rf::Elaborate(Read("N1 a b c part.s2p\nV1 in 0 portnum 1\nR1 in 0 5\n"));
            }).find("N1: its node 'a' floats"),
            std::string::npos);
}

TEST_F(NetworkElementTest, TheNumbersOfTheFileMakeUpTheFingerprintAndItsRemarksDoNot) {
  auto const print = [&](std::string const & text) {
    WriteText("part.s1p", text);
    return Read("N1 in part.s1p\nV1 in 0 portnum 1\n").Fingerprint();
  };
  auto const before = print("# Hz S RI R 50\n1e9 0.5 0\n");
  EXPECT_EQ(print("! another remark\n# GHz S RI R 50\n1 0.50 0\n"), before);
  EXPECT_NE(print("# Hz S RI R 50\n1e9 0.5 1e-12\n"), before);
  EXPECT_NE(print("# Hz S RI R 75\n1e9 0.5 0\n"), before);
  EXPECT_NE(print("# Hz S RI R 50\n2e9 0.5 0\n"), before);
}

TEST_F(NetworkElementTest, TheFileIsOneOfTheFilesOfTheNetlistOnce) {
  WriteText("data/part.s1p", "# Hz S RI R 50\n1e9 0.5 0\n");
  WriteText("data/inner.cir", "N1 in part.s1p\n");
  auto const files = Read(".include data/inner.cir\nN2 in data/part.s1p\nV1 in 0 portnum 1\n").Files();
  ASSERT_EQ(files.size(), 3u);
  EXPECT_EQ(files[1], (m_Folder.Path() / "data/inner.cir").string());
  EXPECT_EQ(files[2], (m_Folder.Path() / "data/part.s1p").string());
}
